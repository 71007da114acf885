// SPDX-License-Identifier: MIT
#include "tests/board/RunBench.h"

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

using Lines = RunBench::Lines;

class DisplayRunControlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void silentBoard_neverHangsACancel();
    void cancel_whileWaitingForRoom();
    void cancel_whileWaitingForTheEnd();
    void cancel_whenIdleOrPaused_doesNothing();
    void clear_endsTheRunAndBlanksTheBoard();
    void pause_holdsTheRunBetweenPieces();
    void pauseAndRestart_onlyFromTheirStates();
    void showWhilePaused_givesThePausedRunUp();
    void showWhileRunning_waits();
    void blockingShow_returnsAtTheEnd();
    void showThread_showsTheImageHeld();
    void twoCallers_eachShowTheirOwnImage();
    void scrollSetDuringARun_countsFromTheNext();
    void intel_swapsTheWords();
    void cancel_whilePiecesAreRefused();
    void cancel_ofAStandingRun_doesNotCutItOff();
    void pause_ofAStandingRun_endsWithTheRun();
    void pause_whileWaitingForTheEnd_holdsNothing();
};

void DisplayRunControlTest::silentBoard_neverHangsACancel()
{
    RunBench b({}, shortBoardLimits());
    b.live.silent = true;
    b.start(64);
    QTRY_VERIFY(!b.log.lines().isEmpty());
    const auto start = steady_clock::now();
    b.system.cancel();
    QVERIFY(steady_clock::now() - start < 2s);
    QCOMPARE(b.system.showStatus(), 0);
}

void DisplayRunControlTest::cancel_whileWaitingForRoom()
{
    RunBench b;
    b.live.room = 0;
    b.start(32);
    QTRY_VERIFY(b.count("sc_data") >= 2);
    b.system.cancel();
    QCOMPARE(b.system.showStatus(), 0);
    const Lines lines = b.linesSoFar();
    QCOMPARE(lines.last(), "sc_end 0"_ba);
    QVERIFY(!lines.contains(dataLine(16, 31)));
    QVERIFY(b.log.lines().isEmpty());
}

void DisplayRunControlTest::cancel_whileWaitingForTheEnd()
{
    RunBench b;
    b.live.mode = 2;
    b.start(16);
    QTRY_VERIFY(b.count("sc_mode") >= 2);
    b.system.cancel();
    QCOMPARE(b.system.showStatus(), 0);
    QCOMPARE(b.linesSoFar().last(), "sc_mode"_ba); // nothing more was sent
    QVERIFY(b.log.lines().isEmpty());
}

void DisplayRunControlTest::cancel_whenIdleOrPaused_doesNothing()
{
    RunBench b;
    b.system.cancel();
    QCOMPARE(b.system.showStatus(), 0);

    b.live.room = 0;
    b.start(32);
    QTRY_VERIFY(b.count("sc_data") >= 1);
    b.system.pauseScroll();
    b.system.cancel();
    QVERIFY(b.system.isPaused());
    b.system.restartScroll();
    b.system.cancel();
    QCOMPARE(b.system.showStatus(), 0);
}

void DisplayRunControlTest::clear_endsTheRunAndBlanksTheBoard()
{
    RunBench b;
    b.live.mode = 2;
    b.start(16);
    QTRY_VERIFY(b.count("sc_mode") >= 1);
    b.system.clear();
    QVERIFY(!b.system.isRunning());
    const Lines lines = b.linesSoFar();
    QCOMPARE(lines.last(2), (Lines{"sc_clear", "lm_clear"}));
}

void DisplayRunControlTest::pause_holdsTheRunBetweenPieces()
{
    RunBench b;
    b.live.room = 0;
    b.start(48);
    QTRY_VERIFY(b.count("sc_data") >= 1);
    b.system.pauseScroll();
    QVERIFY(b.system.isPaused());
    QVERIFY(!b.system.isRunning());
    b.live.room = 256;
    b.far.takeLines();
    QTRY_VERIFY(b.count("sc_data") >= 1); // there is room now, so nothing more is asked
    b.linesSoFar();
    std::this_thread::sleep_for(60ms);
    QVERIFY(b.linesSoFar().isEmpty());
    b.system.restartScroll();
    QVERIFY(b.system.isRunning() || b.waitForEnd());
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.far.lines(), (Lines{dataLine(16, 31), "sc_data", dataLine(32, 47), "sc_data",
                                   "sc_end 1", "sc_mode"}));
}

void DisplayRunControlTest::pauseAndRestart_onlyFromTheirStates()
{
    RunBench b;
    b.system.pauseScroll();
    QCOMPARE(b.system.showStatus(), 0);
    b.system.restartScroll();
    QCOMPARE(b.system.showStatus(), 0);
}

void DisplayRunControlTest::showWhilePaused_givesThePausedRunUp()
{
    RunBench b;
    b.live.room = 0;
    b.start(32);
    QTRY_VERIFY(b.count("sc_data") >= 1);
    b.system.pauseScroll();
    b.live.room = 256;
    b.start(2);
    QVERIFY(b.waitForEnd());
    const Lines lines = b.far.lines();
    const auto second = lines.lastIndexOf("sc_scroll");
    QCOMPARE(lines[second - 2], "sc_end 0"_ba); // of the run that was given up
    QCOMPARE(lines.sliced(second - 1),
             (Lines{"sc_clear", "sc_scroll", dataLine(0, 1), "sc_data", "sc_end 1", "sc_mode"}));
}

void DisplayRunControlTest::showWhileRunning_waits()
{
    RunBench b;
    b.live.mode = 2;
    b.start(16);
    QTRY_VERIFY(b.count("sc_mode") >= 1);
    std::thread other([&b] { b.start(2); });
    std::this_thread::sleep_for(60ms);
    QVERIFY(!b.far.lines().contains(dataLine(0, 1)));
    b.live.mode = 1;
    other.join();
    QVERIFY(b.waitForEnd());
    QVERIFY(b.far.lines().contains(dataLine(0, 1)));
}

void DisplayRunControlTest::blockingShow_returnsAtTheEnd()
{
    RunBench b;
    b.system.setAsync(true);
    b.system.showBitmap(numbered(16));
    QVERIFY(!b.system.isRunning());
    QCOMPARE(b.far.lines().last(), "sc_mode"_ba);
}

void DisplayRunControlTest::showThread_showsTheImageHeld()
{
    RunBench b;
    b.system.setBitmap(numbered(2));
    b.system.showThread();
    QVERIFY(b.far.lines().contains(dataLine(0, 1)));
    QCOMPARE(b.system.showStatus(), 0);

    b.far.takeLines();
    b.system.setAsync(true);
    b.system.show();
    QVERIFY(b.far.lines().contains(dataLine(0, 1)));
}

void DisplayRunControlTest::twoCallers_eachShowTheirOwnImage()
{
    RunBench b;
    b.system.setAsync(true);
    std::vector<std::thread> threads;
    for (int columns = 1; columns <= 6; ++columns)
        threads.emplace_back([&b, columns] { b.start(columns); });
    for (std::thread &thread : threads)
        thread.join();
    for (int columns = 1; columns <= 6; ++columns)
        QCOMPARE(b.count(dataLine(0, columns - 1)), 1);
    QCOMPARE(b.count("sc_scroll"), 6);
}

void DisplayRunControlTest::scrollSetDuringARun_countsFromTheNext()
{
    RunBench b;
    b.start(2);
    b.system.setScroll(false);
    QVERIFY(b.waitForEnd());
    QVERIFY(b.far.lines().contains("sc_scroll"));
    b.start(2);
    QVERIFY(b.waitForEnd());
    QVERIFY(b.linesSoFar().contains("sc_stop"));
}

void DisplayRunControlTest::intel_swapsTheWords()
{
    RunBench b;
    const bool swaps = b.system.intel();
    QCOMPARE(b.system.dataWithBitmap(*numbered(1)), "\x00\x01"_ba);
    b.system.setIntel(!swaps);
    QCOMPARE(b.system.dataWithBitmap(*numbered(1)), "\x01\x00"_ba);
    b.start(1);
    QVERIFY(b.waitForEnd());
    QVERIFY(b.far.lines().contains("sc_data 0100 "));
}

void DisplayRunControlTest::cancel_whilePiecesAreRefused()
{
    RunBench b;
    b.live.taken = -1;
    b.start(32);
    QTRY_VERIFY(b.count(dataLine(0, 15)) >= 2);
    b.system.cancel();
    QCOMPARE(b.system.showStatus(), 0);
    const Lines lines = b.linesSoFar();
    QCOMPARE(lines.last(), "sc_end 0"_ba);
    QCOMPARE(lines.count("sc_end 0"), 1);
}

// A standing run does not look at its state: what is asked meanwhile counts when it is over.
void DisplayRunControlTest::cancel_ofAStandingRun_doesNotCutItOff()
{
    RunBench b({}, withRunLimits(shortBoardLimits().run));
    b.system.setScroll(false);
    b.live.taken = -1;
    b.start(16);
    QTRY_VERIFY(b.count(dataLine(0, 15)) >= 1);
    b.system.cancel();
    QCOMPARE(b.system.showStatus(), 0);
    QVERIFY(b.log.lines().contains(u"watch VelmorSystem:showThread 4"_s)); // tried to its end
    QCOMPARE(b.linesSoFar().last(), "sc_show"_ba);
}

void DisplayRunControlTest::pause_ofAStandingRun_endsWithTheRun()
{
    RunBench b;
    b.system.setScroll(false);
    b.live.taken = -1;
    b.start(16);
    QTRY_VERIFY(b.count(dataLine(0, 15)) >= 1);
    b.system.pauseScroll();
    QVERIFY(b.system.isPaused());
    b.live.taken = 0;
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.linesSoFar().last(), "sc_show"_ba);
}

// All pieces are on the board then, and the board is not asked to stop.
void DisplayRunControlTest::pause_whileWaitingForTheEnd_holdsNothing()
{
    RunBench b;
    b.live.mode = 2;
    b.start(16);
    QTRY_VERIFY(b.count("sc_mode") >= 1);
    b.system.pauseScroll();
    QVERIFY(b.system.isPaused());
    const int asked = b.count("sc_mode");
    QTRY_VERIFY(b.count("sc_mode") > asked);
    b.live.mode = 1;
    QVERIFY(b.waitForEnd());
    QVERIFY(b.log.lines().isEmpty());
}

QTEST_GUILESS_MAIN(DisplayRunControlTest)
#include "displayruncontrol_test.moc"
