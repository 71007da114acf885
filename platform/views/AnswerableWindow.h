// SPDX-License-Identifier: MIT
#pragma once

class QObject;
class QWidget;

namespace qovelmor {

/// Makes a window take keys and clicks also while the main thread reads or waits, when all others
/// take none: the one that offers to break the work off. Call it when the window is shown.
void makeAnswerable(QWidget &window);

/// Whether an event for `object` (a widget or a native window) may reach it meanwhile.
bool isAnswerable(const QObject &object);

} // namespace qovelmor
