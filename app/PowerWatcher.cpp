// SPDX-License-Identifier: MIT
#include "app/PowerWatcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {
const QString service = u"org.freedesktop.login1"_s;
const QString path = u"/org/freedesktop/login1"_s;
const QString interface = u"org.freedesktop.login1.Manager"_s;

/// The lock as the login manager means it: given back when the last copy of its descriptor closes.
/// No child process of ours may inherit one.
class LockDescriptor
{
public:
    explicit LockDescriptor(int toCopy) : descriptor_(::fcntl(toCopy, F_DUPFD_CLOEXEC, 3)) {}
    ~LockDescriptor()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    LockDescriptor(const LockDescriptor &) = delete;
    LockDescriptor &operator=(const LockDescriptor &) = delete;

private:
    int descriptor_;
};

} // namespace

PowerWatcher::PowerWatcher(std::function<void(DelayLock)> willSleep, std::function<void()> didWake)
    : willSleep_(std::move(willSleep)), didWake_(std::move(didWake))
{
    auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return;
    bus.connect(service, path, interface, u"PrepareForSleep"_s, this,
                SLOT(handlePrepareForSleep(bool)));
    loginManager_.setConnection(bus);
    loginManager_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    loginManager_.addWatchedService(service);
    connect(&loginManager_, &QDBusServiceWatcher::serviceRegistered, this,
            [this] { takeDelayLock(); });
    takeDelayLock();
}

void PowerWatcher::handlePrepareForSleep(bool starting)
{
    if (starting) {
        willSleep_(std::exchange(delayLock_, nullptr));
    } else {
        takeDelayLock();
        didWake_();
    }
}

void PowerWatcher::takeDelayLock()
{
    auto call = QDBusMessage::createMethodCall(service, path, interface, u"Inhibit"_s);
    call << u"sleep"_s << u"QoVelmorRSS"_s << u"LED 表示を止めてから休止します"_s << u"delay"_s;
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(call), this);
    connect(
        watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *done) {
            const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *done;
            if (reply.isValid() && reply.value().isValid())
                delayLock_ = std::make_shared<const LockDescriptor>(reply.value().fileDescriptor());
            done->deleteLater();
        });
}

} // namespace qovelmor
