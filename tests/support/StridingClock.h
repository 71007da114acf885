// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemClock.h"

#include <atomic>

namespace qovelmor {

/// The real clock or another one, but each look at it moves it on by a stride: time-outs of work
/// that never takes long can be reached, and beside a clock that stands still to the look.
class StridingClock final : public Clock
{
public:
    StridingClock() : clock_(real_) {}
    explicit StridingClock(Clock &clock) : clock_(clock) {}

    void setStride(Duration stride) { stride_ = stride.count(); }

    SteadyTime steadyNow() const override
    {
        ahead_ += stride_;
        return clock_.steadyNow() + Duration(ahead_);
    }
    CalendarTime calendarNow() const override { return clock_.calendarNow(); }
    bool sleepUntil(SteadyTime deadline) override
    {
        return clock_.sleepUntil(deadline - Duration(ahead_));
    }
    void endSleeps() override { clock_.endSleeps(); }
    bool sleepsEnded() const override { return clock_.sleepsEnded(); }
    void threadStarts() override {}
    void threadEnds() override {}
    void threadWaits() override {}
    void threadResumes() override {}

private:
    SystemClock real_;
    Clock &clock_;
    std::atomic<Duration::rep> stride_ = 0;
    mutable std::atomic<Duration::rep> ahead_ = 0;
};

} // namespace qovelmor
