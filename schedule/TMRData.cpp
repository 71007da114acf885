// SPDX-License-Identifier: MIT
#include "schedule/TMRData.h"

#include <algorithm>
#include <array>
#include <limits>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto validateKey = u"TimerValidate"_s;
const auto fireDayKey = u"TimerFireDay"_s;
const auto fireTimeKey = u"TimerFireTime"_s;
const auto operationKey = u"TimerOperation"_s;
const auto addressKey = u"TimerAddress"_s;

constexpr std::array<char16_t, 7> dayNames{u'日', u'月', u'火', u'水', u'木', u'金', u'土'};
constexpr char16_t ideographicSpace = u'\u3000';

std::int32_t toInt32(qint64 value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<qint64>(value, Limits::min(), Limits::max()));
}

} // namespace

QString TMRData::fireDayString() const
{
    QString days;
    for (std::size_t day = 0; day < dayNames.size(); ++day)
        days += QChar(((fireDay_ >> day) & 1) != 0 ? dayNames[day] : ideographicSpace);
    return days;
}

QString TMRData::fireTimeString() const
{
    return QString::asprintf("%02d:%02d", fireTime_ / 60, fireTime_ % 60);
}

QString TMRData::operationString() const
{
    if (does(TimerOperation::StartDisplay))
        return u"表示開始"_s;
    if (does(TimerOperation::StopDisplay))
        return u"表示停止"_s;
    return u"何もしない"_s;
}

bool TMRData::isFireDayNow(const LocalTime &now) const
{
    return ((fireDay_ >> now.weekday) & 1) != 0;
}

bool TMRData::isFireTimeNow(const LocalTime &now) const
{
    return fireTime_ == now.hour * 60 + now.minute;
}

bool TMRData::isFireNow(const LocalTime &now) const
{
    return validate_ && isFireDayNow(now) && isFireTimeNow(now);
}

PropertyDictionary toDictionary(const TMRData &timer)
{
    return {{validateKey, timer.validate()},
            {fireDayKey, timer.fireDay()},
            {fireTimeKey, timer.fireTime()},
            {operationKey, timer.operation()},
            {addressKey, timer.address()}};
}

TMRData timerFrom(const PropertyDictionary &dictionary)
{
    TMRData timer;
    timer.setValidate(dictionary.boolean(validateKey));
    timer.setFireDay(toInt32(dictionary.integer(fireDayKey)));
    timer.setFireTime(toInt32(dictionary.integer(fireTimeKey)));
    timer.setOperation(toInt32(dictionary.integer(operationKey)));
    timer.setAddress(dictionary.string(addressKey).value_or(u""_s));
    return timer;
}

} // namespace qovelmor
