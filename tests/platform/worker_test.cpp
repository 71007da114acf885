// SPDX-License-Identifier: MIT
#include "platform/SimulatedClock.h"
#include "platform/SystemClock.h"
#include "platform/Worker.h"
#include "tests/support/NoPrivileges.h"

#include <QTest>

#include <atomic>

using namespace qovelmor;
using namespace std::chrono_literals;

class WorkerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void body_runsOnAThreadOfItsOwnAndIsJoined()
    {
        SystemClock clock;
        Worker worker(clock);
        QVERIFY(!worker.isStarted());
        worker.join(); // nothing to wait for
        bool wasCurrent = false;
        worker.start([&] { wasCurrent = worker.isCurrent(); });
        QVERIFY(worker.isStarted());
        QVERIFY(!worker.isCurrent());
        worker.join();
        QVERIFY(wasCurrent); // written before the join, so no race
        QVERIFY(!worker.isStarted());
    }

    void start_whenTheSystemHasNoThread_givesNo()
    {
        SimulatedClock clock({});
        Worker worker(clock);
        bool isStarted = true;
        {
            const NoMoreThreads noMoreThreads;
            isStarted = worker.start([] {});
        }
        QVERIFY(!isStarted);
        QVERIFY(!worker.isStarted());
        QCOMPARE(clock.runningThreads(), 1); // simulated time goes on
        bool hasRun = false;
        QVERIFY(worker.start([&] { hasRun = true; }));
        worker.join();
        QVERIFY(hasRun);
    }

    void secondStart_waitsForTheFirst()
    {
        SimulatedClock clock({});
        Worker worker(clock);
        std::vector<int> order;
        worker.start([&] {
            clock.sleepFor(1h);
            order.push_back(1);
        });
        worker.start([&] { order.push_back(2); });
        worker.join();
        QCOMPARE(order, (std::vector<int>{1, 2}));
    }

    void destructor_joins()
    {
        SimulatedClock clock({});
        bool hasRun = false;
        {
            Worker worker(clock);
            worker.start([&] {
                clock.sleepFor(24h);
                hasRun = true;
            });
        }
        QVERIFY(hasRun);
        QCOMPARE(clock.runningThreads(), 1);
    }

    // Whoever joins goes on at the time at which the joined thread ended, although others sleep.
    void joiner_goesOnAtTheTimeOfTheEnd()
    {
        for (int round = 0; round < 200; ++round) {
            SimulatedClock clock({});
            const auto start = clock.steadyNow();
            Worker sleeper(clock);
            Worker brief(clock);
            sleeper.start([&] { clock.sleepFor(1h); });
            brief.start([&] { clock.sleepFor(1s); });
            brief.join();
            QVERIFY(clock.steadyNow() - start == 1s);
            sleeper.join();
            QVERIFY(clock.steadyNow() - start == 1h);
        }
    }

    void joinAfterTheEnd_keepsTheCount()
    {
        SimulatedClock clock({});
        Worker worker(clock);
        std::atomic<bool> isNearTheEnd = false;
        worker.start([&] { isNearTheEnd = true; });
        while (!isNearTheEnd)
            std::this_thread::yield();
        worker.join();
        QCOMPARE(clock.runningThreads(), 1);
    }
};

QTEST_APPLESS_MAIN(WorkerTest)
#include "worker_test.moc"
