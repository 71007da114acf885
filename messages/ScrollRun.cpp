// SPDX-License-Identifier: MIT
#include "messages/ScrollRun.h"

#include <latch>
#include <utility>

namespace qovelmor {

using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 100ms;
constexpr auto speedUnit = 8ms;

enum State { idle = 0, running = 1, stopAsked = 2 };

// The beat of a run. Each rest ends on a mark that lies one step after the last one, so that late
// wake-ups do not add up; a step that took longer than a step time moves the marks instead.
class Beat
{
public:
    Beat(Clock &clock, int scrollSpeed)
        : clock_(clock), step_(std::max(scrollSpeed, 0) * speedUnit), mark_(clock.steadyNow())
    {}

    bool hasPauses() const { return step_ > Clock::Duration::zero(); }

    // Rests until the present step is over; false when the program quits.
    bool rest()
    {
        mark_ = std::max(mark_ + step_, clock_.steadyNow());
        return clock_.sleepUntil(mark_);
    }

private:
    Clock &clock_;
    Clock::Duration step_;
    Clock::SteadyTime mark_;
};

} // namespace

ScrollRun::ScrollRun(Clock &clock) : clock_(clock), worker_(clock) {}

ScrollRun::~ScrollRun()
{
    int expected = running;
    state_.compare_exchange_strong(expected, stopAsked);
    worker_.join();
}

bool ScrollRun::claim()
{
    for (;;) {
        if (clock_.sleepsEnded())
            return false;
        int expected = idle;
        if (state_.compare_exchange_strong(expected, running))
            return true;
        clock_.sleepFor(pollInterval);
    }
}

void ScrollRun::show(StageMaker makeStage)
{
    if (!claim())
        return;
    // The run gives the claim back only after its starter has let go of the worker: the next
    // starter then has it to itself.
    const auto started = std::make_shared<std::latch>(1);
    const bool isStarted = worker_.start([this, started, make = std::move(makeStage)] {
        started->wait();
        showStringThread(*make());
    });
    started->count_down();
    if (!isStarted)
        state_ = idle;
}

void ScrollRun::stop()
{
    int expected = running;
    state_.compare_exchange_strong(expected, stopAsked);
    while (state_ == stopAsked && clock_.sleepFor(pollInterval)) {
    }
}

bool ScrollRun::goesOn() const
{
    return state_ == running && !clock_.sleepsEnded();
}

// Every wait is made of steps too, so that a stop never waits for more than one.
void ScrollRun::showStringThread(ScrollStage &stage)
{
    const auto wait = [&](int steps) {
        Beat beat(clock_, stage.scrollSpeed());
        for (int i = 0; i < steps && beat.hasPauses() && goesOn(); ++i)
            beat.rest();
    };
    wait(stage.waitBeforeInterval());
    Beat beat(clock_, stage.scrollSpeed());
    for (int offset = 0; goesOn() && stage.drawStep(offset); offset += pointsPerStep)
        beat.rest();
    if (goesOn())
        wait(stage.waitAfterInterval());

    int expected = running;
    if (clock_.sleepsEnded() || !state_.compare_exchange_strong(expected, idle)) {
        stage.drawEmpty();
        state_ = idle;
    }
}

} // namespace qovelmor
