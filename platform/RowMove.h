// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace qovelmor {

/// Whether a row of a list of `count` rows may be dropped above row `target` (`target` = count:
/// below the last): not onto itself and not just below itself, where it already stands.
constexpr bool isRowMove(int from, int target, std::size_t count)
{
    const int size = static_cast<int>(count);
    return from >= 0 && from < size && target >= 0 && target <= size && from != target &&
           from != target - 1;
}

/// Moves the entry at `from` so that it stands above what was at `target` before. False, and
/// nothing is changed, when an index lies outside the list.
template <typename T>
bool moveRow(std::vector<T> &list, int from, int target)
{
    const int size = static_cast<int>(list.size());
    if (from < 0 || from >= size || target < 0 || target > size)
        return false;
    T entry = list[static_cast<std::size_t>(from)];
    list.insert(list.begin() + target, std::move(entry));
    list.erase(list.begin() + (from >= target ? from + 1 : from));
    return true;
}

} // namespace qovelmor
