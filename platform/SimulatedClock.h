// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <condition_variable>
#include <list>
#include <mutex>

namespace qovelmor {

/// A clock that moves only when nobody has anything left to do: once every registered thread
/// sleeps (or waits for another one), time jumps to the earliest deadline. Weeks pass in
/// milliseconds, and a test sees the same order of events each time.
///
/// The thread that makes the clock is registered; Worker registers its own. Waiting for a
/// descriptor counts as running, so tests with real sockets use the real clock.
class SimulatedClock final : public Clock
{
public:
    /// `start` is the calendar time at the beginning; the steady clock starts at one hour.
    explicit SimulatedClock(CalendarTime start);

    SteadyTime steadyNow() const override;
    CalendarTime calendarNow() const override;
    bool sleepUntil(SteadyTime deadline) override;
    void endSleeps() override;
    bool sleepsEnded() const override;

    void threadStarts() override;
    void threadEnds() override;
    void threadWaits() override;
    void threadResumes() override;

    /// A user (or the network) sets the wall clock; the steady clock does not move.
    void setCalendar(CalendarTime time);

    /// The machine was suspended for `duration`: the calendar moves, the steady clock does not.
    void suspendFor(Duration duration);

    /// How many registered threads neither sleep nor wait now (the caller included).
    int runningThreads() const;

private:
    struct Sleeper
    {
        SteadyTime deadline;
        bool awake = false;
    };

    void moveIfAllRest();

    mutable std::mutex mutex_;
    std::condition_variable moved_;
    SteadyTime now_;
    CalendarTime::duration calendarOffset_;
    std::list<Sleeper *> sleepers_;
    int running_ = 1;
    bool ended_ = false;
};

} // namespace qovelmor
