// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace qovelmor {

class Clock;

/// A thread with an owner: whoever holds the Worker joins it, at the latest in its destructor.
/// The thread lives by the clock given, so simulated time takes it into account.
class Worker
{
public:
    explicit Worker(Clock &clock) : clock_(clock) {}
    ~Worker() { join(); }
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;

    /// Joins what ran before, then starts `body` on a new thread. False when the system has none
    /// left.
    bool start(std::function<void()> body);

    /// Waits for the thread's end; returns at once when none was started. Must not be called on
    /// the worker's own thread.
    void join();

    /// Only for the thread that starts and joins.
    bool isStarted() const { return thread_.joinable(); }
    /// Whether the caller runs on the worker's thread.
    bool isCurrent() const { return id_ == std::this_thread::get_id(); }

private:
    void run(const std::function<void()> &body);

    Clock &clock_;
    std::mutex mutex_; ///< leaf: guards the two flags
    bool hasEnded_ = false;
    bool isAwaited_ = false;
    std::atomic<std::thread::id> id_; ///< set by the thread itself: thread_ is written beside it
    std::thread thread_;
};

} // namespace qovelmor
