// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

namespace qovelmor {

/// A time limit on the steady clock, counted from a start.
class Watch
{
public:
    Watch(const Clock &clock, Clock::Duration length) : Watch(clock, length, clock.steadyNow()) {}
    Watch(const Clock &clock, Clock::Duration length, Clock::SteadyTime start)
        : clock_(&clock), end_(start + length)
    {}

    /// More than the limit has passed.
    bool isOver() const { return clock_->steadyNow() > end_; }
    Clock::SteadyTime end() const { return end_; }

private:
    const Clock *clock_;
    Clock::SteadyTime end_;
};

} // namespace qovelmor
