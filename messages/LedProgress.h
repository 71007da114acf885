// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

class BoardProgress;
class LineDisplay;
class MessageSettings;
class RunControl;

/// The reading progress on the board: shown when the board is the output and the setting asks for
/// it. While the title line runs steps are passed over, and the bar begins when it has run through.
/// Used by the thread that reads.
class LedProgress
{
public:
    explicit LedProgress(const LineDisplay &display) : display_(display) {}

    void connect(const MessageSettings &settings, const RunControl &runControl,
                 BoardProgress *progress);

    void createProgressBar();
    void startLEDProgress(int maxValue);
    void moveLEDProgress(int value);
    void stopLEDProgress();

private:
    bool begin();

    const LineDisplay &display_;
    const MessageSettings *settings_ = nullptr;
    const RunControl *runControl_ = nullptr;
    BoardProgress *progress_ = nullptr; ///< null: this program shows no progress on a board
    bool isCreated_ = false;
    bool isWanted_ = false;
    bool isStarted_ = false;
    int maxValue_ = 0;
};

} // namespace qovelmor
