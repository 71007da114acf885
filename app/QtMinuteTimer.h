// SPDX-License-Identifier: MIT
#pragma once

#include "schedule/needs/MinuteTimer.h"

#include <QTimer>

namespace qovelmor {

/// The minute timer over Qt's precise timer.
class QtMinuteTimer final : public MinuteTimer
{
public:
    QtMinuteTimer();

    void start(std::function<void()> handler) override;
    void setNextFire(std::chrono::milliseconds fromNow) override;
    void stop() override;

private:
    QTimer timer_;
    std::function<void()> handler_;
};

} // namespace qovelmor
