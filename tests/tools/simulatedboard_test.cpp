// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/SimulatedBoard.h"

#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

using namespace qovelmor::simboard;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

/// The host's end of the line.
class HostLine
{
public:
    explicit HostLine(const std::string &path)
        : descriptor_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {}
    ~HostLine() { ::close(descriptor_); }
    HostLine(const HostLine &) = delete;
    HostLine &operator=(const HostLine &) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

    bool send(const std::string &bytes)
    {
        return ::write(descriptor_, bytes.data(), bytes.size()) == ssize_t(bytes.size());
    }

    /// Reads until the text ends with `mark`; what has come when the time is over.
    std::string receive(const std::string &mark, milliseconds limit = milliseconds(5000))
    {
        std::string heard;
        const auto end = steady_clock::now() + limit;
        while (!heard.ends_with(mark) && steady_clock::now() < end) {
            pollfd wait{descriptor_, POLLIN, 0};
            ::poll(&wait, 1, 10);
            char bytes[256];
            const auto count = ::read(descriptor_, bytes, sizeof bytes);
            if (count > 0)
                heard.append(bytes, std::size_t(count));
            else if ((wait.revents & POLLHUP) != 0)
                break;
        }
        return heard;
    }

    std::string ask(const std::string &line)
    {
        send(line + "\r");
        return receive("Ok.\r\n");
    }

    bool isHungUp()
    {
        pollfd wait{descriptor_, POLLIN, 0};
        return ::poll(&wait, 1, 5000) == 1 && (wait.revents & POLLHUP) != 0;
    }

private:
    int descriptor_;
};

SimulatedBoardOptions fastOptions()
{
    SimulatedBoardOptions options;
    options.throttled = false;
    options.firmware.speedFactor = 100.0;
    return options;
}

std::unique_ptr<SimulatedBoard> make(const SimulatedBoardOptions &options)
{
    std::string error;
    auto board = SimulatedBoard::create(options, error);
    if (!board)
        qWarning("%s", error.c_str());
    return board;
}

milliseconds since(steady_clock::time_point start)
{
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
}

} // namespace

class SimulatedBoardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void question_isAnsweredOverTheLine();
    void scrolledLine_arrivesBitForBit();
    void throttledLine_carries1920BytesASecond();
    void hostMayCloseAndOpenAgain();
    void link_followsTheLine();
    void foreignFile_isNotReplacedByTheLink();
    void hangUp_killsTheLineAndComesBack();
    void deafBoard_stopsReading();
    void logAndColumns_areWritten();
    void faultsAndVariables_areOrderedWhileItRuns();
};

void SimulatedBoardTest::question_isAnsweredOverTheLine()
{
    const auto board = make(fastOptions());
    QVERIFY(board);
    HostLine host(board->path());
    QVERIFY(host.isOpen());
    termios attributes{};
    QCOMPARE(::tcgetattr(host.descriptor(), &attributes), 0);
    QCOMPARE(attributes.c_lflag & (ICANON | ECHO), tcflag_t{0});
    QCOMPARE(host.ask("ver"), std::string("ver\r\nV QoVelmor LED board 1.0\r\nOk.\r\n"));
    QCOMPARE(board->lines(), std::vector<std::string>{"ver"});
}

void SimulatedBoardTest::scrolledLine_arrivesBitForBit()
{
    const auto board = make(fastOptions());
    QVERIFY(board);
    HostLine host(board->path());
    host.ask("sc_clear");
    host.ask("sc_scroll");
    host.ask("sc_data 8000 4000 2000 ");
    host.ask("sc_end 1");
    QVERIFY(board->waitUntil([](const BoardView &view) { return view.mode == DisplayMode::Ended; },
                             milliseconds(10000)));
    const std::vector<ColumnRun> runs = board->runs();
    QCOMPARE(runs.size(), std::size_t{1});
    const std::vector<ColumnWord> expected{0x8000, 0x4000, 0x2000};
    QCOMPARE(runs.front().columns, expected);
    QVERIFY(runs.front().wentThrough);
}

void SimulatedBoardTest::throttledLine_carries1920BytesASecond()
{
    SimulatedBoardOptions options = fastOptions();
    options.throttled = true;
    const auto board = make(options);
    QVERIFY(board);
    HostLine host(board->path());
    // 480 bytes that nobody answers, then a question: a quarter of a second on the way in.
    const auto start = steady_clock::now();
    QVERIFY(host.send(std::string(470, '\n') + "sc_mode\r"));
    QVERIFY(board->waitUntil([](const BoardView &view) { return view.linesReceived == 1; },
                             milliseconds(5000)));
    const auto inward = since(start);
    QVERIFY2(inward >= milliseconds(210), qPrintable(QString::number(inward.count())));
    host.receive("Ok.\r\n");
    // The help text is long enough to see the way out.
    const auto asked = steady_clock::now();
    const std::string help = host.ask("help");
    const auto outward = since(asked);
    const auto least = milliseconds(qsizetype(help.size()) * 1000 / 1920 - 50);
    QVERIFY2(outward >= least, qPrintable(QString::number(outward.count())));
}

void SimulatedBoardTest::hostMayCloseAndOpenAgain()
{
    const auto board = make(fastOptions());
    QVERIFY(board);
    for (int turn = 0; turn < 5; ++turn) {
        HostLine host(board->path());
        QVERIFY(host.isOpen());
        QCOMPARE(::ioctl(host.descriptor(), TIOCEXCL), 0);
        QCOMPARE(host.ask("sc_mode"), std::string("sc_mode\r\nD 0\r\nOk.\r\n"));
    }
}

void SimulatedBoardTest::link_followsTheLine()
{
    const QTemporaryDir folder;
    SimulatedBoardOptions options = fastOptions();
    options.link = folder.filePath(QStringLiteral("board")).toStdString();
    {
        const auto board = make(options);
        QVERIFY(board);
        HostLine host(options.link);
        QVERIFY(host.ask("ver").ends_with("Ok.\r\n"));
        board->hangUp();
        QVERIFY(host.isHungUp());
        QVERIFY(board->waitUntil([](const BoardView &view) { return view.path.empty(); },
                                 milliseconds(5000)));
        QVERIFY(::access(options.link.c_str(), F_OK) != 0);
        board->comeBack();
        QVERIFY(board->waitUntil([](const BoardView &view) { return !view.path.empty(); },
                                 milliseconds(5000)));
        HostLine again(options.link);
        QVERIFY(again.ask("ver").ends_with("Ok.\r\n"));
    }
    struct stat there = {};
    QVERIFY(::lstat(options.link.c_str(), &there) != 0);
}

void SimulatedBoardTest::foreignFile_isNotReplacedByTheLink()
{
    const QTemporaryDir folder;
    SimulatedBoardOptions options = fastOptions();
    options.link = folder.path().toStdString();
    std::string error;
    QVERIFY(!SimulatedBoard::create(options, error));
    QVERIFY(error.starts_with("cannot make the link"));
    QVERIFY(::access(options.link.c_str(), F_OK) == 0);
}

void SimulatedBoardTest::hangUp_killsTheLineAndComesBack()
{
    SimulatedBoardOptions options = fastOptions();
    options.faults = *Misbehaviour::parse("hangup=50@3");
    const auto board = make(options);
    QVERIFY(board);
    HostLine host(board->path());
    host.ask("sc_clear");
    host.ask("sc_scroll");
    QVERIFY(host.send("sc_data 1 \r"));
    QVERIFY(host.isHungUp());
    QVERIFY(board->waitUntil([](const BoardView &view) { return !view.path.empty(); },
                             milliseconds(5000)));
    HostLine again(board->path());
    QVERIFY(again.ask("ver").ends_with("Ok.\r\n"));
}

void SimulatedBoardTest::deafBoard_stopsReading()
{
    const auto board = make(fastOptions());
    QVERIFY(board);
    HostLine host(board->path());
    host.ask("ver");
    QVERIFY(board->misbehave("deaf"));
    QCOMPARE(host.send("sc_mode\r") && host.receive("Ok.\r\n", milliseconds(200)).empty(), true);
    board->behave();
    QVERIFY(host.receive("Ok.\r\n").ends_with("Ok.\r\n"));
    // The time that the fault was ordered for is over by itself.
    QVERIFY(board->misbehave("deaf=100"));
    const auto start = steady_clock::now();
    QVERIFY(host.ask("sc_mode").ends_with("Ok.\r\n"));
    QVERIFY(since(start) >= milliseconds(90));
}

void SimulatedBoardTest::logAndColumns_areWritten()
{
    const QTemporaryDir folder;
    SimulatedBoardOptions options = fastOptions();
    options.logFile = folder.filePath(QStringLiteral("log")).toStdString();
    options.columnsFile = folder.filePath(QStringLiteral("columns")).toStdString();
    {
        const auto board = make(options);
        QVERIFY(board);
        HostLine host(board->path());
        host.ask("sc_data 8000 0001 ");
        host.ask("sc_show");
        host.ask("lm_puts \x8a");
    }
    QFile columns(QString::fromStdString(options.columnsFile));
    QVERIFY(columns.open(QIODevice::ReadOnly));
    QCOMPARE(columns.readAll(), "# run 1 show\n8000\n0001\n# end 1 shown\n");
    QFile log(QString::fromStdString(options.logFile));
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray text = log.readAll();
    QVERIFY(text.contains(" > sc_data 8000 0001 \n"));
    QVERIFY(text.contains(" < D 252\n"));
    QVERIFY(text.contains(" > lm_puts \\x8a\n"));
}

void SimulatedBoardTest::faultsAndVariables_areOrderedWhileItRuns()
{
    const auto board = make(fastOptions());
    QVERIFY(board);
    HostLine host(board->path());
    QVERIFY(!board->misbehave("nonsense"));
    QVERIFY(board->misbehave("no-ok*1"));
    QVERIFY(host.send("sc_mode\r"));
    QCOMPARE(host.receive("D 0\r\n"), std::string("sc_mode\r\nD 0\r\n"));
    QVERIFY(board->setVariable("cmodule", 2));
    QVERIFY(!board->setVariable("cmodule", 100));
    QCOMPARE(board->view().picture.columns.size(), std::size_t{64});
    board->restart();
    QCOMPARE(host.receive("Ok.\r\n"), std::string("V QoVelmor LED board 1.0\r\nOk.\r\n"));
    QCOMPARE(board->view().picture.columns.size(), std::size_t{128});
}

QTEST_APPLESS_MAIN(SimulatedBoardTest)
#include "simulatedboard_test.moc"
