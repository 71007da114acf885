// SPDX-License-Identifier: MIT
#include "render/VelmorBitmap.h"
#include "tests/board/BoardBench.h"

#include <condition_variable>
#include <random>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

namespace {

using Lines = QList<QByteArray>;

/// An image whose column x carries the word x + 1.
DisplayRun::Image numbered(int columns)
{
    auto image = std::make_shared<VelmorBitmap>(columns);
    for (int x = 0; x < columns; ++x) {
        for (int y = 0; y < 16; ++y) {
            if (((x + 1) >> (15 - y) & 1) != 0)
                image->setBit(x, y);
        }
    }
    return image;
}

/// The line that carries the columns first to last of such an image.
QByteArray dataLine(int first, int last)
{
    QByteArray line("sc_data ");
    for (int x = first; x <= last; ++x)
        line += QByteArray::number(x + 1, 16).rightJustified(4, '0') + ' ';
    return line;
}

/// A board whose room and mode a test changes while a run goes on.
struct LiveBoard
{
    std::atomic<int> room = 256;  ///< answer to the question for room
    std::atomic<int> taken = 256; ///< answer to columns
    std::atomic<int> mode = 1;
    std::atomic<bool> silent = false;

    ScriptedBoard::Script script()
    {
        return [this](const QByteArray &line) -> std::optional<QByteArray> {
            if (silent)
                return std::nullopt;
            const auto number = [](int value) { return "D " + QByteArray::number(value) + "\r\n"; };
            if (line == "sc_data")
                return number(room);
            if (line.startsWith("sc_data "))
                return number(taken);
            if (line == "sc_mode")
                return number(mode);
            return ScriptedBoard::defaultAnswer(line);
        };
    }
};

struct RunBench : BoardBench
{
    explicit RunBench(ScriptedBoard::Manner manner = {}, BoardLimits limits = shortBoardLimits())
        : BoardBench(manner, limits)
    {
        far.setScript(live.script());
        system.setScroll(true);
        system.setAsync(false);
    }
    ~RunBench()
    {
        system.restartScroll();
        system.cancel();
    }

    /// Starts a run on its own thread.
    void start(int columns) { system.showBitmap(numbered(columns)); }
    bool waitForEnd()
    {
        return QTest::qWaitFor([this] { return system.showStatus() == 0; }, 10'000);
    }
    int count(const QByteArray &line) { return static_cast<int>(far.lines().count(line)); }

    LiveBoard live;
};

ScriptedBoard::Manner manner(bool quiet)
{
    return {.kind = quiet ? ScriptedBoard::Kind::Quiet : ScriptedBoard::Kind::Talkative};
}

void boardKinds()
{
    QTest::addColumn<bool>("quiet");
    QTest::newRow("board that says Ok. after every command") << false;
    QTest::newRow("board that answers questions only") << true;
}

} // namespace

class DisplayRunTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scrolling_sequence_data() { boardKinds(); }
    void scrolling_sequence();
    void scrolling_sizes_data();
    void scrolling_sizes();
    void scrolling_onATrueLine();
    void standing_sequence_data() { boardKinds(); }
    void standing_sequence();
    void standing_sizes_data();
    void standing_sizes();
    void refusedPiece_isSentAgain();
    void room_atEachLimit_data();
    void room_atEachLimit();
    void noRoom_clearsAndGoesOn();
    void scrollEnd_waitsForModeOneOrTheSecondZero();
    void scrollEnd_watch();
    void refusedStandingImage_isTriedUntilTheWatch();
    void refusedBufferImage_isTriedUntilTheWatch();
    void bufferImage_isSentWithoutARun();
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
    void lostPort_endsARun_data();
    void lostPort_endsARun();
    void closedPort_holdsTheRun();
    void endOfTheProgram_endsTheRun_data();
    void endOfTheProgram_endsTheRun();
    void destruction_endsARun();
    void randomCommands_leaveNothingBehind();
};

void DisplayRunTest::scrolling_sequence()
{
    QFETCH(bool, quiet);
    RunBench b(manner(quiet));
    b.start(40);
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.far.lines(),
             (Lines{"sc_clear", "sc_scroll", dataLine(0, 15), "sc_data", dataLine(16, 31),
                    "sc_data", dataLine(32, 39), "sc_data", "sc_end 1", "sc_mode"}));
    QVERIFY(b.log.lines().isEmpty());
}

void DisplayRunTest::scrolling_sizes_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<Lines>("pieces");
    QTest::newRow("nothing") << 0 << Lines{};
    QTest::newRow("one column") << 1 << Lines{dataLine(0, 0)};
    QTest::newRow("one full piece") << 16 << Lines{dataLine(0, 15)};
    QTest::newRow("one column more") << 17 << Lines{dataLine(0, 15), dataLine(16, 16)};
}

void DisplayRunTest::scrolling_sizes()
{
    QFETCH(int, columns);
    QFETCH(Lines, pieces);
    RunBench b;
    b.start(columns);
    QVERIFY(b.waitForEnd());
    Lines expected{"sc_clear", "sc_scroll"};
    for (const QByteArray &piece : pieces)
        expected += {piece, "sc_data"};
    expected += {"sc_end 1", "sc_mode"};
    QCOMPARE(b.far.lines(), expected);
}

void DisplayRunTest::scrolling_onATrueLine()
{
    BoardLimits limits; // the real ones, but for the scripted board, which answers in its own time
    limits.settle.silence = 100ms;
    limits.settle.most = 500ms;
    RunBench b({.kind = ScriptedBoard::Kind::Talkative, .bytesPerSecond = 1920}, limits);
    b.start(20);
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.far.lines(), (Lines{"sc_clear", "sc_scroll", dataLine(0, 15), "sc_data",
                                   dataLine(16, 19), "sc_data", "sc_end 1", "sc_mode"}));
    QVERIFY(b.log.lines().isEmpty());
}

void DisplayRunTest::standing_sequence()
{
    QFETCH(bool, quiet);
    RunBench b(manner(quiet));
    b.system.setScroll(false);
    b.start(40);
    QVERIFY(b.waitForEnd());
    b.system.sync();
    QCOMPARE(b.far.lines(), (Lines{"sc_clear", "sc_stop", dataLine(0, 15), dataLine(16, 31),
                                   dataLine(32, 39), "sc_show", "sync"}));
    QVERIFY(b.log.lines().isEmpty());
}

void DisplayRunTest::standing_sizes_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<Lines>("pieces");
    // An odd last column is not sent.
    QTest::newRow("nothing") << 0 << Lines{};
    QTest::newRow("one column") << 1 << Lines{};
    QTest::newRow("two columns") << 2 << Lines{dataLine(0, 1)};
    QTest::newRow("33 columns") << 33 << Lines{dataLine(0, 15), dataLine(16, 31)};
}

void DisplayRunTest::standing_sizes()
{
    QFETCH(int, columns);
    QFETCH(Lines, pieces);
    RunBench b;
    b.system.setScroll(false);
    b.start(columns);
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.linesSoFar(), Lines{"sc_clear"} + Lines{"sc_stop"} + pieces + Lines{"sc_show"});
    QVERIFY(b.log.lines().isEmpty());
}

void DisplayRunTest::refusedPiece_isSentAgain()
{
    RunBench b;
    b.live.taken = -1;
    b.start(16);
    QTRY_VERIFY(b.count(dataLine(0, 15)) >= 3);
    b.live.taken = 0;
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.far.lines().last(), "sc_mode"_ba);
    QCOMPARE(b.count("sc_end 1"), 1);
}

void DisplayRunTest::room_atEachLimit_data()
{
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("goesOn");
    // 20 columns: 8 bytes are left after the first piece.
    QTest::newRow("no reply") << -1 << false;
    QTest::newRow("less than the rest") << 7 << false;
    QTest::newRow("the rest") << 8 << true;
    QTest::newRow("more than the rest, less than a piece") << 31 << true;
}

void DisplayRunTest::room_atEachLimit()
{
    QFETCH(int, room);
    QFETCH(bool, goesOn);
    RunBench b;
    b.live.room = room;
    b.start(20);
    QTRY_VERIFY(b.count("sc_data") >= 2);
    QCOMPARE(b.far.lines().contains(dataLine(16, 19)), goesOn);
    if (!goesOn) // asked again in steps
        QTRY_VERIFY(b.count("sc_data") >= 3);
    b.live.room = 32;
    QVERIFY(b.waitForEnd());

    b.far.takeLines();
    b.live.room = 31; // 40 columns: 48 bytes are left, only more than 31 bytes of room will do
    b.start(40);
    QTRY_VERIFY(b.count("sc_data") >= 2);
    QVERIFY(!b.far.lines().contains(dataLine(16, 31)));
    b.live.room = 32;
    QVERIFY(b.waitForEnd());
}

void DisplayRunTest::noRoom_clearsAndGoesOn()
{
    RunBench b;
    b.live.room = 0;
    b.start(32);
    QTRY_VERIFY(b.far.lines().contains(dataLine(16, 31)));
    b.live.room = 256;
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.log.lines(), QStringList(u"watch VelmorSystem:showThread 1"_s));
    const Lines lines = b.far.lines();
    QCOMPARE(lines[lines.indexOf(dataLine(16, 31)) - 1], "sc_clear"_ba);
    QVERIFY(lines.contains("sc_end 1"));
}

void DisplayRunTest::scrollEnd_waitsForModeOneOrTheSecondZero()
{
    RunBench b;
    b.live.mode = 2;
    b.start(16);
    QTRY_VERIFY(b.count("sc_mode") >= 4); // twice in each step
    QVERIFY(b.system.isRunning());
    b.live.mode = 1;
    QVERIFY(b.waitForEnd());

    b.far.takeLines();
    b.live.mode = 0;
    b.start(16);
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.count("sc_mode"), 2); // the first 0 is no end, the second is
    QVERIFY(b.log.lines().isEmpty());
}

void DisplayRunTest::scrollEnd_watch()
{
    RunBench b;
    b.live.mode = 2;
    b.start(16);
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.log.lines(), QStringList(u"watch VelmorSystem:showThread 3"_s));
    QCOMPARE(b.linesSoFar().last(), "sc_end 0"_ba);
}

void DisplayRunTest::refusedStandingImage_isTriedUntilTheWatch()
{
    RunBench b;
    b.system.setScroll(false);
    b.live.taken = -1;
    b.start(16);
    QVERIFY(b.waitForEnd());
    const Lines lines = b.linesSoFar();
    QCOMPARE(lines.last(), "sc_show"_ba);
    const QStringList log = b.log.lines();
    QVERIFY(log.size() >= 3);
    QCOMPARE(log.last(), u"watch VelmorSystem:showThread 4"_s);
    QCOMPARE(log.count(u"VelmorSystem:showThread:sc_data error3"_s), log.size() - 1);
    QCOMPARE(lines.count(dataLine(0, 15)), log.size() - 1);
}

void DisplayRunTest::refusedBufferImage_isTriedUntilTheWatch()
{
    RunBench b;
    b.live.taken = -1;
    // How often depends on the machine, but each refusal is said.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^sendBufferBitmap:sc_data: error$"_s));
    b.system.sendBufferBitmap(*numbered(16));
    QCOMPARE(b.log.lines(), QStringList(u"watch VelmorSystem:sendBufferBitmap"_s));
    QVERIFY(b.linesSoFar().count(dataLine(0, 15)) >= 2);
}

void DisplayRunTest::bufferImage_isSentWithoutARun()
{
    RunBench b;
    b.system.sendBufferBitmap(*numbered(35));
    QCOMPARE(b.linesSoFar(), (Lines{dataLine(0, 15), dataLine(16, 31), dataLine(32, 33)}));
    QCOMPARE(b.system.showStatus(), 0);
}

void DisplayRunTest::silentBoard_neverHangsACancel()
{
    RunBench b;
    b.live.silent = true;
    b.start(64);
    QTRY_VERIFY(!b.log.lines().isEmpty());
    const auto start = steady_clock::now();
    b.system.cancel();
    QVERIFY(steady_clock::now() - start < 2s);
    QCOMPARE(b.system.showStatus(), 0);
}

void DisplayRunTest::cancel_whileWaitingForRoom()
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

void DisplayRunTest::cancel_whileWaitingForTheEnd()
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

void DisplayRunTest::cancel_whenIdleOrPaused_doesNothing()
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

void DisplayRunTest::clear_endsTheRunAndBlanksTheBoard()
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

void DisplayRunTest::pause_holdsTheRunBetweenPieces()
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

void DisplayRunTest::pauseAndRestart_onlyFromTheirStates()
{
    RunBench b;
    b.system.pauseScroll();
    QCOMPARE(b.system.showStatus(), 0);
    b.system.restartScroll();
    QCOMPARE(b.system.showStatus(), 0);
}

void DisplayRunTest::showWhilePaused_givesThePausedRunUp()
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

void DisplayRunTest::showWhileRunning_waits()
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

void DisplayRunTest::blockingShow_returnsAtTheEnd()
{
    RunBench b;
    b.system.setAsync(true);
    b.system.showBitmap(numbered(16));
    QVERIFY(!b.system.isRunning());
    QCOMPARE(b.far.lines().last(), "sc_mode"_ba);
}

void DisplayRunTest::showThread_showsTheImageHeld()
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

void DisplayRunTest::twoCallers_eachShowTheirOwnImage()
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

void DisplayRunTest::scrollSetDuringARun_countsFromTheNext()
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

void DisplayRunTest::intel_swapsTheWords()
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

void DisplayRunTest::lostPort_endsARun_data()
{
    QTest::addColumn<QString>("when");
    QTest::newRow("while it waits for room") << u"room"_s;
    QTest::newRow("while it waits for the end") << u"end"_s;
    QTest::newRow("while it is paused") << u"paused"_s;
    QTest::newRow("while a standing image is refused") << u"standing"_s;
}

void DisplayRunTest::lostPort_endsARun()
{
    QFETCH(QString, when);
    RunBench b;
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

void DisplayRunTest::closedPort_holdsTheRun()
{
    RunBench b;
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

void DisplayRunTest::endOfTheProgram_endsTheRun_data()
{
    QTest::addColumn<bool>("pausedRun");
    QTest::newRow("running") << false;
    QTest::newRow("paused") << true;
}

void DisplayRunTest::endOfTheProgram_endsTheRun()
{
    QFETCH(bool, pausedRun);
    RunBench b;
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

void DisplayRunTest::destruction_endsARun()
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

void DisplayRunTest::randomCommands_leaveNothingBehind()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    RunBench b;
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

QTEST_GUILESS_MAIN(DisplayRunTest)
#include "displayrun_test.moc"
