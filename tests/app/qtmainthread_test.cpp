// SPDX-License-Identifier: MIT
#include "app/QtMainThread.h"
#include "platform/ChangeNotice.h"
#include "platform/SystemClock.h"
#include "platform/views/AnswerableWindow.h"

#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <thread>

using namespace qovelmor;
using namespace std::chrono_literals;

class QtMainThreadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void postedCallsRunOnTheMainThreadInOrder();
    void pumpRunsPostedCalls();
    void pumpWithinAPostedCall_runsThoseBehindIt();
    void pumpEatsWhatTheUserDoes();
    void pumpLetsAnAnswerableWindowBeAnswered();
    void outsideThePumpInputArrives();
    void sleepOfTheMainThreadRunsPostedCallsUntilItsDeadline();
    void sleepOfTheMainThreadEndsWithTheProgram();
    void manyChangesArePostedOnce();
};

void QtMainThreadTest::postedCallsRunOnTheMainThreadInOrder()
{
    QtMainThread mainThread;
    std::vector<int> order;
    bool onMain = false;
    std::thread worker([&] {
        QVERIFY(!mainThread.isCurrent());
        mainThread.post([&] {
            onMain = mainThread.isCurrent();
            order.push_back(1);
        });
        mainThread.post([&] { order.push_back(2); });
    });
    worker.join();
    QTRY_COMPARE(order, (std::vector<int>{1, 2}));
    QVERIFY(onMain);
}

void QtMainThreadTest::pumpRunsPostedCalls()
{
    QtMainThread mainThread;
    bool called = false;
    mainThread.post([&] { called = true; });
    mainThread.pump(0ms);
    QVERIFY(called);
}

// What the system says to us while a command waits stands in the same queue as the command.
void QtMainThreadTest::pumpWithinAPostedCall_runsThoseBehindIt()
{
    QtMainThread mainThread;
    bool isDone = false;
    bool isSecondRun = false;
    mainThread.post([&] {
        for (int turn = 0; turn < 10; ++turn)
            mainThread.pump(5ms);
        QVERIFY(isSecondRun);
        isDone = true;
    });
    mainThread.post([&] { isSecondRun = true; });
    QTRY_VERIFY(isDone);
}

void QtMainThreadTest::pumpEatsWhatTheUserDoes()
{
    QtMainThread mainThread;
    QPushButton button;
    int clicks = 0;
    connect(&button, &QPushButton::clicked, &button, [&] { ++clicks; });
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    mainThread.post([&] { QTest::mouseClick(&button, Qt::LeftButton); });
    mainThread.post([&] { QTest::keyClick(&button, Qt::Key_Space); });
    mainThread.post([&] { button.close(); });
    mainThread.pump(50ms);
    mainThread.pump(0ms);
    QCOMPARE(clicks, 0);
    QVERIFY(button.isVisible());
    QCoreApplication::processEvents(); // nor was it kept for later
    QCOMPARE(clicks, 0);
}

void QtMainThreadTest::pumpLetsAnAnswerableWindowBeAnswered()
{
    QtMainThread mainThread;
    QWidget window;
    QPushButton button(&window);
    int clicks = 0;
    connect(&button, &QPushButton::clicked, &button, [&] { ++clicks; });
    window.show();
    makeAnswerable(window);
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    mainThread.post([&] { QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {5, 5}); });
    mainThread.post([&] { QTest::keyClick(&button, Qt::Key_Space); });
    mainThread.pump(50ms);
    mainThread.pump(0ms);
    QCOMPARE(clicks, 2);
}

void QtMainThreadTest::outsideThePumpInputArrives()
{
    QtMainThread mainThread;
    QPushButton button;
    int clicks = 0;
    connect(&button, &QPushButton::clicked, &button, [&] { ++clicks; });
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicks, 1);
}

void QtMainThreadTest::sleepOfTheMainThreadRunsPostedCallsUntilItsDeadline()
{
    QtMainThread mainThread;
    SystemClock clock(&mainThread);
    int calls = 0;
    std::thread worker([&] {
        for (int i = 0; i < 5; ++i) {
            std::this_thread::sleep_for(5ms);
            mainThread.post([&] { ++calls; });
        }
    });
    const auto begin = clock.steadyNow();
    QVERIFY(clock.sleepFor(150ms));
    QVERIFY(clock.steadyNow() - begin >= 150ms);
    worker.join();
    QCOMPARE(calls, 5);
}

void QtMainThreadTest::sleepOfTheMainThreadEndsWithTheProgram()
{
    QtMainThread mainThread;
    SystemClock clock(&mainThread);
    mainThread.post([&] { clock.endSleeps(); });
    const auto begin = clock.steadyNow();
    QVERIFY(!clock.sleepFor(1h));
    QVERIFY(clock.steadyNow() - begin < 10s);
    QVERIFY(!clock.sleepFor(1h));
}

void QtMainThreadTest::manyChangesArePostedOnce()
{
    QtMainThread mainThread;
    ChangeNotice notice(mainThread);
    int calls = 0;
    notice.listen([&] { ++calls; });
    std::thread worker([&] {
        for (int i = 0; i < 1000; ++i)
            notice.changed();
    });
    worker.join();
    QTRY_COMPARE(calls, 1);
    notice.changed();
    QTRY_COMPARE(calls, 2);
}

QTEST_MAIN(QtMainThreadTest)
#include "qtmainthread_test.moc"
