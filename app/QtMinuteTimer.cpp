// SPDX-License-Identifier: MIT
#include "app/QtMinuteTimer.h"

namespace qovelmor {

namespace {
constexpr std::chrono::seconds interval{60};
}

QtMinuteTimer::QtMinuteTimer()
{
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
        timer_.start(interval); // after a shorter first wait
        handler_();
    });
}

void QtMinuteTimer::start(std::function<void()> handler)
{
    handler_ = std::move(handler);
    timer_.start(interval);
}

void QtMinuteTimer::setNextFire(std::chrono::milliseconds fromNow)
{
    timer_.start(fromNow);
}

void QtMinuteTimer::stop()
{
    timer_.stop();
}

} // namespace qovelmor
