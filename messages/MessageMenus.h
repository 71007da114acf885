// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace qovelmor {

/// One item of the threshold menu.
struct BoarderItem
{
    int threshold = 0; ///< 8, 16 … 248
    bool isChecked = false;
};

/// The threshold menu with the mark on item (value ÷ 8 − 1); a value between two multiples of 8
/// marks the lower one, a value outside the menu none.
std::vector<BoarderItem> boarderItems(int checkedValue);

} // namespace qovelmor
