// SPDX-License-Identifier: MIT
#include "app/PowerWatcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>
#include <unistd.h>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {
const QString service = u"org.freedesktop.login1"_s;
const QString path = u"/org/freedesktop/login1"_s;
const QString interface = u"org.freedesktop.login1.Manager"_s;
} // namespace

PowerWatcher::PowerWatcher(std::function<void()> willSleep, std::function<void()> didWake)
    : willSleep_(std::move(willSleep)), didWake_(std::move(didWake))
{
    auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return;
    bus.connect(service, path, interface, u"PrepareForSleep"_s, this,
                SLOT(handlePrepareForSleep(bool)));
    takeDelayLock();
}

PowerWatcher::~PowerWatcher()
{
    releaseDelayLock();
}

void PowerWatcher::handlePrepareForSleep(bool starting)
{
    if (starting) {
        willSleep_();
        releaseDelayLock();
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
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *done) {
                const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *done;
                if (reply.isValid() && reply.value().isValid()) {
                    releaseDelayLock();
                    delayLock_ = ::fcntl(reply.value().fileDescriptor(), F_DUPFD_CLOEXEC, 3);
                }
                done->deleteLater();
            });
}

void PowerWatcher::releaseDelayLock()
{
    if (delayLock_ >= 0)
        ::close(delayLock_);
    delayLock_ = -1;
}

} // namespace qovelmor
