// SPDX-License-Identifier: MIT
#include "platform/QueueMainThread.h"
#include "tests/board/BoardBench.h"
#include "tests/board/WireBench.h"
#include "tests/support/StridingClock.h"

#include <QScopeGuard>

#include <future>
#include <random>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

class BoardExchangeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void open_greetsTheBoard();
    void open_failure_holdsTheUnopenedPort();
    void open_whenTheLookupFails_takesANamedDevice();
    void open_whenTheLookupFailsAndNoneIsNamed_givesNo();
    void open_another_closesTheFirst();
    void withoutAPort_nothingAnswers();
    void comTest_anyAnswerCounts();
    void comTest_silence();
    void comTest_countsTheAnswersItDrops();
    void exchangeOnTheMainThread_runsNoEvents_data();
    void exchangeOnTheMainThread_runsNoEvents();
    void framing_integerAndText();
    void framing_dataInLinesOfSixteenWords();
    void questions_readByKey();
    void original_isTheRawReply();
    void eachCommand_dropsWhatWasNotRead();
    void lateAnswerOfAnOrder_isNotTheQuestions_data();
    void lateAnswerOfAnOrder_isNotTheQuestions();
    void settle_waitsLittleForASilentBoard();
    void settle_isBoundedOnALineThatNeverFallsSilent();
    void longImage_onATrueLine_isNotCutOffByTheWatch();
    void parsingThatTakesTooLong_isCutOff();
    void exchangesOfManyThreads_areWhole();
    void lostPort_isToldOnceAndAfterTheExchange();
    void lostPort_isToldWithoutTheLock();
    void anyReply_isBoundedAndHarmless();
    void lineThatTakesNothing_keepsAnExchangeWaitingOnce();
};

void BoardExchangeTest::open_greetsTheBoard()
{
    SystemClock clock;
    ScriptedBoard far;
    VelmorSystem system(clock, patientBoardLimits(), [&far](SerialDeviceType) {
        return SerialLookup{0, false, {"/nowhere/tty", far.path()}};
    });
    StdoutCapture quiet;
    QVERIFY(system.openSerialPortWithNumber(1));
    QTRY_COMPARE(far.lines(), QList<QByteArray>{"x"});
    QCOMPARE(system.comPort(), 1);
    QCOMPARE(system.proveCount(), 1);
    QCOMPARE(system.serial()->attributes().baudRate(), 19200);
    QVERIFY(system.openProblem().isEmpty());
}

void BoardExchangeTest::open_failure_holdsTheUnopenedPort()
{
    SystemClock clock;
    RecordingLog log;
    VelmorSystem system(clock, shortBoardLimits(), [](SerialDeviceType) {
        return SerialLookup{0, false, {"/nowhere/tty"}};
    });
    system.setMessageList(&log);
    system.setPortLoss(&log);
    StdoutCapture quiet;
    QVERIFY(!system.openSerialPortWithNumber(0));
    QVERIFY(system.serial() != nullptr);
    QVERIFY(!system.isLost());
    QCOMPARE(system.openProblem(), u"/nowhere/ttyが接続されていません。"_s);
    QVERIFY(!system.sendString(u"x\r"_s));
    QCOMPARE(system.sc_mode(), -1);
    QVERIFY(!system.comTest());
    QVERIFY(log.lines().isEmpty()); // it never opened: neither time-outs nor an alert
}

void BoardExchangeTest::open_whenTheLookupFails_takesANamedDevice()
{
    SystemClock clock;
    ScriptedBoard far;
    VelmorSystem system(clock, patientBoardLimits(), [&far](SerialDeviceType) {
        return SerialLookup{-19, true, {far.path()}};
    });
    const StdoutCapture quiet;
    QVERIFY(system.openSerialPortWithNumber(0));
    QVERIFY(system.ver().has_value());
}

void BoardExchangeTest::open_whenTheLookupFailsAndNoneIsNamed_givesNo()
{
    SystemClock clock;
    VelmorSystem system(clock, patientBoardLimits(), [](SerialDeviceType) {
        return SerialLookup{-19, true, {}};
    });
    StdoutCapture out;
    QVERIFY(!system.openSerialPortWithNumber(0));
    QCOMPARE(out.text(),
             "IOServiceMatching returned a NULL dictionary."_ba); // and no path is tried
    QVERIFY(system.serial() != nullptr);
    QVERIFY(!system.isLost());
}

void BoardExchangeTest::open_another_closesTheFirst()
{
    SystemClock clock;
    ScriptedBoard first;
    ScriptedBoard second;
    VelmorSystem system(clock, patientBoardLimits(), [&](SerialDeviceType) {
        return SerialLookup{0, false, {first.path(), second.path()}};
    });
    StdoutCapture quiet;
    QVERIFY(system.openSerialPortWithNumber(0));
    QCOMPARE(system.ver(), std::optional(u"test board"_s));
    QVERIFY(system.openSerialPortWithNumber(1));
    QCOMPARE(system.ver(), std::optional(u"test board"_s));
    QCOMPARE(second.lines(), (QList<QByteArray>{"x", "ver"}));
    QCOMPARE(first.lines(), (QList<QByteArray>{"x", "ver"}));
    QVERIFY(system.openSerialPortWithNumber(1)); // the same one again: its claim was given up
}

void BoardExchangeTest::withoutAPort_nothingAnswers()
{
    SystemClock clock;
    VelmorSystem system(clock);
    QVERIFY(system.serial() == nullptr);
    QVERIFY(!system.sendString(u"x"_s));
    QVERIFY(!system.comTest());
    QCOMPARE(system.ver(), std::nullopt);
    QCOMPARE(system.help(), std::nullopt);
    QCOMPARE(system.cmodule(), -1);
    QCOMPARE(system.comPort(), 0);
    QCOMPARE(system.proveCount(), 0);
    QVERIFY(!system.isLost());
}

void BoardExchangeTest::comTest_anyAnswerCounts()
{
    WireBench b;
    QVERIFY(b.system.comTest());
    QCOMPARE(b.takeLines(), QList<QByteArray>{"ver"});
    b.setScript([](const QByteArray &) { return "E -4 unknown\r\n"; });
    QVERIFY(b.system.comTest());
}

void BoardExchangeTest::comTest_silence()
{
    WireBench b;
    b.letAllArrive();
    b.setScript([](const QByteArray &) { return std::nullopt; });
    const auto start = b.clock.steadyNow();
    QVERIFY(!b.system.comTest());
    QVERIFY(b.clock.steadyNow() - start >= 100ms);
    QVERIFY(b.clock.steadyNow() - start < 110ms);
    QVERIFY(b.log.lines().isEmpty());
    QVERIFY(b.system.isPortOpen());
}

// The answers that it throws away were heard: the next question does not wait for them, and the
// board still counts as one that answers orders.
void BoardExchangeTest::comTest_countsTheAnswersItDrops()
{
    WireBench b;
    b.system.sc_clear();
    b.letAllArrive();
    QVERIFY(b.system.comTest());
    const auto start = b.clock.steadyNow();
    b.system.settle();
    QVERIFY(b.clock.steadyNow() - start < BoardLimits().settle.silence);
}

void BoardExchangeTest::exchangeOnTheMainThread_runsNoEvents_data()
{
    using Exchange = std::function<void(VelmorSystem &)>;
    QTest::addColumn<Exchange>("exchange");
    QTest::newRow("test of the line") << Exchange([](VelmorSystem &s) { s.comTest(); });
    QTest::newRow("help") << Exchange([](VelmorSystem &s) { s.help(); });
    QTest::newRow("raw reply") << Exchange(
        [](VelmorSystem &s) { s.originalFarmCommand(u"ver"_s); });
    QTest::newRow("single byte") << Exchange([](VelmorSystem &s) {
        const auto turn = s.takeTurn();
        s.serial()->bufferClear();
        s.serial()->receiveChar();
    });
}

// A posted call may stop the run, and the run may wait for the turn: run within the exchange that
// holds the turn, it would wait for ever.
void BoardExchangeTest::exchangeOnTheMainThread_runsNoEvents()
{
    QFETCH(std::function<void(VelmorSystem &)>, exchange);
    BoardLimits limits = patientBoardLimits();
    limits.port.receiveWatch = 500ms;
    QueueMainThread mainThread;
    BoardBench b({}, limits, &mainThread);
    std::atomic<bool> stop = false;
    auto run = std::async(std::launch::async, [&] {
        while (!stop) {
            b.system.sc_mode();
            std::this_thread::sleep_for(1ms); // lets another thread have its turn
        }
    });
    const auto endRun = qScopeGuard([&stop] { stop = true; });
    QVERIFY(b.waitForLine("sc_mode"));
    bool hasEnded = false;
    mainThread.post([&] {
        stop = true;
        hasEnded = run.wait_for(10s) == std::future_status::ready;
    });
    exchange(b.system);
    mainThread.drain();
    QVERIFY(hasEnded);
}

void BoardExchangeTest::framing_integerAndText()
{
    BoardBench b;
    b.system.voidFarmCommand(u"a"_s);
    b.system.voidFarmCommand(u"b"_s, 0);
    b.system.voidFarmCommand(u"c"_s, -1);
    b.system.voidFarmCommand(u"d"_s, QPointF(1, 2));
    b.system.voidFarmCommand(u"e"_s, u"t "_s);
    b.system.subFarmCommand(u"f"_s, 7);
    b.system.subFarmCommand(u"g"_s, QPointF(-1, 2));
    QCOMPARE(b.linesSoFar(), (QList<QByteArray>{"a", "b 0", "c", "d 1 2", "e t ", "f 7", "g"}));
}

void BoardExchangeTest::framing_dataInLinesOfSixteenWords()
{
    BoardBench b;
    b.system.voidFarmCommand(u"w"_s, QByteArray(64, '\1'));
    b.system.voidFarmCommand(u"v"_s, QByteArray(3, '\1'));
    const QByteArray full = "w " + QByteArray("101 ").repeated(16);
    QCOMPARE(b.linesSoFar(), (QList<QByteArray>{full, full, "v 101 "}));
}

void BoardExchangeTest::questions_readByKey()
{
    BoardBench b;
    b.far.setScript([](const QByteArray &) { return "D 5 name 6 other 7\r\n"; });
    QCOMPARE(b.system.intFarmCommand(u"name"_s), 5);
    QCOMPARE(b.system.intFarmCommand(u"name"_s, 3), 6);
    QCOMPARE(b.system.intFarmCommand(u"name"_s, 3, u"other"_s), 7);
    QCOMPARE(b.system.intFarmCommand(u"name"_s, u"other"_s), 7);
    QCOMPARE(b.system.intFarmCommand(u"name"_s, QPointF(1, 2)), 5);
    QCOMPARE(b.system.stringFarmCommand(u"name"_s), std::optional(u"5 name 6 other 7"_s));
    QCOMPARE(b.far.takeLines(),
             (QList<QByteArray>{"name", "name 3", "name 3", "name", "name 1 2", "name"}));
}

void BoardExchangeTest::original_isTheRawReply()
{
    BoardBench b;
    b.far.setScript([](const QByteArray &) { return "D 1\r\n"; });
    const auto reply = b.system.originalFarmCommand(u"abc"_s);
    QVERIFY(reply.has_value());
    QVERIFY(reply->startsWith(u"abc\r\n"));
    QCOMPARE(b.system.originalFarmCommandWithDuring(u"abc"_s, 0.1),
             std::optional(u"abc\r\nD 1\r\nOk.\r\n"_s));
}

void BoardExchangeTest::eachCommand_dropsWhatWasNotRead()
{
    BoardBench b;
    b.far.line().write("D 999\r\nOk.\r\n");
    QTRY_VERIFY(b.system.serial()->bufferCount() >= 12);
    QCOMPARE(b.system.sc_data(), 256);
}

// The "Ok." of sc_end read as the answer to sc_mode would be mode 0: the line would end before it
// has scrolled out.
void BoardExchangeTest::lateAnswerOfAnOrder_isNotTheQuestions_data()
{
    QTest::addColumn<bool>("quiet");
    QTest::addColumn<int>("bytesPerSecond");
    QTest::addColumn<int>("delay");
    QTest::addColumn<bool>("bytewise");
    QTest::newRow("talkative") << false << 0 << 0 << false;
    QTest::newRow("talkative, slow to answer") << false << 0 << 8 << false;
    QTest::newRow("talkative, behind an adapter that keeps its bytes for a while")
        << false << 0 << 40 << false;
    QTest::newRow("talkative, single bytes") << false << 0 << 0 << true;
    QTest::newRow("talkative, line's speed") << false << 1920 << 0 << false;
    QTest::newRow("talkative, line's speed, slow to answer") << false << 1920 << 8 << false;
    QTest::newRow("quiet") << true << 0 << 0 << false;
    QTest::newRow("quiet, line's speed") << true << 1920 << 8 << false;
}

void BoardExchangeTest::lateAnswerOfAnOrder_isNotTheQuestions()
{
    QFETCH(bool, quiet);
    QFETCH(int, bytesPerSecond);
    QFETCH(int, delay);
    QFETCH(bool, bytewise);
    BoardLimits limits = shortBoardLimits();
    limits.port.receiveWatch = 1000ms;
    limits.settle.most = 500ms; // the board has a thread of its own, on a machine that may be busy
    BoardBench b({.kind = quiet ? ScriptedBoard::Kind::Quiet : ScriptedBoard::Kind::Talkative,
                  .bytesPerSecond = bytesPerSecond,
                  .delay = std::chrono::milliseconds(delay),
                  .bytewise = bytewise},
                 limits);
    for (int round = 0; round < 5; ++round) {
        b.system.sc_end(1);
        QCOMPARE(b.system.sc_mode(), 1);
        b.system.sc_clear();
        b.system.sc_scroll();
        QCOMPARE(b.system.sc_data(QByteArray(32, '\1')), 256);
    }
    QVERIFY(b.log.lines().isEmpty());
}

void BoardExchangeTest::settle_waitsLittleForASilentBoard()
{
    BoardBench b({.kind = ScriptedBoard::Kind::Quiet}, shortBoardLimits());
    b.system.sc_mode();
    const auto start = steady_clock::now();
    for (int round = 0; round < 5; ++round) {
        b.system.sc_end(1);
        b.system.sc_mode();
    }
    const auto perRound = (steady_clock::now() - start) / 5;
    QVERIFY(perRound >= 20ms);
    QVERIFY(perRound < 100ms);
}

void BoardExchangeTest::settle_isBoundedOnALineThatNeverFallsSilent()
{
    BoardBench b({.kind = ScriptedBoard::Kind::Quiet}, shortBoardLimits());
    std::atomic<bool> stop = false;
    std::thread noise([&] {
        while (!stop) {
            b.far.line().write("~");
            std::this_thread::sleep_for(1ms);
        }
    });
    b.system.sc_end(1);
    const auto start = steady_clock::now();
    b.system.settle();
    const auto taken = steady_clock::now() - start;
    QCOMPARE(b.system.sc_mode(), 1); // noise before the answer is skipped
    stop = true;
    noise.join();
    QVERIFY(taken >= 80ms);
    QVERIFY(taken < 500ms);
}

// 40 modules: the image is on the line for more than four seconds, the watch is one of 0.4 s here.
void BoardExchangeTest::longImage_onATrueLine_isNotCutOffByTheWatch()
{
    BoardLimits limits = shortBoardLimits();
    limits.port.receiveWatch = 400ms;
    limits.port.sendSlack = 500ms;
    BoardBench b({.kind = ScriptedBoard::Kind::Quiet, .bytesPerSecond = 1920}, limits);
    b.far.setScript([](const QByteArray &line) -> std::optional<QByteArray> {
        return line == "sc_data 0001 " ? std::optional<QByteArray>("D 7\r\n") : std::nullopt;
    });
    QByteArray columns(2 * 16 * 16, '\0');
    columns += "\x00\x01"_ba;
    QCOMPARE(b.system.sc_data(columns), 7);
    QCOMPARE(b.far.takeLines().size(), 17);
    QVERIFY(b.log.lines().isEmpty());
}

void BoardExchangeTest::parsingThatTakesTooLong_isCutOff()
{
    StridingClock clock;
    ScriptedBoard far;
    RecordingLog log;
    VelmorSystem system(clock, {}, [&far](SerialDeviceType) {
        return SerialLookup{0, false, {far.path()}};
    });
    system.setMessageList(&log);
    StdoutCapture quiet;
    QVERIFY(system.openSerialPortWithNumber(0));
    QVERIFY(system.sendString(u"many\r"_s));
    far.line().write(QByteArray("a\n").repeated(30) + "Ok.");
    QTRY_VERIFY(system.serial()->bufferCount() >= 63);
    clock.setStride(60ms);
    QCOMPARE(system.stringFarmResult(), std::nullopt);
    QCOMPARE(log.lines(), QStringList(u"watch VelmorSystem:stringFarmResult"_s));
}

void BoardExchangeTest::exchangesOfManyThreads_areWhole()
{
    BoardLimits limits = shortBoardLimits();
    limits.port.receiveWatch = 5000ms;
    BoardBench b({}, limits);
    b.far.setScript(
        [](const QByteArray &line) { return "D " + line.mid(line.lastIndexOf(' ') + 1) + "\r\n"; });
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 100; ++i) {
                const QString number = QString::number(t * 1000 + i);
                wrong += b.system.stringFarmCommand(u"ask "_s + number) != number;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(wrong.load(), 0);
    QVERIFY(b.log.lines().isEmpty());
}

void BoardExchangeTest::lostPort_isToldOnceAndAfterTheExchange()
{
    BoardBench b({}, shortBoardLimits());
    b.far.hangUp();
    StdoutCapture quiet;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&b] { b.system.sc_mode(); });
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(b.system.isLost());
    QCOMPARE(b.log.lines().size(), 3);
    QCOMPARE(b.log.lines().filter(u"lost "_s).size(), 1);
    QCOMPARE(b.log.lines().filter(u"display stopped"_s).size(), 1);

    const auto start = steady_clock::now();
    QVERIFY(!b.system.sendString(u"x\r"_s));
    QCOMPARE(b.system.sc_data(QByteArray(64, '\1')), -1);
    QCOMPARE(b.system.ver(), std::nullopt);
    QCOMPARE(b.system.moduleCount(), -1);
    QVERIFY(!b.system.comTest());
    QVERIFY(!b.system.openSerialPortWithNumber(0));
    QVERIFY(steady_clock::now() - start < 200ms);
    QCOMPARE(b.log.lines().size(), 3);
}

// Who is told may ask the board from another thread and wait for that.
void BoardExchangeTest::lostPort_isToldWithoutTheLock()
{
    class AskingListener final : public PortLoss
    {
    public:
        explicit AskingListener(VelmorSystem &system) : system_(system) {}
        ~AskingListener() override
        {
            if (asker_.joinable())
                asker_.join();
        }
        AskingListener(const AskingListener &) = delete;
        AskingListener &operator=(const AskingListener &) = delete;

        void portLost(const PortLossAlert &) override
        {
            asker_ = std::thread([this] {
                system_.sc_mode();
                hasAnswer_.set_value();
            });
            wasAnswered = hasAnswer_.get_future().wait_for(3s) == std::future_status::ready;
        }
        bool wasAnswered = false;

    private:
        VelmorSystem &system_;
        std::promise<void> hasAnswer_;
        std::thread asker_;
    };
    BoardBench b({}, shortBoardLimits());
    AskingListener listener(b.system);
    b.system.setPortLoss(&listener);
    b.far.hangUp();
    StdoutCapture quiet;
    b.system.sc_mode();
    QVERIFY(b.system.isLost());
    QVERIFY(listener.wasAnswered);
}

void BoardExchangeTest::anyReply_isBoundedAndHarmless()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    BoardLimits limits = shortBoardLimits();
    limits.port.receiveWatch = 40ms;
    limits.port.sendSlack = 20ms;
    BoardBench b({}, limits);
    const QList<QByteArray> shapes{"D ",  "V ", "E ",  "\r\n", "Ok.", "D rom data 0000: 1 2\r\n",
                                   " 48", "\n", "\x83"};
    for (int round = 0; round < 60; ++round) {
        QByteArray reply;
        for (auto piece = random() % 12; piece > 0; --piece) {
            if (random() % 3 == 0)
                reply += static_cast<char>(random());
            else
                reply += shapes[static_cast<qsizetype>(random()) % shapes.size()];
        }
        const bool silent = random() % 8 == 0;
        b.far.setScript([reply, silent](const QByteArray &) {
            return silent ? std::nullopt : std::optional(reply);
        });
        const auto start = steady_clock::now();
        const auto text = b.system.stringFarmCommand(u"ask"_s);
        QVERIFY(!text || !text->contains(u'\r'));
        QVERIFY(b.system.sc_mode() >= std::numeric_limits<int>::min());
        b.system.rom_dread();
        b.system.rr();
        QVERIFY(steady_clock::now() - start < 3s);
        QVERIFY(b.system.isPortOpen());
    }
}

// The image of a wide board is many lines; each of them waiting for room would take a minute.
void BoardExchangeTest::lineThatTakesNothing_keepsAnExchangeWaitingOnce()
{
    BoardBench b({}, shortBoardLimits());
    b.far.stopReading();
    b.system.serial()->attributes().setBaudRate(921600); // that many bytes would need seconds
    for (const int size : {2000, 1}) {
        while (b.system.sendString(QString(size, u'x'))) {
        }
    }
    b.log.takeLines();
    const int sent = b.system.proveCount();
    const auto start = steady_clock::now();
    QCOMPARE(b.system.sc_data(QByteArray(1280 * 2, '\1')), -1); // 40 modules, 80 lines
    QVERIFY(steady_clock::now() - start < 3s);
    QCOMPARE(b.system.proveCount(), sent);
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveStringUntilEOSWithSkip"_s));
}

QTEST_GUILESS_MAIN(BoardExchangeTest)
#include "boardexchange_test.moc"
