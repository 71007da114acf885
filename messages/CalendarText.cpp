// SPDX-License-Identifier: MIT
#include "messages/CalendarText.h"

#include "platform/CalendarTime.h"

namespace qovelmor {

namespace {

// Reads one or two digits at `place` and moves behind them; nothing when there is none.
std::optional<int> takeNumber(QStringView text, qsizetype &place)
{
    int value = 0;
    int digits = 0;
    while (digits < 2 && place < text.size() && text[place] >= u'0' && text[place] <= u'9') {
        value = value * 10 + (text[place].unicode() - u'0');
        ++place;
        ++digits;
    }
    return digits > 0 ? std::optional(value) : std::nullopt;
}

bool takeSign(QStringView text, qsizetype &place, QChar sign)
{
    if (place >= text.size() || text[place] != sign)
        return false;
    ++place;
    return true;
}

// Month, day, hour and minute of "MM/DD hh:mm"; one digit serves where two are usual.
std::optional<LocalTime> parseFields(QStringView text)
{
    qsizetype place = 0;
    const auto month = takeNumber(text, place);
    if (!month || !takeSign(text, place, u'/'))
        return std::nullopt;
    const auto day = takeNumber(text, place);
    if (!day || !takeSign(text, place, u' '))
        return std::nullopt;
    const auto hour = takeNumber(text, place);
    if (!hour || !takeSign(text, place, u':'))
        return std::nullopt;
    const auto minute = takeNumber(text, place);
    if (!minute || place != text.size())
        return std::nullopt;

    LocalTime fields;
    fields.month = *month;
    fields.day = *day;
    fields.hour = *hour;
    fields.minute = *minute;
    return fields;
}

} // namespace

std::optional<Clock::CalendarTime> dateWithString(const QString &text, Clock::CalendarTime now)
{
    auto fields = parseFields(text);
    if (!fields)
        return std::nullopt;
    fields->year = localTime(now).year;
    const auto thisYear = momentOf(*fields);
    if (thisYear && *thisYear <= now)
        return thisYear;
    --fields->year;
    return momentOf(*fields);
}

bool isTooOldDate(const QString &text, Clock::CalendarTime now)
{
    const auto moment = dateWithString(text, now);
    return moment && now - *moment > tooOldAge;
}

QString dateText(Clock::CalendarTime moment)
{
    const LocalTime fields = localTime(moment);
    return QString::asprintf("%02d/%02d %02d:%02d", fields.month, fields.day, fields.hour,
                             fields.minute);
}

} // namespace qovelmor
