// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/DotPanel.h"

#include <QImage>

namespace qovelmor::simboard {

/// Paints a board as it looks: round amber LEDs on black, `cell` pixels apart. The LEDs of one
/// brightness are drawn once and then only copied.
class LedPainter
{
public:
    explicit LedPainter(int cell) : cell_(cell) {}

    QSize sizeOf(const BoardPicture &picture) const;
    QImage paint(const BoardPicture &picture);

private:
    int cell_;
    int brightness_ = -1;
    QImage lit_;
    QImage dark_;
};

} // namespace qovelmor::simboard
