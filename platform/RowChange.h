// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <iterator>
#include <vector>

namespace qovelmor {

/// How a table's rows became another set of rows, in the terms of an item model: from `first` on,
/// `replaced` rows have new contents; the `removed` or `inserted` rows follow them.
struct RowChange
{
    int first = 0;
    int replaced = 0;
    int removed = 0;
    int inserted = 0;

    friend bool operator==(const RowChange &, const RowChange &) = default;
};

/// The smallest such change: what is equal at the head and at the tail is left alone, so that the
/// selection and the scroll position of a view survive.
template <typename Row>
RowChange rowChange(const std::vector<Row> &before, const std::vector<Row> &after)
{
    const auto head = std::ranges::mismatch(before, after);
    const auto tail = std::mismatch(before.rbegin(), std::make_reverse_iterator(head.in1),
                                    after.rbegin(), std::make_reverse_iterator(head.in2));
    const int removed = static_cast<int>(std::distance(head.in1, tail.first.base()));
    const int inserted = static_cast<int>(std::distance(head.in2, tail.second.base()));
    const int replaced = std::min(removed, inserted);
    return {static_cast<int>(std::distance(before.begin(), head.in1)), replaced, removed - replaced,
            inserted - replaced};
}

} // namespace qovelmor
