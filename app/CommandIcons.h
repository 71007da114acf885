// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

class QPalette;

namespace qovelmor {

/// The signs of starting and stopping in the colours of a button's text: the style's own are black
/// in a dark theme too.
QIcon startIcon(const QPalette &palette);
QIcon stopIcon(const QPalette &palette);

} // namespace qovelmor
