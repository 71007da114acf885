// SPDX-License-Identifier: MIT
#include "platform/SystemClock.h"

#include "platform/MainThread.h"

#include <algorithm>

namespace qovelmor {

namespace {
// How long one turn of the pump may last before the end of sleeps is looked at again.
constexpr std::chrono::milliseconds pumpSlice{20};
} // namespace

bool SystemClock::sleepUntil(SteadyTime deadline)
{
    if (mainThread_ != nullptr && mainThread_->isCurrent())
        return pumpUntil(deadline);

    std::unique_lock lock(mutex_);
    endedChanged_.wait_until(lock, deadline, [this] { return ended_.load(); });
    return !ended_;
}

bool SystemClock::pumpUntil(SteadyTime deadline)
{
    using namespace std::chrono;
    for (;;) {
        const auto left = ceil<milliseconds>(deadline - steadyNow());
        if (ended_ || left <= milliseconds::zero())
            return !ended_;
        mainThread_->pump(std::min(left, pumpSlice));
    }
}

void SystemClock::endSleeps()
{
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    endedChanged_.notify_all();
}

} // namespace qovelmor
