// SPDX-License-Identifier: MIT
#include "platform/SimulatedClock.h"
#include "tests/board/SerialBench.h"
#include "tests/board/SimulatedWire.h"
#include "tests/support/StridingClock.h"

#include <termios.h>

#include <algorithm>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

class SerialReceiveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
    void untilEOS_timeBeginsWhenTheCommandHasLeft();
    void untilEOS_receiveStringThatTimesOut_isError2();
    void untilEOS_seesAByteWithinTwoMilliseconds();
    void countEOS_data();
    void countEOS();
    void countEOS_watch();
    void receiveBreak_endsEachWait_data();
    void receiveBreak_endsEachWait();
    void receiveCharAndMorethan_lookEveryTenthOfASecond();
};

void SerialReceiveTest::receiveChar_givesTheNextByte()
{
    SerialBench b(patientLimits);
    const LateSender sender(b.far, 50ms, "ab");
    QCOMPARE(b.port.receiveChar(), quint8('a'));
    QTRY_COMPARE(b.port.bufferCount(), 1);
    QCOMPARE(b.port.receiveChar(), quint8('b'));
    QVERIFY(b.log.lines().isEmpty());
}

void SerialReceiveTest::receiveChar_timesOut()
{
    SerialBench b;
    QCOMPARE(b.port.receiveChar(), quint8(0));
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveChar"_s));
    QVERIFY(b.port.isOpen());
}

void SerialReceiveTest::receiveBuffer_givesAtMost1023Bytes()
{
    SerialBench b(patientLimits);
    b.arrive(QByteArray(1500, 'x'));
    QCOMPARE(b.port.receiveBuffer()->size(), 1023);
    QCOMPARE(b.port.receiveBuffer()->size(), 477);
    QCOMPARE(b.port.receiveBuffer()->size(), 0);
}

void SerialReceiveTest::receiveBuffer_watch()
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

void SerialReceiveTest::receiveString_onAnEmptyQueue_isEmptyAtOnce()
{
    SerialBench b;
    const auto start = steady_clock::now();
    const auto text = b.port.receiveString();
    QVERIFY(steady_clock::now() - start < 200ms);
    QVERIFY(text.has_value());
    QVERIFY(text->isEmpty());
}

void SerialReceiveTest::receiveString_readsShiftJis()
{
    SerialBench b(patientLimits);
    b.arrive(QByteArray(2000, 'x') + "\x83\x41");
    QCOMPARE(b.port.receiveString(), std::optional(QString(2000, u'x') + u'ア'));
}

void SerialReceiveTest::receiveString_watch()
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

void SerialReceiveTest::receiveStringWhilein_waitsThatLong()
{
    SerialBench b(patientLimits);
    const LateSender sender(b.far, 30ms, "V 1.0\r\n");
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveStringWhilein(0.3), std::optional(u"V 1.0\r\n"_s));
    QVERIFY(steady_clock::now() - start >= 300ms);
}

void SerialReceiveTest::receiveStringMorethan_waitsForTheCount()
{
    SerialBench b(patientLimits);
    b.arrive("abc");
    const LateSender sender(b.far, 50ms, "defg");
    QCOMPARE(b.port.receiveStringMorethan(7), std::optional(u"abcdefg"_s));
    QVERIFY(b.log.lines().isEmpty());
}

void SerialReceiveTest::receiveStringMorethan_timeIsUp_givesWhatIsThere()
{
    SerialBench b;
    b.arrive("abc");
    QCOMPARE(b.port.receiveStringMorethan(7, 0.1), std::optional(u"abc"_s));
    QCOMPARE(b.log.lines(), QStringList(u"CocoaSerialPort: Receive string is time up."_s));
}

// The watch is asked before the time given, so it wins although both are counted from the call.
void SerialReceiveTest::receiveStringMorethan_watchEndsLongWaits()
{
    SerialBench b;
    b.arrive("abc");
    QCOMPARE(b.port.receiveStringMorethan(7, 3.0), std::nullopt);
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveStringMorethan"_s));
}

void SerialReceiveTest::untilEOS_waitsForTheLastMark()
{
    SerialBench b(patientLimits);
    b.arrive("D 1\r\nOk.\r\n");
    const LateSender sender(b.far, 60ms, "D 2\r\nOk.");
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(1), std::optional(u"D 1\r\nOk.\r\nD 2\r\nOk."_s));
}

void SerialReceiveTest::untilEOS_marksCutInTwo()
{
    SimulatedClock clock({});
    const SimulatedWire::Script inThreePieces = [](const QByteArray &) {
        return QList<SimulatedWire::Piece>{{"D \x83"}, {"\x41 O", 40ms}, {"k.", 40ms}};
    };
    CocoaSerialPort port(clock, {}, listing({"/dev/board"}), [&](Clock &ticks, CharacterQue &que) {
        return std::make_unique<SimulatedWire>(ticks, que, inThreePieces);
    });
    StdoutCapture quiet;
    port.initForRS232();
    QVERIFY(port.openWithPortNumber(0));
    QVERIFY(port.sendString(u"ask\r"_s));
    const auto start = clock.steadyNow();
    QCOMPARE(port.receiveStringUntilEOSWithSkip(0), std::optional(u"D ア Ok."_s));
    QVERIFY(clock.steadyNow() - start >= 80ms); // for the last of them
}

// A command of 1920 bytes is on its way for a second at 19200 baud.
void SerialReceiveTest::untilEOS_timeBeginsWhenTheCommandHasLeft()
{
    SerialBench b;
    QVERIFY(b.port.sendEffectiveString(QString(1920, u'x')));
    const LateSender sender(b.far, 500ms, "Ok.");
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::optional(u"Ok."_s));
    QVERIFY(b.log.lines().isEmpty());
}

void SerialReceiveTest::untilEOS_timesOutAndReopens()
{
    SerialBench b;
    termios record{};
    QCOMPARE(tcgetattr(b.far.descriptor(), &record), 0); // the two ends share one record
    cfsetispeed(&record, B9600);
    cfsetospeed(&record, B9600);
    QCOMPARE(tcsetattr(b.far.descriptor(), TCSANOW, &record), 0);
    b.arrive("D 1\r\n");
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    QVERIFY(steady_clock::now() - start >= shortLimits.receiveWatch);
    QCOMPARE(tcgetattr(b.far.descriptor(), &record), 0);
    QCOMPARE(cfgetospeed(&record), speed_t(B19200)); // set when the port was opened again
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveStringUntilEOSWithSkip"_s));
    b.arrive("Ok.");
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::optional(u"Ok."_s));
}

void SerialReceiveTest::untilEOS_receiveStringThatTimesOut_isError2()
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

void SerialReceiveTest::untilEOS_seesAByteWithinTwoMilliseconds()
{
    SerialBench b(patientLimits);
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

void SerialReceiveTest::countEOS_data()
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

void SerialReceiveTest::countEOS()
{
    QFETCH(QString, text);
    SystemClock clock;
    const CocoaSerialPort port(clock, {}, listing({}));
    QTEST(port.countEOSWithString(text), "marks");
}

void SerialReceiveTest::countEOS_watch()
{
    StridingClock clock;
    RecordingLog log;
    CocoaSerialPort port(clock, {}, listing({}));
    port.setMessageList(&log);
    clock.setStride(700ms);
    QCOMPARE(port.countEOSWithString(u"Ok.Ok."_s), -1);
    QCOMPARE(log.lines(), QStringList(u"watch CocoaSerialPort:countEOSWithString"_s));
}

void SerialReceiveTest::receiveBreak_endsEachWait_data()
{
    QTest::addColumn<int>("operation");
    QTest::newRow("receiveChar") << 0;
    QTest::newRow("receiveStringMorethan") << 1;
    QTest::newRow("receiveStringUntilEOSWithSkip") << 2;
}

void SerialReceiveTest::receiveBreak_endsEachWait()
{
    QFETCH(int, operation);
    SerialBench b(PortLimits{});
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

// The two polls of 0.1 s are part of what callers see: a byte is not noticed earlier.
void SerialReceiveTest::receiveCharAndMorethan_lookEveryTenthOfASecond()
{
    SerialBench b(PortLimits{});
    {
        const LateSender sender(b.far, 10ms, "a");
        const auto start = steady_clock::now();
        QCOMPARE(b.port.receiveChar(), quint8('a'));
        QVERIFY(steady_clock::now() - start >= 100ms);
    }
    const LateSender sender(b.far, 10ms, "bc");
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveStringMorethan(2), std::optional(u"bc"_s));
    QVERIFY(steady_clock::now() - start >= 100ms);
}

QTEST_GUILESS_MAIN(SerialReceiveTest)
#include "serialreceive_test.moc"
