// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CalendarTime.h"
#include "platform/PropertyValue.h"

#include <QString>

#include <cstdint>

namespace qovelmor {

/// What a timer does when it fires. Every other number does nothing.
enum class TimerOperation : std::int32_t { Nothing = 0, StartDisplay = 1, StopDisplay = 2 };

/// One timer of the schedule: on which weekdays, at which minute of the day, and what to do.
class TMRData
{
public:
    bool validate() const { return validate_; }
    void setValidate(bool validate) { validate_ = validate; }

    /// Weekdays as bits: bit 0 Sunday to bit 6 Saturday; 127 is every day.
    std::int32_t fireDay() const { return fireDay_; }
    void setFireDay(std::int32_t days) { fireDay_ = days; }

    /// Minute of the day in local time: hour × 60 + minute. Any number is kept; one outside the day
    /// never fires.
    std::int32_t fireTime() const { return fireTime_; }
    void setFireTime(std::int32_t minuteOfDay) { fireTime_ = minuteOfDay; }

    std::int32_t operation() const { return operation_; }
    void setOperation(std::int32_t operation) { operation_ = operation; }
    bool does(TimerOperation what) const { return operation_ == static_cast<std::int32_t>(what); }

    /// For a start of the display: one feed's address; empty means the feed list.
    const QString &address() const { return address_; }
    void setAddress(const QString &address) { address_ = address; }

    /// Seven characters, Sunday first: the day's character, or an ideographic space where the timer
    /// does not fire, so that the days of all timers stand in columns.
    QString fireDayString() const;
    /// "hh:mm"
    QString fireTimeString() const;
    QString operationString() const;

    bool isFireDayNow(const LocalTime &now) const;
    bool isFireTimeNow(const LocalTime &now) const;
    /// Whether the timer is enabled and `now` lies in its minute; seconds do not count.
    bool isFireNow(const LocalTime &now) const;

    friend bool operator==(const TMRData &, const TMRData &) = default;

private:
    bool validate_ = false;
    std::int32_t fireDay_ = 0;
    std::int32_t fireTime_ = 0;
    std::int32_t operation_ = 0;
    QString address_;
};

/// The stored form: a dictionary under `TimerValidate`, `TimerFireDay`, `TimerFireTime`,
/// `TimerOperation` and `TimerAddress`, in this order.
PropertyDictionary toDictionary(const TMRData &timer);
/// What is missing reads as 0, off or empty; numbers too large become the largest possible.
TMRData timerFrom(const PropertyDictionary &dictionary);

} // namespace qovelmor
