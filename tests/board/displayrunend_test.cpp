// SPDX-License-Identifier: MIT
#include "tests/board/RunBench.h"
#include "tests/support/NoPrivileges.h"

#include <random>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

class DisplayRunEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lostPort_endsARun_data();
    void lostPort_endsARun();
    void closedPort_holdsTheRun();
    void endOfTheProgram_endsTheRun_data();
    void endOfTheProgram_endsTheRun();
    void runThatGetsNoThread_hasEnded();
    void destruction_endsARun();
    void randomCommands_leaveNothingBehind();
};

void DisplayRunEndTest::lostPort_endsARun_data()
{
    QTest::addColumn<QString>("when");
    QTest::newRow("while it waits for room") << u"room"_s;
    QTest::newRow("while it waits for the end") << u"end"_s;
    QTest::newRow("while it is paused") << u"paused"_s;
    QTest::newRow("while a standing image is refused") << u"standing"_s;
}

void DisplayRunEndTest::lostPort_endsARun()
{
    QFETCH(QString, when);
    RunBench b({}, shortBoardLimits());
    b.live.room = when == u"end"_s ? 256 : 0;
    b.live.mode = 2;
    b.live.taken = when == u"standing"_s ? -1 : 256;
    b.system.setScroll(when != u"standing"_s);
    b.start(32);
    QTRY_VERIFY(b.count(when == u"end"_s ? "sc_mode" : dataLine(0, 15)) >= 1);
    if (when == u"paused"_s)
        b.system.pauseScroll();
    const StdoutCapture quiet;
    b.far.hangUp();
    if (when == u"paused"_s) { // a paused run asks nothing: somebody else finds out
        QTest::qWait(60);
        b.system.sc_mode();
    }
    QVERIFY(b.waitForEnd());
    QVERIFY(b.system.isLost());
    QCOMPARE(b.log.lines().filter(u"lost "_s).size(), 1);
    QCOMPARE(b.log.lines().filter(u"display stopped"_s).size(), 1);
    const auto start = steady_clock::now();
    b.start(32); // shows nothing, and is no wait
    b.system.clear();
    QCOMPARE(b.system.showStatus(), 0);
    QVERIFY(steady_clock::now() - start < 500ms);
}

void DisplayRunEndTest::closedPort_holdsTheRun()
{
    RunBench b({}, shortBoardLimits());
    b.live.room = 0;
    b.start(32);
    QTRY_VERIFY(b.count("sc_data") >= 1);
    StdoutCapture quiet;
    QVERIFY(!b.system.openSerialPortWithNumber(7)); // a port that does not exist was chosen
    b.log.takeLines();
    std::this_thread::sleep_for(400ms);
    QVERIFY(b.log.lines().size() <= 1); // the wait for room that was under way
    QVERIFY(b.system.isRunning());
    b.live.room = 256;
    QVERIFY(b.system.openSerialPortWithNumber(0));
    QVERIFY(b.waitForEnd());
    QVERIFY(b.far.lines().contains(dataLine(16, 31)));
}

void DisplayRunEndTest::endOfTheProgram_endsTheRun_data()
{
    QTest::addColumn<bool>("pausedRun");
    QTest::newRow("running") << false;
    QTest::newRow("paused") << true;
}

void DisplayRunEndTest::endOfTheProgram_endsTheRun()
{
    QFETCH(bool, pausedRun);
    RunBench b({}, shortBoardLimits());
    b.live.room = 0;
    b.start(32);
    QTRY_VERIFY(b.count("sc_data") >= 1);
    if (pausedRun)
        b.system.pauseScroll();
    b.clock.endSleeps();
    const auto start = steady_clock::now();
    b.system.clear();
    QVERIFY(b.waitForEnd());
    QVERIFY(steady_clock::now() - start < 2s);
    QTRY_VERIFY(b.far.lines().contains("sc_end 0"));
}

void DisplayRunEndTest::runThatGetsNoThread_hasEnded()
{
    RunBench b;
    {
        const NoMoreThreads noMoreThreads;
        b.start(16);
    }
    QCOMPARE(b.system.showStatus(), 0);
    b.start(16);
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.count("sc_scroll"), 1);
}

void DisplayRunEndTest::destruction_endsARun()
{
    for (const bool pausedRun : {false, true}) {
        RunBench b;
        b.live.room = 0;
        {
            DisplayRun run(b.system, b.clock, shortBoardLimits().run);
            run.setScroll(true);
            run.setAsync(false);
            run.showBitmap(numbered(32));
            QTRY_VERIFY(b.count("sc_data") >= 1);
            if (pausedRun)
                run.pauseScroll();
        }
        QVERIFY(b.linesSoFar().contains("sc_end 0"));
    }
}

void DisplayRunEndTest::randomCommands_leaveNothingBehind()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    RunBench b({}, withRunLimits(shortBoardLimits().run));
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 3; ++t) {
        threads.emplace_back([&b, seed, t] {
            std::mt19937 random(seed + t);
            for (int i = 0; i < 40; ++i) {
                switch (random() % 7) {
                case 0:
                    b.start(20);
                    break;
                case 1:
                    b.system.cancel();
                    break;
                case 2:
                    b.system.pauseScroll();
                    break;
                case 3:
                    b.system.restartScroll();
                    break;
                case 4:
                    b.system.clear();
                    break;
                case 5:
                    b.live.room = random() % 2 == 0 ? 0 : 256;
                    break;
                case 6:
                    b.system.speed();
                    break;
                }
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    b.live.room = 256;
    b.system.restartScroll();
    b.system.cancel();
    b.system.restartScroll();
    QVERIFY(b.waitForEnd());
    QVERIFY(!b.system.isLost());
}

QTEST_GUILESS_MAIN(DisplayRunEndTest)
#include "displayrunend_test.moc"
