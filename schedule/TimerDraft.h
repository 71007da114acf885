// SPDX-License-Identifier: MIT
#pragma once

#include "schedule/TMRData.h"

#include <QString>

#include <array>

namespace qovelmor {

/// The fields of the timer dialog, as its controls hold them.
struct TimerDraft
{
    bool validate = true;
    std::array<bool, 7> days{true, true, true, true, true, true, true}; ///< Sunday first
    QString fireHour = QStringLiteral("0");
    QString fireMinute = QStringLiteral("0");
    int actionColumn = 0; ///< radio button: 0 start, 1 stop, 2 nothing
    QString address;

    friend bool operator==(const TimerDraft &, const TimerDraft &) = default;
};

/// What the dialog shows for a timer.
TimerDraft draftFrom(const TMRData &timer);

/// The timer that the dialog describes. The boxes count with the integer that their text begins
/// with, else 0, and are not checked: hour 25 gives a timer that never fires.
TMRData timerFrom(const TimerDraft &draft);

} // namespace qovelmor
