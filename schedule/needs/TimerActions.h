// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// What the schedule asks of the program when a timer fires: of the application controller, the
/// feed list and the message list. Main thread only.
class TimerActions
{
public:
    virtual ~TimerActions() = default;

    /// The main thread reads feeds or waits in a hand-shake: a minute that comes now is lost.
    virtual bool isMainThreadBusy() const = 0;

    /// Whether a display thread lives, in whatever state.
    virtual bool isDisplayActive() const = 0;
    virtual void actStopDisp() = 0;
    virtual void actGetRSS() = 0;
    virtual void actStartDisp() = 0;

    /// Puts a list of this one feed in the place of the feed list.
    virtual void setTempReader(const QString &address) = 0;

    virtual void writeTimerStartLog(const QString &address) = 0;
    virtual void writeTimerStopLog() = 0;
};

} // namespace qovelmor
