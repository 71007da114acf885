// SPDX-License-Identifier: MIT
#include "board/CocoaSerialPort.h"
#include "platform/SystemClock.h"
#include "tests/board/RecordingLog.h"
#include "tests/board/StridingClock.h"
#include "tests/support/PseudoTerminal.h"
#include "tests/support/StdoutCapture.h"

#include <QTemporaryDir>
#include <QTest>

#include <dirent.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>

#include <algorithm>
#include <thread>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

namespace {

// Long enough that a loaded machine does not reach it by accident, short enough to wait for.
constexpr PortLimits shortLimits{
    .receiveWatch = 250ms, .receiveStringWatch = 250ms, .pollStep = 20ms, .sendSlack = 200ms};

CocoaSerialPort::DeviceLookup listing(const QList<QByteArray> &paths)
{
    return [paths](SerialDeviceType) { return SerialLookup{0, false, paths}; };
}

/// A port on a fresh pseudo-terminal; standard output is kept out of the test's own.
struct Bench
{
    explicit Bench(PortLimits limits = shortLimits) : port(clock, limits, listing({far.path()}))
    {
        port.setMessageList(&log);
        port.setPortLoss(&log);
        StdoutCapture quiet;
        port.initForRS232();
        if (!port.openWithPortNumber(0))
            qFatal("the pseudo-terminal does not open");
    }

    /// The far end sends, and the port's queue has it.
    void arrive(const QByteArray &bytes)
    {
        const auto wanted = port.bufferCount() + bytes.size();
        far.write(bytes);
        QTRY_COMPARE_WITH_TIMEOUT(port.bufferCount(), wanted, 5000);
    }

    SystemClock clock;
    PseudoTerminal far;
    RecordingLog log;
    CocoaSerialPort port;
};

/// Sends what it is told after a delay, on a thread of its own.
class LateSender
{
public:
    LateSender(const PseudoTerminal &far, std::chrono::milliseconds delay, QByteArray bytes)
        : thread_([&far, delay, bytes] {
            std::this_thread::sleep_for(delay);
            far.write(bytes);
        })
    {}
    ~LateSender() { thread_.join(); }

private:
    std::thread thread_;
};

double processSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

int openDescriptors()
{
    int count = 0;
    DIR *folder = opendir("/proc/self/fd");
    while (readdir(folder) != nullptr)
        ++count;
    closedir(folder);
    return count;
}

} // namespace

class CocoaSerialPortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookup_failuresAreSaidOnStandardOutput();
    void lookup_printsOneLineFeedForEachDevice();
    void lookup_thatTakesTooLong_givesNothing();
    void pathOfAnIndexBeyondTheList_isAbsent();
    void open_unknownIndex_saysSo();
    void open_missingDevice_saysSo();
    void open_noTerminal_saysSo();
    void open_busyDevice_saysSo();
    void openFailureText_data();
    void openFailureText();
    void missingRight_namesTheGroup();
    void open_makesTheLineRawExclusiveAndCloseOnExec();
    void send_isShiftJisAndCounted();
    void send_onAClosedPort_givesNo();
    void sendEffectiveString_emptiesTheQueueFirst();
    void send_waitsForRoom();
    void send_toAFarEndThatStopsReading_givesUp();
    void receiveChar_givesTheNextByte();
    void receiveChar_timesOut();
    void receiveBuffer_givesAtMost1023Bytes();
    void receiveBuffer_watch();
    void receiveString_onAnEmptyQueue_isEmptyAtOnce();
    void receiveString_readsShiftJis();
    void receiveString_watch();
    void receiveStringWhilein_waitsThatLong();
    void receiveStringMorethan_waitsForTheCount();
    void receiveStringMorethan_timeIsUp_givesWhatIsThere();
    void receiveStringMorethan_watchEndsLongWaits();
    void untilEOS_waitsForTheLastMark();
    void untilEOS_marksCutInTwo();
    void untilEOS_timesOutAndReopens();
    void untilEOS_receiveStringThatTimesOut_isError2();
    void untilEOS_seesAByteWithinTwoMilliseconds();
    void countEOS_data();
    void countEOS();
    void countEOS_watch();
    void receiveBreak_endsEachWait_data();
    void receiveBreak_endsEachWait();
    void reopen_startsWithAnEmptyQueue();
    void reopen_ofANeverOpenedPort_alertsNobody();
    void hangUp_idleBurnsNoCore();
    void hangUp_whileWaiting_losesThePortOnce();
    void lostPort_answersAtOnce();
    void fullQueue_goesOnOnceThereIsRoom();
    void fullQueue_burnsNoCore();
    void close_endsTheThreadAndTheDescriptor();
    void manyReopens_leaveNothingBehind();
    void endOfTheProgram_endsPolls();
};

void CocoaSerialPortTest::lookup_failuresAreSaidOnStandardOutput()
{
    SystemClock clock;
    CocoaSerialPort absent(clock, {}, [](SerialDeviceType) {
        return SerialLookup{-19, true, {"/tmp/named"}};
    });
    StdoutCapture out;
    QVERIFY(!absent.initForRS232());
    QCOMPARE(out.text(), "IOServiceMatching returned a NULL dictionary.\n"_ba);
    QCOMPARE(absent.deviceFilePathWithPortNumber(0), std::optional(u"/tmp/named"_s));

    CocoaSerialPort failing(clock, {}, [](SerialDeviceType) {
        return SerialLookup{-5, false, {}};
    });
    StdoutCapture second;
    QVERIFY(!failing.initSerialPort());
    QCOMPARE(second.text(), "IOServiceGetMatchingServices returned -5\n"_ba);
    QCOMPARE(failing.portCount(), 0);
}

void CocoaSerialPortTest::lookup_printsOneLineFeedForEachDevice()
{
    SystemClock clock;
    CocoaSerialPort port(clock, {}, listing({"/dev/cu.usbserial-A1", "/dev/ttyUSB0"}));
    StdoutCapture out;
    QVERIFY(port.initForModem());
    QCOMPARE(out.text(), "\n\n"_ba);
    QCOMPARE(port.portNames(), (QStringList{u"usbserial-A1"_s, u"ttyUSB0"_s}));
    QCOMPARE(port.tries(), 3);
}

void CocoaSerialPortTest::lookup_thatTakesTooLong_givesNothing()
{
    StridingClock clock;
    RecordingLog log;
    CocoaSerialPort port(clock, {}, listing({"/dev/a", "/dev/b"}));
    port.setMessageList(&log);
    clock.setStride(700ms);
    StdoutCapture out;
    port.initForRS232();
    QCOMPARE(out.text(), "\n"_ba);
    QCOMPARE(port.portCount(), 0);
    QCOMPARE(log.lines(), QStringList(u"watch CocoaSerialPort:getDeviceFilePathWithIterator"_s));
}

void CocoaSerialPortTest::pathOfAnIndexBeyondTheList_isAbsent()
{
    SystemClock clock;
    CocoaSerialPort port(clock, {}, listing({"/dev/a"}));
    StdoutCapture quiet;
    port.initForRS232();
    QCOMPARE(port.deviceFilePathWithPortNumber(0), std::optional(u"/dev/a"_s));
    QCOMPARE(port.deviceFilePathWithPortNumber(1), std::nullopt);
    QCOMPARE(port.deviceFilePathWithPortNumber(-1), std::nullopt);
}

void CocoaSerialPortTest::open_unknownIndex_saysSo()
{
    SystemClock clock;
    CocoaSerialPort port(clock, {}, listing({}));
    StdoutCapture out;
    QVERIFY(!port.openWithPortNumber(0));
    QCOMPARE(out.text(), "Error opening serial port (null) - Bad address(14).\n"_ba);
    QVERIFY(!port.isOpen());
}

void CocoaSerialPortTest::open_missingDevice_saysSo()
{
    SystemClock clock;
    CocoaSerialPort port(clock, {}, listing({"/nowhere/tty"}));
    StdoutCapture out;
    port.initForRS232();
    QVERIFY(!port.openWithPortNumber(0));
    const QByteArray text = out.text();
    QVERIFY2(text.startsWith(
                 "\nError opening serial port /nowhere/tty - No such file or directory(2).\n"),
             text.constData());
    QCOMPARE(port.openProblem(), u"/nowhere/ttyが接続されていません。"_s);
}

void CocoaSerialPortTest::open_noTerminal_saysSo()
{
    SystemClock clock;
    QTemporaryDir folder;
    QFile file(folder.filePath(u"plain"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray path = file.fileName().toUtf8();
    CocoaSerialPort port(clock, {}, listing({path}));
    StdoutCapture out;
    port.initForRS232();
    QVERIFY(!port.openWithPortNumber(0));
    QCOMPARE(out.text(),
             "\nError setting TIOCEXCL on " + path + " - Inappropriate ioctl for device(25).\n");
}

void CocoaSerialPortTest::open_busyDevice_saysSo()
{
    Bench b;
    CocoaSerialPort second(b.clock, {}, listing({b.far.path()}));
    StdoutCapture out;
    second.initForRS232();
    QVERIFY(!second.openWithPortNumber(0));
    // The superuser is let in by TIOCEXCL and meets the lock; others are turned away before.
    const QByteArray text = out.text();
    QVERIFY2(text.contains(b.far.path() + " - Device or resource busy(16).\n"), text.constData());
    QVERIFY(second.openProblem().endsWith(u"他のプログラムが使用中です。"_s));
    QVERIFY(b.port.sendString(u"still mine"_s));
}

void CocoaSerialPortTest::openFailureText_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("open") << 0 << "Error opening serial port /dev/x - Permission denied(13).\n"_ba;
    QTest::newRow("claim") << 1 << "Error setting TIOCEXCL on /dev/x - Permission denied(13).\n"_ba;
    QTest::newRow("read settings")
        << 2 << "Error getting tty attributes /dev/x - Permission denied(13).\n"_ba;
    QTest::newRow("write settings")
        << 3 << "Error setting tty attributes /dev/x - Permission denied(13).\n"_ba;
}

void CocoaSerialPortTest::openFailureText()
{
    QFETCH(int, step);
    QTEST(qovelmor::openFailureText("/dev/x", {static_cast<OpenFailure::Step>(step), EACCES}),
          "text");
}

void CocoaSerialPortTest::missingRight_namesTheGroup()
{
    const QString advice = openFailureAdvice("/dev/null", {OpenFailure::Step::Open, EACCES});
    QCOMPARE(advice, u"/dev/nullを開く権限がありません。グループrootに加わり "
                     u"(sudo usermod -aG root $USER)、ログインし直してください。"_s);
}

void CocoaSerialPortTest::open_makesTheLineRawExclusiveAndCloseOnExec()
{
    Bench b;
    termios record{};
    QCOMPARE(tcgetattr(b.far.descriptor(), &record), 0); // the two ends share one record
    QCOMPARE(record.c_lflag & (ICANON | ECHO | ISIG), tcflag_t(0));
    QCOMPARE(cfgetispeed(&record), speed_t(B19200));
    QCOMPARE(b.port.attributes().baudRate(), 19200);

    int checked = 0;
    for (int descriptor = 3; descriptor < 64; ++descriptor) {
        std::array<char, 128> name{};
        if (ttyname_r(descriptor, name.data(), name.size()) != 0 || b.far.path() != name.data())
            continue;
        int exclusive = 0;
        QCOMPARE(ioctl(descriptor, TIOCGEXCL, &exclusive), 0);
        QCOMPARE(exclusive, 1);
        QVERIFY((fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0);
        QVERIFY((fcntl(descriptor, F_GETFL) & O_NONBLOCK) != 0);
        ++checked;
    }
    QCOMPARE(checked, 1);
}

void CocoaSerialPortTest::send_isShiftJisAndCounted()
{
    Bench b;
    QVERIFY(b.port.sendString(u"lm_puts ア漢\r"_s));
    QVERIFY(b.port.sendChar(0xFF));
    QCOMPARE(b.far.readBytes(14, 5s), "lm_puts \x83\x41\x8a\xbf\r\xff"_ba);
    QCOMPARE(b.port.proveCount(), 1);
}

void CocoaSerialPortTest::send_onAClosedPort_givesNo()
{
    SystemClock clock;
    CocoaSerialPort port(clock, shortLimits, listing({}));
    QVERIFY(!port.sendChar('x'));
    QVERIFY(!port.sendString(u"x"_s));
    QCOMPARE(port.proveCount(), 0);
}

void CocoaSerialPortTest::sendEffectiveString_emptiesTheQueueFirst()
{
    Bench b;
    b.arrive("left over");
    QVERIFY(b.port.sendEffectiveString(u"x\r"_s));
    QCOMPARE(b.port.bufferCount(), 0);
    QCOMPARE(b.far.readBytes(2, 5s), "x\r"_ba);
}

// A line that takes nothing for the moment loses no byte.
void CocoaSerialPortTest::send_waitsForRoom()
{
    Bench b;
    const QString text(60'000, u'x');
    QByteArray arrived;
    std::thread reader([&] {
        std::this_thread::sleep_for(50ms);
        arrived = b.far.readBytes(60'000, 20s);
    });
    const bool sent = b.port.sendString(text);
    reader.join();
    QVERIFY(sent);
    QCOMPARE(arrived, text.toLatin1());
}

void CocoaSerialPortTest::send_toAFarEndThatStopsReading_givesUp()
{
    Bench b;
    // The line's time for these bytes is kept short so that only the slack remains.
    b.port.attributes().setBaudRate(921600);
    const auto start = steady_clock::now();
    QVERIFY(!b.port.sendString(QString(30'000, u'x')));
    const auto taken = steady_clock::now() - start;
    QVERIFY(taken >= shortLimits.sendSlack);
    QVERIFY(taken < shortLimits.sendSlack + 3s);
    QCOMPARE(b.port.proveCount(), 0);
}

void CocoaSerialPortTest::receiveChar_givesTheNextByte()
{
    Bench b;
    const LateSender sender(b.far, 50ms, "ab");
    QCOMPARE(b.port.receiveChar(), quint8('a'));
    QTRY_COMPARE(b.port.bufferCount(), 1);
    QCOMPARE(b.port.receiveChar(), quint8('b'));
    QVERIFY(b.log.lines().isEmpty());
}

void CocoaSerialPortTest::receiveChar_timesOut()
{
    Bench b;
    QCOMPARE(b.port.receiveChar(), quint8(0));
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveChar"_s));
    QVERIFY(b.port.isOpen());
}

void CocoaSerialPortTest::receiveBuffer_givesAtMost1023Bytes()
{
    Bench b;
    b.arrive(QByteArray(1500, 'x'));
    QCOMPARE(b.port.receiveBuffer()->size(), 1023);
    QCOMPARE(b.port.receiveBuffer()->size(), 477);
    QCOMPARE(b.port.receiveBuffer()->size(), 0);
}

void CocoaSerialPortTest::receiveBuffer_watch()
{
    StridingClock clock;
    PseudoTerminal far;
    RecordingLog log;
    CocoaSerialPort port(clock, {}, listing({far.path()}));
    port.setMessageList(&log);
    StdoutCapture quiet;
    port.initForRS232();
    QVERIFY(port.openWithPortNumber(0));
    far.write("xx");
    QTRY_COMPARE(port.bufferCount(), 2);
    clock.setStride(1100ms);
    QCOMPARE(port.receiveBuffer(), std::nullopt);
    QCOMPARE(log.lines(), QStringList(u"watch CocoaSerialPort:receiveBuffer"_s));
    QVERIFY(port.isOpen());
}

void CocoaSerialPortTest::receiveString_onAnEmptyQueue_isEmptyAtOnce()
{
    Bench b;
    const auto start = steady_clock::now();
    const auto text = b.port.receiveString();
    QVERIFY(steady_clock::now() - start < 200ms);
    QVERIFY(text.has_value());
    QVERIFY(text->isEmpty());
}

void CocoaSerialPortTest::receiveString_readsShiftJis()
{
    Bench b;
    b.arrive(QByteArray(2000, 'x') + "\x83\x41");
    QCOMPARE(b.port.receiveString(), std::optional(QString(2000, u'x') + u'ア'));
}

void CocoaSerialPortTest::receiveString_watch()
{
    StridingClock clock;
    PseudoTerminal far;
    RecordingLog log;
    CocoaSerialPort port(clock, {}, listing({far.path()}));
    port.setMessageList(&log);
    StdoutCapture quiet;
    port.initForRS232();
    QVERIFY(port.openWithPortNumber(0));
    far.write("xx");
    QTRY_COMPARE(port.bufferCount(), 2);
    clock.setStride(600ms);
    QCOMPARE(port.receiveString(), std::nullopt);
    QCOMPARE(log.lines(), QStringList(u"watch CocoaSerialPort:receiveString"_s));
}

void CocoaSerialPortTest::receiveStringWhilein_waitsThatLong()
{
    Bench b;
    const LateSender sender(b.far, 30ms, "V 1.0\r\n");
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveStringWhilein(0.3), std::optional(u"V 1.0\r\n"_s));
    QVERIFY(steady_clock::now() - start >= 300ms);
}

void CocoaSerialPortTest::receiveStringMorethan_waitsForTheCount()
{
    Bench b;
    b.arrive("abc");
    const LateSender sender(b.far, 50ms, "defg");
    QCOMPARE(b.port.receiveStringMorethan(7), std::optional(u"abcdefg"_s));
    QVERIFY(b.log.lines().isEmpty());
}

void CocoaSerialPortTest::receiveStringMorethan_timeIsUp_givesWhatIsThere()
{
    Bench b;
    b.arrive("abc");
    QCOMPARE(b.port.receiveStringMorethan(7, 0.1), std::optional(u"abc"_s));
    QCOMPARE(b.log.lines(), QStringList(u"CocoaSerialPort: Receive string is time up."_s));
}

// The watch is asked before the time given, so it wins although both are counted from the call.
void CocoaSerialPortTest::receiveStringMorethan_watchEndsLongWaits()
{
    Bench b;
    b.arrive("abc");
    QCOMPARE(b.port.receiveStringMorethan(7, 3.0), std::nullopt);
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveStringMorethan"_s));
}

void CocoaSerialPortTest::untilEOS_waitsForTheLastMark()
{
    Bench b;
    b.arrive("D 1\r\nOk.\r\n");
    const LateSender sender(b.far, 60ms, "D 2\r\nOk.");
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(1), std::optional(u"D 1\r\nOk.\r\nD 2\r\nOk."_s));
}

void CocoaSerialPortTest::untilEOS_marksCutInTwo()
{
    Bench b;
    b.arrive("D \x83");
    const LateSender sender(b.far, 40ms, "\x41 O");
    const LateSender second(b.far, 80ms, "k.");
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::optional(u"D ア Ok."_s));
}

void CocoaSerialPortTest::untilEOS_timesOutAndReopens()
{
    Bench b;
    b.arrive("D 1\r\n");
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    QVERIFY(steady_clock::now() - start >= shortLimits.receiveWatch);
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveStringUntilEOSWithSkip"_s));
    b.arrive("Ok.");
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::optional(u"Ok."_s));
}

void CocoaSerialPortTest::untilEOS_receiveStringThatTimesOut_isError2()
{
    StridingClock clock;
    PseudoTerminal far;
    RecordingLog log;
    CocoaSerialPort port(clock, {}, listing({far.path()}));
    port.setMessageList(&log);
    StdoutCapture quiet;
    port.initForRS232();
    QVERIFY(port.openWithPortNumber(0));
    far.write("Ok.");
    QTRY_COMPARE(port.bufferCount(), 3);
    clock.setStride(510ms); // over the watch of receiveString, not yet over the one of the whole
    QCOMPARE(port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    QCOMPARE(log.lines(), (QStringList{u"watch CocoaSerialPort:receiveString"_s,
                                       u"CocoaSerialPort:receiveStringUntilEOSWithSkip:error2"_s}));
    QVERIFY(port.isOpen());
}

void CocoaSerialPortTest::untilEOS_seesAByteWithinTwoMilliseconds()
{
    Bench b(PortLimits{});
    std::vector<double> milliseconds;
    for (int round = 0; round < 41; ++round) {
        std::atomic<steady_clock::time_point> sent{};
        std::thread sender([&] {
            std::this_thread::sleep_for(3ms);
            sent = steady_clock::now();
            b.far.write("Ok.");
        });
        QVERIFY(b.port.receiveStringUntilEOSWithSkip(0).has_value());
        const auto seen = steady_clock::now();
        sender.join();
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>(seen - sent.load()).count());
    }
    std::nth_element(milliseconds.begin(), milliseconds.begin() + 20, milliseconds.end());
    QVERIFY2(milliseconds[20] < 2.0, qPrintable(QString::number(milliseconds[20])));
}

void CocoaSerialPortTest::countEOS_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("marks");
    QTest::newRow("empty") << u""_s << 0;
    QTest::newRow("almost") << u"Ok"_s << 0;
    QTest::newRow("other case") << u"OK.ok."_s << 0;
    QTest::newRow("one") << u"D 1\r\nOk.\r\n"_s << 1;
    QTest::newRow("two") << u"Ok. and Ok."_s << 2;
    QTest::newRow("side by side") << u"Ok.Ok.Ok."_s << 3;
}

void CocoaSerialPortTest::countEOS()
{
    QFETCH(QString, text);
    SystemClock clock;
    const CocoaSerialPort port(clock, {}, listing({}));
    QTEST(port.countEOSWithString(text), "marks");
}

void CocoaSerialPortTest::countEOS_watch()
{
    StridingClock clock;
    RecordingLog log;
    CocoaSerialPort port(clock, {}, listing({}));
    port.setMessageList(&log);
    clock.setStride(700ms);
    QCOMPARE(port.countEOSWithString(u"Ok.Ok."_s), -1);
    QCOMPARE(log.lines(), QStringList(u"watch CocoaSerialPort:countEOSWithString"_s));
}

void CocoaSerialPortTest::receiveBreak_endsEachWait_data()
{
    QTest::addColumn<int>("operation");
    QTest::newRow("receiveChar") << 0;
    QTest::newRow("receiveStringMorethan") << 1;
    QTest::newRow("receiveStringUntilEOSWithSkip") << 2;
}

void CocoaSerialPortTest::receiveBreak_endsEachWait()
{
    QFETCH(int, operation);
    Bench b(PortLimits{});
    std::thread other([&b] {
        std::this_thread::sleep_for(50ms);
        b.port.receiveBreak();
    });
    const auto start = steady_clock::now();
    switch (operation) {
    case 0:
        QCOMPARE(b.port.receiveChar(), quint8(0));
        break;
    case 1:
        QCOMPARE(b.port.receiveStringMorethan(4), std::nullopt);
        break;
    case 2:
        QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
        break;
    }
    other.join();
    QVERIFY(steady_clock::now() - start < 900ms);
    QVERIFY(b.log.lines().isEmpty());

    b.arrive("Ok."); // the request was used up
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::optional(u"Ok."_s));

    b.arrive("left"); // without a wait running it meets the next one
    b.port.receiveBreak();
    QCOMPARE(b.port.receiveString(), std::nullopt);
    QCOMPARE(b.port.receiveString(), std::optional(u"left"_s));
}

void CocoaSerialPortTest::reopen_startsWithAnEmptyQueue()
{
    Bench b;
    b.arrive("old");
    QVERIFY(b.port.reopen());
    QCOMPARE(b.port.bufferCount(), 0);
    b.arrive("new");
    QCOMPARE(b.port.receiveString(), std::optional(u"new"_s));
    QCOMPARE(b.port.portNumber(), 0);
    QVERIFY(!b.port.isLost());
}

void CocoaSerialPortTest::reopen_ofANeverOpenedPort_alertsNobody()
{
    SystemClock clock;
    RecordingLog log;
    CocoaSerialPort port(clock, {}, listing({"/nowhere/tty"}));
    port.setMessageList(&log);
    port.setPortLoss(&log);
    StdoutCapture quiet;
    port.initForRS232();
    QVERIFY(!port.openWithPortNumber(0));
    QVERIFY(!port.reopen());
    QVERIFY(!port.isLost());
    const auto start = steady_clock::now();
    QCOMPARE(port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    QCOMPARE(port.receiveStringMorethan(1), std::nullopt);
    QCOMPARE(port.receiveChar(), quint8(0));
    QVERIFY(steady_clock::now() - start < 500ms);
    QVERIFY(log.lines().isEmpty());
}

void CocoaSerialPortTest::hangUp_idleBurnsNoCore()
{
    Bench b;
    b.far.hangUp();
    const double before = processSeconds();
    std::this_thread::sleep_for(400ms);
    QVERIFY(processSeconds() - before < 0.1);
    QVERIFY(!b.port.sendString(u"x"_s));
}

void CocoaSerialPortTest::hangUp_whileWaiting_losesThePortOnce()
{
    Bench b;
    std::thread cable([&b] {
        std::this_thread::sleep_for(50ms);
        b.far.hangUp();
    });
    StdoutCapture out;
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    cable.join();
    QVERIFY(b.port.isLost());
    QVERIFY(out.text().contains("Error opening serial port " + b.far.path()));
    const QStringList expected{
        u"watch CocoaSerialPort:receiveStringUntilEOSWithSkip"_s,
        u"lost 通信ポート再開エラー|通信ポートの再開に失敗しました。QoVelmorRSSを終了します。|了解"_s,
        u"display stopped"_s};
    QCOMPARE(b.log.lines(), expected);
}

void CocoaSerialPortTest::lostPort_answersAtOnce()
{
    Bench b;
    b.far.hangUp();
    StdoutCapture quiet;
    QCOMPARE(b.port.receiveChar(), quint8(0));
    QVERIFY(b.port.isLost());
    b.log.takeLines();

    PseudoTerminal again; // may have got the old name: nobody opens it
    const auto start = steady_clock::now();
    QVERIFY(!b.port.sendChar('x'));
    QVERIFY(!b.port.sendString(u"x"_s));
    QVERIFY(!b.port.sendEffectiveString(u"x"_s));
    QCOMPARE(b.port.receiveChar(), quint8(0));
    QCOMPARE(b.port.receiveBuffer(), std::nullopt);
    QCOMPARE(b.port.receiveString(), std::nullopt);
    QCOMPARE(b.port.receiveStringWhilein(0.5), std::nullopt);
    QCOMPARE(b.port.receiveStringMorethan(1), std::nullopt);
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    QVERIFY(!b.port.reopen());
    QVERIFY(!b.port.openWithPortNumber(0));
    QVERIFY(steady_clock::now() - start < 200ms);
    QVERIFY(b.log.lines().isEmpty());
}

void CocoaSerialPortTest::fullQueue_goesOnOnceThereIsRoom()
{
    Bench b;
    QByteArray sent;
    for (int i = 0; i < 10'000; ++i)
        sent += static_cast<char>('a' + i % 26);
    QVERIFY(b.far.write(sent.first(4000)));
    QTRY_COMPARE(b.port.bufferCount(), 4000);
    QVERIFY(b.far.write(sent.sliced(4000, 4000)));
    QTRY_COMPARE(b.port.bufferCount(), 8000);
    QVERIFY(b.far.write(sent.sliced(8000)));
    QTRY_COMPARE(b.port.bufferCount(), 8192);
    QByteArray received;
    QTRY_VERIFY_WITH_TIMEOUT((received += *b.port.receiveBuffer()).size() == sent.size(), 5000);
    QCOMPARE(received, sent);
}

void CocoaSerialPortTest::fullQueue_burnsNoCore()
{
    Bench b;
    QVERIFY(b.far.write(QByteArray(4000, 'x')));
    QTRY_COMPARE(b.port.bufferCount(), 4000);
    QVERIFY(b.far.write(QByteArray(4000, 'x')));
    QTRY_COMPARE(b.port.bufferCount(), 8000);
    QVERIFY(b.far.write(QByteArray(4000, 'x')));
    QTRY_COMPARE(b.port.bufferCount(), 8192);
    const double before = processSeconds();
    std::this_thread::sleep_for(400ms);
    QVERIFY(processSeconds() - before < 0.1);
    b.port.bufferClear();
    QTRY_COMPARE(b.port.bufferCount(), 12'000 - 8192);
}

void CocoaSerialPortTest::close_endsTheThreadAndTheDescriptor()
{
    Bench b;
    b.port.close();
    QVERIFY(!b.port.isOpen());
    QVERIFY(!b.port.sendString(u"x"_s));
    QVERIFY(b.port.openWithPortNumber(0));
    b.arrive("again");
}

void CocoaSerialPortTest::manyReopens_leaveNothingBehind()
{
    Bench b;
    const int before = openDescriptors();
    for (int i = 0; i < 200; ++i)
        QVERIFY(b.port.reopen());
    QCOMPARE(openDescriptors(), before);
    b.arrive("alive");
}

void CocoaSerialPortTest::endOfTheProgram_endsPolls()
{
    Bench b(PortLimits{});
    b.clock.endSleeps();
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveChar(), quint8(0));
    QCOMPARE(b.port.receiveStringMorethan(4), std::nullopt);
    QVERIFY(steady_clock::now() - start < 500ms);
    QVERIFY(b.log.lines().isEmpty());
}

QTEST_GUILESS_MAIN(CocoaSerialPortTest)
#include "cocoaserialport_test.moc"
