// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"
#include "platform/Worker.h"

#include <atomic>
#include <functional>
#include <memory>

namespace qovelmor {

/// What one line draws on while it runs. Made, used and destroyed on the run's own thread.
class ScrollStage
{
public:
    virtual ~ScrollStage() = default;

    virtual int scrollSpeed() const = 0;  ///< one step lasts this many times 8 ms; 0: no pauses
    virtual int waitBeforeInterval() = 0; ///< steps to wait before the line; below 0 counts 0
    virtual int waitAfterInterval() = 0;  ///< steps to wait after the line; below 0 counts 0

    /// Draws the line moved left by `offset` points; false when the line has passed at this offset
    /// (then nothing was drawn).
    virtual bool drawStep(int offset) = 0;
    virtual void drawEmpty() = 0;
};

/// One line after the other across the on-screen board: who may start, how a line is stopped, and
/// at which pace it runs. Knows nothing of pictures.
///
/// The hand-shake is one number: 0 idle, 1 a line runs, 2 a stop was asked for. Only a caller of
/// show() makes 0 a 1, only stop() makes 1 a 2, and only the run's thread makes it 0 again.
class ScrollRun
{
public:
    using StageMaker = std::function<std::unique_ptr<ScrollStage>()>;

    static constexpr int pointsPerStep = 4;

    explicit ScrollRun(Clock &clock);
    /// Stops the line that runs and joins its thread.
    ~ScrollRun();
    ScrollRun(const ScrollRun &) = delete;
    ScrollRun &operator=(const ScrollRun &) = delete;

    /// Waits in steps of 0.1 s until no line runs, then starts one on a thread of its own and
    /// returns; `makeStage` is called on that thread. Shows nothing once sleeps have ended. Any
    /// thread but the run's own.
    void show(StageMaker makeStage);

    /// Asks the running line to stop and waits in steps of 0.1 s until it has: at most one step of
    /// the scroll. Does nothing when no line runs. Any thread but the run's own.
    void stop();

    int state() const { return state_.load(); }

private:
    bool claim();
    void showStringThread(ScrollStage &stage);
    bool goesOn() const;

    Clock &clock_;
    std::atomic<int> state_ = 0;
    Worker worker_;
};

} // namespace qovelmor
