// SPDX-License-Identifier: MIT
#include "platform/QueueMainThread.h"

namespace qovelmor {

void QueueMainThread::post(std::function<void()> call)
{
    {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
    }
    posted_.notify_one();
}

std::function<void()> QueueMainThread::takeOne()
{
    const std::lock_guard lock(mutex_);
    if (calls_.empty())
        return {};
    auto call = std::move(calls_.front());
    calls_.pop_front();
    return call;
}

int QueueMainThread::drain()
{
    int count = 0;
    while (auto call = takeOne()) {
        call();
        ++count;
    }
    return count;
}

void QueueMainThread::pump(std::chrono::milliseconds limit)
{
    if (drain() > 0)
        return;
    {
        std::unique_lock lock(mutex_);
        // system_clock, because the sanitizers do not see waits on the steady clock
        posted_.wait_until(lock, std::chrono::system_clock::now() + limit,
                           [this] { return !calls_.empty(); });
    }
    drain();
}

} // namespace qovelmor
