// SPDX-License-Identifier: MIT
#include "schedule/MinuteRule.h"

#include <QRandomGenerator>
#include <QTest>

#include <set>

using namespace qovelmor;
using namespace std::chrono_literals;

class MinuteRuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void untilNextMinute_data();
    void untilNextMinute();
    void eachMinuteIsTakenOnce();
    void takenMinutes_areASet();
    void memoryOfMinutes_isBounded();
    void early_data();
    void early();
};

namespace {

Clock::CalendarTime at(Clock::Duration sinceEpoch)
{
    return Clock::CalendarTime(sinceEpoch);
}

} // namespace

void MinuteRuleTest::untilNextMinute_data()
{
    QTest::addColumn<qint64>("now");  // microseconds since 1970
    QTest::addColumn<qint64>("wait"); // milliseconds
    QTest::newRow("a whole minute") << qint64{0} << qint64{60000};
    QTest::newRow("a millisecond later") << qint64{1000} << qint64{59999};
    QTest::newRow("a microsecond later, rounded up") << qint64{1} << qint64{60000};
    QTest::newRow("half a minute") << qint64{30'000'000} << qint64{30000};
    QTest::newRow("the last microsecond") << qint64{59'999'999} << qint64{1};
    QTest::newRow("before 1970") << qint64{-1'000'000} << qint64{1000};
    QTest::newRow("after 2038") << qint64{4'000'000'020'000'000} << qint64{60000};
}

void MinuteRuleTest::untilNextMinute()
{
    QFETCH(qint64, now);
    QFETCH(qint64, wait);
    QCOMPARE(qovelmor::untilNextMinute(at(std::chrono::microseconds(now))).count(), wait);
}

void MinuteRuleTest::eachMinuteIsTakenOnce()
{
    MinuteRule rule;
    QVERIFY(rule.takes(at(10min)));
    QVERIFY(!rule.takes(at(10min + 59s)));
    QVERIFY(rule.takes(at(11min)));
    QVERIFY(!rule.takes(at(10min))); // the calendar was set back
    QVERIFY(rule.takes(at(9min)));   // that far back it has not been
    QVERIFY(rule.takes(at(200min))); // minutes may be left out
    QVERIFY(rule.takes(at(100min))); // and come later, when the calendar was wrong
}

void MinuteRuleTest::takenMinutes_areASet()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    for (int round = 0; round < 20; ++round) {
        HandledMinutes handled;
        std::set<int> expected;
        for (int i = 0; i < 300; ++i) {
            const int minute = random.bounded(200);
            QCOMPARE(handled.take(UtcMinute(std::chrono::minutes(minute))),
                     expected.insert(minute).second);
        }
    }
}

// Each gap between handled minutes is remembered; after ten thousand of them the oldest is
// forgotten for the newest, so a program that runs for years does not grow.
void MinuteRuleTest::memoryOfMinutes_isBounded()
{
    const auto evenMinute = [](int number) { return UtcMinute(std::chrono::minutes(2 * number)); };
    HandledMinutes handled;
    for (int i = 0; i < 10'000; ++i)
        QVERIFY(handled.take(evenMinute(i)));
    QVERIFY(!handled.take(evenMinute(0)));
    QVERIFY(handled.take(evenMinute(10'000)));
    QVERIFY(handled.take(evenMinute(0)));
    QVERIFY(!handled.take(evenMinute(10'000)));
}

void MinuteRuleTest::early_data()
{
    QTest::addColumn<qint64>("beforeMinute"); // microseconds
    QTest::addColumn<bool>("isEarly");
    QTest::newRow("on the minute") << qint64{0} << false;
    QTest::newRow("a little early") << qint64{300} << true;
    QTest::newRow("a second early") << qint64{1'000'000} << true;
    QTest::newRow("more: the calendar was set back") << qint64{1'000'001} << false;
    QTest::newRow("late") << qint64{-1} << false;
    QTest::newRow("late by most of a minute") << qint64{-59'500'000} << false;
}

void MinuteRuleTest::early()
{
    QFETCH(qint64, beforeMinute);
    MinuteRule rule;
    rule.arm(at(30s));
    QTEST(rule.isEarly(at(1min - std::chrono::microseconds(beforeMinute))), "isEarly");
}

QTEST_APPLESS_MAIN(MinuteRuleTest)
#include "minuterule_test.moc"
