// SPDX-License-Identifier: MIT
#include "messages/views/WindowPlace.h"

#include <algorithm>
#include <array>

namespace qovelmor {

QPoint placeBeside(const QRect &other, QSize size, const QRect &screen)
{
    const auto within = [](int place, int least, int most) {
        return std::max(least, std::min(place, most));
    };
    const int column = within(other.left(), screen.left(), screen.right() + 1 - size.width());
    const int row = within(other.top(), screen.top(), screen.bottom() + 1 - size.height());
    const std::array places = {
        QPoint(column, other.bottom() + 1),
        QPoint(column, other.top() - size.height()),
        QPoint(other.right() + 1, row),
        QPoint(other.left() - size.width(), row),
    };
    for (const QPoint &place : places) {
        if (screen.contains(QRect(place, size)))
            return place;
    }
    return {column, std::max(screen.top(), screen.bottom() + 1 - size.height())};
}

} // namespace qovelmor
