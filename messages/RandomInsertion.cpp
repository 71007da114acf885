// SPDX-License-Identifier: MIT
#include "messages/RandomInsertion.h"

#include "messages/RankTree.h"

#include <utility>

namespace qovelmor {

std::size_t randomPlace(std::size_t count, int random)
{
    if (count == 0)
        return 0;
    const std::size_t place = static_cast<std::size_t>(random) % count;
    return place == count - 1 ? count : place;
}

void RandomInsertion::add(Message message)
{
    places_.push_back(randomPlace(messages_.size(), random_()));
    messages_.push_back(std::move(message));
}

// The last one inserted stands where it was put. Taken backwards, each message stands at the place
// that it was put at, counted over the places that no later one occupies.
MessageVector RandomInsertion::take()
{
    MessageVector ordered(messages_.size());
    RankTree freePlaces(messages_.size());
    for (std::size_t i = messages_.size(); i-- > 0;) {
        const std::size_t place = freePlaces.placeOf(places_[i]);
        freePlaces.remove(place);
        ordered[place] = std::move(messages_[i]);
    }
    messages_.clear();
    places_.clear();
    return ordered;
}

} // namespace qovelmor
