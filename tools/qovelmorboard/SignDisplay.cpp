// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/SignDisplay.h"

#include "tools/qovelmorboard/BoardVariables.h"
#include "tools/qovelmorboard/DotPanel.h"

namespace qovelmor::simboard {

void SignDisplay::begin(DisplayMode mode)
{
    finish(DisplayMode::Idle);
    mode_ = mode;
    ending_ = false;
    waitSteps_ = variables_.value(BoardVariable::WaitBefore);
    outSteps_ = 0;
    loopPlace_ = 0;
    inRun_ = true;
    if (watcher_)
        watcher_->runStarted(mode != DisplayMode::Idle);
}

void SignDisplay::finish(DisplayMode how)
{
    mode_ = how;
    if (!inRun_)
        return;
    inRun_ = false;
    if (watcher_)
        watcher_->runEnded(how);
}

void SignDisplay::scroll()
{
    begin(DisplayMode::Waiting);
}

void SignDisplay::loop()
{
    begin(DisplayMode::Looping);
}

void SignDisplay::stop()
{
    finish(DisplayMode::Idle);
    buffer_.clear();
}

void SignDisplay::show()
{
    begin(DisplayMode::Idle);
    panel_.clear();
    for (int x = 0; x < panel_.width() && !buffer_.isEmpty(); ++x) {
        const ColumnWord column = buffer_.take();
        panel_.setColumn(x, column);
        if (watcher_)
            watcher_->columnShown(column);
    }
    finish(DisplayMode::Idle);
    buffer_.clear();
}

void SignDisplay::clear()
{
    panel_.clear();
    buffer_.clear();
    loopPlace_ = 0;
    // Whoever empties a scroll that has stuck goes on sending the rest of the line.
    if (!isMoving() || ending_)
        finish(DisplayMode::Idle);
    else
        outSteps_ = 0;
}

void SignDisplay::endWhenScrolledOut()
{
    if (!isMoving())
        return;
    ending_ = true;
    afterSteps_ = variables_.value(BoardVariable::WaitAfter);
}

bool SignDisplay::accept(std::span<const ColumnWord> columns)
{
    if (isMoving())
        return buffer_.append(columns);
    buffer_.appendWhatFits(columns);
    return true;
}

void SignDisplay::shiftIn(ColumnWord column)
{
    mode_ = mode_ == DisplayMode::Looping ? mode_ : DisplayMode::Scrolling;
    outSteps_ = panel_.width();
    panel_.shiftIn(column);
    if (watcher_)
        watcher_->columnShown(column);
}

void SignDisplay::step()
{
    if (!isMoving())
        return;
    if (waitSteps_ > 0) {
        --waitSteps_;
        return;
    }
    if (mode_ == DisplayMode::Looping)
        stepLoop();
    else
        stepScroll();
}

void SignDisplay::stepScroll()
{
    if (!buffer_.isEmpty())
        shiftIn(buffer_.take());
    else if (ending_)
        stepOut();
    else
        mode_ = DisplayMode::Waiting;
}

void SignDisplay::stepLoop()
{
    if (loopPlace_ < buffer_.count()) {
        shiftIn(buffer_.at(loopPlace_++));
    } else if (ending_) {
        stepOut();
    } else if (outSteps_ > 0) {
        --outSteps_;
        panel_.shiftIn(0);
    } else {
        loopPlace_ = 0;
    }
}

void SignDisplay::stepOut()
{
    if (outSteps_ > 0) {
        --outSteps_;
        panel_.shiftIn(0);
    } else if (afterSteps_ > 0) {
        --afterSteps_;
    } else {
        buffer_.clear();
        finish(DisplayMode::Ended);
    }
}

} // namespace qovelmor::simboard
