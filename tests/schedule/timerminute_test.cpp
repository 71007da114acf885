// SPDX-License-Identifier: MIT
#include "ScheduleParts.h"

#include <QRandomGenerator>
#include <QTest>

#include <map>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

/// Which minutes are handled: late and doubled fires, busy times, clock changes.
class TimerMinuteTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void lateFire_isRealigned();
    void doubledTick_firesOnce();
    void earlyTick_waitsForItsMinute();
    void startInTheMiddleOfItsMinute_doesNotFire();
    void minuteDuringARead_isLost();
    void minuteWhileTheMainThreadIsBusy_isLost();
    void calendarSetBack_doesNotFireAgain();
    void calendarSetForward_losesTheMinutesBetween();
    void wrongYear_silencesNothing();
    void suspend_firesTheMinuteOfWaking();
    void clockChange_data();
    void clockChange();
    void everyMinuteOfAYear_firesOnce();
};

void TimerMinuteTest::init()
{
    setZone("Asia/Tokyo");
}

void TimerMinuteTest::lateFire_isRealigned()
{
    ScheduleParts parts({2026, 1, 5, 8, 0, 20, 1});
    parts.start({dailyTimer(481, stopDisplay), dailyTimer(482, stopDisplay),
                 dailyTimer(483, startDisplay)});
    parts.minuteTimer.lateness = 50s; // still within the minute: seconds do not count
    parts.minuteTimer.run(2min);
    QCOMPARE(parts.actions.calls,
             (QStringList{u"stop"_s, u"log stop"_s, u"stop"_s, u"log stop"_s}));

    parts.minuteTimer.lateness = 0s;
    while (!parts.actions.isDisplaying)
        parts.minuteTimer.run(1s);
    const LocalTime now = localTime(parts.clock.calendarNow());
    QCOMPARE(now.minute, 3);
    QCOMPARE(now.second, 0);
}

void TimerMinuteTest::doubledTick_firesOnce()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(30min);
    parts.minuteTimer.fire();
    parts.minuteTimer.run(10s);
    parts.minuteTimer.fire();
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void TimerMinuteTest::earlyTick_waitsForItsMinute()
{
    ScheduleParts parts({2026, 1, 5, 8, 28, 30, 1});
    // The schedule starts within 8:28, whose own timer must not fire any more.
    parts.start({dailyTimer(halfPastEight - 2, stopDisplay, u"8:28"_s),
                 dailyTimer(halfPastEight - 1, startDisplay)});
    parts.minuteTimer.run(29990ms);
    parts.minuteTimer.fire(); // ten milliseconds before 8:29
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(10ms);
    QCOMPARE(parts.actions.calls, (QStringList{u"read"_s, u"start"_s, u"log start "_s}));
}

void TimerMinuteTest::startInTheMiddleOfItsMinute_doesNotFire()
{
    ScheduleParts parts({2026, 1, 5, 8, 30, 1, 1});
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(2min);
    QVERIFY(parts.actions.calls.isEmpty());
}

void TimerMinuteTest::minuteDuringARead_isLost()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, startDisplay),
                 dailyTimer(halfPastEight + 1, stopDisplay),
                 dailyTimer(halfPastEight + 2, stopDisplay)});
    // The read of 8:30 takes until 8:31:30, and the timer comes in between.
    parts.actions.duringRead = [&] {
        parts.clock.sleepFor(60s);
        parts.minuteTimer.fire();
        parts.clock.sleepFor(30s);
    };
    parts.minuteTimer.run(30min);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 0);
    parts.minuteTimer.run(10min);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1); // 8:32 only
}

void TimerMinuteTest::minuteWhileTheMainThreadIsBusy_isLost()
{
    ScheduleParts parts;
    parts.start(
        {dailyTimer(halfPastEight, stopDisplay), dailyTimer(halfPastEight + 1, stopDisplay)});
    parts.minuteTimer.run(29min + 50s);
    parts.actions.isBusy = true;
    parts.minuteTimer.run(30s);
    parts.actions.isBusy = false;
    parts.minuteTimer.run(30s);
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(10s);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void TimerMinuteTest::calendarSetBack_doesNotFireAgain()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(1h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
    parts.clock.setCalendar(parts.clock.calendarNow() - 45min);
    parts.minuteTimer.run(2h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void TimerMinuteTest::calendarSetForward_losesTheMinutesBetween()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay), dailyTimer(9 * 60 + 30, stopDisplay)});
    parts.minuteTimer.run(10min + 20s);
    parts.clock.setCalendar(parts.clock.calendarNow() + 1h); // 9:10:20
    parts.minuteTimer.run(15min);
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(10min);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void TimerMinuteTest::wrongYear_silencesNothing()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    const auto right = parts.clock.calendarNow();
    parts.clock.setCalendar(*momentOf({2040, 6, 1, 12, 0, 0, 0}));
    parts.minuteTimer.run(10min);
    parts.clock.setCalendar(right);
    parts.minuteTimer.run(1h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
    parts.clock.setCalendar(Clock::CalendarTime());
    parts.minuteTimer.run(24h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 2);
}

void TimerMinuteTest::suspend_firesTheMinuteOfWaking()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay), dailyTimer(16 * 60 + 20, startDisplay)});
    parts.minuteTimer.run(20min);
    parts.clock.suspendFor(8h - 10s); // wakes at 16:19:50
    parts.minuteTimer.run(5min);
    // The minutes slept through are lost. The timer's steady minute is over at 16:20:50.
    QCOMPARE(parts.actions.calls, (QStringList{u"read"_s, u"start"_s, u"log start "_s}));
}

void TimerMinuteTest::clockChange_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<int>("month");
    QTest::addColumn<int>("day");
    QTest::addColumn<int>("minuteOfDay");
    QTest::addColumn<int>("fires");

    // One day from midnight on, 25 hours of it.
    QTest::newRow("Berlin, spring, skipped hour") << "Europe/Berlin"_ba << 3 << 29 << 150 << 0;
    QTest::newRow("Berlin, spring, before") << "Europe/Berlin"_ba << 3 << 29 << 119 << 1;
    QTest::newRow("Berlin, spring, after") << "Europe/Berlin"_ba << 3 << 29 << 180 << 1;
    QTest::newRow("Berlin, autumn, repeated hour") << "Europe/Berlin"_ba << 10 << 25 << 150 << 2;
    QTest::newRow("Berlin, autumn, after") << "Europe/Berlin"_ba << 10 << 25 << 180 << 1;
    QTest::newRow("Lord Howe, autumn, repeated half hour")
        << "Australia/Lord_Howe"_ba << 4 << 5 << 105 << 2;
    QTest::newRow("Lord Howe, spring, skipped half hour")
        << "Australia/Lord_Howe"_ba << 10 << 4 << 135 << 0;
    QTest::newRow("Kathmandu, a quarter of an hour off")
        << "Asia/Kathmandu"_ba << 5 << 5 << 150 << 1;
    QTest::newRow("Tokyo, no change") << "Asia/Tokyo"_ba << 3 << 29 << 150 << 1;
}

void TimerMinuteTest::clockChange()
{
    QFETCH(QByteArray, zone);
    QFETCH(int, month);
    QFETCH(int, day);
    QFETCH(int, minuteOfDay);

    setZone(zone);
    const auto midnight = *momentOf({2026, month, day, 0, 0, 0, 0});
    ScheduleParts parts(localTime(midnight - 30s));
    parts.start({dailyTimer(minuteOfDay, stopDisplay)});
    while (localTime(parts.clock.calendarNow()).day != localTime(midnight + 26h).day)
        parts.minuteTimer.run(1min);
    QTEST(static_cast<int>(parts.actions.calls.count(u"stop"_s)), "fires");
}

void TimerMinuteTest::everyMinuteOfAYear_firesOnce()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    setZone("America/New_York");

    // A hundred timers over a hundred days; the platform's timer is late, early and doubled.
    std::vector<TMRData> timers;
    timers.reserve(100);
    for (int i = 0; i < 100; ++i)
        timers.push_back(dailyTimer(random.bounded(1440), startDisplay, QString::number(i)));
    ScheduleParts parts({2026, 2, 1, 0, 0, 30, 0});
    parts.start(timers);

    std::map<std::pair<qint64, QString>, int> fires; // UTC minute and timer
    const auto end = parts.clock.calendarNow() + 100 * 24h;
    qint64 expected = 0;
    UtcMinute counted = minuteOf(parts.clock.calendarNow());
    while (parts.clock.calendarNow() < end) {
        parts.minuteTimer.lateness = std::chrono::milliseconds(random.bounded(5000));
        parts.actions.calls.clear();
        parts.minuteTimer.run(60s);
        if (random.bounded(10) == 0)
            parts.minuteTimer.fire();
        const UtcMinute now = minuteOf(parts.clock.calendarNow());
        for (; counted < now; counted += 1min) {
            const LocalTime local = localTime(counted + 1min);
            for (const TMRData &timer : timers)
                expected += timer.isFireNow(local) ? 1 : 0;
        }
        for (const QString &call : parts.actions.calls) {
            if (call.startsWith(u"log start "_s))
                ++fires[{now.time_since_epoch().count(), call.mid(10)}];
        }
    }
    qint64 total = 0;
    for (const auto &[minuteAndTimer, count] : fires) {
        QCOMPARE(count, 1);
        total += count;
    }
    QCOMPARE(total, expected);
}

QTEST_GUILESS_MAIN(TimerMinuteTest)
#include "timerminute_test.moc"
