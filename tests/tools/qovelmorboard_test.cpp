// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/ControlCommands.h"
#include "tools/qovelmorboard/ProgramOptions.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <functional>

using namespace qovelmor::simboard;
using namespace Qt::Literals::StringLiterals;

namespace {

QString programPath()
{
    return qEnvironmentVariable("QOVELMOR_BUILD_DIR") + u"/qovelmorboard"_s;
}

/// Reads from a descriptor until `mark` has come or two seconds have passed.
QByteArray readUntil(int descriptor, const QByteArray &mark)
{
    QByteArray heard;
    pollfd wait{descriptor, POLLIN, 0};
    while (!heard.contains(mark) && ::poll(&wait, 1, 2000) == 1) {
        char bytes[512];
        const auto count = ::read(descriptor, bytes, sizeof bytes);
        if (count <= 0)
            break;
        heard.append(bytes, qsizetype(count));
    }
    return heard;
}

QByteArray ask(const QString &line, const QByteArray &command, const QByteArray &mark = "Ok.\r\n")
{
    const int descriptor =
        ::open(QFile::encodeName(line).constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    const QByteArray sent = command + "\r";
    const auto count = ::write(descriptor, sent.constData(), size_t(sent.size()));
    const QByteArray heard = count == sent.size() ? readUntil(descriptor, mark) : QByteArray();
    ::close(descriptor);
    return heard;
}

QByteArray control(const QString &path, const QByteArray &command)
{
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), address.sun_path);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QByteArray heard;
    if (::connect(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0) {
        const QByteArray sent = command + "\n";
        if (::write(descriptor, sent.constData(), size_t(sent.size())) == sent.size())
            heard = readUntil(descriptor, "\n");
    }
    ::close(descriptor);
    return heard;
}

/// The program, started; ended when it goes.
class RunningBoard
{
public:
    explicit RunningBoard(const QStringList &arguments)
    {
        process_.start(programPath(), arguments);
        if (process_.waitForStarted() && process_.waitForReadyRead())
            path_ = QString::fromUtf8(process_.readLine()).trimmed();
    }
    ~RunningBoard()
    {
        process_.terminate();
        process_.waitForFinished();
    }
    RunningBoard(const RunningBoard &) = delete;
    RunningBoard &operator=(const RunningBoard &) = delete;

    QString path() const { return path_; }
    QProcess &process() { return process_; }

private:
    QProcess process_;
    QString path_;
};

struct Reading
{
    ProgramOptions options;
    QString text;
    int exitCode = 0;
    bool goesOn = false;
};

Reading read(const QStringList &arguments)
{
    Reading reading;
    reading.goesOn = readProgramOptions(QStringList{u"qovelmorboard"_s} + arguments,
                                        reading.options, reading.text, reading.exitCode);
    return reading;
}

} // namespace

class QovelmorboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void options_areRead();
    void wrongOptions_areRefused_data();
    void wrongOptions_areRefused();
    void help_namesEveryFault();
    void controlCommands_areObeyed();
    void program_answersOnItsLine();
    void program_removesItsLinkWhenAskedToEnd();
    void program_takesOrdersFromInputAndSocket();
    void program_drawsInTheTerminal();
    void program_saysWhyItCannotStart();
    void program_endsWithItsParent();
};

void QovelmorboardTest::options_areRead()
{
    const Reading plain = read({});
    QVERIFY(plain.goesOn);
    QVERIFY(plain.options.board.throttled);
    QCOMPARE(plain.options.board.firmware.kind, BoardKind::Talkative);
    QCOMPARE(plain.options.board.firmware.bufferColumns, std::size_t{128});

    const Reading full = read({u"--kind"_s,
                               u"quiet"_s,
                               u"--unthrottled"_s,
                               u"--speed-factor"_s,
                               u"2.5"_s,
                               u"--buffer"_s,
                               u"64"_s,
                               u"--misbehave"_s,
                               u"late=5,mute@2"_s,
                               u"--set"_s,
                               u"scmode_div=7"_s,
                               u"--modules"_s,
                               u"2"_s,
                               u"--link"_s,
                               u"/tmp/link"_s,
                               u"--terminal"_s,
                               u"--frames"_s,
                               u"dir"_s,
                               u"--max-frames"_s,
                               u"9"_s,
                               u"--stdin"_s,
                               u"--exit-with-parent"_s});
    QVERIFY2(full.goesOn, qPrintable(full.text));
    const ProgramOptions &options = full.options;
    QCOMPARE(options.board.firmware.kind, BoardKind::Quiet);
    QVERIFY(!options.board.throttled);
    QCOMPARE(options.board.firmware.speedFactor, 2.5);
    QCOMPARE(options.board.firmware.bufferColumns, std::size_t{64});
    QCOMPARE(options.board.faults.size(), std::size_t{2});
    QCOMPARE(options.board.link, std::string("/tmp/link"));
    const std::vector<std::pair<std::string, int>> variables{{"scmode_div", 7}, {"cmodule", 2}};
    QCOMPARE(options.variables, variables);
    QCOMPARE(options.framesFolder, u"dir"_s);
    QCOMPARE(options.mostFrames, 9);
    QVERIFY(options.terminal && options.commandsFromInput && options.exitWithParent);
}

void QovelmorboardTest::wrongOptions_areRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown option") << QStringList{u"--colour"_s};
    QTest::newRow("stray word") << QStringList{u"board"_s};
    QTest::newRow("kind") << QStringList{u"--kind"_s, u"shy"_s};
    QTest::newRow("buffer below one line") << QStringList{u"--buffer"_s, u"15"_s};
    QTest::newRow("buffer no number") << QStringList{u"--buffer"_s, u"x"_s};
    QTest::newRow("standing still") << QStringList{u"--speed-factor"_s, u"0"_s};
    QTest::newRow("no number at all") << QStringList{u"--speed-factor"_s, u"nan"_s};
    QTest::newRow("fault") << QStringList{u"--misbehave"_s, u"sulk"_s};
    QTest::newRow("variable") << QStringList{u"--set"_s, u"colour=3"_s};
    QTest::newRow("variable out of range") << QStringList{u"--set"_s, u"cmodule=99"_s};
    QTest::newRow("variable without value") << QStringList{u"--set"_s, u"cmodule"_s};
    QTest::newRow("modules") << QStringList{u"--modules"_s, u"33"_s};
}

void QovelmorboardTest::wrongOptions_areRefused()
{
    QFETCH(QStringList, arguments);
    const Reading reading = read(arguments);
    QVERIFY(!reading.goesOn);
    QCOMPARE(reading.exitCode, 2);
    QVERIFY(reading.text.endsWith(u'\n'));
}

void QovelmorboardTest::help_namesEveryFault()
{
    const Reading reading = read({u"--help"_s});
    QVERIFY(!reading.goesOn);
    QCOMPARE(reading.exitCode, 0);
    for (const FaultName &fault : Misbehaviour::names()) {
        const QString line =
            u"\n  "_s + QString::fromUtf8(fault.name.data(), qsizetype(fault.name.size()));
        QVERIFY2(reading.text.contains(line), qPrintable(line));
    }
}

void QovelmorboardTest::controlCommands_areObeyed()
{
    SimulatedBoardOptions options;
    options.throttled = false;
    std::string error;
    const auto board = SimulatedBoard::create(options, error);
    QVERIFY2(board, error.c_str());
    const auto obey = [&board](const char *line) {
        return QByteArray::fromStdString(obeyControlCommand(*board, line).text);
    };
    QCOMPARE(obey("set cmodule 1"), "ok\n");
    QCOMPARE(obey("set cmodule"), "? not understood\n");
    QCOMPARE(obey("set colour 1"), "? not understood\n");
    QCOMPARE(obey("sing"), "? not understood\n");
    QCOMPARE(obey("misbehave sulk"), "? not understood\n");
    QCOMPARE(obey("picture"), QByteArray("⠀").repeated(16).append('\n').repeated(4));
    QVERIFY(obey("state").endsWith(" mode 0 room 128 brightness 255 lines 0\n"));
    QCOMPARE(obey("misbehave mute"), "ok\n");
    QCOMPARE(obey("behave"), "ok\n");
    QVERIFY(ask(QString::fromStdString(board->path()), "ver").endsWith("Ok.\r\n"));
    QCOMPARE(obey("restart"), "ok\n");
    QCOMPARE(board->view().picture.columns.size(), std::size_t{128});
    QCOMPARE(obey("hangup"), "ok\n");
    const auto isOpen = [](const BoardView &view) { return !view.path.empty(); };
    QVERIFY(board->waitUntil(std::not_fn(isOpen), std::chrono::seconds(5)));
    QCOMPARE(obey("return"), "ok\n");
    QVERIFY(board->waitUntil(isOpen, std::chrono::seconds(5)));
    QVERIFY(obeyControlCommand(*board, "quit").quit);
}

void QovelmorboardTest::program_answersOnItsLine()
{
    RunningBoard board({u"--modules"_s, u"6"_s});
    QVERIFY(board.path().startsWith(u"/dev/pts/"_s));
    QCOMPARE(ask(board.path(), "set cmodule"), "set cmodule\r\nD cmodule 6\r\nOk.\r\n");
}

void QovelmorboardTest::program_removesItsLinkWhenAskedToEnd()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath(u"board"_s);
    for (const int signal : {SIGTERM, SIGINT}) {
        RunningBoard board({u"--link"_s, link});
        QCOMPARE(QFileInfo(link).symLinkTarget(), board.path());
        QVERIFY(ask(link, "ver").endsWith("Ok.\r\n"));
        ::kill(pid_t(board.process().processId()), signal);
        QVERIFY(board.process().waitForFinished());
        QCOMPARE(board.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(board.process().exitCode(), 0);
        QVERIFY(!QFileInfo(link).isSymLink());
    }
}

void QovelmorboardTest::program_takesOrdersFromInputAndSocket()
{
    const QTemporaryDir folder;
    const QString socket = folder.filePath(u"control"_s);
    RunningBoard board({u"--control"_s, socket, u"--stdin"_s, u"--unthrottled"_s});
    QCOMPARE(control(socket, "misbehave no-ok*1"), "ok\n");
    QCOMPARE(ask(board.path(), "sc_mode", "D 0\r\n"), "sc_mode\r\nD 0\r\n");
    board.process().write("set cmodule 3\n");
    QVERIFY(board.process().waitForReadyRead());
    QCOMPARE(board.process().readAllStandardOutput(), "ok\n");
    QVERIFY(ask(board.path(), "set cmodule").contains("D cmodule 3\r\n"));
    board.process().write("quit\n");
    QVERIFY(board.process().waitForFinished());
    QCOMPARE(board.process().exitCode(), 0);
    QVERIFY(!QFileInfo::exists(socket));
}

void QovelmorboardTest::program_drawsInTheTerminal()
{
    const QTemporaryDir folder;
    RunningBoard board({u"--terminal"_s, u"--frames"_s, folder.path(), u"--modules"_s, u"1"_s});
    QTRY_VERIFY(QFile::exists(folder.filePath(u"frame-000001.png"_s)));
    QVERIFY(ask(board.path(), "lm_pset 0 0").endsWith("Ok.\r\n"));
    QByteArray drawn;
    const QByteArray lit = "│⠁⠀";
    QTRY_VERIFY((drawn += board.process().readAllStandardOutput()).contains(lit));
    QTRY_VERIFY(QFile::exists(folder.filePath(u"frame-000002.png"_s)));
}

void QovelmorboardTest::program_saysWhyItCannotStart()
{
    QProcess process;
    process.start(programPath(), {u"--log"_s, u"/no/such/folder/log"_s});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(),
             "qovelmorboard: /no/such/folder/log: No such file or directory\n");
}

void QovelmorboardTest::program_endsWithItsParent()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath(u"board"_s);
    QProcess shell;
    // The shell stays the parent for as long as its input is open.
    shell.start(u"/bin/sh"_s, {u"-c"_s, u"\"$0\" --exit-with-parent --link \"$1\" & read line"_s,
                               programPath(), link});
    QVERIFY(shell.waitForStarted());
    QTRY_VERIFY(QFileInfo(link).isSymLink());
    shell.write("end\n");
    QVERIFY(shell.waitForFinished());
    QTRY_VERIFY(!QFileInfo(link).isSymLink());
}

QTEST_GUILESS_MAIN(QovelmorboardTest)
#include "qovelmorboard_test.moc"
