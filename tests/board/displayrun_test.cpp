// SPDX-License-Identifier: MIT
#include "tests/board/RunBench.h"

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

using Lines = RunBench::Lines;

namespace {

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
    RunBench b({}, withRunLimits(shortBoardLimits().run));
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
    RunBench b({}, withRunLimits(shortBoardLimits().run));
    b.live.mode = 2;
    b.start(16);
    QVERIFY(b.waitForEnd());
    QCOMPARE(b.log.lines(), QStringList(u"watch VelmorSystem:showThread 3"_s));
    QCOMPARE(b.linesSoFar().last(), "sc_end 0"_ba);
}

void DisplayRunTest::refusedStandingImage_isTriedUntilTheWatch()
{
    RunBench b({}, withRunLimits(shortBoardLimits().run));
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
    RunBench b({}, withRunLimits(shortBoardLimits().run));
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

QTEST_GUILESS_MAIN(DisplayRunTest)
#include "displayrun_test.moc"
