// SPDX-License-Identifier: MIT
#include "board/VelmorSystem.h"

#include "board/ColumnWords.h"
#include "board/PresentDate.h"
#include "board/needs/BoardSettings.h"

#include <algorithm>
#include <cstdint>

namespace qovelmor {

VelmorSystem::VelmorSystem(Clock &clock, BoardLimits limits, CocoaSerialPort::DeviceLookup lookup)
    : BoardCommands(clock, limits, std::move(lookup)), run_(*this, clock, limits.run)
{}

void VelmorSystem::setMessageList(BoardLog *log)
{
    BoardCommands::setMessageList(log);
    run_.setMessageList(log);
}

bool VelmorSystem::openSerialPortWithNumber(int number)
{
    return BoardCommands::openSerialPortWithNumber(number);
}

std::shared_ptr<const VelmorBitmap> VelmorSystem::bitmapWithString(const QString &text)
{
    const std::lock_guard lock(renderMutex_);
    return VelmorFont::bitmapWithString(text);
}

QByteArray VelmorSystem::dataWithBitmap(const VelmorBitmap &bitmap) const
{
    return columnWords(bitmap, intel());
}

// A fresh font object: the line is drawn at the initial size, and this object's dots stay free for
// who renders on another thread.
VelmorSystem::Image VelmorSystem::imageOf(const QString &text) const
{
    const FontSettings own = settings();
    VelmorFont font(own.fontName, own.bold, own.italic, own.expansion, own.useFontx);
    font.setRotation(setup_ != nullptr && setup_->rotation());
    font.setBoarder(own.boarder);
    return font.bitmapWithString(text);
}

void VelmorSystem::setBitmapWithString(const QString &text)
{
    if (run_.waitWhileRunning())
        setBitmap(imageOf(text));
}

void VelmorSystem::showString(const QString &text)
{
    if (run_.waitWhileRunning())
        showBitmap(imageOf(text));
}

void VelmorSystem::clear()
{
    cancel();
    const auto turn = takeTurn();
    sc_clear();
    lm_clear();
}

QString VelmorSystem::presentDateString() const
{
    return qovelmor::presentDateString(date());
}

// A count that is unknown, or that no image is wide enough for, leaves the image at the board's
// edge.
VelmorSystem::Image VelmorSystem::centred(const VelmorBitmap &image, int modules) const
{
    const std::int64_t columns = std::int64_t{modules} * VelmorBitmap::dotsPerModule;
    const bool isKnown = columns >= 0 && columns <= VelmorBitmap::maxWidth;
    const double gap = isKnown ? (static_cast<double>(columns) - image.width()) * 0.5 : 0.0;
    auto whole = std::make_shared<VelmorBitmap>();
    whole->spaceWidth(std::max(static_cast<int>(gap), 0)); // wider than the board: from its edge
    whole->appendBitmap(image);
    return whole;
}

void VelmorSystem::showPresentDate(double seconds)
{
    const bool scrolled = scroll();
    const bool blocked = async();
    setScroll(seconds == 0.0);
    setAsync(false);
    const auto image = bitmapWithString(presentDateString());
    showBitmap(centred(*image, cmodule()));
    if (seconds != 0.0)
        clock().sleepFor(
            std::chrono::duration_cast<Clock::Duration>(std::chrono::duration<double>(seconds)));
    // Sent while the run may still be talking to the board, on purpose: its exchange is waited for.
    sc_clear();
    setScroll(scrolled);
    setAsync(blocked);
}

} // namespace qovelmor
