// SPDX-License-Identifier: MIT
//
// Commands, timers and lists in any order, while the board and the feeds fail in any order.
#include "WholeProgram.h"

#include <QTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int sequences = 500;
constexpr int commandsEach = 10;
constexpr int stepsOfASilentBoard = 10; ///< its watch of one second
constexpr int stepsOfAStuckBoard = 300; ///< its watch of thirty seconds
const auto feedA = u"http://town/a"_s;
const auto feedB = u"http://town/b"_s;

/// A program in the middle of its life, and what may happen to it next.
class Life
{
public:
    explicit Life(std::mt19937 &random) : random_(random), program_(upTo(4) != 0)
    {
        program_.addFeed(feedA, {u"一"_s, u"二"_s});
        program_.addFeed(feedB, {u"三"_s});
        if (program_.board) {
            program_.board->onLost = [this] {
                program_.msgList.logBook().setDispRSSStateStopped();
                program_.mainThread.post(
                    [this] { program_.control.portLostAlert(u"port"_s, u"lost"_s, u"OK"_s); });
            };
        }
        program_.launch();
    }

    WholeProgram &program() { return program_; }
    int upTo(int most) { return static_cast<int>(random_() % static_cast<unsigned>(most)); }

    void goOn()
    {
        if (upTo(2) == 0)
            command();
        else if (upTo(2) == 0)
            failFeed();
        else
            failBoard();
        if (upTo(2) == 0)
            program_.sleep(std::chrono::milliseconds(upTo(40'000)));
        program_.mainThread.drain();
    }

private:
    void command()
    {
        switch (upTo(8)) {
        case 0:
        case 1:
            return program_.control.actStartDisp();
        case 2:
            return program_.control.actStopDisp();
        case 3:
            return program_.control.actGetRSS();
        case 4:
            return program_.control.actDrawerButton();
        case 5:
            return program_.timer.fire();
        case 6:
            return program_.rssList.moveRSSReaderFromIndex(0, 2);
        default:
            program_.control.willSleepHandle();
            return program_.control.didWakeHandle();
        }
    }

    void failFeed()
    {
        const QString feed = upTo(2) == 0 ? feedA : feedB;
        switch (upTo(3)) {
        case 0:
            return program_.loader.remove(feed);
        case 1:
            return program_.loader.serve(feed, {}); // a document without titles
        default:
            return program_.loader.serve(feed, {u"四"_s, u"五"_s});
        }
    }

    void failBoard()
    {
        if (!program_.board)
            return;
        switch (upTo(8)) {
        case 0:
            program_.board->loses = true;
            return;
        case 1:
        case 2:
            return program_.board->setStepsOfALine(stepsOfASilentBoard);
        case 3:
        case 4:
            return program_.board->setStepsOfALine(stepsOfAStuckBoard);
        default:
            return program_.board->setStepsOfALine(20);
        }
    }

    std::mt19937 &random_;
    WholeProgram program_;
};

} // namespace

class FaultSequencesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomFaults_leaveNothingBehind();
    void lostPort_endsTheDisplayAndAlertsOnce();
};

void FaultSequencesTest::randomFaults_leaveNothingBehind()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    for (int sequence = 0; sequence < sequences; ++sequence) {
        Life life(random);
        WholeProgram &p = life.program();
        for (int i = 0; i < commandsEach; ++i)
            life.goOn();
        const bool isLost = p.board && p.board->isLost();
        QVERIFY2(!p.loader.overlapped, qPrintable(QString::number(seed))); // one read at a time
        QCOMPARE(p.window.alerts.size(), isLost ? 1 : 0);
        if (isLost) // its button ends the program
            p.window.answer();
        else
            p.control.actQuit();
        p.control.applicationWillTerminate();
        p.screen.stopShowString();
        QCOMPARE(p.control.dispRSSState(), 0);
        QVERIFY(!p.control.isReading());
        QCOMPARE(p.window.terminations, 1);
        QCOMPARE(p.clock.runningThreads(), 1);
    }
}

void FaultSequencesTest::lostPort_endsTheDisplayAndAlertsOnce()
{
    WholeProgram p(true);
    p.addFeed(feedA, {u"一"_s, u"二"_s});
    p.board->onLost = [&p] {
        p.msgList.logBook().setDispRSSStateStopped();
        p.mainThread.post([&p] { p.control.portLostAlert(u"port"_s, u"lost"_s, u"OK"_s); });
    };
    p.launch();
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(1s);
    QVERIFY(p.control.isDisplayActive());
    const int loads = p.loader.loads;
    p.board->loses = true;
    p.sleep(10s);
    QVERIFY(!p.control.isDisplayActive());
    QCOMPARE(p.window.alerts, QStringList(u"port"_s));
    QCOMPARE(p.loader.loads.load(), loads); // nothing runs on behind the alert
    p.control.actStartDisp();
    p.sleep(10s);
    QCOMPARE(p.window.alerts.size(), 1);
    QCOMPARE(p.loader.loads.load(), loads);
    p.window.answer();
    QCOMPARE(p.window.terminations, 1);
}

QTEST_GUILESS_MAIN(FaultSequencesTest)
#include "faultsequences_test.moc"
