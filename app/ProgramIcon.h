// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace qovelmor {

/// The program's picture in the sizes that windows, the tray and the about box ask for.
QIcon programIcon();

} // namespace qovelmor
