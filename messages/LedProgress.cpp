// SPDX-License-Identifier: MIT
#include "messages/LedProgress.h"

#include "messages/LineDisplay.h"
#include "messages/needs/BoardProgress.h"
#include "messages/needs/MessageSettings.h"
#include "messages/needs/RunControl.h"

namespace qovelmor {

void LedProgress::connect(const MessageSettings &settings, const RunControl &runControl,
                          BoardProgress *progress)
{
    settings_ = &settings;
    runControl_ = &runControl;
    progress_ = progress;
}

void LedProgress::createProgressBar()
{
    if (!progress_ || isCreated_)
        return;
    progress_->create();
    isCreated_ = true;
}

void LedProgress::startLEDProgress(int maxValue)
{
    maxValue_ = maxValue;
    isStarted_ = false;
    isWanted_ =
        progress_ && maxValue > 0 && settings_->dispProgress() && runControl_->isOutputLED();
    begin();
}

void LedProgress::moveLEDProgress(int value)
{
    if (begin())
        progress_->move(value);
}

void LedProgress::stopLEDProgress()
{
    // A bar that never began has nothing to clear, and the board may show the running title line.
    if (isStarted_)
        progress_->stop();
    isStarted_ = false;
    isWanted_ = false;
}

// True when the bar may be drawn on now. A board that was not the output at launch gets its bar
// here.
bool LedProgress::begin()
{
    if (!isWanted_ || display_.isTitleRunning())
        return false;
    if (!isStarted_) {
        createProgressBar();
        progress_->start(maxValue_);
        isStarted_ = true;
    }
    return true;
}

} // namespace qovelmor
