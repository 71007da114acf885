// SPDX-License-Identifier: MIT
#include "platform/CalendarTime.h"

#include <time.h>

#include <algorithm>

namespace qovelmor {

LocalTime localTime(Clock::CalendarTime moment)
{
    const std::time_t seconds = static_cast<std::time_t>(
        std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count());
    std::tm fields{};
    ::tzset(); // the zone may have been changed while the program runs
    ::localtime_r(&seconds, &fields);
    return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
            fields.tm_min,         fields.tm_sec,     fields.tm_wday};
}

namespace {

bool inRange(const LocalTime &fields)
{
    using namespace std::chrono;
    const year_month_day date{year(fields.year), month(static_cast<unsigned>(fields.month)),
                              day(static_cast<unsigned>(fields.day))};
    return date.ok() && fields.hour >= 0 && fields.hour < 24 && fields.minute >= 0 &&
           fields.minute < 60 && fields.second >= 0 && fields.second < 61;
}

// The fields as seconds since 1970, were they in UTC.
std::time_t asIfUtc(const LocalTime &fields)
{
    using namespace std::chrono;
    const sys_days day =
        year_month_day{year(fields.year), month(static_cast<unsigned>(fields.month)),
                       std::chrono::day(static_cast<unsigned>(fields.day))};
    const seconds time = hours(fields.hour) + minutes(fields.minute) + seconds(fields.second);
    return static_cast<std::time_t>((day.time_since_epoch() + time).count());
}

// Seconds east of Greenwich at a moment.
std::time_t offsetAt(std::time_t seconds)
{
    std::tm fields{};
    ::localtime_r(&seconds, &fields);
    return fields.tm_gmtoff;
}

} // namespace

std::optional<Clock::CalendarTime> momentOf(const LocalTime &fields)
{
    if (!inRange(fields))
        return std::nullopt;
    ::tzset();
    // No zone is further than 15 hours from Greenwich, so a day to both sides lies before and after
    // any clock change near the fields. What the zone calls summer time does not matter here.
    constexpr std::time_t day = 24 * 60 * 60;
    const std::time_t utc = asIfUtc(fields);
    const std::time_t before = offsetAt(utc - day);
    const std::time_t after = offsetAt(utc + day);
    // Of an hour that repeats both readings are right, and the greater offset is the first one.
    for (const std::time_t offset : {std::max(before, after), std::min(before, after)}) {
        if (offsetAt(utc - offset) == offset)
            return std::chrono::system_clock::from_time_t(utc - offset);
    }
    return std::chrono::system_clock::from_time_t(utc - before);
}

} // namespace qovelmor
