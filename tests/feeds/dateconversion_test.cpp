// SPDX-License-Identifier: MIT
#include "feeds/DateConversion.h"

#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class DateConversionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void converts_data();
    void converts()
    {
        QFETCH(int, type);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(convertFeedDate(text, type), expected);
    }
    void dateText_padsWithZeros() { QCOMPARE(dateText(5, 1, 3, 9), u"05/01 03:09"_s); }
};

void DateConversionTest::converts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, int type, const char *text, const char *expected) {
        QTest::newRow(name) << type << QString::fromUtf8(text) << QString::fromUtf8(expected);
    };
    const char *none = "00/00 00:00";
    row("W3C, Japan", 1, "2008-05-01T12:10:00+09:00", "05/01 12:10");
    row("W3C, no colon in the offset", 1, "2008-05-01T12:10:00+0900", "05/01 12:10");
    row("W3C, offset of hours alone", 1, "2008-05-01T12:10:00+09", "05/01 12:10");
    row("W3C, west", 1, "2008-05-01T12:10:00-05:00", "05/02 02:10");
    row("W3C, the offset's minutes do not count", 1, "2008-05-01T12:10:00+05:30", "05/01 16:10");
    row("W3C, Z", 1, "2008-05-01T12:10:00Z", "05/01 21:10");
    row("W3C, a zone's name counts as UTC", 1, "2008-05-01T12:10:00EST", "05/01 21:10");
    row("W3C, a fraction", 1, "2008-05-01T12:10:00.123+09:00", "05/01 12:10");
    row("W3C, a one-digit day", 1, "2008-05-1T12:10:00+09:00", "05/01 12:10");
    row("W3C, outer blanks", 1, " \n2008-05-01T12:10:00+09:00\t", "05/01 12:10");
    row("W3C, east of Japan goes back a day", 1, "2008-05-01T01:10:00+12:00", "04/30 22:10");
    row("W3C, over the end of the year", 1, "2008-12-31T20:00:00Z", "01/01 05:00");
    row("W3C, leap day", 1, "2008-02-29T12:00:00+09:00", "02/29 12:00");
    row("W3C, to the leap day", 1, "2008-02-28T20:00:00Z", "02/29 05:00");
    row("W3C, no leap day", 1, "2009-02-29T12:00:00+09:00", none);
    row("W3C, leap second", 1, "2008-12-31T23:59:60Z", "01/01 08:59");
    row("W3C, no zone", 1, "2008-05-01T12:10:00", none);
    row("W3C, no seconds", 1, "2008-05-01T12:10+09:00", none);
    row("W3C, date only", 1, "2008-05-01", none);
    row("W3C, hour 24", 1, "2008-05-01T24:00:00Z", none);
    row("W3C, month 13", 1, "2008-13-01T12:00:00Z", none);
    row("W3C, something behind the zone", 1, "2008-05-01T12:10:00+09:00 x", none);
    row("W3C, the other form", 1, "Thu, 01 May 2008 23:30:00 +0900", none);
    row("empty", 1, "", none);
    row("RFC 822, Japan", 2, "Thu, 01 May 2008 23:30:00 +0900", "05/01 23:30");
    row("RFC 822, west", 2, "Thu, 01 May 2008 23:30:00 -0500", "05/02 13:30");
    row("RFC 822, half an hour", 2, "Thu, 01 May 2008 23:30:00 +0530", "05/02 03:30");
    row("RFC 822, GMT", 2, "Thu, 01 May 2008 23:30:00 GMT", "05/02 08:30");
    row("RFC 822, a zone's name counts as UTC", 2, "Thu, 01 May 2008 23:30:00 EST", "05/02 08:30");
    row("RFC 822, Z", 2, "Thu, 01 May 2008 23:30:00 Z", "05/02 08:30");
    row("RFC 822, a one-digit day", 2, "Thu, 1 May 2008 23:30:00 +0900", "05/01 23:30");
    row("RFC 822, a one-digit day behind two blanks", 2, "Thu,  1 May 2008 23:30:00 +0900",
        "05/01 23:30");
    row("RFC 822, names in other cases", 2, "THU, 01 may 2008 23:30:00 +0900", "05/01 23:30");
    row("RFC 822, outer blanks", 2, "\n  Thu, 01 May 2008 23:30:00 +0900 ", "05/01 23:30");
    row("RFC 822, a fraction", 2, "Thu, 01 May 2008 23:30:00.5 +0900", "05/01 23:30");
    row("RFC 822, the wrong weekday is not looked at", 2, "Mon, 01 May 2008 23:30:00 +0900",
        "05/01 23:30");
    row("RFC 822, no zone", 2, "Thu, 01 May 2008 23:30:00", none);
    row("RFC 822, no weekday", 2, "01 May 2008 23:30:00 +0900", none);
    row("RFC 822, a year of two digits", 2, "Thu, 01 May 08 23:30:00 +0900", none);
    row("RFC 822, no such month", 2, "Thu, 01 Mai 2008 23:30:00 +0900", none);
    row("RFC 822, no such day", 2, "Thu, 31 Apr 2008 23:30:00 +0900", none);
    row("RFC 822, the other form", 2, "2008-05-01T12:10:00+09:00", none);
    row("Atom, UTC", 3, "2008-05-01T03:10:00Z", "05/01 12:10");
    row("Atom, a fraction", 3, "2008-05-01T03:10:00.25Z", "05/01 12:10");
    row("Atom, over the end of the month", 3, "2008-04-30T15:00:00Z", "05/01 00:00");
    row("Atom, an offset", 3, "2008-05-01T12:10:00+09:00", none);
    row("Atom, no zone", 3, "2008-05-01T12:10:00", none);
    row("no such type", 4, "2008-05-01T03:10:00Z", none);
}

QTEST_GUILESS_MAIN(DateConversionTest)
#include "dateconversion_test.moc"
