// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace qovelmor {

/// The platform's repeating timer, precise to the millisecond. Main thread only; the handler runs
/// on the main thread too, also while a dialog is open.
class MinuteTimer
{
public:
    virtual ~MinuteTimer() = default;

    /// Calls `handler` every 60 seconds until stop(); a timer that runs already starts anew.
    virtual void start(std::function<void()> handler) = 0;
    /// Moves the next call to this long from now; the following ones keep their distance of 60 s.
    virtual void setNextFire(std::chrono::milliseconds fromNow) = 0;
    virtual void stop() = 0;
};

} // namespace qovelmor
