// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QString>

#include <optional>

namespace qovelmor {

/// The age in seconds beyond which a first-seen time is forgotten: ten days.
inline constexpr std::chrono::seconds tooOldAge{864'000};

/// The moment of a date text "MM/DD hh:mm" (no year, local time): the one in the year of `now`, or
/// in the year before when that would lie after `now`. A day that the year of `now` does not have
/// (29 February) is looked for in the year before. Nothing for a text of another shape.
std::optional<Clock::CalendarTime> dateWithString(const QString &text, Clock::CalendarTime now);

/// Whether `now` is more than ten days after the text's moment; a text without one is never too
/// old.
bool isTooOldDate(const QString &text, Clock::CalendarTime now);

/// A moment as such a date text, in local time.
QString dateText(Clock::CalendarTime moment);

} // namespace qovelmor
