// SPDX-License-Identifier: MIT
#include "board/PresentDate.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class PresentDateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void weekdays();
    void date_padsTheTimeOnly();
};

void PresentDateTest::weekdays()
{
    QString names;
    for (int day = 0; day < 7; ++day)
        names += stringWithDayOfWeek(day);
    QCOMPARE(names, u"日月火水木金土"_s);
    QCOMPARE(stringWithDayOfWeek(7), QString());
    QCOMPARE(stringWithDayOfWeek(-1), QString());
}

void PresentDateTest::date_padsTheTimeOnly()
{
    LocalTime time;
    time.month = 3;
    time.day = 3;
    time.weekday = 0;
    time.hour = 9;
    time.minute = 5;
    QCOMPARE(presentDateString(time), u"3/3(日) 09:05"_s);
    time.month = 12;
    time.day = 31;
    time.weekday = 6;
    time.hour = 23;
    time.minute = 59;
    QCOMPARE(presentDateString(time), u"12/31(土) 23:59"_s);
}

QTEST_APPLESS_MAIN(PresentDateTest)
#include "presentdate_test.moc"
