// SPDX-License-Identifier: MIT
#include "platform/views/FittedPlace.h"

#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace qovelmor {

namespace {

QRect roomFor(const QWidget &window)
{
    constexpr QMargins frame{2, 28, 2, 6};
    return window.screen()->availableGeometry().marginsRemoved(frame);
}

QSize fittedSize(const QWidget &window, QSize room)
{
    return window.size().boundedTo(room).expandedTo(window.minimumSize());
}

} // namespace

bool restoreFitted(QWidget &window, const QByteArray &geometry)
{
    if (geometry.isEmpty() || !window.restoreGeometry(geometry))
        return false;
    if (window.isMaximized() || window.isFullScreen())
        return true;
    const QRect room = roomFor(window);
    QRect place(window.geometry().topLeft(), fittedSize(window, room.size()));
    place.moveRight(std::min(place.right(), room.right()));
    place.moveBottom(std::min(place.bottom(), room.bottom()));
    place.moveLeft(std::max(place.left(), room.left()));
    place.moveTop(std::max(place.top(), room.top()));
    window.setGeometry(place);
    return true;
}

void boundToScreen(QWidget &window)
{
    window.resize(fittedSize(window, roomFor(window).size()));
}

} // namespace qovelmor
