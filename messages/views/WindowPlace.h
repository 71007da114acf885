// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>

namespace qovelmor {

/// Where a window of this size (frame included) stands so that it covers another one as little as
/// it can: below, above, to the right or to the left of it, or else at the lower edge of the
/// screen.
QPoint placeBeside(const QRect &other, QSize size, const QRect &screen);

} // namespace qovelmor
