// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/LinePace.h"

#include <QTest>

using namespace qovelmor::simboard;
using std::chrono::milliseconds;

class LinePaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freeLine_carriesMuchAtOnce();
    void busyLine_carries1920BytesASecond();
    void lineAfterAPause_startsWithOneByte();
    void threadThatCameLate_catchesUpALittle();
    void nextTime_isWhenTwoBytesMayPass();

private:
    const LinePace::Time start_{std::chrono::seconds(100)};
};

void LinePaceTest::freeLine_carriesMuchAtOnce()
{
    LinePace pace(false, start_);
    for (int turn = 0; turn < 3; ++turn) {
        QVERIFY(pace.allowed(start_) >= 4096);
        pace.took(4096);
    }
}

void LinePaceTest::busyLine_carries1920BytesASecond()
{
    LinePace pace(true, start_);
    std::size_t carried = 0;
    for (int time = 0; time <= 1000; ++time) {
        const std::size_t allowed = pace.allowed(start_ + milliseconds(time));
        pace.took(allowed);
        carried += allowed;
    }
    QVERIFY2(carried >= 1919 && carried <= 1921, qPrintable(QString::number(carried)));
}

void LinePaceTest::lineAfterAPause_startsWithOneByte()
{
    LinePace pace(true, start_);
    pace.took(pace.allowed(start_));
    pace.ranEmpty();
    QCOMPARE(pace.allowed(start_ + milliseconds(500)), std::size_t{1});
    pace.took(1);
    QCOMPARE(pace.allowed(start_ + milliseconds(500)), std::size_t{0});
    QCOMPARE(pace.allowed(start_ + milliseconds(510)), std::size_t{19});
}

void LinePaceTest::threadThatCameLate_catchesUpALittle()
{
    LinePace pace(true, start_);
    pace.took(pace.allowed(start_));
    QCOMPARE(pace.allowed(start_ + milliseconds(20)), std::size_t{38});
    pace.took(38);
    QCOMPARE(pace.allowed(start_ + milliseconds(5000)), std::size_t{64});
}

void LinePaceTest::nextTime_isWhenTwoBytesMayPass()
{
    LinePace pace(true, start_);
    pace.took(pace.allowed(start_));
    QCOMPARE(pace.allowed(pace.nextTime() - std::chrono::microseconds(10)), std::size_t{1});
    QCOMPARE(pace.allowed(pace.nextTime() + std::chrono::microseconds(1)), std::size_t{2});
}

QTEST_APPLESS_MAIN(LinePaceTest)
#include "linepace_test.moc"
