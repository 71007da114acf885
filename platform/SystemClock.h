// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace qovelmor {

class MainThread;

/// The real clock. A sleep of the main thread keeps the window painted: it pumps the MainThread
/// instead of blocking.
class SystemClock final : public Clock
{
public:
    /// `mainThread` may be null: then every sleep is a plain wait.
    explicit SystemClock(MainThread *mainThread = nullptr) : mainThread_(mainThread) {}

    SteadyTime steadyNow() const override { return std::chrono::steady_clock::now(); }
    CalendarTime calendarNow() const override { return std::chrono::system_clock::now(); }
    bool sleepUntil(SteadyTime deadline) override;
    void endSleeps() override;
    bool sleepsEnded() const override { return ended_.load(); }

    void threadStarts() override {}
    void threadEnds() override {}
    void threadWaits() override {}
    void threadResumes() override {}

private:
    bool pumpUntil(SteadyTime deadline);

    MainThread *mainThread_;
    std::atomic<bool> ended_ = false;
    std::mutex mutex_;
    std::condition_variable endedChanged_;
};

} // namespace qovelmor
