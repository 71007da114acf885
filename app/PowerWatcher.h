// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <memory>

namespace qovelmor {

/// Sleep and wake as the login manager announces them on the system bus (org.freedesktop.login1,
/// PrepareForSleep). A delay lock is held, so that the machine waits while the sleep handler works.
/// The handler gets the lock; it is given back when the handler lets go of it, and a new one is
/// taken after waking, and when the login manager comes (again). Without a bus nothing is ever
/// announced.
class PowerWatcher final : public QObject
{
    Q_OBJECT

public:
    /// What keeps the machine awake while it is held by anybody. Null when none could be had.
    using DelayLock = std::shared_ptr<const void>;

    PowerWatcher(std::function<void(DelayLock)> willSleep, std::function<void()> didWake);

private Q_SLOTS:
    void handlePrepareForSleep(bool starting);

private:
    void takeDelayLock();

    std::function<void(DelayLock)> willSleep_;
    std::function<void()> didWake_;
    QDBusServiceWatcher loginManager_;
    DelayLock delayLock_;
};

} // namespace qovelmor
