// SPDX-License-Identifier: MIT
#include "tests/board/SerialBench.h"

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

class SerialLossTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reopen_ofANeverOpenedPort_alertsNobody();
    void reopen_takesThePathAndNotThePlaceInTheList();
    void hangUp_idleBurnsNoCore();
    void hangUp_whileWaiting_losesThePortOnce();
    void lostPort_answersAtOnce();
    void fullQueue_goesOnOnceThereIsRoom();
    void fullQueue_burnsNoCore();
    void receiveThreadThatEndedByItself_isFollowedByALivingOne();
    void endOfTheProgram_endsPolls();
    void answer_freesTheLine();
    void endOfTheProgram_oneSilentExchangeIsWaitedFor();
    void endOfTheProgram_anAnswerInTimeIsStillRead();
    void endOfTheProgram_oneCommandThatIsNotTakenIsWaitedFor();
};

void SerialLossTest::reopen_ofANeverOpenedPort_alertsNobody()
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

// Since the port was opened another device has been plugged in and stands before it in the list.
void SerialLossTest::reopen_takesThePathAndNotThePlaceInTheList()
{
    SystemClock clock;
    const PseudoTerminal board;
    const PseudoTerminal stranger;
    QList<QByteArray> devices{board.path()};
    CocoaSerialPort port(clock, shortLimits, [&devices](SerialDeviceType) {
        return SerialLookup{0, false, devices};
    });
    StdoutCapture quiet;
    port.initForRS232();
    QVERIFY(port.openWithPortNumber(0));
    devices.prepend(stranger.path());
    port.initForRS232();
    QVERIFY(port.reopen());
    QVERIFY(port.sendString(u"ver\r"_s));
    QCOMPARE(board.readBytes(4, 2000ms), QByteArray("ver\r"));
    QVERIFY(stranger.read(0ms).isEmpty());
}

void SerialLossTest::hangUp_idleBurnsNoCore()
{
    SerialBench b;
    b.far.hangUp();
    const double before = processSeconds();
    std::this_thread::sleep_for(400ms);
    QVERIFY(processSeconds() - before < 0.1);
    QVERIFY(!b.port.sendString(u"x"_s));
}

void SerialLossTest::hangUp_whileWaiting_losesThePortOnce()
{
    SerialBench b;
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

void SerialLossTest::lostPort_answersAtOnce()
{
    SerialBench b;
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

void SerialLossTest::fullQueue_goesOnOnceThereIsRoom()
{
    SerialBench b;
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

void SerialLossTest::fullQueue_burnsNoCore()
{
    SerialBench b;
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

// Waiting for the line and for the end fails where a process may have one descriptor only.
void SerialLossTest::receiveThreadThatEndedByItself_isFollowedByALivingOne()
{
    SerialBench b;
    DIR *threads = opendir("/proc/self/task");
    const auto count = [threads] {
        int entries = 0;
        for (rewinddir(threads); readdir(threads) != nullptr;)
            ++entries;
        return entries;
    };
    const int withReceiver = count();
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit one{1, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &one);
    b.far.write("x"); // it looks up
    const auto latest = steady_clock::now() + 10s;
    while (count() == withReceiver && steady_clock::now() < latest)
        std::this_thread::sleep_for(1ms);
    setrlimit(RLIMIT_NOFILE, &before);
    QVERIFY(count() < withReceiver);
    closedir(threads);

    QVERIFY(b.port.reopen());
    b.arrive("alive");
}

void SerialLossTest::endOfTheProgram_endsPolls()
{
    SerialBench b(PortLimits{});
    b.clock.endSleeps();
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveChar(), quint8(0));
    QCOMPARE(b.port.receiveStringMorethan(4), std::nullopt);
    QVERIFY(steady_clock::now() - start < 500ms);
    QVERIFY(b.log.lines().isEmpty());
}

// On a line that is faster than 19200 baud the time computed for what was sent must not add up and
// put the next time-out off by seconds.
void SerialLossTest::answer_freesTheLine()
{
    SerialBench b(shortLimits);
    for (int round = 0; round < 20; ++round) {
        QVERIFY(b.port.sendEffectiveString(QString(192, u'x'))); // 0.1 s each at 19200 baud
        b.far.write("Ok.");
        QVERIFY(b.port.receiveStringUntilEOSWithSkip(0).has_value());
    }
    QVERIFY(b.port.lineFreeAt() <= steady_clock::now());
    QVERIFY(b.port.sendEffectiveString(u"x"_s));
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    QVERIFY(steady_clock::now() - start < 1500ms);
}

void SerialLossTest::endOfTheProgram_oneSilentExchangeIsWaitedFor()
{
    SerialBench b;
    b.clock.endSleeps();
    const auto start = steady_clock::now();
    QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    QVERIFY(steady_clock::now() - start >= shortLimits.receiveWatch);
    QVERIFY(b.port.isOpen());

    const auto second = steady_clock::now();
    for (int round = 0; round < 10; ++round) {
        QVERIFY(b.port.sendString(u"sc_clear\r"_s)); // orders still go out
        QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    }
    QVERIFY(steady_clock::now() - second < shortLimits.receiveWatch);
    QCOMPARE(b.log.lines().size(), 1);
}

void SerialLossTest::endOfTheProgram_anAnswerInTimeIsStillRead()
{
    SerialBench b(patientLimits);
    b.clock.endSleeps();
    for (int round = 0; round < 3; ++round) {
        const LateSender sender(b.far, 30ms, "D 1\r\nOk.");
        QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::optional(u"D 1\r\nOk."_s));
    }
}

void SerialLossTest::endOfTheProgram_oneCommandThatIsNotTakenIsWaitedFor()
{
    SerialBench b;
    b.port.attributes().setBaudRate(921600);
    while (b.port.sendString(QString(4000, u'x'))) {
    }
    b.clock.endSleeps();
    QVERIFY(!b.port.sendString(u"sc_end 0\r"_s));
    const auto start = steady_clock::now();
    for (int round = 0; round < 10; ++round) {
        QVERIFY(!b.port.sendString(u"sc_clear\r"_s));
        QCOMPARE(b.port.receiveStringUntilEOSWithSkip(0), std::nullopt);
    }
    b.port.close();
    QVERIFY(steady_clock::now() - start < shortLimits.sendSlack);
}

QTEST_GUILESS_MAIN(SerialLossTest)
#include "serialloss_test.moc"
