// SPDX-License-Identifier: MIT
#pragma once

#include "board/needs/BoardLog.h"
#include "board/needs/PortLoss.h"

#include <QStringList>

#include <mutex>

namespace qovelmor {

/// Keeps what the board link reports: log lines as they come, time-outs led by "watch ".
class RecordingLog final : public BoardLog, public PortLoss
{
public:
    void writeStringLog(const QString &text) override { add(text); }
    void writeWatchTimeBreakLog(const QString &place) override
    {
        add(QStringLiteral("watch ") + place);
    }
    void setDispRSSStateStopped() override { add(QStringLiteral("display stopped")); }
    void portLost(const PortLossAlert &alert) override
    {
        add(QStringLiteral("lost %1|%2|%3").arg(alert.title, alert.text, alert.button));
    }

    QStringList lines() const
    {
        const std::lock_guard lock(mutex_);
        return lines_;
    }
    QStringList takeLines()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(lines_, {});
    }

private:
    void add(const QString &line)
    {
        const std::lock_guard lock(mutex_);
        lines_.append(line);
    }

    mutable std::mutex mutex_;
    QStringList lines_;
};

} // namespace qovelmor
