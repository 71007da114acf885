// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace qovelmor {

/// A main thread without a window system: a plain queue of calls. The thread that makes the object
/// is the main thread. Serves processes that never make a widget.
class QueueMainThread final : public MainThread
{
public:
    void post(std::function<void()> call) override;
    bool isCurrent() const override { return std::this_thread::get_id() == owner_; }
    void pump(std::chrono::milliseconds limit) override;

    /// Runs what is queued now, without waiting; gives the number of calls run.
    int drain();

private:
    std::function<void()> takeOne();

    const std::thread::id owner_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<std::function<void()>> calls_;
};

} // namespace qovelmor
