// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"

#include <functional>
#include <vector>

namespace qovelmor {

/// Gives the next pseudo-random number, 0 or more; std::rand is one.
using RandomSource = std::function<int()>;

/// Where the next message goes in a list of `count`, given a random number: `random` mod `count`,
/// except that the last place is reached by appending only.
std::size_t randomPlace(std::size_t count, int random);

/// A list that grows by insertion at random places.
///
/// Only the drawn places are kept while it grows; the order is worked out once at the end, so that
/// 100,000 insertions cost n log n instead of moving half of the list each time.
class RandomInsertion
{
public:
    explicit RandomInsertion(const RandomSource &random) : random_(random) {}

    void add(Message message);
    std::size_t count() const { return messages_.size(); }

    /// The list as the insertions have left it; empties this object.
    MessageVector take();

private:
    const RandomSource &random_;
    MessageVector messages_;          ///< in order of insertion
    std::vector<std::size_t> places_; ///< the place of each at its insertion
};

} // namespace qovelmor
