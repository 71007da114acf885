// SPDX-License-Identifier: MIT
#include "platform/CalendarTime.h"

#include <QRandomGenerator>
#include <QTest>

using namespace qovelmor;

namespace {

// Seconds since 1970 of local fields, or no number for fields that are none.
std::optional<qint64> secondsOf(const LocalTime &fields)
{
    const auto moment = momentOf(fields);
    return moment ? std::optional<qint64>(std::chrono::system_clock::to_time_t(*moment))
                  : std::nullopt;
}

LocalTime fieldsOf(qint64 seconds)
{
    return localTime(std::chrono::system_clock::from_time_t(seconds));
}

QString textOf(const LocalTime &t)
{
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d %d", t.year, t.month, t.day, t.hour,
                             t.minute, t.second, t.weekday);
}

} // namespace

class CalendarTimeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { qunsetenv("TZ"); }

    void momentsAndFields_agree_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<QString>("fields");
        const auto row = [](const char *name, const char *zone, qint64 seconds,
                            const char *fields) {
            QTest::newRow(name) << QByteArray(zone) << seconds << QString::fromLatin1(fields);
        };
        row("the first second, in Greenwich", "UTC", 0, "1970-01-01 00:00:00 4");
        row("the first second, in Japan", "Asia/Tokyo", 0, "1970-01-01 09:00:00 4");
        row("before 1970", "Asia/Tokyo", -1, "1970-01-01 08:59:59 4");
        row("end of a year", "Asia/Tokyo", 1767193199, "2025-12-31 23:59:59 3");
        row("beginning of a year", "Asia/Tokyo", 1767193200, "2026-01-01 00:00:00 4");
        row("29 February", "Asia/Tokyo", 1709132400, "2024-02-29 00:00:00 4");
        row("29 February 2000", "UTC", 951782400, "2000-02-29 00:00:00 2");
        row("end of 32 bits", "UTC", 2147483647, "2038-01-19 03:14:07 2");
        row("after 32 bits", "UTC", 2147483648, "2038-01-19 03:14:08 2");
        row("2100 is no leap year", "UTC", 4107542400, "2100-03-01 00:00:00 1");
        row("half-hour zone", "Asia/Kolkata", 1767205800, "2026-01-01 00:00:00 4");
        row("three-quarter-hour zone", "Asia/Kathmandu", 1767204900, "2026-01-01 00:00:00 4");
        row("half an hour behind", "America/St_Johns", 1767238200, "2026-01-01 00:00:00 4");
        row("half an hour of summer time", "Australia/Lord_Howe", 1767189600,
            "2026-01-01 01:00:00 4");
        row("furthest east", "Pacific/Kiritimati", 1767175200, "2026-01-01 00:00:00 4");
        row("furthest west", "Etc/GMT+12", 1767268800, "2026-01-01 00:00:00 4");
        row("summer in Berlin", "Europe/Berlin", 1782856800, "2026-07-01 00:00:00 3");
        row("winter in Dublin", "Europe/Dublin", 1767225600, "2026-01-01 00:00:00 4");
        row("summer in Dublin", "Europe/Dublin", 1782860400, "2026-07-01 00:00:00 3");
    }

    void momentsAndFields_agree()
    {
        QFETCH(QByteArray, zone);
        QFETCH(qint64, seconds);
        qputenv("TZ", zone);
        QTEST(textOf(fieldsOf(seconds)), "fields");
        QCOMPARE(secondsOf(fieldsOf(seconds)), std::optional(seconds));
    }

    void clockChanges_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<int>("month");
        QTest::addColumn<int>("day");
        QTest::addColumn<int>("hour");
        QTest::addColumn<int>("minute");
        QTest::addColumn<qint64>("seconds");
        const auto row = [](const char *name, const char *zone, int month, int day, int hour,
                            int minute, qint64 seconds) {
            QTest::newRow(name) << QByteArray(zone) << month << day << hour << minute << seconds;
        };
        // Berlin 2026: 29 March 01:00 UTC forward, 25 October 01:00 UTC back.
        row("last minute before a gap", "Europe/Berlin", 3, 29, 1, 59, 1774745940);
        row("skipped: offset before the gap", "Europe/Berlin", 3, 29, 2, 30, 1774747800);
        row("first minute after a gap", "Europe/Berlin", 3, 29, 3, 0, 1774746000);
        row("repeated: the first one", "Europe/Berlin", 10, 25, 2, 30, 1792888200);
        row("last minute before the repeated hour", "Europe/Berlin", 10, 25, 1, 59, 1792886340);
        row("first minute after the repeated hour", "Europe/Berlin", 10, 25, 3, 0, 1792893600);
        // Dublin calls its winter time the daylight saving one.
        row("Dublin, skipped", "Europe/Dublin", 3, 29, 1, 30, 1774747800);
        row("Dublin, repeated", "Europe/Dublin", 10, 25, 1, 30, 1792888200);
        // New York: 8 March 07:00 UTC, 1 November 06:00 UTC.
        row("New York, skipped", "America/New_York", 3, 8, 2, 30, 1772955000);
        row("New York, repeated", "America/New_York", 11, 1, 1, 30, 1793511000);
        // Lord Howe moves by half an hour: 4 October 02:00 (10:30 ahead) to 02:30.
        row("Lord Howe, skipped", "Australia/Lord_Howe", 10, 4, 2, 15, 1791042300);
        row("Lord Howe, repeated", "Australia/Lord_Howe", 4, 5, 1, 45, 1775313900);
        // Santiago skips midnight: 6 September 04:00 UTC.
        row("Santiago, skipped midnight", "America/Santiago", 9, 6, 0, 0, 1788667200);
    }

    void clockChanges()
    {
        QFETCH(QByteArray, zone);
        QFETCH(int, month);
        QFETCH(int, day);
        QFETCH(int, hour);
        QFETCH(int, minute);
        qputenv("TZ", zone);
        QTEST(secondsOf({2026, month, day, hour, minute, 0, 0}).value_or(-1), "seconds");
    }

    void wholeDayThatAZoneSkipped_takesTheOffsetBefore()
    {
        qputenv("TZ", "Pacific/Apia"); // there was no 30 December 2011
        const auto seconds = secondsOf({2011, 12, 30, 12, 0, 0, 0});
        QCOMPARE(seconds, std::optional<qint64>(1325282400));
        QCOMPARE(textOf(fieldsOf(*seconds)), QStringLiteral("2011-12-31 12:00:00 6"));
    }

    void fieldsThatAreNone_giveNothing_data()
    {
        QTest::addColumn<QList<int>>("f");
        QTest::addColumn<bool>("isMoment");
        QTest::newRow("29 February of a leap year") << QList<int>{2024, 2, 29, 0, 0, 0} << true;
        QTest::newRow("29 February of a common year") << QList<int>{2026, 2, 29, 0, 0, 0} << false;
        QTest::newRow("29 February 2100") << QList<int>{2100, 2, 29, 0, 0, 0} << false;
        QTest::newRow("31 April") << QList<int>{2026, 4, 31, 0, 0, 0} << false;
        QTest::newRow("31 December, last second") << QList<int>{2026, 12, 31, 23, 59, 59} << true;
        QTest::newRow("month 0, day 0") << QList<int>{2026, 0, 0, 0, 0, 0} << false;
        QTest::newRow("month 13") << QList<int>{2026, 13, 1, 0, 0, 0} << false;
        QTest::newRow("negative day") << QList<int>{2026, 1, -1, 0, 0, 0} << false;
        QTest::newRow("hour 24") << QList<int>{2026, 1, 1, 24, 0, 0} << false;
        QTest::newRow("hour -1") << QList<int>{2026, 1, 1, -1, 0, 0} << false;
        QTest::newRow("minute 60") << QList<int>{2026, 1, 1, 0, 60, 0} << false;
        QTest::newRow("second 60, a leap second") << QList<int>{2016, 12, 31, 23, 59, 60} << true;
        QTest::newRow("second 61") << QList<int>{2026, 1, 1, 0, 0, 61} << false;
    }

    void fieldsThatAreNone_giveNothing()
    {
        QFETCH(QList<int>, f);
        qputenv("TZ", "UTC");
        QTEST(secondsOf({f[0], f[1], f[2], f[3], f[4], f[5], 0}).has_value(), "isMoment");
    }

    void zoneChangedWhileRunning_countsAtOnce()
    {
        qputenv("TZ", "Asia/Tokyo");
        QCOMPARE(fieldsOf(0).hour, 9);
        qputenv("TZ", "America/New_York");
        QCOMPARE(fieldsOf(0).hour, 19);
        QCOMPARE(secondsOf({1970, 1, 1, 0, 0, 0, 0}), std::optional<qint64>(5 * 3600));
    }

    // Any moment read as fields and back gives itself, but for the second pass of a repeated hour.
    void randomMoments_comeBack()
    {
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        const QByteArray zones[] = {"Asia/Tokyo",        "Europe/Berlin",     "Europe/Dublin",
                                    "America/New_York",  "Asia/Kolkata",      "Australia/Lord_Howe",
                                    "America/Sao_Paulo", "Africa/Casablanca", "Antarctica/Troll",
                                    "Pacific/Chatham"};
        for (const QByteArray &zone : zones) {
            qputenv("TZ", zone);
            for (int i = 0; i < 5000; ++i) {
                const qint64 seconds = random.bounded(qint64{4'000'000'000});
                const LocalTime fields = fieldsOf(seconds);
                const qint64 back = secondsOf(fields).value_or(-1);
                const auto note = [&] {
                    return QStringLiteral("seed %1, %2, %3")
                        .arg(seed)
                        .arg(QString::fromLatin1(zone))
                        .arg(seconds);
                };
                QVERIFY2(back <= seconds && seconds - back <= 2 * 3600, qPrintable(note()));
                QVERIFY2(textOf(fieldsOf(back)) == textOf(fields), qPrintable(note()));
            }
        }
    }
};

QTEST_APPLESS_MAIN(CalendarTimeTest)
#include "calendartime_test.moc"
