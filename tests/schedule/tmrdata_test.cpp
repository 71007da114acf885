// SPDX-License-Identifier: MIT
#include "schedule/TMRData.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class TMRDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newTimer_isEmpty();
    void fireDayString_data();
    void fireDayString();
    void fireTimeString_data();
    void fireTimeString();
    void operationString_data();
    void operationString();
    void isFireNow_data();
    void isFireNow();
    void dictionary_hasItsKeysInOrder();
    void dictionary_thatIsDamaged();
    void roundTrip_ofRandomTimers();
};

void TMRDataTest::newTimer_isEmpty()
{
    const TMRData timer;
    QCOMPARE(timer.validate(), false);
    QCOMPARE(timer.fireDay(), 0);
    QCOMPARE(timer.fireTime(), 0);
    QCOMPARE(timer.operation(), 0);
    QVERIFY(timer.address().isNull());
}

void TMRDataTest::fireDayString_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<QString>("text");
    QTest::newRow("no day") << 0 << u"　　　　　　　"_s;
    QTest::newRow("every day") << 127 << u"日月火水木金土"_s;
    QTest::newRow("Monday and Friday") << 34 << u"　月　　　金　"_s;
    QTest::newRow("Sunday") << 1 << u"日　　　　　　"_s;
    QTest::newRow("Saturday") << 64 << u"　　　　　　土"_s;
    QTest::newRow("bits beyond the week") << 128 + 2 << u"　月　　　　　"_s;
    QTest::newRow("all bits") << -1 << u"日月火水木金土"_s;
}

void TMRDataTest::fireDayString()
{
    QFETCH(int, days);
    TMRData timer;
    timer.setFireDay(days);
    QTEST(timer.fireDayString(), "text");
}

void TMRDataTest::fireTimeString_data()
{
    QTest::addColumn<int>("minute");
    QTest::addColumn<QString>("text");
    QTest::newRow("midnight") << 0 << u"00:00"_s;
    QTest::newRow("half past eight") << 510 << u"08:30"_s;
    QTest::newRow("the last minute") << 1439 << u"23:59"_s;
    QTest::newRow("hour 25") << 1500 << u"25:00"_s;
    QTest::newRow("hour 100") << 6005 << u"100:05"_s;
    QTest::newRow("negative") << -70 << u"-1:-10"_s;
}

void TMRDataTest::fireTimeString()
{
    QFETCH(int, minute);
    TMRData timer;
    timer.setFireTime(minute);
    QTEST(timer.fireTimeString(), "text");
}

void TMRDataTest::operationString_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0 << u"何もしない"_s;
    QTest::newRow("start") << 1 << u"表示開始"_s;
    QTest::newRow("stop") << 2 << u"表示停止"_s;
    QTest::newRow("unknown") << 3 << u"何もしない"_s;
    QTest::newRow("negative") << -1 << u"何もしない"_s;
}

void TMRDataTest::operationString()
{
    QFETCH(int, operation);
    TMRData timer;
    timer.setOperation(operation);
    QTEST(timer.operationString(), "text");
}

void TMRDataTest::isFireNow_data()
{
    QTest::addColumn<bool>("validate");
    QTest::addColumn<int>("days");
    QTest::addColumn<int>("minute");
    QTest::addColumn<int>("second");
    QTest::addColumn<bool>("fires");

    // Now is Monday (bit 1), 08:30 and the second of the row.
    QTest::newRow("its minute") << true << 34 << 510 << 0 << true;
    QTest::newRow("seconds do not count") << true << 34 << 510 << 59 << true;
    QTest::newRow("disabled") << false << 34 << 510 << 0 << false;
    QTest::newRow("another day") << true << 32 << 510 << 0 << false;
    QTest::newRow("no day") << true << 0 << 510 << 0 << false;
    QTest::newRow("the minute before") << true << 127 << 509 << 0 << false;
    QTest::newRow("the minute after") << true << 127 << 511 << 0 << false;
    QTest::newRow("a day later") << true << 127 << 510 + 1440 << 0 << false;
    QTest::newRow("a negative minute") << true << 127 << -510 << 0 << false;
}

void TMRDataTest::isFireNow()
{
    QFETCH(bool, validate);
    QFETCH(int, days);
    QFETCH(int, minute);
    QFETCH(int, second);

    TMRData timer;
    timer.setValidate(validate);
    timer.setFireDay(days);
    timer.setFireTime(minute);
    QTEST(timer.isFireNow({2026, 1, 5, 8, 30, second, 1}), "fires");
}

void TMRDataTest::dictionary_hasItsKeysInOrder()
{
    QStringList keys;
    const PropertyDictionary dictionary = toDictionary(TMRData());
    for (const PropertyEntry &entry : dictionary.entries())
        keys << entry.key;
    QCOMPARE(keys, (QStringList{u"TimerValidate"_s, u"TimerFireDay"_s, u"TimerFireTime"_s,
                                u"TimerOperation"_s, u"TimerAddress"_s}));
}

void TMRDataTest::dictionary_thatIsDamaged()
{
    QVERIFY(timerFrom(PropertyDictionary()).address().isEmpty());

    const TMRData timer = timerFrom({{u"TimerValidate"_s, PropertyArray()},
                                     {u"TimerFireDay"_s, u"34"_s},
                                     {u"TimerFireTime"_s, qint64{1} << 40},
                                     {u"TimerOperation"_s, PropertyDictionary()},
                                     {u"TimerAddress"_s, 5}});
    QCOMPARE(timer.validate(), false);
    QCOMPARE(timer.fireDay(), 34);
    QCOMPARE(timer.fireTime(), std::numeric_limits<std::int32_t>::max());
    QCOMPARE(timer.operation(), 0);
    QCOMPARE(timer.address(), u""_s);
}

void TMRDataTest::roundTrip_ofRandomTimers()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < 1000; ++i) {
        TMRData timer;
        timer.setValidate(random.bounded(2) == 1);
        timer.setFireDay(static_cast<std::int32_t>(random.generate()));
        timer.setFireTime(static_cast<std::int32_t>(random.generate()));
        timer.setOperation(random.bounded(-1, 4));
        timer.setAddress(u"http://example.jp/"_s + QString::number(random.generate()));
        QVERIFY(timerFrom(toDictionary(timer)) == timer);
    }
}

QTEST_APPLESS_MAIN(TMRDataTest)
#include "tmrdata_test.moc"
