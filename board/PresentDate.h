// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CalendarTime.h"

#include <QString>

namespace qovelmor {

/// The day's name for 0 (Sunday) to 6; empty for any other number.
QString stringWithDayOfWeek(int weekday);

/// "month/day(weekday) hour:minute", for example "3/3(日) 09:05".
QString presentDateString(const LocalTime &time);

} // namespace qovelmor
