// SPDX-License-Identifier: MIT
#pragma once

#include "platform/QueueMainThread.h"
#include "platform/SimulatedClock.h"
#include "platform/UserDefaults.h"
#include "schedule/RSSTimer.h"
#include "schedule/needs/MinuteTimer.h"
#include "schedule/needs/TimerActions.h"

#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <optional>

namespace qovelmor {

constexpr auto startDisplay = TimerOperation::StartDisplay;
constexpr auto stopDisplay = TimerOperation::StopDisplay;
constexpr int halfPastEight = 510; ///< minute of the day

inline void setZone(const char *zone)
{
    qputenv("TZ", zone);
}

/// A repeating timer on the steady side of the simulated clock, as the platform's is.
class SimulatedMinuteTimer final : public MinuteTimer
{
public:
    explicit SimulatedMinuteTimer(SimulatedClock &clock) : clock_(clock) {}

    void start(std::function<void()> handler) override
    {
        handler_ = std::move(handler);
        nextFire_ = clock_.steadyNow() + std::chrono::seconds(60);
    }
    void setNextFire(std::chrono::milliseconds fromNow) override
    {
        nextFire_ = clock_.steadyNow() + fromNow;
    }
    void stop() override { nextFire_.reset(); }

    bool isRunning() const { return nextFire_.has_value(); }

    /// Lets this long pass on the steady clock, with every fire that falls into it.
    void run(Clock::Duration duration)
    {
        const Clock::SteadyTime end = clock_.steadyNow() + duration;
        while (nextFire_ && *nextFire_ <= end) {
            clock_.sleepUntil(*nextFire_ + lateness);
            fire();
        }
        clock_.sleepUntil(end);
    }

    /// One fire now.
    void fire()
    {
        nextFire_ = clock_.steadyNow() + std::chrono::seconds(60);
        handler_();
    }

    Clock::Duration lateness{}; ///< how late each fire is delivered

private:
    SimulatedClock &clock_;
    std::function<void()> handler_;
    std::optional<Clock::SteadyTime> nextFire_;
};

/// Writes down what is asked of the program, in order.
class RecordingActions final : public TimerActions
{
public:
    bool isMainThreadBusy() const override { return isBusy; }
    bool isDisplayActive() const override { return isDisplaying; }
    void actStopDisp() override
    {
        calls << QStringLiteral("stop");
        isDisplaying = false;
    }
    void actGetRSS() override
    {
        calls << QStringLiteral("read");
        if (duringRead)
            duringRead();
    }
    void actStartDisp() override
    {
        calls << QStringLiteral("start");
        isDisplaying = true;
    }
    void setTempReader(const QString &address) override
    {
        calls << QStringLiteral("temp ") + address;
    }
    void writeTimerStartLog(const QString &address) override
    {
        calls << QStringLiteral("log start ") + address;
    }
    void writeTimerStopLog() override { calls << QStringLiteral("log stop"); }

    bool isBusy = false;
    bool isDisplaying = false;
    std::function<void()> duringRead;
    QStringList calls;
};

class RecordingTimerWindow final : public TimerWindow
{
public:
    int selectedRow() const override { return selected; }
    void setColumnWidth(int column, double points) override
    {
        calls << QStringLiteral("width %1 %2").arg(column).arg(points);
    }
    void renewControls(bool useTimer, bool canEdit) override
    {
        calls << QStringLiteral("controls %1 %2").arg(useTimer).arg(canEdit);
    }
    void openDialog(const QString &title, const TimerDraft &contents) override
    {
        calls << QStringLiteral("dialog ") + title;
        draft = contents;
    }
    void closeDialog() override { calls << QStringLiteral("close"); }
    void openDeleteAlert(const TimerAlert &contents) override { alerts.push_back(contents); }

    int selected = -1;
    QStringList calls;
    TimerDraft draft;
    std::vector<TimerAlert> alerts;
};

/// A timer that is enabled on every day.
inline TMRData dailyTimer(int minuteOfDay, TimerOperation operation, const QString &address = {})
{
    TMRData timer;
    timer.setValidate(true);
    timer.setFireDay(127);
    timer.setFireTime(minuteOfDay);
    timer.setOperation(static_cast<std::int32_t>(operation));
    timer.setAddress(address);
    return timer;
}

/// A schedule with everything around it: a real store in a temporary folder, simulated time.
class ScheduleParts
{
public:
    explicit ScheduleParts(const LocalTime &start = {2026, 1, 5, 8, 0, 0, 1}) // a Monday
        : clock(*momentOf(start))
    {
        schedule.setWindow(window);
    }

    QString storePath() const { return folder.filePath(QStringLiteral("store.plist")); }

    /// Starts the schedule with these timers stored.
    void start(const std::vector<TMRData> &timers)
    {
        PropertyArray entries;
        for (const TMRData &timer : timers)
            entries.emplace_back(toDictionary(timer));
        defaults.setArray(std::move(entries), QStringLiteral("TimerList"));
        defaults.synchronize();
        schedule.awakeFromNibx();
    }

    std::vector<TMRData> timers() const
    {
        std::vector<TMRData> list;
        for (const auto &timer : schedule.timerList())
            list.push_back(*timer);
        return list;
    }
    /// What a next start would find.
    std::vector<TMRData> storedTimers() const
    {
        std::vector<TMRData> list;
        const UserDefaults onDisk(storePath());
        for (const PropertyValue &entry :
             onDisk.arrayForKey(QStringLiteral("TimerList")).value_or(PropertyArray()))
            list.push_back(timerFrom(*entry.get<PropertyDictionary>()));
        return list;
    }

    QTemporaryDir folder;
    UserDefaults defaults{storePath()};
    SimulatedClock clock;
    QueueMainThread mainThread;
    SimulatedMinuteTimer minuteTimer{clock};
    RecordingActions actions;
    RecordingTimerWindow window;
    RSSTimer schedule{{defaults, clock, mainThread, minuteTimer, actions}};
};

} // namespace qovelmor
