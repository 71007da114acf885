// SPDX-License-Identifier: MIT
#include "messages/ScrollRun.h"
#include "platform/SimulatedClock.h"
#include "tests/support/NoPrivileges.h"

#include <QTest>

#include <algorithm>
#include <mutex>
#include <random>
#include <vector>

using namespace qovelmor;
using namespace std::chrono_literals;

namespace {

constexpr Clock::CalendarTime someDay{};

// What a run did, with the time of each act since the notes were made.
class Notes
{
public:
    struct Act
    {
        int offset; // -1: the empty board
        Clock::Duration at;
    };

    explicit Notes(Clock &clock) : clock_(clock), start_(clock.steadyNow()) {}

    void add(int offset)
    {
        const std::lock_guard lock(mutex_);
        acts_.push_back({offset, clock_.steadyNow() - start_});
    }
    std::vector<Act> acts() const
    {
        const std::lock_guard lock(mutex_);
        return acts_;
    }
    int count(int offset) const
    {
        const auto all = acts();
        return int(std::count_if(all.begin(), all.end(),
                                 [=](const Act &act) { return act.offset == offset; }));
    }

private:
    Clock &clock_;
    const Clock::SteadyTime start_;
    mutable std::mutex mutex_;
    std::vector<Act> acts_;
};

struct Plan
{
    int speed = 3;
    int before = 10;
    int after = 10;
    int length = 40; // points
    Clock::Duration drawing = 0ns;
};

class NotingStage final : public ScrollStage
{
public:
    NotingStage(Clock &clock, Notes &notes, Plan plan) : clock_(clock), notes_(notes), plan_(plan)
    {}

    int scrollSpeed() const override { return plan_.speed; }
    int waitBeforeInterval() override { return plan_.before; }
    int waitAfterInterval() override { return plan_.after; }
    bool drawStep(int offset) override
    {
        if (offset >= plan_.length)
            return false;
        notes_.add(offset);
        if (plan_.drawing > 0ns)
            clock_.sleepFor(plan_.drawing);
        return true;
    }
    void drawEmpty() override { notes_.add(-1); }

private:
    Clock &clock_;
    Notes &notes_;
    const Plan plan_;
};

ScrollRun::StageMaker stage(Clock &clock, Notes &notes, const Plan &plan)
{
    return [&clock, &notes, plan] { return std::make_unique<NotingStage>(clock, notes, plan); };
}

/// Another clock on which every sleep ends late.
class LateClock final : public Clock
{
public:
    LateClock(Clock &clock, Duration delay) : clock_(clock), delay_(delay) {}

    SteadyTime steadyNow() const override { return clock_.steadyNow(); }
    CalendarTime calendarNow() const override { return clock_.calendarNow(); }
    bool sleepUntil(SteadyTime deadline) override { return clock_.sleepUntil(deadline + delay_); }
    void endSleeps() override { clock_.endSleeps(); }
    bool sleepsEnded() const override { return clock_.sleepsEnded(); }
    void threadStarts() override { clock_.threadStarts(); }
    void threadEnds() override { clock_.threadEnds(); }
    void threadWaits() override { clock_.threadWaits(); }
    void threadResumes() override { clock_.threadResumes(); }

private:
    Clock &clock_;
    const Duration delay_;
};

void waitForEnd(const ScrollRun &run, Clock &clock)
{
    while (run.state() != 0)
        clock.sleepFor(1ms);
}

} // namespace

class ScrollRunTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineRunsBetweenItsWaits();
    void drawingTimeIsTakenFromTheRest();
    void slowStepIsNotMadeUp();
    void lateWakeUpsDoNotAddUp();
    void speedZeroHasNoPauses();
    void lineWithoutStepsStillWaits();
    void waitsBelowZeroCountZero();
    void nextLineWaitsForTheOneBefore();
    void stopEndsWithinOneStep_data();
    void stopEndsWithinOneStep();
    void stopOfNothingReturnsAtOnce();
    void quitEndsEverythingAtOnce();
    void nothingStartsAfterQuit();
    void lineThatGetsNoThreadIsOver();
    void destructionStopsTheLine();
    void randomCallersNeverMeet();
};

void ScrollRunTest::lineRunsBetweenItsWaits()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    QCOMPARE(run.state(), 0);
    const auto start = clock.steadyNow();
    run.show(stage(clock, notes, {.speed = 3, .before = 5, .after = 7, .length = 9}));
    QCOMPARE(run.state(), 1);
    waitForEnd(run, clock);

    const auto acts = notes.acts();
    QCOMPARE(acts.size(), 3U); // offsets 0, 4 and 8 lie below 9
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(acts[std::size_t(i)].offset, 4 * i);
        QVERIFY(acts[std::size_t(i)].at == (5 + i) * 24ms);
    }
    const auto whole = clock.steadyNow() - start;
    QVERIFY(whole >= (5 + 3 + 7) * 24ms && whole <= (5 + 3 + 7) * 24ms + 1ms);
}

void ScrollRunTest::drawingTimeIsTakenFromTheRest()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 2, .before = 0, .after = 0, .drawing = 7ms}));
    waitForEnd(run, clock);
    const auto acts = notes.acts();
    QCOMPARE(acts.size(), 10U);
    QVERIFY(acts.back().at - acts.front().at == 9 * 16ms);
}

void ScrollRunTest::slowStepIsNotMadeUp()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 1, .before = 0, .after = 0, .drawing = 11ms}));
    waitForEnd(run, clock);
    const auto acts = notes.acts();
    for (std::size_t i = 1; i < acts.size(); ++i)
        QVERIFY(acts[i].at - acts[i - 1].at == 11ms);
}

// Each sleep ends a little late; a hundred steps must not take a hundred times that.
void ScrollRunTest::lateWakeUpsDoNotAddUp()
{
    SimulatedClock simulated(someDay);
    LateClock clock(simulated, 1ms);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 1, .before = 0, .after = 0, .length = 4 * 101}));
    waitForEnd(run, clock);
    const auto acts = notes.acts();
    QCOMPARE(acts.size(), 101U);
    const auto whole = acts.back().at - acts.front().at;
    QVERIFY(whole >= 100 * 8ms && whole <= 100 * 8ms + 1ms);
}

void ScrollRunTest::speedZeroHasNoPauses()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 0, .before = 10, .after = 10, .length = 4000}));
    waitForEnd(run, clock);
    QCOMPARE(notes.acts().size(), 1000U);
    QVERIFY(notes.acts().back().at == 0ns);
}

void ScrollRunTest::lineWithoutStepsStillWaits()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    const auto start = clock.steadyNow();
    run.show(stage(clock, notes, {.speed = 3, .before = 10, .after = 10, .length = 0}));
    waitForEnd(run, clock);
    QVERIFY(notes.acts().empty());
    QVERIFY(clock.steadyNow() - start >= 20 * 24ms);
}

void ScrollRunTest::waitsBelowZeroCountZero()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 3, .before = -1, .after = -1}));
    waitForEnd(run, clock);
    QVERIFY(notes.acts().front().at == 0ns);
}

void ScrollRunTest::nextLineWaitsForTheOneBefore()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 3, .before = 0, .after = 0, .length = 40}));
    run.show(stage(clock, notes, {.speed = 3, .before = 0, .after = 0, .length = 40}));
    waitForEnd(run, clock);
    const auto acts = notes.acts();
    QCOMPARE(acts.size(), 20U);
    QCOMPARE(acts[9].offset, 36);
    QCOMPARE(acts[10].offset, 0);
    // The first line is over at 240 ms; the next caller looks every 100 ms.
    QVERIFY(acts[10].at == 300ms);
}

void ScrollRunTest::stopEndsWithinOneStep_data()
{
    QTest::addColumn<int>("stopAfterMs");
    QTest::newRow("while the line waits to begin") << 100;
    QTest::newRow("while the line scrolls") << 400;
    QTest::newRow("while the line waits at its end") << 600;
}

void ScrollRunTest::stopEndsWithinOneStep()
{
    QFETCH(int, stopAfterMs);
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 3, .before = 10, .after = 10, .length = 40}));
    clock.sleepFor(std::chrono::milliseconds(stopAfterMs));
    QCOMPARE(run.state(), 1);
    run.stop();
    QCOMPARE(run.state(), 0);

    const auto last = notes.acts().back();
    QCOMPARE(last.offset, -1);
    QVERIFY(last.at - std::chrono::milliseconds(stopAfterMs) <= 24ms);
    QCOMPARE(notes.count(-1), 1);
}

void ScrollRunTest::stopOfNothingReturnsAtOnce()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    const auto start = clock.steadyNow();
    run.stop();
    QVERIFY(clock.steadyNow() == start);
    QCOMPARE(run.state(), 0);

    run.show(stage(clock, notes, {}));
    waitForEnd(run, clock);
    run.stop();
    QCOMPARE(run.state(), 0);
    QCOMPARE(notes.count(-1), 0); // a line that ran through leaves its last picture
}

void ScrollRunTest::quitEndsEverythingAtOnce()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    run.show(stage(clock, notes, {.speed = 100, .length = 100000}));
    clock.sleepFor(20s);
    const auto asked = clock.steadyNow();
    clock.endSleeps();
    run.stop();
    while (run.state() != 0)
        std::this_thread::yield();
    QVERIFY(clock.steadyNow() == asked);
    QCOMPARE(notes.acts().back().offset, -1);
}

void ScrollRunTest::nothingStartsAfterQuit()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    clock.endSleeps();
    run.show(stage(clock, notes, {}));
    QCOMPARE(run.state(), 0);
    QVERIFY(notes.acts().empty());
}

void ScrollRunTest::lineThatGetsNoThreadIsOver()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    ScrollRun run(clock);
    {
        const NoMoreThreads noMoreThreads;
        run.show(stage(clock, notes, {}));
    }
    QCOMPARE(run.state(), 0);
    QVERIFY(notes.acts().empty());
    run.show(stage(clock, notes, {}));
    waitForEnd(run, clock);
    QVERIFY(!notes.acts().empty());
}

void ScrollRunTest::destructionStopsTheLine()
{
    SimulatedClock clock(someDay);
    Notes notes(clock);
    {
        ScrollRun run(clock);
        run.show(stage(clock, notes, {.speed = 3, .before = 0, .length = 100000}));
        clock.sleepFor(1s);
    }
    QCOMPARE(notes.acts().back().offset, -1);
    QVERIFY(notes.acts().back().at <= 1s + 24ms);
}

// Three threads start and stop lines as they please. At no time do two lines draw, no line draws
// after it was stopped, and nobody waits for ever.
void ScrollRunTest::randomCallersNeverMeet()
{
    const auto seed = std::random_device{}();
    qInfo("seed %u", seed);
    SimulatedClock clock(someDay);
    std::atomic<int> drawing = 0;
    std::atomic<bool> met = false;

    class GuardedStage final : public ScrollStage
    {
    public:
        GuardedStage(std::atomic<int> &drawing, std::atomic<bool> &met, int length)
            : drawing_(drawing), met_(met), length_(length)
        {
            if (drawing_.fetch_add(1) != 0)
                met_ = true;
        }
        ~GuardedStage() override { --drawing_; }
        int scrollSpeed() const override { return 3; }
        int waitBeforeInterval() override { return 2; }
        int waitAfterInterval() override { return 2; }
        bool drawStep(int offset) override { return offset < length_; }
        void drawEmpty() override {}

    private:
        std::atomic<int> &drawing_;
        std::atomic<bool> &met_;
        const int length_;
    };

    std::atomic<int> shown = 0;
    {
        ScrollRun run(clock);
        const auto user = [&](unsigned part) {
            std::mt19937 random(seed + part);
            for (int i = 0; i < 200; ++i) {
                if (random() % 3 != 0) {
                    const int length = int(random() % 80);
                    run.show([&, length] {
                        ++shown;
                        return std::make_unique<GuardedStage>(drawing, met, length);
                    });
                } else {
                    run.stop();
                }
                clock.sleepFor(std::chrono::milliseconds(random() % 300));
            }
        };
        Worker one(clock);
        Worker two(clock);
        one.start([&] { user(1); });
        two.start([&] { user(2); });
        user(3);
        one.join();
        two.join();
    }
    QVERIFY(!met);
    QCOMPARE(drawing.load(), 0);
    QVERIFY(shown > 200);
}

QTEST_GUILESS_MAIN(ScrollRunTest)
#include "scrollrun_test.moc"
