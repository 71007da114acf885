// SPDX-License-Identifier: MIT
#include "schedule/TimerDraft.h"

#include "platform/TypedNumber.h"

#include <algorithm>
#include <limits>

namespace qovelmor {

namespace {

int columnOf(const TMRData &timer)
{
    if (timer.does(TimerOperation::StartDisplay))
        return 0;
    return timer.does(TimerOperation::StopDisplay) ? 1 : 2;
}

TimerOperation operationOf(int column)
{
    switch (column) {
    case 0:
        return TimerOperation::StartDisplay;
    case 1:
        return TimerOperation::StopDisplay;
    default:
        return TimerOperation::Nothing;
    }
}

} // namespace

TimerDraft draftFrom(const TMRData &timer)
{
    TimerDraft draft;
    draft.validate = timer.validate();
    for (std::size_t day = 0; day < draft.days.size(); ++day)
        draft.days[day] = ((timer.fireDay() >> day) & 1) != 0;
    draft.fireHour = QString::number(timer.fireTime() / 60);
    draft.fireMinute = QString::number(timer.fireTime() % 60);
    draft.actionColumn = columnOf(timer);
    draft.address = timer.address();
    return draft;
}

TMRData timerFrom(const TimerDraft &draft)
{
    std::int32_t days = 0;
    for (std::size_t day = 0; day < draft.days.size(); ++day)
        days |= draft.days[day] ? 1 << day : 0;
    constexpr qint64 largest = std::numeric_limits<std::int32_t>::max();
    const qint64 minutes =
        qint64{60} * typedInteger(draft.fireHour) + typedInteger(draft.fireMinute);

    TMRData timer;
    timer.setValidate(draft.validate);
    timer.setFireDay(days);
    timer.setFireTime(static_cast<std::int32_t>(std::clamp(minutes, -largest, largest)));
    timer.setOperation(static_cast<std::int32_t>(operationOf(draft.actionColumn)));
    timer.setAddress(draft.address);
    return timer;
}

} // namespace qovelmor
