// SPDX-License-Identifier: MIT
#include "messages/MergeRules.h"

#include "messages/RankTree.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <utility>

namespace qovelmor {

namespace {

constexpr int none = -1;

QStringView dateOf(const Message &message)
{
    return message.date ? QStringView(*message.date) : QStringView();
}

// The place of a message with the beginning of its date text, which is all of it for "MM/DD hh:mm":
// comparing the texts where they stand would wait for the memory at each of n log n comparisons.
struct DatedPlace
{
    static constexpr qsizetype startLength = 12;

    DatedPlace(QStringView date, std::size_t messagePlace)
        : length(date.size()), place(messagePlace)
    {
        std::copy_n(date.utf16(), std::min(length, startLength), start.begin());
    }

    std::array<char16_t, startLength> start = {}; ///< filled up with zeros
    qsizetype length;                             ///< of the whole text
    std::size_t place;
};

bool isEarlier(const DatedPlace &a, const DatedPlace &b, const MessageVector &messages)
{
    if (a.start != b.start)
        return a.start < b.start;
    if (std::max(a.length, b.length) <= DatedPlace::startLength)
        return a.length < b.length;
    return dateOf(messages[a.place]) < dateOf(messages[b.place]);
}

// Sorts places instead of messages: a message is moved once.
template <typename IsBefore>
void sortByDate(MessageVector &messages, IsBefore isBefore)
{
    std::vector<DatedPlace> places;
    places.reserve(messages.size());
    for (std::size_t place = 0; place < messages.size(); ++place)
        places.emplace_back(dateOf(messages[place]), place);
    std::stable_sort(places.begin(), places.end(), isBefore);
    MessageVector sorted;
    sorted.reserve(messages.size());
    for (const DatedPlace &dated : places)
        sorted.push_back(std::move(messages[dated.place]));
    messages = std::move(sorted);
}

// The messages of a list that are left, linked twice: to the next one in the list, and to the next
// one with the same headline.
class RemainingMessages
{
public:
    explicit RemainingMessages(const MessageVector &messages);

    /// Compares all later messages with the one at `place`, removing equal ones; the one that moves
    /// into the place of a removed message is passed over.
    void compareLaterOnes(int place, std::vector<int> &removedRanks);

    bool isLeft(int place) const { return left_[index(place)]; }

private:
    static std::size_t index(int place) { return static_cast<std::size_t>(place); }
    void remove(int place);

    std::vector<bool> left_;
    std::vector<int> next_;
    std::vector<int> previous_;
    std::vector<int> nextEqual_; ///< among those left
    RankTree ranks_;
};

RemainingMessages::RemainingMessages(const MessageVector &messages)
    : left_(messages.size(), true)
    , next_(messages.size(), none)
    , previous_(messages.size(), none)
    , nextEqual_(messages.size(), none)
    , ranks_(messages.size())
{
    QHash<QStringView, int> latest; // views: counting the users of each text would touch it again
    latest.reserve(static_cast<qsizetype>(messages.size()));
    for (int place = static_cast<int>(messages.size()) - 1; place >= 0; --place) {
        previous_[index(place)] = place - 1;
        if (index(place) + 1 < messages.size())
            next_[index(place)] = place + 1;
        const QStringView headline = messages[index(place)].headline;
        nextEqual_[index(place)] = latest.value(headline, none);
        latest.insert(headline, place);
    }
}

void RemainingMessages::compareLaterOnes(int place, std::vector<int> &removedRanks)
{
    int passedOver = none;
    int lastKept = place;
    for (int equal = nextEqual_[index(place)]; equal != none; equal = nextEqual_[index(equal)]) {
        if (equal == passedOver) {
            nextEqual_[index(lastKept)] = equal;
            lastKept = equal;
            continue;
        }
        removedRanks.push_back(static_cast<int>(ranks_.rankOf(index(equal))));
        passedOver = next_[index(equal)];
        remove(equal);
    }
    nextEqual_[index(lastKept)] = none;
}

void RemainingMessages::remove(int place)
{
    const int before = previous_[index(place)];
    const int behind = next_[index(place)];
    if (before != none)
        next_[index(before)] = behind;
    if (behind != none)
        previous_[index(behind)] = before;
    left_[index(place)] = false;
    ranks_.remove(index(place));
}

} // namespace

int perSiteCap(bool useMaxMessages, int maxMessages)
{
    return useMaxMessages && maxMessages > 0 ? maxMessages : noSiteCap;
}

void sortNewestFirst(MessageVector &messages)
{
    sortByDate(messages, [&messages](const DatedPlace &a, const DatedPlace &b) {
        return isEarlier(b, a, messages);
    });
}

void sortOldestFirst(MessageVector &messages)
{
    sortByDate(messages, [&messages](const DatedPlace &a, const DatedPlace &b) {
        return isEarlier(a, b, messages);
    });
}

void arrangeSite(MessageVector &messages, int cap, MessageOrder order)
{
    sortNewestFirst(messages);
    if (messages.size() > static_cast<std::size_t>(cap))
        messages.resize(static_cast<std::size_t>(cap));
    if (order == MessageOrder::OldestFirst)
        sortOldestFirst(messages);
}

// Every pass removes at least half of the equal headlines behind its message, so all passes of one
// headline together look at each of them about twice.
std::vector<int> removeDuplicates(MessageVector &messages)
{
    std::vector<int> removedRanks;
    RemainingMessages remaining(messages);
    const int count = static_cast<int>(messages.size());
    for (int place = 0; place < count; ++place) {
        if (remaining.isLeft(place))
            remaining.compareLaterOnes(place, removedRanks);
    }

    int place = 0;
    std::erase_if(messages, [&](const Message &) { return !remaining.isLeft(place++); });
    return removedRanks;
}

void markNew(MessageVector &messages, const MessageVector &previous)
{
    QSet<QStringView> known;
    known.reserve(static_cast<qsizetype>(previous.size()));
    for (const Message &message : previous)
        known.insert(message.headline);
    for (Message &message : messages) {
        if (!known.contains(message.headline))
            message.isNew = true;
    }
}

} // namespace qovelmor
