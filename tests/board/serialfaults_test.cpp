// SPDX-License-Identifier: MIT
// Faults of the serial line in numbers, on real pseudo-terminals: cables that are pulled at every
// moment, boards that answer wrongly (most of them in simulated time), lines of text on the way
// through all that. A share runs with
// every test; QOVELMOR_LONG=1 runs the whole. QOVELMOR_SEED repeats a run.
#include "board/ColumnWords.h"
#include "tests/board/FaultyBoard.h"
#include "tests/board/RunBench.h"
#include "tests/board/SerialBench.h"
#include "tests/board/WireBench.h"

#include <QTemporaryDir>

#include <numeric>
#include <random>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

namespace {

// Nothing may take longer on the most loaded machine; every limit used here is below 0.5 s.
constexpr auto bound = 10s;

/// Short, so that many time-outs fit, but no loaded machine reaches them by accident.
BoardLimits faultLimits()
{
    BoardLimits limits = shortBoardLimits();
    limits.port.receiveWatch = 150ms;
    limits.port.sendSlack = 50ms;
    limits.run.step = 2ms;
    return limits;
}

int threadCount()
{
    int count = 0;
    DIR *folder = opendir("/proc/self/task");
    while (readdir(folder) != nullptr)
        ++count;
    closedir(folder);
    return count;
}

/// A device name that a board is plugged in at and pulled from.
class Socket
{
public:
    Socket() : path_(folder_.filePath(u"board"_s).toUtf8()) {}
    ~Socket() { pull(); }

    const QByteArray &path() const { return path_; }

    void plugIn(const QByteArray &name = "board")
    {
        board_ = std::make_unique<ScriptedBoard>();
        board_->setScript([](const QByteArray &line) -> std::optional<QByteArray> {
            return line == "wait" ? std::nullopt : ScriptedBoard::defaultAnswer(line);
        });
        link_ = folder_.filePath(QString::fromLatin1(name)).toUtf8();
        if (::symlink(board_->path().constData(), link_.constData()) != 0)
            qFatal("no link");
    }
    void pull()
    {
        ::unlink(link_.constData());
        if (board_)
            board_->hangUp();
        board_.reset();
    }

private:
    QTemporaryDir folder_;
    QByteArray path_;
    QByteArray link_;
    std::unique_ptr<ScriptedBoard> board_;
};

enum class Moment { Idle, Writing, Waiting, Opening, Closing, Count };
enum class Return { Never, Same, OtherName, Count };

} // namespace

class SerialFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void unplugs();
    void exchanges();
    void exchangesInSimulatedTime();
    void oldAnswerBehindAFullQueue_isNotTheQuestions();
    void linesOfText();

private:
    struct Unplug
    {
        Moment moment;
        Return returns;
        std::chrono::microseconds after;
    };

    struct Conversation
    {
        unsigned seed;
        int count;
        Clock &clock;
        const FaultyAnswers &answers;
        const BoardLimits &limits;
        Clock::Duration bound;                 ///< no exchange takes longer
        std::function<bool(int)> letAllArrive; ///< of so many commands
    };

    void unplugOnce(const Unplug &unplug);
    void exchange(VelmorSystem &system, const Conversation &with);

    bool isWhole_ = false;
    unsigned seed_ = 0;
    int lostPorts_ = 0;
    int healedPorts_ = 0;
};

void SerialFaultsTest::initTestCase()
{
    isWhole_ = qEnvironmentVariableIntValue("QOVELMOR_LONG") != 0;
    bool isGiven = false;
    seed_ = qEnvironmentVariable("QOVELMOR_SEED").toUInt(&isGiven);
    if (!isGiven)
        seed_ = std::random_device{}();
    qInfo("seed %u", seed_);
}

// Whoever uses a port whose cable is pulled comes back in time; a port that is not there again is
// lost, and said to be lost once; one that is there again works.
void SerialFaultsTest::unplugOnce(const Unplug &unplug)
{
    Socket socket;
    socket.plugIn();
    SystemClock clock;
    RecordingLog log;
    std::optional<VelmorSystem> system(std::in_place, clock, faultLimits(),
                                       [path = socket.path()](SerialDeviceType) {
                                           return SerialLookup{0, false, {path}};
                                       });
    system->setMessageList(&log);
    system->setPortLoss(&log);
    if (unplug.moment != Moment::Opening)
        QVERIFY(system->openSerialPortWithNumber(0));
    // A machine that is busy for longer than the short time-out is no fault of the line.
    if (unplug.moment == Moment::Idle)
        QTRY_COMPARE(system->sc_mode(), 1);

    const auto start = steady_clock::now();
    std::atomic<steady_clock::duration> back{steady_clock::duration::max()};
    std::thread cable([&] {
        std::this_thread::sleep_for(unplug.after);
        socket.pull();
        if (unplug.returns == Return::Never)
            return;
        socket.plugIn(unplug.returns == Return::Same ? "board" : "other");
        if (unplug.returns == Return::Same)
            back = steady_clock::now() - start;
    });
    switch (unplug.moment) {
    case Moment::Idle:
        cable.join();
        break;
    case Moment::Writing:
        while (system->sc_data(QByteArray(64 * 32, '\1')) >= 0) {
        }
        break;
    case Moment::Waiting:
        QCOMPARE(system->stringFarmCommand(u"wait"_s), std::nullopt);
        break;
    case Moment::Opening:
        system->openSerialPortWithNumber(0);
        break;
    case Moment::Closing:
    case Moment::Count:
        system.reset();
        break;
    }
    const auto taken = steady_clock::now() - start;
    if (cable.joinable())
        cable.join();
    if (system && system->isPortOpen())
        system->sc_mode(); // finds out, if nobody has yet
    if (system && system->isPortOpen()) {
        QVERIFY(unplug.returns != Return::OtherName || unplug.moment == Moment::Opening);
        QTRY_COMPARE(system->sc_mode(), 1);
        ++healedPorts_;
    }
    const int lost = static_cast<int>(log.lines().filter(u"lost "_s).size());
    QCOMPARE(lost, system && system->isPortLost() ? 1 : 0);
    lostPorts_ += lost;
    // In time means: clearly before the time-out after which the port is opened again.
    if (lost > 0 && unplug.moment != Moment::Opening)
        QVERIFY(back.load() > taken - 20ms || unplug.returns != Return::Same);
    if (lost > 0)
        QCOMPARE(system->sc_mode(), -1);
    system.reset();
    QVERIFY(steady_clock::now() - start < bound);
}

void SerialFaultsTest::unplugs()
{
    const int count = isWhole_ ? 500 : 30;
    std::mt19937 random(seed_);
    const int descriptors = openDescriptors();
    const int threads = threadCount();
    const auto start = steady_clock::now();
    const double before = processSeconds();
    {
        const StdoutCapture quiet;
        for (int i = 0; i < count && !QTest::currentTestFailed(); ++i) {
            const auto moments = static_cast<unsigned>(Moment::Count);
            const auto returns = static_cast<unsigned>(Return::Count);
            unplugOnce({static_cast<Moment>(static_cast<unsigned>(i) % moments),
                        static_cast<Return>(static_cast<unsigned>(i) / moments % returns),
                        std::chrono::microseconds(random() % 3000)});
        }
    }
    const double cpu = processSeconds() - before;
    const double wall = std::chrono::duration<double>(steady_clock::now() - start).count();
    qInfo("%d unplugs: %d ports lost, %d healed; %.1f s, of these %.2f s of processor time", count,
          lostPorts_, healedPorts_, wall, cpu);
    QVERIFY(lostPorts_ > 0);
    QVERIFY(healedPorts_ > 0);
    QVERIFY(cpu < wall / 2);
    QCOMPARE(openDescriptors(), descriptors);
    QTRY_COMPARE(threadCount(), threads);
}

// One command in a hundred meets a fault. Each exchange is over in time, and once the line has
// fallen quiet the next one is right.
void SerialFaultsTest::exchange(VelmorSystem &system, const Conversation &with)
{
    std::mt19937 random(with.seed);
    int right = 0;
    int wrong = 0;
    int unanswered = 0;
    int sent = 1; // the greeting
    int unchecked = 0;
    Clock::Duration longest{};
    const auto start = steady_clock::now();
    for (int i = 0; i < with.count; ++i) {
        if (unchecked == 0 && random() % 5 == 0) {
            system.sc_clear(); // an order: nobody reads its answer
            ++sent;
            if (!FaultyAnswers::isHarmless(with.answers.lastFault()))
                unchecked = 3;
        }
        const auto begin = with.clock.steadyNow();
        const QString number = QString::number(i);
        const auto answer = system.stringFarmCommand(u"ask "_s + number);
        ++sent;
        const auto taken = with.clock.steadyNow() - begin;
        longest = std::max(longest, taken);
        QVERIFY2(taken < with.bound, qPrintable(number));
        QVERIFY(system.isPortOpen());
        right += answer == number;
        wrong += answer && answer != number;
        unanswered += !answer;
        // An exchange that the machine has kept from ending in time is as good as a fault.
        const bool isDisturbed = unchecked > 0 ||
                                 !FaultyAnswers::isHarmless(with.answers.lastFault()) ||
                                 taken > with.limits.port.receiveWatch / 2;
        if (!isDisturbed)
            QVERIFY2(answer == number, qPrintable(number + u" got "_s + answer.value_or(u"-"_s)));
        if (!isDisturbed)
            continue;
        // Now and then the next questions follow at once, as they do within a display run; then
        // the line falls quiet.
        if (unchecked == 0 && random() % 2 == 0)
            unchecked = 4;
        if (unchecked > 0 && --unchecked > 0)
            continue;
        QVERIFY(with.letAllArrive(sent));
        system.settle();
        with.clock.sleepFor(3ms);
        unchecked = 0;
    }
    const double wall = std::chrono::duration<double>(steady_clock::now() - start).count();
    const auto faults = with.answers.faults();
    qInfo("%d exchanges, %d faults: %d right, %d other answers, %d without one; the longest took "
          "%.0f ms, all %.0f s",
          with.count, std::accumulate(faults.begin() + 1, faults.end(), 0), right, wrong,
          unanswered, std::chrono::duration<double, std::milli>(longest).count(), wall);
    QVERIFY(right > with.count * 95 / 100);
}

void SerialFaultsTest::exchanges()
{
    SystemClock clock;
    RecordingLog log;
    const BoardLimits limits = faultLimits();
    FaultyBoard far(seed_, 100, limits.port.receiveWatch + 20ms);
    VelmorSystem system(clock, limits, [&far](SerialDeviceType) {
        return SerialLookup{0, false, {far.path()}};
    });
    system.setMessageList(&log);
    system.setPortLoss(&log);
    {
        StdoutCapture quiet;
        QVERIFY(system.openSerialPortWithNumber(0));
    }
    const int descriptors = openDescriptors();
    const auto letAllArrive = [&far](int sent) {
        return QTest::qWaitFor([&] { return far.answered() >= sent; }, 10'000);
    };
    exchange(system, {seed_ + 1, isWhole_ ? 20'000 : 3'000, clock, far.answers(), limits, bound,
                      letAllArrive});
    QVERIFY(log.lines().filter(u"lost "_s).isEmpty());
    QCOMPARE(openDescriptors(), descriptors);
}

// The same with the limits of a real board, on a line that takes no real time: its far end is
// simulated as well, so each exchange is over within limits that no busy machine moves.
void SerialFaultsTest::exchangesInSimulatedTime()
{
    const BoardLimits limits;
    FaultyAnswers answers(seed_, 100, limits.port.receiveWatch + 20ms);
    WireBench b([&answers](const QByteArray &line) { return answers.answer(line); });
    const auto letAllArrive = [&b](int) {
        b.letAllArrive();
        return true;
    };
    // Its time-out, what it waits for before it, and the time that its bytes need.
    const auto most = limits.port.receiveWatch + limits.settle.most + 100ms;
    const auto start = b.clock.steadyNow();
    exchange(b.system, {seed_ + 1, 200'000, b.clock, answers, limits, most, letAllArrive});
    qInfo("%.0f minutes of simulated time",
          std::chrono::duration<double, std::ratio<60>>(b.clock.steadyNow() - start).count());
    QVERIFY(b.log.lines().filter(u"lost "_s).isEmpty());
}

// More noise than the queue takes twice, and behind it an answer that nobody has read.
void SerialFaultsTest::oldAnswerBehindAFullQueue_isNotTheQuestions()
{
    WireBench b([](const QByteArray &line) -> QList<SimulatedWire::Piece> {
        if (line == "sc_clear")
            return {{QByteArray(20'000, '~'), 300ms}, {"\r\nD 999\r\nOk.\r\n"}};
        return {{line + "\r\nD 1\r\nOk.\r\n"}};
    });
    b.system.sc_clear();
    b.system.settle(); // gives the answer up
    b.letAllArrive();
    QCOMPARE(b.system.sc_mode(), 1);
    QVERIFY(b.log.lines().isEmpty());
}

// Whatever happens on the way, every column of a line goes over the wire, in order.
void SerialFaultsTest::linesOfText()
{
    const int count = isWhole_ ? 1000 : 20;
    SystemClock clock;
    RecordingLog log;
    const BoardLimits limits = faultLimits();
    FaultyBoard far(seed_ + 2, 300, limits.port.receiveWatch + 20ms);
    VelmorSystem system(clock, limits, [&far](SerialDeviceType) {
        return SerialLookup{0, false, {far.path()}};
    });
    system.setMessageList(&log);
    system.setPortLoss(&log);
    {
        StdoutCapture quiet;
        QVERIFY(system.openSerialPortWithNumber(0));
    }
    system.setScroll(true);
    std::mt19937 random(seed_ + 3);
    int repeated = 0;
    for (int i = 0; i < count; ++i) {
        const int columns = 1 + static_cast<int>(random() % 80);
        far.answers().takeLines();
        const auto start = steady_clock::now();
        system.showBitmap(numbered(columns)); // returns at the end of the run
        QVERIFY(steady_clock::now() - start < bound);
        QList<QByteArray> expected;
        for (int x = 0; x < columns; x += 16)
            expected << dataLine(x, std::min(x + 15, columns - 1));
        QList<QByteArray> pieces;
        for (const QByteArray &line : far.answers().takeLines()) {
            if (!line.startsWith("sc_data "))
                continue;
            if (!pieces.isEmpty() && pieces.last() == line)
                ++repeated;
            else
                pieces << line;
        }
        QCOMPARE(pieces, expected);
    }
    const auto faults = far.answers().faults();
    qInfo("%d lines of text, %d faults: every column went over the line, %d pieces twice", count,
          std::accumulate(faults.begin() + 1, faults.end(), 0), repeated);
    QVERIFY(system.isPortOpen());
    QVERIFY(log.lines().filter(u"lost "_s).isEmpty());
}

QTEST_GUILESS_MAIN(SerialFaultsTest)
#include "serialfaults_test.moc"
