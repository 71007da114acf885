// SPDX-License-Identifier: MIT
#include "BoardPictures.h"
#include "RunningProgram.h"
#include "tests/support/HttpServer.h"
#include "tools/qovelmorboard/SimulatedBoard.h"

#include <QGuiApplication>
#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace qovelmor;
using namespace qovelmor::simboard;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto endsInOrder = 4s;    // after SIGTERM, with whatever board
constexpr int happensSoon = 20'000; // ms, on a busy machine

// Longer than the board's buffer: what stops a board also stops the line in its middle.
QByteArray longLines()
{
    QString items;
    for (const QChar number : u"一二三"_s) {
        items += u"<item><title>第%1の長い見出しが電光掲示板の上を流れます</title>"
                 "<link>http://town/</link><description>町</description>"
                 "<pubDate>Sat, 21 Nov 2026 09:30:00 +0900</pubDate></item>"_s.arg(number);
    }
    return (u"<?xml version='1.0' encoding='UTF-8'?><rss version='2.0'><channel>"
            "<title>町</title>"_s +
            items + u"</channel></rss>"_s)
        .toUtf8();
}

QStringList shownLines()
{
    QStringList lines;
    for (const QChar number : u"一二三"_s)
        lines << u"第%1の長い見出しが電光掲示板の上を流れます 11/21 09:30【町】"_s.arg(number);
    return lines;
}

std::unique_ptr<SimulatedBoard> makeBoard(const QByteArray &faults, const QString &link = {})
{
    SimulatedBoardOptions options;
    options.link = link.toStdString();
    options.throttled = false;
    options.firmware.speedFactor = 1000.0;
    if (auto orders = Misbehaviour::parse(faults.toStdString()); orders && !faults.isEmpty())
        options.faults = *orders;
    std::string error;
    auto board = SimulatedBoard::create(options, error);
    if (!board)
        qWarning("%s", error.c_str());
    return board;
}

bool isScrolling(const BoardView &view)
{
    return view.mode == DisplayMode::Scrolling || view.mode == DisplayMode::Waiting;
}

/// The command lines that carry a picture, sixteen columns each.
QStringList dataLines(const BoardColumns &columns)
{
    QStringList lines;
    for (std::size_t x = 0; x < columns.size(); ++x) {
        if (x % 16 == 0)
            lines.append(u"sc_data "_s);
        lines.last() += u"%1 "_s.arg(columns[x], 4, 16, QChar(u'0'));
    }
    return lines;
}

/// What the board was sent of its lines, without what was sent again.
QStringList sentData(const SimulatedBoard &board)
{
    QStringList sent;
    for (const std::string &line : board.lines()) {
        const QString text = QString::fromStdString(line);
        if (text.startsWith(u"sc_data ") && (sent.isEmpty() || sent.last() != text))
            sent << text;
    }
    return sent;
}

qsizetype linesShown(const RunningProgram &program)
{
    return program.logBook().count(u" RSS表示:"_s);
}

} // namespace

class BoardFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void boardThatAppearsLater_isUsedAtTheNextStart();
    void portThatAnotherProgramHolds_isSaidAndTheScreenUsed();
    void faultAtLaunch_data();
    void faultAtLaunch();
    void faultDuringALine_data();
    void faultDuringALine();
    void scrollThatNeverEnds_isCutOffAfterThirtySeconds();
    void portThatComesBack_isOpenedAgainAndNoTextIsLost();
    void hangUpForGood_isSaidOnceAndTheSignalStillEndsTheProgram();

private:
    void prepare(RunningProgram &program, const SimulatedBoard &board) const;
    void endInOrder(RunningProgram &program) const;

    HttpServer server_;
};

void BoardFaultsTest::initTestCase()
{
    server_.route("/town", HttpServer::document(longLines()));
}

void BoardFaultsTest::prepare(RunningProgram &program, const SimulatedBoard &board) const
{
    program.addFeed(server_.address("/town"), u"町"_s, 2);
    program.set(u"DisplayAuto"_s, true);
    program.set(u"DispProgress"_s, false);
    program.setBoard(board.path());
}

void BoardFaultsTest::endInOrder(RunningProgram &program) const
{
    QVERIFY2(program.isRunning(), qPrintable(program.logBook()));
    QCOMPARE(program.terminate(endsInOrder), 0);
    QVERIFY2(program.logBook().endsWith(u" システム:QoVelmarRSS終了\n"_s),
             qPrintable(program.logBook()));
    QVERIFY(program.isStoreWhole());
}

void BoardFaultsTest::boardThatAppearsLater_isUsedAtTheNextStart()
{
    QTemporaryDir folder;
    const QString link = folder.filePath(u"board"_s);
    RunningProgram program;
    program.addFeed(server_.address("/town"), u"町"_s, 2);
    program.set(u"DisplayAuto"_s, true);
    program.setBoard(link.toStdString());
    QVERIFY(program.start());
    QTRY_VERIFY2_WITH_TIMEOUT(linesShown(program) >= 1, qPrintable(program.logBook()), happensSoon);
    QVERIFY(program.logBook().contains(u"シリアルポートのオープンに失敗"_s));
    QVERIFY(program.output().contains("が接続されていません。"));
    const auto board = makeBoard({}, link);
    QVERIFY(board);
    const qsizetype shown = linesShown(program);
    QTRY_VERIFY_WITH_TIMEOUT(linesShown(program) > shown, happensSoon); // undisturbed
    endInOrder(program);
    QCOMPARE(board->view().linesReceived, std::size_t{0});

    QVERIFY(program.start());
    QVERIFY(board->waitUntil(isScrolling, 20s));
    endInOrder(program);
}

void BoardFaultsTest::portThatAnotherProgramHolds_isSaidAndTheScreenUsed()
{
    const auto board = makeBoard({});
    QVERIFY(board);
    const int other = ::open(board->path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(other >= 0);
    QCOMPARE(::flock(other, LOCK_EX | LOCK_NB), 0);
    RunningProgram program;
    prepare(program, *board);
    QVERIFY(program.start());
    QTRY_VERIFY2_WITH_TIMEOUT(linesShown(program) >= 1, qPrintable(program.logBook()), happensSoon);
    QVERIFY(program.logBook().contains(u"シリアルポートのオープンに失敗"_s));
    const QByteArray output = program.output();
    QVERIFY2(output.contains("Device or resource busy(16)"), output.constData());
    QVERIFY2(output.contains("他のプログラムが使用中です。"), output.constData());
    endInOrder(program);
    QCOMPARE(board->view().linesReceived, std::size_t{0});
    ::close(other);
}

// At launch: a board that does not answer the first question is none, and the lines go to the
// screen; every other one is used as well as it can be.
void BoardFaultsTest::faultAtLaunch_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<bool>("isABoard");
    QTest::addColumn<int>("lines"); // that are begun with the fault in force
    QTest::newRow("mute") << QByteArray("mute") << false << 2;
    QTest::newRow("deaf") << QByteArray("deaf=0") << false << 1;
    QTest::newRow("answers too late") << QByteArray("late=3000") << false << 2;
    QTest::newRow("leaves Ok. out") << QByteArray("no-ok") << true << 1;
    QTest::newRow("byte by byte") << QByteArray("bytewise=2") << true << 2;
    QTest::newRow("noise") << QByteArray("noise=5") << true << 1;
    QTest::newRow("answers twice") << QByteArray("twice") << true << 2;
    QTest::newRow("refuses columns") << QByteArray("refuse") << true << 1;
}

void BoardFaultsTest::faultAtLaunch()
{
    QFETCH(QByteArray, faults);
    QFETCH(bool, isABoard);
    QFETCH(int, lines);
    const auto board = makeBoard(faults);
    QVERIFY(board);
    RunningProgram program;
    prepare(program, *board);
    QVERIFY(program.start());
    QTRY_VERIFY2_WITH_TIMEOUT(linesShown(program) >= lines, qPrintable(program.logBook()),
                              happensSoon);
    QCOMPARE(!program.logBook().contains(u"LED電光掲示板がないのでモニター画面に出力"_s), isABoard);
    endInOrder(program);
}

// In the middle of a line: the program asks on, goes on with the next lines once the board has
// recovered, and ends in order while the fault is in force.
void BoardFaultsTest::faultDuringALine_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<QString>("sign"); // in the log book; empty: more commands have come
    const QString stalled = u"ループ強制ブレイク対応:VelmorSystem:showThread 1"_s;
    const QString unanswered =
        u"ループ強制ブレイク対応:CocoaSerialPort:receiveStringUntilEOSWithSkip"_s;
    QTest::newRow("mute") << QByteArray("mute") << stalled;
    QTest::newRow("leaves Ok. out") << QByteArray("no-ok") << unanswered;
    QTest::newRow("answers too late") << QByteArray("late=1500") << unanswered;
    QTest::newRow("deaf for good") << QByteArray("deaf=0") << unanswered;
    QTest::newRow("answers late") << QByteArray("late=300") << QString();
    QTest::newRow("byte by byte") << QByteArray("bytewise=2") << QString();
    QTest::newRow("noise") << QByteArray("noise=10") << QString();
    QTest::newRow("refuses columns") << QByteArray("refuse") << QString();
    QTest::newRow("scroll is stuck") << QByteArray("stuck") << stalled;
    QTest::newRow("scroll never ends") << QByteArray("endless") << QString();
    QTest::newRow("deaf for a while") << QByteArray("deaf=1500") << QString();
    QTest::newRow("loses its power") << QByteArray("restart*1") << QString();
    QTest::newRow("answers twice") << QByteArray("twice") << QString();
    QTest::newRow("answers something else") << QByteArray("wrong") << QString();
}

void BoardFaultsTest::faultDuringALine()
{
    QFETCH(QByteArray, faults);
    QFETCH(QString, sign);
    const auto board = makeBoard({});
    QVERIFY(board);
    RunningProgram program;
    prepare(program, *board);
    QVERIFY(program.start());
    QVERIFY(board->waitUntil(isScrolling, 20s));

    QVERIFY(board->misbehave(faults.toStdString()));
    const std::size_t before = board->view().linesReceived;
    if (sign.isEmpty())
        QVERIFY(board->waitUntil(
            [before](const BoardView &view) { return view.linesReceived >= before + 6; }, 20s));
    else
        QTRY_VERIFY2_WITH_TIMEOUT(program.logBook().contains(sign), qPrintable(program.logBook()),
                                  happensSoon);
    board->behave();
    const qsizetype shown = linesShown(program);
    QTRY_VERIFY2_WITH_TIMEOUT(linesShown(program) >= shown + 2, qPrintable(program.logBook()),
                              happensSoon);

    QVERIFY(board->waitUntil(isScrolling, 20s));
    QVERIFY(board->misbehave(faults.toStdString()));
    endInOrder(program);
    QVERIFY(!program.output().contains("Error opening")); // each time-out was healed
}

void BoardFaultsTest::scrollThatNeverEnds_isCutOffAfterThirtySeconds()
{
    const auto board = makeBoard("endless");
    QVERIFY(board);
    RunningProgram program;
    prepare(program, *board);
    QVERIFY(program.start());
    QVERIFY(board->waitUntil([](const BoardView &view) { return view.mode == DisplayMode::Ended; },
                             20s));
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY2_WITH_TIMEOUT(
        program.logBook().contains(u"ループ強制ブレイク対応:VelmorSystem:showThread 3"_s),
        qPrintable(program.logBook()), 60'000);
    QVERIFY(timer.elapsed() > 25'000);
    QTRY_VERIFY_WITH_TIMEOUT(linesShown(program) >= 2, happensSoon); // the next line has begun
    endInOrder(program);
}

// The board hangs up in the middle of a line and is back before the time-out: the port is opened
// by the path that it was opened by, the piece whose answer is missing is sent again, and the text
// on the board has no hole.
void BoardFaultsTest::portThatComesBack_isOpenedAgainAndNoTextIsLost()
{
    QTemporaryDir folder;
    const QString link = folder.filePath(u"board"_s);
    const auto board = makeBoard({}, link);
    QVERIFY(board);
    RunningProgram program;
    prepare(program, *board);
    program.setBoard(link.toStdString());
    program.set(u"DispMessageOrder"_s, 1);
    QVERIFY(program.start());
    QVERIFY(board->waitUntil(isScrolling, 20s));
    for (int round = 1; round <= 2; ++round) {
        const qsizetype shown = linesShown(program);
        QVERIFY(board->misbehave("hangup=200@3")); // after two more commands
        QVERIFY(board->waitUntil(
            [round](const BoardView &view) { return view.hangUps == round && !view.path.empty(); },
            20s));
        QTRY_VERIFY2_WITH_TIMEOUT(linesShown(program) >= shown + 2, qPrintable(program.logBook()),
                                  happensSoon);
        QVERIFY(board->waitUntil(isScrolling, 20s));
    }
    const QString log = program.logBook();
    QVERIFY2(log.contains(u"CocoaSerialPort:receiveStringUntilEOSWithSkip"_s), qPrintable(log));
    QVERIFY(!log.contains(u"showThread"_s));
    QVERIFY(!program.output().contains("Error opening"));
    endInOrder(program);

    QStringList expected; // the passes over the list follow each other
    QStringList pass;
    for (const BoardColumns &picture : linePictures(shownLines(), {}))
        pass += dataLines(picture);
    const QStringList sent = sentData(*board);
    while (expected.size() < sent.size())
        expected += pass;
    QVERIFY(sent.size() > pass.size());
    QCOMPARE(sent, expected.first(sent.size()));
}

// The alert itself, and what its button does: portloss_test.
void BoardFaultsTest::hangUpForGood_isSaidOnceAndTheSignalStillEndsTheProgram()
{
    const auto board = makeBoard({});
    QVERIFY(board);
    RunningProgram program;
    prepare(program, *board);
    QVERIFY(program.start());
    QVERIFY(board->waitUntil(isScrolling, 20s));
    board->hangUp();
    QTRY_VERIFY2_WITH_TIMEOUT(program.output().contains("Error opening serial port"),
                              program.output().constData(), happensSoon);
    board->comeBack(); // too late: nobody opens it
    QVERIFY(board->waitUntil([](const BoardView &view) { return !view.path.empty(); }, 20s));
    endInOrder(program);
    QCOMPARE(program.output().count("Error opening serial port"), 1);
}

QTEST_MAIN(BoardFaultsTest)
#include "boardfaults_test.moc"
