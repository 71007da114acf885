// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

namespace qovelmor {

/// Sleep and wake as the login manager announces them on the system bus (org.freedesktop.login1,
/// PrepareForSleep). A delay lock is held so that the machine waits while the sleep handler runs;
/// it is given back when the handler has returned and taken again after waking. Without a bus or a
/// login manager nothing is ever announced.
class PowerWatcher final : public QObject
{
    Q_OBJECT

public:
    PowerWatcher(std::function<void()> willSleep, std::function<void()> didWake);
    ~PowerWatcher() override;

private Q_SLOTS:
    void handlePrepareForSleep(bool starting);

private:
    void takeDelayLock();
    void releaseDelayLock();

    std::function<void()> willSleep_;
    std::function<void()> didWake_;
    int delayLock_ = -1;
};

} // namespace qovelmor
