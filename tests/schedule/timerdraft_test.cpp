// SPDX-License-Identifier: MIT
#include "schedule/TimerDraft.h"

#include <QTest>

#include <limits>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class TimerDraftTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newDraft();
    void boxes_makeTheMinute_data();
    void boxes_makeTheMinute();
    void days_makeTheBits_data();
    void days_makeTheBits();
    void column_makesTheOperation_data();
    void column_makesTheOperation();
    void timer_comesBackFromItsDraft();
};

void TimerDraftTest::newDraft()
{
    const TMRData timer = timerFrom(TimerDraft());
    QCOMPARE(timer.validate(), true);
    QCOMPARE(timer.fireDay(), 127);
    QCOMPARE(timer.fireTime(), 0);
    QVERIFY(timer.does(TimerOperation::StartDisplay));
    QVERIFY(timer.address().isEmpty());
}

void TimerDraftTest::boxes_makeTheMinute_data()
{
    QTest::addColumn<QString>("hour");
    QTest::addColumn<QString>("minute");
    QTest::addColumn<int>("fireTime");

    QTest::newRow("midnight") << u"0"_s << u"0"_s << 0;
    QTest::newRow("half past eight") << u"8"_s << u"30"_s << 510;
    QTest::newRow("leading zeros and blanks") << u" 08"_s << u"05 "_s << 485;
    QTest::newRow("hour 25 is kept") << u"25"_s << u"0"_s << 1500;
    // The sum is all that is kept: 8 hours and 75 minutes are a quarter past nine.
    QTest::newRow("minute 75 is added") << u"8"_s << u"75"_s << 555;
    QTest::newRow("no number counts 0") << u"x"_s << u""_s << 0;
    QTest::newRow("what follows the number is left out") << u"8時"_s << u"30分"_s << 510;
    QTest::newRow("full-width digits") << u"１２"_s << u"３４"_s << 754;
    QTest::newRow("signs") << u"+1"_s << u"-5"_s << 55;
    QTest::newRow("far too large")
        << u"99999999999999999999"_s << u"0"_s << std::numeric_limits<int>::max();
    QTest::newRow("far too small")
        << u"-99999999999999999999"_s << u"0"_s << -std::numeric_limits<int>::max();
}

void TimerDraftTest::boxes_makeTheMinute()
{
    QFETCH(QString, hour);
    QFETCH(QString, minute);
    TimerDraft draft;
    draft.fireHour = hour;
    draft.fireMinute = minute;
    QTEST(timerFrom(draft).fireTime(), "fireTime");
}

void TimerDraftTest::days_makeTheBits_data()
{
    QTest::addColumn<int>("day");
    QTest::addColumn<int>("bits");
    const char *names[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                           "Thursday", "Friday", "Saturday"};
    for (int day = 0; day < 7; ++day)
        QTest::newRow(names[day]) << day << (1 << day);
}

void TimerDraftTest::days_makeTheBits()
{
    QFETCH(int, day);
    TimerDraft draft;
    draft.days.fill(false);
    draft.days[static_cast<std::size_t>(day)] = true;
    QTEST(timerFrom(draft).fireDay(), "bits");
}

void TimerDraftTest::column_makesTheOperation_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("columnShown");
    QTest::newRow("start") << 0 << 1 << 0;
    QTest::newRow("stop") << 1 << 2 << 1;
    QTest::newRow("nothing") << 2 << 0 << 2;
    QTest::newRow("no button pressed") << -1 << 0 << 2;
}

void TimerDraftTest::column_makesTheOperation()
{
    QFETCH(int, column);
    TimerDraft draft;
    draft.actionColumn = column;
    QTEST(timerFrom(draft).operation(), "operation");
    QTEST(draftFrom(timerFrom(draft)).actionColumn, "columnShown");
}

void TimerDraftTest::timer_comesBackFromItsDraft()
{
    for (int minute : {0, 59, 60, 510, 1439, 1500, 555, -70}) {
        for (int days : {0, 34, 127}) {
            TMRData timer;
            timer.setValidate(minute % 2 == 0);
            timer.setFireDay(days);
            timer.setFireTime(minute);
            timer.setOperation(2);
            timer.setAddress(u"http://example.jp/feed"_s);
            QVERIFY(timerFrom(draftFrom(timer)) == timer);
        }
    }
}

QTEST_APPLESS_MAIN(TimerDraftTest)
#include "timerdraft_test.moc"
