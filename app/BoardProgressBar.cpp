// SPDX-License-Identifier: MIT
#include "app/BoardProgressBar.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

void BoardProgressBar::create()
{
    progress_.setSystem(board_());
    progress_.setTitle(u"読込中"_s);
}

void BoardProgressBar::start(int maxValue)
{
    progress_.setMaxValue(maxValue);
    progress_.startAnimation();
}

void BoardProgressBar::move(int value)
{
    progress_.setDoubleValue(value);
}

void BoardProgressBar::stop()
{
    progress_.stopAnimation();
}

} // namespace qovelmor
