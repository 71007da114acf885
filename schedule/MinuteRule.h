// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QtGlobal>

#include <chrono>
#include <map>

namespace qovelmor {

/// A minute of the world's clock, counted from 1970 in UTC. A local hour that a clock change
/// repeats is two such hours, one that it skips is none.
using UtcMinute = std::chrono::sys_time<std::chrono::minutes>;

UtcMinute minuteOf(Clock::CalendarTime moment);

/// How long it is until the next minute begins, rounded up to whole milliseconds: more than 0, at
/// most 60 s.
std::chrono::milliseconds untilNextMinute(Clock::CalendarTime now);

/// Which minutes have been handled. Each minute is handled once, also when the calendar is set back
/// and shows it again. Runs of minutes are kept as one entry, so weeks take a few bytes.
class HandledMinutes
{
public:
    /// Marks the minute; false when it has been handled before.
    bool take(UtcMinute minute);

private:
    std::map<UtcMinute, UtcMinute> runs_; ///< first minute of a run → the minute after its last
};

/// The minute timer's bookkeeping: what it was set to, and which minutes are done.
class MinuteRule
{
public:
    /// Notes the minute that the timer is set to and gives the time until then.
    std::chrono::milliseconds arm(Clock::CalendarTime now);

    /// Whether a fire comes up to a second before the minute that the timer was set to: steady time
    /// and calendar drift apart a little. Such a fire only sets the timer again.
    bool isEarly(Clock::CalendarTime now) const;

    /// Whether the present minute is to be handled now; it then counts as handled.
    bool takes(Clock::CalendarTime now) { return handled_.take(minuteOf(now)); }

private:
    UtcMinute armedFor_{};
    HandledMinutes handled_;
};

} // namespace qovelmor
