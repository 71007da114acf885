// SPDX-License-Identifier: MIT
#include "ScheduleParts.h"

#include <QTest>

#include <map>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

/// What a timer does when it fires, and which timers fire.
class TimerFiringTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void startTimer_callsInOrder_data();
    void startTimer_callsInOrder();
    void stopTimer_callsInOrder();
    void otherOperation_doesNothing();
    void stopThenStart_inOneMinute_leavesTheDisplayRunning();
    void mondayAndFriday_fireOnceEach();
    void disabledTimer_neverFires();
    void clearedUse_neverFires();
    void startThenStop_inOneMinute_leavesTheDisplayStopped();
    void timeOutsideTheDay_isStoredAndNeverFires_data();
    void timeOutsideTheDay_isStoredAndNeverFires();
    void minuteBeyond59_countsAsTheNextHour();
    void noDay_neverFires();
};

void TimerFiringTest::init()
{
    setZone("Asia/Tokyo");
}

void TimerFiringTest::startTimer_callsInOrder_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isDisplaying");
    QTest::addColumn<QStringList>("calls");

    QTest::newRow("the feed list, nothing on display")
        << u""_s << false << QStringList{u"read"_s, u"start"_s, u"log start "_s};
    QTest::newRow("the feed list, while displaying")
        << u""_s << true << QStringList{u"stop"_s, u"read"_s, u"start"_s, u"log start "_s};
    // The one-feed list is set before the read, which drops it again: so it has no effect.
    QTest::newRow("an address") << u"http://example.jp/"_s << false
                                << QStringList{u"temp http://example.jp/"_s, u"read"_s, u"start"_s,
                                               u"log start http://example.jp/"_s};
    QTest::newRow("an address, while displaying")
        << u"http://example.jp/"_s << true
        << QStringList{u"stop"_s, u"temp http://example.jp/"_s, u"read"_s, u"start"_s,
                       u"log start http://example.jp/"_s};
}

void TimerFiringTest::startTimer_callsInOrder()
{
    QFETCH(QString, address);
    QFETCH(bool, isDisplaying);

    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, startDisplay, address)});
    parts.actions.isDisplaying = isDisplaying;
    parts.minuteTimer.run(30min - 1s);
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(1s);
    QTEST(parts.actions.calls, "calls");
}

void TimerFiringTest::stopTimer_callsInOrder()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(24h);
    QCOMPARE(parts.actions.calls, (QStringList{u"stop"_s, u"log stop"_s}));
}

void TimerFiringTest::otherOperation_doesNothing()
{
    TMRData unknown = dailyTimer(halfPastEight, startDisplay);
    unknown.setOperation(7);
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, TimerOperation::Nothing), unknown});
    parts.minuteTimer.run(24h);
    QVERIFY(parts.actions.calls.isEmpty());
}

void TimerFiringTest::stopThenStart_inOneMinute_leavesTheDisplayRunning()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay), dailyTimer(halfPastEight, startDisplay)});
    parts.actions.isDisplaying = true;
    parts.minuteTimer.run(1h);
    QVERIFY(parts.actions.isDisplaying);
    QCOMPARE(parts.actions.calls,
             (QStringList{u"stop"_s, u"log stop"_s, u"read"_s, u"start"_s, u"log start "_s}));
}

void TimerFiringTest::mondayAndFriday_fireOnceEach()
{
    TMRData timer = dailyTimer(halfPastEight, stopDisplay);
    timer.setFireDay(34);
    QCOMPARE(timer.fireDayString(), u"　月　　　金　"_s);

    ScheduleParts parts; // a Monday, eight o'clock
    parts.start({timer});
    std::map<int, int> firesByWeekday;
    for (int hour = 0; hour < 14 * 24; ++hour) {
        parts.actions.calls.clear();
        parts.minuteTimer.run(1h);
        const LocalTime now = localTime(parts.clock.calendarNow() - 1min);
        if (!parts.actions.calls.isEmpty()) {
            QCOMPARE(now.hour, 8);
            firesByWeekday[now.weekday] += static_cast<int>(parts.actions.calls.count(u"stop"_s));
        }
    }
    QVERIFY((firesByWeekday == std::map<int, int>{{1, 2}, {5, 2}}));
}

void TimerFiringTest::disabledTimer_neverFires()
{
    TMRData timer = dailyTimer(halfPastEight, stopDisplay);
    timer.setValidate(false);
    ScheduleParts parts;
    parts.start({timer});
    parts.minuteTimer.run(7 * 24h);
    QVERIFY(parts.actions.calls.isEmpty());
}

void TimerFiringTest::clearedUse_neverFires()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(29min);
    parts.schedule.setUseTimer(false);
    parts.minuteTimer.run(24h);
    parts.schedule.timerHandle(); // a fire that was under way when the box was cleared
    QVERIFY(parts.actions.calls.isEmpty());
}

void TimerFiringTest::startThenStop_inOneMinute_leavesTheDisplayStopped()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, startDisplay), dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(1h);
    QVERIFY(!parts.actions.isDisplaying);
    QCOMPARE(parts.actions.calls,
             (QStringList{u"read"_s, u"start"_s, u"log start "_s, u"stop"_s, u"log stop"_s}));
}

void TimerFiringTest::timeOutsideTheDay_isStoredAndNeverFires_data()
{
    QTest::addColumn<QString>("hour");
    QTest::addColumn<QString>("minute");
    QTest::addColumn<int>("stored");
    QTest::newRow("hour 24") << u"24"_s << u"0"_s << 1440;
    QTest::newRow("hour 25") << u"25"_s << u"0"_s << 1500;
    QTest::newRow("minute 60 of the last hour") << u"23"_s << u"60"_s << 1440;
    QTest::newRow("minute -1 of the first hour") << u"0"_s << u"-1"_s << -1;
    QTest::newRow("hour -1") << u"-1"_s << u"30"_s << -30;
    QTest::newRow("more than a number holds")
        << u"99999999999"_s << u"0"_s << std::numeric_limits<std::int32_t>::max();
}

void TimerFiringTest::timeOutsideTheDay_isStoredAndNeverFires()
{
    QFETCH(QString, hour);
    QFETCH(QString, minute);
    TimerDraft draft;
    draft.fireHour = hour;
    draft.fireMinute = minute;
    ScheduleParts parts;
    parts.start({});
    parts.schedule.actCreateTimer();
    parts.schedule.actEditExecute(draft);
    QTEST(parts.storedTimers().front().fireTime(), "stored");
    parts.minuteTimer.run(8 * 24h);
    QVERIFY(parts.actions.calls.isEmpty());
}

void TimerFiringTest::minuteBeyond59_countsAsTheNextHour()
{
    TimerDraft draft; // 7 h 90 min is 8:30: only the sum is kept
    draft.fireHour = u"7"_s;
    draft.fireMinute = u"90"_s;
    ScheduleParts parts;
    parts.start({});
    parts.schedule.actCreateTimer();
    parts.schedule.actEditExecute(draft);
    QCOMPARE(parts.storedTimers().front().fireTime(), halfPastEight);
    parts.minuteTimer.run(30min);
    QCOMPARE(parts.actions.calls.size(), 3);
}

void TimerFiringTest::noDay_neverFires()
{
    TMRData never = dailyTimer(halfPastEight, stopDisplay);
    never.setFireDay(0);
    TMRData beyond = never;
    beyond.setFireDay(~127); // only bits that are no weekday
    ScheduleParts parts;
    parts.start({never, beyond});
    parts.minuteTimer.run(8 * 24h);
    QVERIFY(parts.actions.calls.isEmpty());
}

QTEST_GUILESS_MAIN(TimerFiringTest)
#include "timerfiring_test.moc"
