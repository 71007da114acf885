// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <optional>

namespace qovelmor {

/// The fields of a local date and time (the zone that TZ, else the system, names at the time of the
/// call). `month` 1-12, `day` 1-31, `hour` 0-23, `weekday` 0 Sunday to 6 Saturday.
struct LocalTime
{
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int weekday = 4;
};

/// The local fields of a moment.
LocalTime localTime(Clock::CalendarTime moment);

/// The moment of local fields; `weekday` is not read. An hour that a clock change skips is taken
/// with the offset before the gap, one that repeats is its first occurrence. Nothing for a day that
/// does not exist (29 February of a common year) and for fields out of range.
std::optional<Clock::CalendarTime> momentOf(const LocalTime &fields);

} // namespace qovelmor
