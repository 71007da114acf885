// SPDX-License-Identifier: MIT
#include "board/ColumnWords.h"
#include "tests/board/BoardBench.h"
#include "tests/board/RunBench.h"
#include "tools/qovelmorboard/SimulatedBoard.h"

#include <QTemporaryDir>

using namespace qovelmor;
using namespace qovelmor::simboard;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

/// The link, with the real limits, and the simulated board at its far end.
struct SimulatedBench
{
    SimulatedBench(bool talks, bool throttled, const QString &link = {})
    {
        SimulatedBoardOptions options;
        options.link = link.toStdString();
        options.throttled = throttled;
        options.firmware.kind = talks ? BoardKind::Talkative : BoardKind::Quiet;
        options.firmware.speedFactor = 50.0;
        std::string error;
        board = SimulatedBoard::create(options, error);
        if (!board)
            qFatal("%s", error.c_str());
        BoardLimits limits;
        limits.settle.most = 1000ms; // the board is a thread of its own, on a machine that is busy
        const QByteArray path =
            link.isEmpty() ? QByteArray::fromStdString(board->path()) : link.toUtf8();
        system = std::make_unique<VelmorSystem>(clock, limits, [path](SerialDeviceType) {
            return SerialLookup{0, false, {path}};
        });
        system->setMessageList(&log);
        system->setPortLoss(&log);
        StdoutCapture quiet;
        // On a busy machine the first answer may take longer than the test of the line waits.
        if (!system->openSerialPortWithNumber(0) ||
            !QTest::qWaitFor([this] { return system->comTest(); }))
            qFatal("no board");
    }

    static std::vector<ColumnWord> words(const VelmorBitmap &bitmap)
    {
        std::vector<ColumnWord> words;
        const QByteArray bytes = columnWords(bitmap, true);
        for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
            words.push_back(static_cast<ColumnWord>(static_cast<quint8>(bytes[i]) << 8 |
                                                    static_cast<quint8>(bytes[i + 1])));
        return words;
    }

    SystemClock clock;
    RecordingLog log;
    std::unique_ptr<SimulatedBoard> board;
    std::unique_ptr<VelmorSystem> system;
};

void kindsAndSpeeds()
{
    QTest::addColumn<bool>("talks");
    QTest::addColumn<bool>("throttled");
    QTest::newRow("board that says Ok. after every command") << true << false;
    QTest::newRow("board that says Ok. after every command, at the line's speed") << true << true;
    QTest::newRow("board that answers questions only") << false << false;
    QTest::newRow("board that answers questions only, at the line's speed") << false << true;
}

} // namespace

/// Display runs with the real limits over a true line, against both kinds of board.
class SimulatedLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLineScrollsOut_data() { kindsAndSpeeds(); }
    void everyLineScrollsOut();
    void standingImageOfAWideBoard_arrivesWhole_data() { kindsAndSpeeds(); }
    void standingImageOfAWideBoard_arrivesWhole();
    void lineThatComesBack_leavesNoHole_data();
    void lineThatComesBack_leavesNoHole();
};

// The "Ok." of "sc_end 1", taken for the answer to "sc_mode", would read as 0 and end the line
// before it has scrolled out.
void SimulatedLineTest::everyLineScrollsOut()
{
    QFETCH(bool, talks);
    QFETCH(bool, throttled);
    SimulatedBench b(talks, throttled);
    b.system->setScroll(true);
    std::vector<std::vector<ColumnWord>> expected;
    for (int columns = 5; columns <= 80; columns += 15) {
        const auto image = numbered(columns);
        expected.push_back(SimulatedBench::words(*image));
        b.system->showBitmap(image); // returns at the end of the run
    }
    const std::vector<ColumnRun> runs = b.board->runs();
    QCOMPARE(runs.size(), expected.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
        QVERIFY(runs[i].columns == expected[i]);
        QVERIFY2(runs[i].wentThrough, qPrintable(QString::number(i)));
    }
    QVERIFY2(b.log.lines().isEmpty(), qPrintable(b.log.lines().join(u'\n')));
}

// 30 modules need 2.8 s on the line: the watch of 1.0 s begins when the last byte has left.
void SimulatedLineTest::standingImageOfAWideBoard_arrivesWhole()
{
    QFETCH(bool, talks);
    QFETCH(bool, throttled);
    SimulatedBench b(talks, throttled);
    b.system->cmodule(30);
    b.system->setScroll(false);
    const auto image = numbered(30 * 32);
    b.system->showBitmap(image);
    b.system->sync(); // all orders have been obeyed
    const std::vector<ColumnRun> runs = b.board->runs();
    QCOMPARE(runs.size(), std::size_t{1});
    QVERIFY(runs[0].columns == SimulatedBench::words(*image));
    QVERIFY(!runs[0].scrolling);
    QVERIFY2(b.log.lines().isEmpty(), qPrintable(b.log.lines().join(u'\n')));
}

void SimulatedLineTest::lineThatComesBack_leavesNoHole_data()
{
    QTest::addColumn<int>("command");
    const char *const commands[] = {"none yet",     "sc_clear", "sc_scroll", "first piece", "room",
                                    "second piece", "room",     "sc_end 1",  "sc_mode"};
    int number = 0;
    for (const char *const command : commands) {
        QTest::addRow("the line goes dead at command %d (%s)", number, command) << number;
        ++number;
    }
}

// An order that goes under with the line is not answered and not missed: a lost "sc_scroll" would
// leave the columns lying in the board's buffer, a lost "sc_end 1" the sign standing for 30 s.
void SimulatedLineTest::lineThatComesBack_leavesNoHole()
{
    QFETCH(int, command);
    QTemporaryDir folder;
    SimulatedBench b(true, false, folder.filePath(u"board"_s));
    b.system->setScroll(true);
    const auto image = numbered(25);
    QVERIFY(b.board->misbehave("hangup=100@" + std::to_string(command)));
    b.system->showBitmap(image); // returns at the end of the run
    QVERIFY(!b.system->isLost());
    QVERIFY2(b.log.lines().filter(u"showThread"_s).isEmpty(),
             qPrintable(b.log.lines().join(u'\n')));
    QCOMPARE(b.log.lines().size(), 1); // the answer that did not come
    std::vector<ColumnWord> shown;
    for (const ColumnRun &run : b.board->runs())
        shown.insert(shown.end(), run.columns.begin(), run.columns.end());
    QVERIFY(shown == SimulatedBench::words(*image));
    QVERIFY(b.board->runs().back().wentThrough);
}

QTEST_GUILESS_MAIN(SimulatedLineTest)
#include "simulatedline_test.moc"
