// SPDX-License-Identifier: MIT
#include "messages/CalendarText.h"
#include "platform/CalendarTime.h"

#include <QtTest>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

void setZone(const char *zone)
{
    qputenv("TZ", zone);
    tzset();
}

// A moment given as UTC text.
Clock::CalendarTime utc(const QString &text)
{
    const auto moment = QDateTime::fromString(text + u'Z', Qt::ISODate);
    return Clock::CalendarTime(std::chrono::milliseconds(moment.toMSecsSinceEpoch()));
}

QString utcText(std::optional<Clock::CalendarTime> moment)
{
    if (!moment)
        return u"none"_s;
    const auto since =
        std::chrono::duration_cast<std::chrono::milliseconds>(moment->time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(since.count(), Qt::UTC).toString(u"yyyy-MM-ddThh:mm"_s);
}

} // namespace

class CalendarTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { setZone("UTC"); }

    void dateOfText_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("nowUtc");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expectedUtc");
        const auto row = [](const char *name, const char *zone, const QString &now,
                            const QString &text, const QString &expected) {
            QTest::newRow(name) << QByteArray(zone) << now << text << expected;
        };
        const char *japan = "Asia/Tokyo";

        row("earlier today", japan, u"2026-11-14T05:00:00"_s, u"11/14 10:30"_s,
            u"2026-11-14T01:30"_s);
        row("exactly now", japan, u"2026-11-14T01:30:00"_s, u"11/14 10:30"_s,
            u"2026-11-14T01:30"_s);
        row("one second ahead is last year", japan, u"2026-11-14T01:29:59"_s, u"11/14 10:30"_s,
            u"2025-11-14T01:30"_s);
        row("31 December read on 1 January", japan, u"2026-12-31T16:00:00"_s, u"12/31 23:00"_s,
            u"2026-12-31T14:00"_s);
        row("1 January while UTC is still in the old year", japan, u"2026-12-31T16:00:00"_s,
            u"01/01 00:30"_s, u"2026-12-31T15:30"_s);
        row("29 February of this leap year", japan, u"2028-03-02T00:00:00"_s, u"02/29 12:00"_s,
            u"2028-02-29T03:00"_s);
        row("29 February read the year after", japan, u"2029-03-02T00:00:00"_s, u"02/29 12:00"_s,
            u"2028-02-29T03:00"_s);
        row("29 February still ahead", japan, u"2028-02-01T00:00:00"_s, u"02/29 12:00"_s,
            u"none"_s);
        row("29 February two years after", japan, u"2030-03-02T00:00:00"_s, u"02/29 12:00"_s,
            u"none"_s);
        row("the zone is the local one", "Europe/Berlin", u"2026-07-01T12:00:00"_s,
            u"07/01 10:30"_s, u"2026-07-01T08:30"_s);
        row("winter offset of the same zone", "Europe/Berlin", u"2026-07-01T12:00:00"_s,
            u"01/15 10:30"_s, u"2026-01-15T09:30"_s);
        row("an hour that the clock change skips", "Europe/Berlin", u"2026-07-01T12:00:00"_s,
            u"03/29 02:30"_s, u"2026-03-29T01:30"_s);
        row("an hour that repeats is its first", "Europe/Berlin", u"2026-12-01T12:00:00"_s,
            u"10/25 02:30"_s, u"2026-10-25T00:30"_s);
        row("zone of half an hour", "Asia/Kolkata", u"2026-07-01T12:00:00"_s, u"07/01 10:30"_s,
            u"2026-07-01T05:00"_s);
        row("one digit serves", japan, u"2026-11-14T05:00:00"_s, u"1/2 3:4"_s,
            u"2026-01-01T18:04"_s);

        const QString now = u"2026-11-14T05:00:00"_s;
        row("no date", japan, now, u"00/00 00:00"_s, u"none"_s);
        row("empty", japan, now, u""_s, u"none"_s);
        row("month 13", japan, now, u"13/01 00:00"_s, u"none"_s);
        row("31 April", japan, now, u"04/31 00:00"_s, u"none"_s);
        row("hour 24", japan, now, u"11/13 24:00"_s, u"none"_s);
        row("minute 60", japan, now, u"11/13 10:60"_s, u"none"_s);
        row("with a year", japan, now, u"2026/11/13 10:00"_s, u"none"_s);
        row("text behind", japan, now, u"11/13 10:00 "_s, u"none"_s);
        row("cut short", japan, now, u"11/13 10:"_s, u"none"_s);
        row("signs", japan, now, u"+1/-3 10:00"_s, u"none"_s);
        row("no number at all", japan, now, u"yesterday"_s, u"none"_s);
    }

    void dateOfText()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, nowUtc);
        QFETCH(QString, text);
        setZone(zone.constData());
        QTEST(utcText(dateWithString(text, utc(nowUtc))), "expectedUtc");
    }

    void tooOld_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("secondsLater");
        QTest::addColumn<bool>("isTooOld");
        QTest::newRow("just now") << u"11/04 10:30"_s << 0 << false;
        QTest::newRow("ten days to the second") << u"11/04 10:30"_s << 864'000 << false;
        QTest::newRow("ten days and a second") << u"11/04 10:30"_s << 864'001 << true;
        QTest::newRow("ahead, so last year's") << u"11/04 10:31"_s << 0 << true;
        QTest::newRow("no date is never too old") << u"00/00 00:00"_s << 900'000 << false;
        QTest::newRow("no text") << u""_s << 900'000 << false;
    }

    void tooOld()
    {
        QFETCH(QString, text);
        QFETCH(int, secondsLater);
        setZone("Asia/Tokyo");
        const auto now = utc(u"2026-11-04T01:30:00"_s) + std::chrono::seconds(secondsLater);
        QTEST(isTooOldDate(text, now), "isTooOld");
    }

    void tenDaysAreTenTimesADayInSecondsAlsoOverAClockChange()
    {
        setZone("Europe/Berlin");
        const auto seen = utc(u"2026-10-20T10:00:00"_s); // 12:00 in summer time
        QVERIFY(!isTooOldDate(u"10/20 12:00"_s, seen + 864'000s));
        QVERIFY(isTooOldDate(u"10/20 12:00"_s, seen + 864'001s));
    }

    void textOfMoment()
    {
        setZone("Asia/Tokyo");
        QCOMPARE(dateText(utc(u"2026-01-02T18:04:59"_s)), u"01/03 03:04"_s);
        setZone("America/New_York");
        QCOMPARE(dateText(utc(u"2026-01-01T03:00:00"_s)), u"12/31 22:00"_s);
    }

    void textAndMomentFitTogether()
    {
        for (const char *zone : {"Asia/Tokyo", "America/New_York", "Asia/Kolkata"}) {
            setZone(zone);
            const auto now = utc(u"2026-11-14T05:07:00"_s);
            QCOMPARE(utcText(dateWithString(dateText(now), now)), u"2026-11-14T05:07"_s);
        }
    }
};

QTEST_APPLESS_MAIN(CalendarTextTest)
#include "calendartext_test.moc"
