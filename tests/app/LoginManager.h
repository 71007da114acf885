// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QStringList>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <list>

namespace qovelmor {

/// What one asked the login manager for.
struct Inhibitor
{
    QStringList asked; ///< what, who, why, mode
    int end;           ///< our end of the pipe whose other end is the lock

    /// Whether anybody still holds it.
    bool isHeld() const
    {
        pollfd ours{end, 0, 0};
        ::poll(&ours, 1, 0);
        return (ours.revents & POLLHUP) == 0;
    }
};

/// A stand-in of the login manager on such a bus: gives delay locks as the real one does, as the
/// writing ends of pipes, and announces sleep and wake.
class LoginManager final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    explicit LoginManager(const QString &busAddress)
        : bus_(QDBusConnection::connectToBus(busAddress, QStringLiteral("login manager")))
    {
        bus_.registerObject(QStringLiteral("/org/freedesktop/login1"), this,
                            QDBusConnection::ExportScriptableContents);
    }
    ~LoginManager() override
    {
        for (const Inhibitor &inhibitor : inhibitors)
            ::close(inhibitor.end);
        QDBusConnection::disconnectFromBus(QStringLiteral("login manager"));
    }

    bool come() { return bus_.registerService(QStringLiteral("org.freedesktop.login1")); }
    void go() { bus_.unregisterService(QStringLiteral("org.freedesktop.login1")); }

    std::list<Inhibitor> inhibitors; ///< in the order they were asked for

public Q_SLOTS:
    Q_SCRIPTABLE QDBusUnixFileDescriptor Inhibit(const QString &what, const QString &who,
                                                 const QString &why, const QString &mode)
    {
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0)
            return {};
        inhibitors.push_back({{what, who, why, mode}, ends[0]});
        const QDBusUnixFileDescriptor lock(ends[1]); // holds a copy until it has been sent
        ::close(ends[1]);
        return lock;
    }

Q_SIGNALS:
    Q_SCRIPTABLE void PrepareForSleep(bool starting);

private:
    QDBusConnection bus_;
};

} // namespace qovelmor
