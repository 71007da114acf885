// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/ColumnBuffer.h"

namespace qovelmor::simboard {

class BoardVariables;
class DotPanel;

/// The answer to "sc_mode".
enum class DisplayMode {
    Idle = 0,      ///< nothing moves: blank, standing picture or a scroll that was cut off
    Ended = 1,     ///< a scroll has run out to its end
    Scrolling = 2, ///< columns move
    Waiting = 3,   ///< a scroll has shown all it got and waits for more
    Looping = 4,   ///< the columns held go round
};

/// Told about every picture that goes over the board.
class DisplayWatcher
{
public:
    virtual ~DisplayWatcher() = default;
    virtual void runStarted(bool scrolling) = 0;
    virtual void columnShown(ColumnWord column) = 0; ///< came in, or stands
    virtual void runEnded(DisplayMode how) = 0;      ///< Ended, or Idle when cut off or standing
};

/// How columns get from the buffer to the dots: standing, scrolling or going round.
///
/// Time is counted in column times; whoever owns the display calls step() once in each.
class SignDisplay
{
public:
    SignDisplay(DotPanel &panel, ColumnBuffer &buffer, const BoardVariables &variables,
                DisplayWatcher *watcher)
        : panel_(panel), buffer_(buffer), variables_(variables), watcher_(watcher)
    {}

    DisplayMode mode() const { return mode_; }
    /// True while step() has something to do.
    bool isMoving() const { return mode_ != DisplayMode::Idle && mode_ != DisplayMode::Ended; }

    void scroll();
    void loop();
    void stop();  ///< nothing moves any more; the dots stay, the buffer is emptied
    void show();  ///< the columns held become the standing picture
    void clear(); ///< dark and empty; a scroll goes on with what comes next
    void endWhenScrolledOut();

    /// Takes columns from the line; false when a scroll has no room for them. Outside a scroll
    /// nothing drains, so what does not fit is dropped and the answer is true.
    bool accept(std::span<const ColumnWord> columns);

    /// One column time has passed.
    void step();

private:
    void begin(DisplayMode mode);
    void finish(DisplayMode how);
    void shiftIn(ColumnWord column);
    void stepScroll();
    void stepLoop();
    void stepOut();

    DotPanel &panel_;
    ColumnBuffer &buffer_;
    const BoardVariables &variables_;
    DisplayWatcher *watcher_;
    DisplayMode mode_ = DisplayMode::Idle;
    bool ending_ = false;
    bool inRun_ = false;
    int waitSteps_ = 0;  ///< column times to wait before the first column
    int outSteps_ = 0;   ///< blank columns until the last dot has left
    int afterSteps_ = 0; ///< column times to wait after that
    std::size_t loopPlace_ = 0;
};

} // namespace qovelmor::simboard
