// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <vector>

namespace qovelmor {

/// The places 0 … n−1, of which some are taken away: tells the rank of a place among those left,
/// and the place of a rank, each in log n (a binary indexed tree over the counts).
class RankTree
{
public:
    /// All `size` places are there.
    explicit RankTree(std::size_t size) : counts_(size + 1)
    {
        for (std::size_t i = 1; i <= size; ++i)
            counts_[i] = i & (~i + 1);
    }

    void remove(std::size_t place)
    {
        for (std::size_t i = place + 1; i < counts_.size(); i += i & (~i + 1))
            --counts_[i];
    }

    /// How many of the places before `place` are left.
    std::size_t rankOf(std::size_t place) const
    {
        std::size_t rank = 0;
        for (std::size_t i = place; i > 0; i &= i - 1)
            rank += counts_[i];
        return rank;
    }

    /// The place that has `rank` places before it that are left, and is left itself.
    std::size_t placeOf(std::size_t rank) const
    {
        std::size_t place = 0;
        for (std::size_t step = std::bit_floor(counts_.size()); step > 0; step /= 2) {
            if (place + step < counts_.size() && counts_[place + step] <= rank) {
                place += step;
                rank -= counts_[place];
            }
        }
        return place;
    }

private:
    std::vector<std::size_t> counts_;
};

} // namespace qovelmor
