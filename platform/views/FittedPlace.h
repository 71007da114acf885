// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class QWidget;

namespace qovelmor {

/// Gives a window the place stored with saveGeometry(), fitted into the screen: the last session
/// may have had a larger one. False when it is none; the window is left as it was then.
bool restoreFitted(QWidget &window, const QByteArray &geometry);

/// Makes a window that has no place yet no larger than the room that its screen has.
void boundToScreen(QWidget &window);

} // namespace qovelmor
