// SPDX-License-Identifier: MIT
#include "app/RunCycle.h"
#include "platform/SimulatedClock.h"
#include "tests/support/NoPrivileges.h"

#include <QTest>

#include <mutex>
#include <random>
#include <string>

using namespace qovelmor;
using namespace std::chrono_literals;

namespace {

/// Messages that take ten seconds each and reads that take three, in simulated time.
class TimedSteps final : public RunSteps
{
public:
    explicit TimedSteps(Clock &clock) : clock_(clock) {}

    void connect(RunCycle &cycle) { cycle_ = &cycle; }

    void readPages(ReadReason reason) override
    {
        enter(readers_);
        note(reason == ReadReason::Asked ? "read" : "reread");
        clock_.sleepFor(3s);
        count_ = nextCount_.load();
        leave(readers_);
    }
    void readFinished() override { note("readFinished"); }
    int messageCount() const override { return count_; }
    void displayStarts() override { note("start"); }
    void showMessage(int index) override
    {
        enter(showers_);
        note("show " + std::to_string(index));
        for (int step = 0; step < 100 && !cycle_->isDispBreak(); ++step) {
            if (!clock_.sleepFor(100ms))
                break;
        }
        leave(showers_);
    }
    void displayStopped() override { note("stopped"); }
    void controlsChanged() override {}

    std::vector<std::string> takeNotes()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(notes_, {});
    }

    std::atomic<int> count_ = 0;
    std::atomic<int> nextCount_ = 2;
    std::atomic<int> mostReaders_ = 0;
    std::atomic<int> readers_ = 0;
    std::atomic<int> showers_ = 0;
    std::atomic<bool> overlapped_ = false;

private:
    void enter(std::atomic<int> &inside)
    {
        if (++inside > 1)
            overlapped_ = true;
    }
    void leave(std::atomic<int> &inside) { --inside; }
    void note(std::string text)
    {
        const std::lock_guard lock(mutex_);
        notes_.push_back(std::move(text));
    }

    Clock &clock_;
    RunCycle *cycle_ = nullptr;
    std::mutex mutex_;
    std::vector<std::string> notes_;
};

struct Bench
{
    SimulatedClock clock{Clock::CalendarTime(1'790'000'000s)};
    TimedSteps steps{clock};
    RunCycle cycle{clock, steps};

    Bench() { steps.connect(cycle); }
};

using Notes = std::vector<std::string>;

} // namespace

class RunCycleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMessageIsShownThenTheFeedsAreReadAgain();
    void stopWhileAMessageRuns_endsWithinOneStep();
    void stopWhileReading_waitsForThatReadOnly();
    void stopWhenNothingRuns_doesNothing();
    void startWhileADisplayThreadLives_doesNothing();
    void startWithoutAThread_leavesTheDisplayStopped();
    void readWhileAnotherReadRuns_doesNothing();
    void stopRead_waitsUntilTheReadHasEnded();
    void emptyList_readsOverAndOver();
    void lostPort_endsTheDisplayThreadByItself();
    void startAfterALostPort_startsAFreshThread();
    void quitFlag_endsTheDisplayAtOnce();
    void quitFlagBeforeTheStop_readsNothingMore();
    void randomSequences_leaveNothingBehind();
};

void RunCycleTest::everyMessageIsShownThenTheFeedsAreReadAgain()
{
    Bench b;
    b.cycle.startReadRSS();
    b.cycle.startDispRSS();
    b.clock.sleepFor(24500ms); // two lines, a read, and the beginning of the next line
    QCOMPARE(b.steps.takeNotes(), (Notes{"read", "readFinished", "start", "show 0", "show 1",
                                         "reread", "readFinished", "start", "show 0"}));
    b.cycle.stopDispRSS();
}

void RunCycleTest::stopWhileAMessageRuns_endsWithinOneStep()
{
    Bench b;
    b.cycle.startReadRSS();
    b.cycle.startDispRSS();
    b.clock.sleepFor(1s);
    const auto asked = b.clock.steadyNow();
    b.cycle.stopDispRSS();
    QVERIFY(b.clock.steadyNow() - asked <= 200ms);
    QCOMPARE(b.cycle.dispRSSState(), 0);
    QCOMPARE(b.cycle.lastDispLine(), 0);
    QCOMPARE(b.steps.takeNotes().back(), std::string("stopped"));
}

void RunCycleTest::stopWhileReading_waitsForThatReadOnly()
{
    Bench b;
    b.cycle.startDispRSS(); // the list is empty, so the display thread reads first
    b.clock.sleepFor(1s);
    const auto asked = b.clock.steadyNow();
    b.cycle.stopDispRSS();
    QVERIFY(b.clock.steadyNow() - asked >= 1900ms);
    QVERIFY(b.clock.steadyNow() - asked <= 2200ms);
    QCOMPARE(b.steps.takeNotes(), (Notes{"start", "reread", "readFinished", "stopped"}));
}

void RunCycleTest::stopWhenNothingRuns_doesNothing()
{
    Bench b;
    b.cycle.stopDispRSS();
    QVERIFY(b.steps.takeNotes().empty());
}

void RunCycleTest::startWhileADisplayThreadLives_doesNothing()
{
    Bench b;
    b.cycle.startReadRSS();
    b.cycle.startDispRSS();
    b.cycle.startDispRSS();
    b.clock.sleepFor(1s);
    QCOMPARE(b.steps.takeNotes(), (Notes{"read", "readFinished", "start", "show 0"}));
    QVERIFY(!b.steps.overlapped_);
    b.cycle.stopDispRSS();
}

void RunCycleTest::startWithoutAThread_leavesTheDisplayStopped()
{
    Bench b;
    {
        const NoMoreThreads noMoreThreads;
        b.cycle.startDispRSS();
    }
    QCOMPARE(b.cycle.dispRSSState(), 0);
    b.cycle.stopDispRSS(); // waits for nobody
    b.cycle.startDispRSS();
    QCOMPARE(b.cycle.dispRSSState(), 1);
    b.cycle.stopDispRSS();
}

void RunCycleTest::readWhileAnotherReadRuns_doesNothing()
{
    Bench b;
    Worker other(b.clock);
    other.start([&] { b.cycle.startReadRSS(); });
    b.clock.sleepFor(1s);
    QVERIFY(b.cycle.isReading());
    b.cycle.startReadRSS();
    other.join();
    QCOMPARE(b.steps.takeNotes(), (Notes{"read", "readFinished"}));
}

void RunCycleTest::stopRead_waitsUntilTheReadHasEnded()
{
    Bench b;
    Worker other(b.clock);
    other.start([&] { b.cycle.startReadRSS(); });
    b.clock.sleepFor(1s);
    b.cycle.stopReadRSS();
    QCOMPARE(b.cycle.readRSSState(), 0);
    other.join();
    QCOMPARE(b.steps.takeNotes(), (Notes{"read", "readFinished"}));
    b.cycle.stopReadRSS(); // idle: no request, no wait
    QCOMPARE(b.cycle.readRSSState(), 0);
}

void RunCycleTest::emptyList_readsOverAndOver()
{
    Bench b;
    b.steps.nextCount_ = 0;
    b.cycle.startDispRSS();
    b.clock.sleepFor(10s);
    const auto notes = b.steps.takeNotes();
    QCOMPARE(std::count(notes.begin(), notes.end(), "reread"), 4);
    b.cycle.stopDispRSS();
}

void RunCycleTest::lostPort_endsTheDisplayThreadByItself()
{
    Bench b;
    b.cycle.startReadRSS();
    b.cycle.startDispRSS();
    b.clock.sleepFor(1s);
    b.cycle.setDispRSSState(0);
    b.clock.sleepFor(20s);
    QCOMPARE(b.steps.takeNotes(), (Notes{"read", "readFinished", "start", "show 0"}));
    b.cycle.stopDispRSS();
    QCOMPARE(b.cycle.dispRSSState(), 0);
}

void RunCycleTest::startAfterALostPort_startsAFreshThread()
{
    Bench b;
    b.cycle.startReadRSS();
    b.cycle.startDispRSS();
    b.clock.sleepFor(1s);
    b.cycle.setDispRSSState(0);
    b.cycle.startDispRSS();
    b.clock.sleepFor(1s);
    QVERIFY(b.cycle.isRunning());
    QVERIFY(!b.steps.overlapped_);
    b.cycle.stopDispRSS();
    QCOMPARE(b.cycle.dispRSSState(), 0);
}

void RunCycleTest::quitFlag_endsTheDisplayAtOnce()
{
    Bench b;
    b.cycle.startReadRSS();
    b.cycle.startDispRSS();
    b.clock.sleepFor(1s);
    b.clock.endSleeps();
    b.cycle.stopDispRSS();
    QCOMPARE(b.cycle.dispRSSState(), 0);
    QCOMPARE(b.steps.showers_.load(), 0);
}

// A person, a schedule and a failing port press everything in any order.
void RunCycleTest::quitFlagBeforeTheStop_readsNothingMore()
{
    Bench b;
    b.cycle.startReadRSS();
    b.cycle.startDispRSS();
    b.clock.sleepFor(1s);
    b.steps.takeNotes();
    b.clock.endSleeps();
    // The main thread may be busy for a while before it asks for the stop.
    QTRY_COMPARE(b.cycle.dispRSSState(), 0);
    const Notes notes = b.steps.takeNotes();
    QVERIFY(std::none_of(notes.begin(), notes.end(),
                         [](const std::string &note) { return note == "reread"; }));
    b.cycle.stopDispRSS();
}

void RunCycleTest::randomSequences_leaveNothingBehind()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    const auto upTo = [&](int most) {
        return static_cast<int>(random() % static_cast<unsigned>(most));
    };

    for (int sequence = 0; sequence < 1000; ++sequence) {
        Bench b;
        bool quit = false;
        for (int command = 0; command < 12; ++command) {
            switch (upTo(6)) {
            case 0:
                b.cycle.startDispRSS();
                break;
            case 1:
                b.cycle.stopDispRSS();
                break;
            case 2: { // the read command and the feed list's edits rest the display
                const bool was = b.cycle.dispRSSState() != 0;
                b.cycle.stopDispRSS();
                b.steps.nextCount_ = upTo(4);
                b.cycle.startReadRSS();
                if (was)
                    b.cycle.startDispRSS();
                break;
            }
            case 3:
                b.clock.sleepFor(std::chrono::milliseconds(upTo(20000)));
                break;
            case 4:
                b.cycle.stopReadRSS();
                break;
            case 5:
                if (upTo(8) == 0) {
                    b.clock.endSleeps();
                    quit = true;
                }
                break;
            }
            QVERIFY2(!b.steps.overlapped_, qPrintable(QString::number(seed)));
            if (quit)
                break;
        }
        b.cycle.stopDispRSS();
        QCOMPARE(b.cycle.dispRSSState(), 0);
        QCOMPARE(b.cycle.readRSSState(), 0);
        QCOMPARE(b.steps.readers_.load(), 0);
        QCOMPARE(b.steps.showers_.load(), 0);
        QCOMPARE(b.clock.runningThreads(), 1);
    }
}

QTEST_GUILESS_MAIN(RunCycleTest)
#include "runcycle_test.moc"
