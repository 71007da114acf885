// SPDX-License-Identifier: MIT
#include "messages/MessageMenus.h"

namespace qovelmor {

std::vector<BoarderItem> boarderItems(int checkedValue)
{
    constexpr int step = 8;
    constexpr int last = 248;
    std::vector<BoarderItem> items;
    for (int threshold = step; threshold <= last; threshold += step)
        items.push_back({threshold, threshold / step == checkedValue / step});
    return items;
}

} // namespace qovelmor
