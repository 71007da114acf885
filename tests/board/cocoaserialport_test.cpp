// SPDX-License-Identifier: MIT
#include "tests/board/SerialBench.h"
#include "tests/support/NoPrivileges.h"
#include "tests/support/StridingClock.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <grp.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

class CocoaSerialPortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookup_failuresAreSaidOnStandardOutput();
    void lookup_printsOneLineFeedForEachDevice();
    void lookup_thatTakesTooLong_givesNothing();
    void lookup_leavesOutPathsThatAreTooLong();
    void pathOfAnIndexBeyondTheList_isAbsent();
    void open_unknownIndex_saysSo();
    void open_missingDevice_saysSo();
    void open_noTerminal_saysSo();
    void open_busyDevice_saysSo();
    void open_busyDevice_leavesTheOthersClaim();
    void reopen_withoutPrivileges();
    void open_whenTheSystemHasNoThread_saysSo();
    void openFailureText_data();
    void openFailureText();
    void missingRight_namesTheGroup();
    void open_makesTheLineRawExclusiveAndCloseOnExec();
    void send_isShiftJisAndCounted();
    void send_onAClosedPort_givesNo();
    void sendEffectiveString_emptiesTheQueueFirst();
    void send_waitsForRoom();
    void send_toAFarEndThatStopsReading_givesUp();
    void reopen_startsWithAnEmptyQueue();
    void close_endsTheThreadAndTheDescriptor();
    void manyReopens_leaveNothingBehind();
    void open_withoutTheRight_namesTheGroup();
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

void CocoaSerialPortTest::lookup_leavesOutPathsThatAreTooLong()
{
    SystemClock clock;
    const QByteArray longest = "/dev/" + QByteArray(1018, 'x');
    CocoaSerialPort port(clock, {}, listing({longest, longest + 'x'}));
    StdoutCapture quiet;
    port.initForRS232();
    QCOMPARE(port.portCount(), 1);
    QCOMPARE(port.deviceFilePathWithPortNumber(0), std::optional(QString::fromUtf8(longest)));
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
    SerialBench b;
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

// The superuser gets as far as the lock, and must not take the other program's exclusive use away.
void CocoaSerialPortTest::open_busyDevice_leavesTheOthersClaim()
{
    SerialBench b;
    QCOMPARE(::chmod(b.far.path().constData(), 0666), 0);
    CocoaSerialPort second(b.clock, {}, listing({b.far.path()}));
    const StdoutCapture quiet;
    second.initForRS232();
    QVERIFY(!second.openWithPortNumber(0));
    const NoPrivileges noPrivileges;
    QCOMPARE(::open(b.far.path().constData(), O_RDWR | O_NOCTTY | O_CLOEXEC), -1);
    QCOMPARE(errno, EBUSY);
}

// A pseudo-terminal outlives who closes it, and so would the claim. The superuser gets past it.
void CocoaSerialPortTest::reopen_withoutPrivileges()
{
    const PseudoTerminal far;
    QCOMPARE(::chmod(far.path().constData(), 0666), 0);
    const NoPrivileges noPrivileges;
    SystemClock clock;
    CocoaSerialPort port(clock, {}, listing({far.path()}));
    const StdoutCapture quiet;
    port.initForRS232();
    QVERIFY(port.openWithPortNumber(0));
    QVERIFY(port.reopen());
    port.close();
    QVERIFY(port.openWithPortNumber(0));
}

void CocoaSerialPortTest::open_whenTheSystemHasNoThread_saysSo()
{
    const PseudoTerminal far;
    QCOMPARE(::chmod(far.path().constData(), 0666), 0);
    SystemClock clock;
    CocoaSerialPort port(clock, {}, listing({far.path()}));
    StdoutCapture out;
    port.initForRS232();
    const int descriptors = openDescriptors();
    {
        const NoMoreThreads noMoreThreads;
        QVERIFY(!port.openWithPortNumber(0));
    }
    QCOMPARE(openDescriptors(), descriptors);
    QVERIFY(out.text().contains("Error opening serial port " + far.path() +
                                " - Resource temporarily unavailable(11).\n"));
    QVERIFY(port.openWithPortNumber(0));
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
    SerialBench b;
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
    SerialBench b;
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
    SerialBench b;
    b.arrive("left over");
    QVERIFY(b.port.sendEffectiveString(u"x\r"_s));
    QCOMPARE(b.port.bufferCount(), 0);
    QCOMPARE(b.far.readBytes(2, 5s), "x\r"_ba);
}

// A line that takes nothing for the moment loses no byte.
void CocoaSerialPortTest::send_waitsForRoom()
{
    SerialBench b(patientLimits);
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
    SerialBench b;
    // The line's time for these bytes is kept short so that only the slack remains.
    b.port.attributes().setBaudRate(921600);
    const auto start = steady_clock::now();
    QVERIFY(!b.port.sendString(QString(30'000, u'x')));
    const auto taken = steady_clock::now() - start;
    QVERIFY(taken >= shortLimits.sendSlack);
    QVERIFY(taken < shortLimits.sendSlack + 3s);
    QCOMPARE(b.port.proveCount(), 0);
}

void CocoaSerialPortTest::reopen_startsWithAnEmptyQueue()
{
    SerialBench b;
    b.arrive("old");
    QVERIFY(b.port.reopen());
    QCOMPARE(b.port.bufferCount(), 0);
    b.arrive("new");
    QCOMPARE(b.port.receiveString(), std::optional(u"new"_s));
    QCOMPARE(b.port.portNumber(), 0);
    QVERIFY(!b.port.isLost());
}

void CocoaSerialPortTest::close_endsTheThreadAndTheDescriptor()
{
    SerialBench b;
    b.port.close();
    QVERIFY(!b.port.isOpen());
    QVERIFY(!b.port.sendString(u"x"_s));
    QVERIFY(b.port.openWithPortNumber(0));
    b.arrive("again");
}

void CocoaSerialPortTest::manyReopens_leaveNothingBehind()
{
    SerialBench b;
    const int before = openDescriptors();
    for (int i = 0; i < 200; ++i)
        QVERIFY(b.port.reopen());
    QCOMPARE(openDescriptors(), before);
    b.arrive("alive");
}

void CocoaSerialPortTest::open_withoutTheRight_namesTheGroup()
{
    const PseudoTerminal far;
    QCOMPARE(::chmod(far.path().constData(), 0), 0);
    struct stat status
    {};
    QCOMPARE(::stat(far.path().constData(), &status), 0);
    SystemClock clock;
    CocoaSerialPort port(clock, {}, listing({far.path()}));
    StdoutCapture out;
    port.initForRS232();
    bool opened = true;
    {
        const NoPrivileges noPrivileges;
        opened = port.openWithPortNumber(0);
    }
    QVERIFY(!opened);
    const QByteArray text = out.text();
    QVERIFY2(
        text.contains("Error opening serial port " + far.path() + " - Permission denied(13).\n"),
        text.constData());
    const QString group = QString::fromUtf8(getgrgid(status.st_gid)->gr_name);
    QVERIFY2(port.openProblem().contains(u"グループ%1に加わり"_s.arg(group)),
             qPrintable(port.openProblem()));
    QVERIFY(!port.isLost());
}

QTEST_GUILESS_MAIN(CocoaSerialPortTest)
#include "cocoaserialport_test.moc"
