// SPDX-License-Identifier: MIT
#include "schedule/MinuteRule.h"

#include <iterator>

namespace qovelmor {

namespace {

/// Enough for years of gaps (a minute is missed when a feed read takes longer); the oldest go
/// first.
constexpr std::size_t mostRuns = 10000;

} // namespace

UtcMinute minuteOf(Clock::CalendarTime moment)
{
    return std::chrono::floor<std::chrono::minutes>(moment);
}

std::chrono::milliseconds untilNextMinute(Clock::CalendarTime now)
{
    return std::chrono::ceil<std::chrono::milliseconds>(minuteOf(now) + std::chrono::minutes(1) -
                                                        now);
}

bool HandledMinutes::take(UtcMinute minute)
{
    const UtcMinute next = minute + std::chrono::minutes(1);
    auto after = runs_.upper_bound(minute);
    if (after != runs_.begin()) {
        const auto before = std::prev(after);
        if (minute < before->second)
            return false;
        if (minute == before->second) { // goes on where a run ended, perhaps up to the next run
            const bool joins = after != runs_.end() && after->first == next;
            before->second = joins ? after->second : next;
            if (joins)
                runs_.erase(after);
            return true;
        }
    }
    UtcMinute end = next;
    if (after != runs_.end() && after->first == next) {
        end = after->second;
        runs_.erase(after);
    }
    runs_.emplace(minute, end);
    if (runs_.size() > mostRuns)
        runs_.erase(runs_.begin());
    return true;
}

std::chrono::milliseconds MinuteRule::arm(Clock::CalendarTime now)
{
    armedFor_ = minuteOf(now) + std::chrono::minutes(1);
    return untilNextMinute(now);
}

bool MinuteRule::isEarly(Clock::CalendarTime now) const
{
    return now < armedFor_ && armedFor_ - now <= std::chrono::seconds(1);
}

} // namespace qovelmor
