// SPDX-License-Identifier: MIT
#include "WholeProgram.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
const auto feedA = u"http://town/a"_s;
} // namespace

/// What comes from outside, at a busy moment too: sleep, quitting, commands, changes of the list.
class VelmorRSSBusyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sleepAndWake_pauseTheDisplay();
    void wakeWithoutDisplayBefore_startsNothing();
    void quit_stopsTheDisplayAndClearsTheBoard();
    void quitTwice_terminatesOnce();
    void commandsWhileBusy_areRefused();
    void workForLater_waitsForTheEndOfARead();
    void listChange_letsNothingElseBegin();
    void longTitleLine_holdsUpNeitherReadNorStop_data();
    void longTitleLine_holdsUpNeitherReadNorStop();
};

void VelmorRSSBusyTest::sleepAndWake_pauseTheDisplay()
{
    WholeProgram p(true);
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(500ms);
    const int clears = p.board->clears;
    p.control.willSleepHandle();
    QVERIFY(!p.control.isDisplayActive());
    QVERIFY(p.board->clears > clears);
    p.clock.suspendFor(8h);
    p.control.didWakeHandle();
    QVERIFY(p.control.isDisplayActive());
}

void VelmorRSSBusyTest::wakeWithoutDisplayBefore_startsNothing()
{
    WholeProgram p;
    p.launch();
    p.control.willSleepHandle();
    p.control.didWakeHandle();
    QVERIFY(!p.control.isDisplayActive());
}

void VelmorRSSBusyTest::quit_stopsTheDisplayAndClearsTheBoard()
{
    WholeProgram p(true);
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(500ms);
    const auto asked = p.clock.steadyNow();
    p.control.actQuit();
    QCOMPARE(p.window.terminations, 1);
    QCOMPARE(p.clock.steadyNow(), asked); // no sleep was slept
    QVERIFY(p.board->clears > 0);
    QVERIFY(!p.control.isDisplayActive());
    p.control.applicationWillTerminate();
}

void VelmorRSSBusyTest::quitTwice_terminatesOnce()
{
    WholeProgram p;
    p.launch();
    p.control.actQuit();
    p.control.actQuit();
    p.mainThread.drain();
    QCOMPARE(p.window.terminations, 1);
}

// A second command cannot start in the middle of a read on the main thread; what cannot be refused
// is done afterwards.
void VelmorRSSBusyTest::commandsWhileBusy_areRefused()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.window.mainWindowVisible = false;
    bool tried = false;
    p.msgList.changeNotice().listen([&] {
        if (!p.control.isBusy() || std::exchange(tried, true))
            return;
        const int loads = p.loader.loads;
        p.control.actGetRSS();
        p.control.actStartDisp();
        p.control.actDrawerButton();
        p.control.secondLaunch();
        p.control.willSleepHandle();
        p.control.didWakeHandle();
        QCOMPARE(p.loader.loads.load(), loads);
        QVERIFY(!p.control.isDisplayActive());
        QVERIFY(!p.window.mainWindowVisible);
    });
    // The simulated clock does not pump: the notice is run from the loader's place in the read.
    p.loader.onLoad = [&] { p.mainThread.drain(); };
    p.control.actGetRSS();
    p.loader.onLoad = {};
    QVERIFY(tried);
    p.mainThread.drain();
    QVERIFY(p.window.mainWindowVisible);
}

void VelmorRSSBusyTest::workForLater_waitsForTheEndOfARead()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    QStringList done;
    p.loader.onLoad = [&] {
        p.control.whenIdle([&] { done << u"first"_s; });
        p.control.whenIdle([&] { done << u"second"_s; });
        p.mainThread.drain(); // what is posted runs during a read, and must not do this
        QVERIFY(done.isEmpty());
    };
    p.control.actGetRSS();
    p.loader.onLoad = {};
    QVERIFY(done.isEmpty());
    p.mainThread.drain();
    QCOMPARE(done, (QStringList{u"first"_s, u"second"_s}));
    p.control.whenIdle([&] { done << u"at once"_s; });
    p.mainThread.drain();
    QCOMPARE(done.size(), 3);
}

// A timer or a command in the middle of an import would read and show a list that is about to
// change.
void VelmorRSSBusyTest::listChange_letsNothingElseBegin()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    int during = 0;
    p.loader.onLoad = [&] {
        const int loads = p.loader.loads;
        QVERIFY(p.control.isBusy());
        p.control.actGetRSS();
        QCOMPARE(p.loader.loads.load(), loads);
        ++during;
    };
    p.rssList.appendAddresses({u"http://town/n"_s});
    p.loader.onLoad = {};
    QCOMPARE(during, 1);
    QVERIFY(!p.control.isBusy());
}

void VelmorRSSBusyTest::longTitleLine_holdsUpNeitherReadNorStop_data()
{
    QTest::addColumn<bool>("onBoard");
    QTest::newRow("board") << true;
    QTest::newRow("screen") << false;
}

// Nothing to read: one read follows the other, while the title line of the first still runs.
void VelmorRSSBusyTest::longTitleLine_holdsUpNeitherReadNorStop()
{
    QFETCH(bool, onBoard);
    WholeProgram p(onBoard);
    p.addFeed(feedA, {});
    p.launch();
    p.msgList.setDispInfo(true);
    p.screen.stepsOfALine = 300;
    if (onBoard)
        p.board->setStepsOfALine(300);
    p.reuseAges.clear();
    p.control.actStartDisp();
    p.sleep(10s);
    const auto reads = p.reuseAges.size();
    QVERIFY2(reads >= 5, qPrintable(QString::number(reads)));
    const auto asked = p.clock.steadyNow();
    p.control.actStopDisp();
    QVERIFY(p.clock.steadyNow() - asked <= 2s); // the read under way is waited for
    const QStringList shown = onBoard ? p.board->takeShown() : p.screen.takeShown();
    QCOMPARE(shown.size(), 1);
}

QTEST_GUILESS_MAIN(VelmorRSSBusyTest)
#include "velmorrssbusy_test.moc"
