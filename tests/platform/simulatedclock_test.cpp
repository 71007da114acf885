// SPDX-License-Identifier: MIT
#include "platform/SimulatedClock.h"
#include "platform/Worker.h"

#include <QElapsedTimer>
#include <QTest>

#include <mutex>

using namespace qovelmor;
using namespace std::chrono_literals;

namespace {
const Clock::CalendarTime start = std::chrono::system_clock::from_time_t(1'767'193'200);
}

class SimulatedClockTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timeMovesByTheSleepAlone()
    {
        SimulatedClock clock(start);
        QVERIFY(clock.calendarNow() == start);
        const auto steady = clock.steadyNow();
        QVERIFY(clock.steadyNow() == steady);
        QVERIFY(clock.sleepFor(100ms));
        QVERIFY(clock.steadyNow() == steady + 100ms);
        QVERIFY(clock.calendarNow() == start + 100ms);
    }

    void deadlineInThePast_returnsAtOnce()
    {
        SimulatedClock clock(start);
        const auto steady = clock.steadyNow();
        QVERIFY(clock.sleepUntil(steady));
        QVERIFY(clock.sleepUntil(steady - 1h));
        QVERIFY(clock.steadyNow() == steady);
    }

    void weeks_passInNoTime()
    {
        SimulatedClock clock(start);
        QElapsedTimer timer;
        timer.start();
        for (int minute = 0; minute < 6 * 7 * 24 * 60; ++minute)
            clock.sleepFor(1min);
        QVERIFY(clock.calendarNow() == start + 24h * 42);
        QVERIFY(timer.elapsed() < 5000);
    }

    void sleepers_wakeInTheOrderOfTheirDeadlines()
    {
        for (int round = 0; round < 50; ++round) {
            SimulatedClock clock(start);
            const auto begin = clock.steadyNow();
            std::mutex mutex;
            std::vector<int> order;
            std::vector<std::unique_ptr<Worker>> workers;
            for (const int seconds : {3, 1, 4, 2}) {
                workers.push_back(std::make_unique<Worker>(clock));
                workers.back()->start([&, seconds] {
                    clock.sleepUntil(begin + std::chrono::seconds(seconds));
                    const std::lock_guard lock(mutex);
                    order.push_back(seconds);
                });
            }
            workers.clear();
            QCOMPARE(order, (std::vector<int>{1, 2, 3, 4}));
            QVERIFY(clock.steadyNow() == begin + 4s);
        }
    }

    void timeStandsStillWhileAThreadRuns()
    {
        SimulatedClock clock(start);
        const auto begin = clock.steadyNow();
        Worker sleeper(clock);
        std::atomic<bool> isAwake = false;
        sleeper.start([&] {
            clock.sleepFor(1ms);
            isAwake = true;
        });
        // This thread is registered and does not sleep: the other stays asleep however long we
        // look.
        while (clock.runningThreads() > 1)
            std::this_thread::yield();
        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield();
        QVERIFY(!isAwake);
        QVERIFY(clock.steadyNow() == begin);
        sleeper.join();
        QVERIFY(isAwake);
    }

    void calendarThatIsSet_doesNotMoveTheSteadyClock()
    {
        SimulatedClock clock(start);
        const auto steady = clock.steadyNow();
        const auto far = std::chrono::system_clock::from_time_t(2'147'483'648); // January 2038
        clock.setCalendar(far);
        QVERIFY(clock.calendarNow() == far);
        QVERIFY(clock.steadyNow() == steady);
        clock.sleepFor(1s);
        QVERIFY(clock.calendarNow() == far + 1s);
        clock.setCalendar(std::chrono::system_clock::from_time_t(0));
        QVERIFY(clock.calendarNow() == std::chrono::system_clock::from_time_t(0));
        QVERIFY(clock.steadyNow() == steady + 1s);
    }

    void suspend_movesTheCalendarOnly()
    {
        SimulatedClock clock(start);
        const auto steady = clock.steadyNow();
        clock.suspendFor(5 * 24h);
        QVERIFY(clock.calendarNow() == start + 5 * 24h);
        QVERIFY(clock.steadyNow() == steady);
    }

    void endOfSleeps_wakesEverybodyAndRefusesLaterSleeps()
    {
        SimulatedClock clock(start);
        const auto begin = clock.steadyNow();
        Worker sleeper(clock);
        bool wasEnded = false;
        sleeper.start([&] { wasEnded = !clock.sleepFor(1h); });
        while (clock.runningThreads() > 1)
            std::this_thread::yield();
        QVERIFY(!clock.sleepsEnded());
        clock.endSleeps();
        clock.endSleeps(); // a second time does no harm
        sleeper.join();
        QVERIFY(wasEnded);
        QVERIFY(clock.sleepsEnded());
        QVERIFY(!clock.sleepFor(1h));
        QVERIFY(!clock.sleepUntil(begin));
        QVERIFY(clock.steadyNow() == begin);
        QCOMPARE(clock.runningThreads(), 1);
    }
};

QTEST_APPLESS_MAIN(SimulatedClockTest)
#include "simulatedclock_test.moc"
