// SPDX-License-Identifier: MIT
#include "render/VelmorProgress.h"

#include "platform/Clock.h"
#include "render/ProgressBoard.h"
#include "render/VelmorBitmap.h"

#include <algorithm>
#include <cstdint>

using namespace std::chrono_literals;

namespace qovelmor {

namespace {

constexpr int assumedModules = 4;

/// Columns of the bar that are lit; a value outside its range counts as the nearer end.
int filledColumns(int columns, double value, double maxValue)
{
    const double filled = columns * value / maxValue;
    // Also answers what is no number: 0 of 0 is nothing.
    return filled > 0.0 ? static_cast<int>(std::min<double>(filled, columns)) : 0;
}

void appendBar(VelmorBitmap &image, int filled, int empty)
{
    VelmorBitmap part;
    if (filled != 0) {
        part.fillRect({0, 0, static_cast<double>(filled), VelmorBitmap::maxHeight});
        image.appendBitmap(part);
    }
    if (empty != 0) {
        part.lineRect({0, 0, static_cast<double>(empty), VelmorBitmap::maxHeight});
        image.appendBitmap(part);
    }
}

} // namespace

VelmorProgress::VelmorProgress(Clock &clock, ProgressBoard *system) : clock_(clock), system_(system)
{}

void VelmorProgress::startAnimation()
{
    if (!system_)
        return;
    system_->sc_clear();
    clock_.sleepFor(100ms);
    setDoubleValue(0.0);
}

void VelmorProgress::setDoubleValue(double value)
{
    if (!system_)
        return;
    show(value);
    clock_.sleepFor(500ms);
    if (value >= maxValue_)
        clock_.sleepFor(100ms);
}

void VelmorProgress::show(double value)
{
    VelmorBitmap image;
    image.setBitmap(*system_->bitmapWithString(title_));
    int modules = system_->cmodule();
    if (modules <= 0) {
        system_->cmodule(assumedModules);
        modules = assumedModules;
    }
    const int boardColumns = static_cast<int>(std::min<std::int64_t>(
        std::int64_t{modules} * VelmorBitmap::dotsPerModule, VelmorBitmap::maxWidth));
    if (image.width() > boardColumns) {
        image.setWidth(boardColumns);
    } else {
        const int columns = boardColumns - image.width();
        const int filled = filledColumns(columns, value, maxValue_);
        appendBar(image, filled, columns - filled);
    }
    system_->sendBufferBitmap(image);
    system_->sc_show();
}

void VelmorProgress::stopAnimation()
{
    if (system_)
        system_->sc_clear();
}

} // namespace qovelmor
