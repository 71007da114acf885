// SPDX-License-Identifier: MIT
#include "platform/ChangeNotice.h"
#include "platform/QueueMainThread.h"
#include "platform/SystemClock.h"
#include "platform/Worker.h"

#include <QTest>

using namespace qovelmor;
using namespace std::chrono_literals;

// ChangeNotice and the plain queue under it.
class ChangeNoticeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void queue_runsCallsInTheOrderOfPosting()
    {
        QueueMainThread mainThread;
        std::vector<int> order;
        mainThread.post([&] {
            order.push_back(1);
            mainThread.post([&] { order.push_back(3); }); // posted while running: also run
        });
        mainThread.post([&] { order.push_back(2); });
        QCOMPARE(mainThread.drain(), 3);
        QCOMPARE(order, (std::vector<int>{1, 2, 3}));
        QCOMPARE(mainThread.drain(), 0);
    }

    void queue_belongsToTheThreadThatMadeIt()
    {
        QueueMainThread mainThread;
        QVERIFY(mainThread.isCurrent());
        SystemClock clock;
        Worker worker(clock);
        bool wasCurrent = true;
        worker.start([&] { wasCurrent = mainThread.isCurrent(); });
        worker.join();
        QVERIFY(!wasCurrent);
    }

    void pump_endsWithTheFirstCallOrTheLimit()
    {
        QueueMainThread mainThread;
        SystemClock clock;
        const auto begin = clock.steadyNow();
        mainThread.pump(10ms);
        QVERIFY(clock.steadyNow() - begin >= 9ms);
        Worker worker(clock);
        bool wasRun = false;
        worker.start([&] { mainThread.post([&] { wasRun = true; }); });
        mainThread.pump(1h);
        QVERIFY(wasRun);
    }

    void manyChanges_areOneNotice()
    {
        QueueMainThread mainThread;
        ChangeNotice notice(mainThread);
        int looks = 0;
        notice.listen([&] { ++looks; });
        QCOMPARE(mainThread.drain(), 0);
        for (int i = 0; i < 1000; ++i)
            notice.changed();
        QCOMPARE(mainThread.drain(), 1);
        QCOMPARE(looks, 1);
        notice.changed();
        QCOMPARE(mainThread.drain(), 1);
        QCOMPARE(looks, 2);
    }

    void changeDuringTheNotice_isNotLost()
    {
        QueueMainThread mainThread;
        ChangeNotice notice(mainThread);
        int looks = 0;
        notice.listen([&] {
            if (++looks == 1)
                notice.changed();
        });
        notice.changed();
        mainThread.drain();
        QCOMPARE(looks, 2);
    }

    void everyListener_isTold()
    {
        QueueMainThread mainThread;
        ChangeNotice notice(mainThread);
        std::vector<int> told;
        notice.listen([&] { told.push_back(1); });
        notice.listen([&] { told.push_back(2); });
        notice.changed();
        mainThread.drain();
        QCOMPARE(told, (std::vector<int>{1, 2}));
    }

    void noticeThatIsGone_tellsNobody()
    {
        QueueMainThread mainThread;
        int looks = 0;
        {
            ChangeNotice notice(mainThread);
            notice.listen([&] { ++looks; });
            notice.changed();
        }
        QCOMPARE(mainThread.drain(), 1);
        QCOMPARE(looks, 0);
    }

    // What a worker wrote before changed() is seen by the look that follows, whichever notice
    // brings it.
    void lastChangeOfAWorker_isSeen()
    {
        QueueMainThread mainThread;
        SystemClock clock;
        for (int round = 0; round < 20; ++round) {
            ChangeNotice notice(mainThread);
            std::atomic<int> state = 0;
            int seen = 0;
            notice.listen([&] { seen = state.load(); });
            Worker worker(clock);
            constexpr int changes = 1000;
            worker.start([&] {
                for (int i = 1; i <= changes; ++i) {
                    state = i;
                    notice.changed();
                }
            });
            while (seen < changes)
                mainThread.pump(50ms);
            worker.join();
            QCOMPARE(seen, changes);
        }
    }
};

QTEST_APPLESS_MAIN(ChangeNoticeTest)
#include "changenotice_test.moc"
