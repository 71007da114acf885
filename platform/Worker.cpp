// SPDX-License-Identifier: MIT
#include "platform/Worker.h"

#include "platform/Clock.h"

#include <system_error>

namespace qovelmor {

bool Worker::start(std::function<void()> body)
{
    join();
    hasEnded_ = false;
    isAwaited_ = false;
    clock_.threadStarts();
    try {
        thread_ = std::thread([this, body = std::move(body)] { run(body); });
    } catch (const std::system_error &) {
        clock_.threadEnds();
        return false;
    }
    return true;
}

void Worker::run(const std::function<void()> &body)
{
    id_ = std::this_thread::get_id();
    body();
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
    // Simulated time must not move between this end and the awakening of who waits for it: the
    // waiting thread runs on in this one's place.
    if (!isAwaited_)
        clock_.threadEnds();
}

void Worker::join()
{
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        isAwaited_ = !hasEnded_;
        if (isAwaited_)
            clock_.threadWaits();
    }
    thread_.join();
    id_ = std::thread::id();
}

} // namespace qovelmor
