// SPDX-License-Identifier: MIT
// Years of the schedule in zones with every kind of clock change, and clocks that jump. What should
// fire is counted day by day from the zone's list of changes, without looking at single minutes.
#include "ScheduleParts.h"
#include "tests/support/ProcessUse.h"

#include <QTest>
#include <QTimeZone>

#include <map>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 minutesOfDay = 1440;

struct Span
{
    qint64 from; ///< UTC minutes, from the first to before the last
    qint64 to;
    qint64 offset; ///< minutes east
};

/// The spans of one offset between two moments.
std::vector<Span> spans(const QTimeZone &zone, qint64 from, qint64 to)
{
    const auto moment = [](qint64 minute) {
        return QDateTime::fromSecsSinceEpoch(minute * 60, Qt::UTC);
    };
    std::vector<Span> list{{from, to, zone.offsetFromUtc(moment(from)) / 60}};
    const auto changes = zone.transitions(moment(from).addSecs(1), moment(to));
    for (const QTimeZone::OffsetData &change : changes) {
        const qint64 at = change.atUtc.toSecsSinceEpoch() / 60;
        list.back().to = at;
        list.push_back({at, to, change.offsetFromUtc / 60});
    }
    return list;
}

qint64 floorDivide(qint64 value, qint64 by)
{
    return value >= 0 ? value / by : -((-value + by - 1) / by);
}

/// How often a timer's minute shows on the wall in these spans, on its weekdays.
qint64 expectedFires(const std::vector<Span> &list, const TMRData &timer)
{
    qint64 count = 0;
    for (const Span &span : list) {
        const qint64 first = span.from + span.offset;
        const qint64 end = span.to + span.offset;
        for (qint64 day = floorDivide(first, minutesOfDay); day * minutesOfDay < end; ++day) {
            const qint64 minute = day * minutesOfDay + timer.fireTime();
            const qint64 weekday = ((day + 4) % 7 + 7) % 7; // 1970 began on a Thursday
            if (minute >= first && minute < end && (timer.fireDay() >> weekday & 1) != 0)
                ++count;
        }
    }
    return count;
}

qint64 utcMinute(const Clock &clock)
{
    return minuteOf(clock.calendarNow()).time_since_epoch().count();
}

std::vector<TMRData> manyTimers()
{
    std::vector<TMRData> timers;
    int number = 0;
    // Around midnight and around the hours in which clocks change; all days, some days.
    for (const int minute :
         {0, 1, 59, 60, 89, 90, 105, 119, 120, 135, 149, 150, 179, 180, 720, 1439}) {
        for (const int days : {127, 1, 0x3e, 0x2a}) {
            timers.push_back(
                dailyTimer(minute, TimerOperation::StartDisplay, QString::number(number++)));
            timers.back().setFireDay(days);
        }
    }
    return timers;
}

/// The timers that the program was asked to start for, counted.
void tally(RecordingActions &actions, std::map<QString, qint64> &fires)
{
    for (const QString &call : actions.calls) {
        if (call.startsWith(u"log start "_s))
            ++fires[call.mid(10)];
    }
    actions.calls.clear();
}

} // namespace

class YearsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTimer_firesAsOftenAsTheWallShowsItsMinute_data();
    void everyTimer_firesAsOftenAsTheWallShowsItsMinute();
    void clockThatJumps_firesForWhatTheWallShowsFromThenOn_data();
    void clockThatJumps_firesForWhatTheWallShowsFromThenOn();
    void zoneChangedWhileRunning_countsAtOnce();
    void suspended_burstsNothing_data();
    void suspended_burstsNothing();
    void cleanup() { qputenv("TZ", "Asia/Tokyo"); }
};

void YearsTest::everyTimer_firesAsOftenAsTheWallShowsItsMinute_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone : {"Asia/Tokyo", "Europe/Berlin", "America/New_York",
                             "Australia/Lord_Howe", "Asia/Kolkata", "America/St_Johns"})
        QTest::newRow(zone) << QByteArray(zone);
}
void YearsTest::everyTimer_firesAsOftenAsTheWallShowsItsMinute()
{
    QFETCH(QByteArray, zone);
    qputenv("TZ", zone);
    const int days = isSanitized() ? 200 : 5 * 365 + 2;
    const std::vector<TMRData> timers = manyTimers();
    ScheduleParts parts({2026, 1, 1, 0, 0, 30, 4});
    parts.start(timers);
    const qint64 from = utcMinute(parts.clock) + 1; // the minute of the start has begun already
    std::map<QString, qint64> fires;
    for (int day = 0; day < days; ++day) {
        parts.minuteTimer.lateness = std::chrono::milliseconds(day * 37 % 5000);
        parts.minuteTimer.run(24h);
        if (day % 3 == 0)
            parts.minuteTimer.fire(); // doubled
        tally(parts.actions, fires);
    }
    const qint64 to = utcMinute(parts.clock) + 1;
    const auto list = spans(QTimeZone(zone), from, to);
    qint64 total = 0;
    for (const TMRData &timer : timers) {
        const qint64 expected = expectedFires(list, timer);
        if (fires[timer.address()] != expected)
            QCOMPARE(u"%1 on %2: %3"_s.arg(timer.fireTime())
                         .arg(timer.fireDay())
                         .arg(fires[timer.address()]),
                     u"%1 on %2: %3"_s.arg(timer.fireTime()).arg(timer.fireDay()).arg(expected));
        total += expected;
    }
    qInfo("%d days, %lld fires, %zu changes of the clock", days, static_cast<long long>(total),
          list.size() - 1);
}

void YearsTest::clockThatJumps_firesForWhatTheWallShowsFromThenOn_data()
{
    QTest::addColumn<LocalTime>("to");
    QTest::newRow("an hour ahead") << LocalTime{2026, 6, 10, 13, 0, 20, 3};
    QTest::newRow("a day ahead") << LocalTime{2026, 6, 11, 12, 0, 20, 4};
    QTest::newRow("1970") << LocalTime{1970, 1, 2, 12, 0, 20, 5};
    QTest::newRow("behind 2038") << LocalTime{2038, 1, 20, 12, 0, 20, 3};
    QTest::newRow("2106") << LocalTime{2106, 2, 8, 12, 0, 20, 1};
}
void YearsTest::clockThatJumps_firesForWhatTheWallShowsFromThenOn()
{
    QFETCH(LocalTime, to);
    qputenv("TZ", "Asia/Tokyo");
    const std::vector<TMRData> timers = manyTimers();
    ScheduleParts parts({2026, 6, 10, 12, 0, 20, 3});
    parts.start(timers);
    parts.minuteTimer.run(10min);
    parts.actions.calls.clear();
    parts.clock.setCalendar(*momentOf(to));
    const qint64 before = utcMinute(parts.clock);
    parts.minuteTimer.run(61s); // the timer set before the jump comes once more
    std::map<QString, qint64> fires;
    tally(parts.actions, fires);
    for (int day = 0; day < 10; ++day) {
        parts.minuteTimer.run(24h);
        tally(parts.actions, fires);
    }
    const qint64 end = utcMinute(parts.clock) + 1;
    for (const TMRData &timer : timers)
        QCOMPARE(fires[timer.address()], expectedFires({{before + 1, end, 9 * 60}}, timer));
}

void YearsTest::zoneChangedWhileRunning_countsAtOnce()
{
    qputenv("TZ", "Asia/Tokyo");
    const std::vector<TMRData> timers = manyTimers();
    ScheduleParts parts({2026, 6, 10, 12, 0, 20, 3});
    parts.start(timers);
    parts.minuteTimer.run(24h);
    parts.actions.calls.clear();
    qputenv("TZ", "Asia/Kolkata"); // half an hour beside the hours
    const qint64 from = utcMinute(parts.clock) + 1;
    std::map<QString, qint64> fires;
    for (int day = 0; day < 10; ++day) {
        parts.minuteTimer.run(24h);
        tally(parts.actions, fires);
    }
    const qint64 to = utcMinute(parts.clock) + 1;
    for (const TMRData &timer : timers)
        QCOMPARE(fires[timer.address()], expectedFires({{from, to, 5 * 60 + 30}}, timer));
}

void YearsTest::suspended_burstsNothing_data()
{
    QTest::addColumn<int>("hours");
    QTest::newRow("8 hours") << 8;
    QTest::newRow("5 days") << 5 * 24;
}
void YearsTest::suspended_burstsNothing()
{
    QFETCH(int, hours);
    qputenv("TZ", "Asia/Tokyo");
    std::vector<TMRData> timers;
    for (int minute = 0; minute < 1440; ++minute)
        timers.push_back(dailyTimer(minute, TimerOperation::StartDisplay, QString::number(minute)));
    ScheduleParts parts({2026, 6, 10, 12, 0, 20, 3});
    parts.start(timers);
    parts.minuteTimer.run(10min);
    parts.actions.calls.clear();
    parts.clock.suspendFor(std::chrono::hours(hours));
    parts.minuteTimer.run(60s);
    QCOMPARE(parts.actions.calls.count(u"read"_s), 1); // the minute of waking, not those between
    parts.minuteTimer.run(10min);
    QVERIFY(parts.actions.calls.count(u"read"_s) <= 11);
    QVERIFY(parts.actions.calls.count(u"read"_s) >= 10);
}

QTEST_GUILESS_MAIN(YearsTest)
#include "years_test.moc"
