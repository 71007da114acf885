// SPDX-License-Identifier: MIT
#include "platform/QueueMainThread.h"
#include "platform/SystemClock.h"
#include "platform/Worker.h"

#include <QTest>

using namespace qovelmor;
using namespace std::chrono_literals;

class SystemClockTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sleep_lastsAtLeastItsTime()
    {
        SystemClock clock;
        const auto begin = clock.steadyNow();
        QVERIFY(clock.sleepFor(20ms));
        QVERIFY(clock.steadyNow() - begin >= 20ms);
        QVERIFY(clock.sleepUntil(begin));
        QVERIFY(clock.sleepFor(-1h));
    }

    void calendar_isTheSystems()
    {
        const SystemClock clock;
        const auto before = std::chrono::system_clock::now();
        const auto now = clock.calendarNow();
        QVERIFY(before <= now && now <= std::chrono::system_clock::now());
    }

    void endOfSleeps_endsAWaitOfAnotherThread()
    {
        SystemClock clock;
        Worker sleeper(clock);
        std::atomic<bool> isSleeping = false;
        bool wasEnded = false;
        sleeper.start([&] {
            isSleeping = true;
            wasEnded = !clock.sleepFor(1h);
        });
        while (!isSleeping)
            std::this_thread::yield();
        clock.endSleeps();
        sleeper.join();
        QVERIFY(wasEnded);
        QVERIFY(!clock.sleepFor(1h));
        QVERIFY(clock.sleepsEnded());
    }

    // Time-outs must not jump with a calendar that is set.
    void steadyTime_isNotTheCalendars()
    {
        const SystemClock clock;
        const auto before = std::chrono::steady_clock::now();
        const auto now = clock.steadyNow();
        QVERIFY(before <= now && now <= std::chrono::steady_clock::now());
    }

    void mainThread_runsPostedCallsWhileItSleeps()
    {
        QueueMainThread mainThread;
        SystemClock clock(&mainThread);
        bool wasRun = false;
        mainThread.post([&] { wasRun = true; });
        const auto begin = clock.steadyNow();
        QVERIFY(clock.sleepFor(30ms));
        QVERIFY(clock.steadyNow() - begin >= 30ms); // a call does not end the sleep
        QVERIFY(wasRun);
    }

    void mainThread_isWokenByTheEndOfSleeps()
    {
        QueueMainThread mainThread;
        SystemClock clock(&mainThread);
        Worker quitter(clock);
        quitter.start([&] { clock.endSleeps(); });
        QVERIFY(!clock.sleepFor(1h));
    }

    void otherThreads_doNotPump()
    {
        QueueMainThread mainThread;
        SystemClock clock(&mainThread);
        bool wasRun = false;
        mainThread.post([&] { wasRun = true; });
        Worker worker(clock);
        worker.start([&] { clock.sleepFor(5ms); });
        worker.join();
        QVERIFY(!wasRun);
        QCOMPARE(mainThread.drain(), 1);
    }
};

QTEST_APPLESS_MAIN(SystemClockTest)
#include "systemclock_test.moc"
