// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace qovelmor {

/// The seam through which everything asks for the time and sleeps.
///
/// Two clocks in one: the steady clock never steps and does not run while the machine sleeps
/// (time-outs, watches, pace); the calendar clock is the wall clock that a user may set (dates, log
/// stamps, timers). All operations may be called from any thread.
class Clock
{
public:
    using SteadyTime = std::chrono::steady_clock::time_point;
    using CalendarTime = std::chrono::system_clock::time_point;
    using Duration = std::chrono::nanoseconds;

    virtual ~Clock() = default;

    virtual SteadyTime steadyNow() const = 0;
    virtual CalendarTime calendarNow() const = 0;

    /// Sleeps until the steady clock reaches `deadline`; a deadline in the past returns at once.
    /// Returns false when the sleep was ended (or refused) because of endSleeps().
    virtual bool sleepUntil(SteadyTime deadline) = 0;
    bool sleepFor(Duration duration) { return sleepUntil(steadyNow() + duration); }

    /// Raised once, when the program quits: every sleep ends now and later ones return at once.
    virtual void endSleeps() = 0;
    virtual bool sleepsEnded() const = 0;

    /// Bookkeeping of the threads that live by this clock; Worker calls these. A simulated clock
    /// moves only while every such thread sleeps or waits for another one.
    virtual void threadStarts() = 0;
    virtual void threadEnds() = 0;
    virtual void threadWaits() = 0;
    virtual void threadResumes() = 0;
};

} // namespace qovelmor
