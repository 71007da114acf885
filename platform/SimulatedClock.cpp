// SPDX-License-Identifier: MIT
#include "platform/SimulatedClock.h"

#include <algorithm>

namespace qovelmor {

using namespace std::chrono_literals;

SimulatedClock::SimulatedClock(CalendarTime start)
    : now_(1h)
    , calendarOffset_(start.time_since_epoch() -
                      std::chrono::duration_cast<CalendarTime::duration>(now_.time_since_epoch()))
{}

Clock::SteadyTime SimulatedClock::steadyNow() const
{
    const std::lock_guard lock(mutex_);
    return now_;
}

Clock::CalendarTime SimulatedClock::calendarNow() const
{
    const std::lock_guard lock(mutex_);
    return CalendarTime(
        std::chrono::duration_cast<CalendarTime::duration>(now_.time_since_epoch()) +
        calendarOffset_);
}

bool SimulatedClock::sleepUntil(SteadyTime deadline)
{
    std::unique_lock lock(mutex_);
    if (ended_ || deadline <= now_)
        return !ended_;

    Sleeper self{deadline};
    const auto place = sleepers_.insert(sleepers_.end(), &self);
    --running_;
    moveIfAllRest();
    moved_.wait(lock, [&] { return self.awake; });
    sleepers_.erase(place);
    return !ended_;
}

// The one who wakes the sleepers counts them as running again, so that time cannot move a second
// time before they have been scheduled.
void SimulatedClock::moveIfAllRest()
{
    if (running_ > 0 || sleepers_.empty())
        return;
    const auto asleep = [](const Sleeper *sleeper) { return !sleeper->awake; };
    const auto earliest = std::min_element(
        sleepers_.begin(), sleepers_.end(),
        [](const Sleeper *a, const Sleeper *b) { return a->deadline < b->deadline; });
    now_ = std::max(now_, (*earliest)->deadline);
    for (Sleeper *sleeper : sleepers_) {
        if (asleep(sleeper) && sleeper->deadline <= now_) {
            sleeper->awake = true;
            ++running_;
        }
    }
    moved_.notify_all();
}

void SimulatedClock::endSleeps()
{
    const std::lock_guard lock(mutex_);
    ended_ = true;
    for (Sleeper *sleeper : sleepers_) {
        if (!sleeper->awake) {
            sleeper->awake = true;
            ++running_;
        }
    }
    moved_.notify_all();
}

bool SimulatedClock::sleepsEnded() const
{
    const std::lock_guard lock(mutex_);
    return ended_;
}

void SimulatedClock::threadStarts()
{
    const std::lock_guard lock(mutex_);
    ++running_;
}

void SimulatedClock::threadEnds()
{
    threadWaits();
}

void SimulatedClock::threadWaits()
{
    const std::lock_guard lock(mutex_);
    --running_;
    moveIfAllRest();
}

void SimulatedClock::threadResumes()
{
    threadStarts();
}

void SimulatedClock::setCalendar(CalendarTime time)
{
    const std::lock_guard lock(mutex_);
    calendarOffset_ = time.time_since_epoch() -
                      std::chrono::duration_cast<CalendarTime::duration>(now_.time_since_epoch());
}

void SimulatedClock::suspendFor(Duration duration)
{
    const std::lock_guard lock(mutex_);
    calendarOffset_ += std::chrono::duration_cast<CalendarTime::duration>(duration);
}

int SimulatedClock::runningThreads() const
{
    const std::lock_guard lock(mutex_);
    return running_;
}

} // namespace qovelmor
