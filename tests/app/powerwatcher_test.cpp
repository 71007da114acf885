// SPDX-License-Identifier: MIT
// Sleeping and waking, announced by a login manager of the test's own on a bus of its own.
#include "app/PowerWatcher.h"

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Gives out delay locks and knows whether the last one is still held.
class LoginManager final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    ~LoginManager() override { forget(); }

    bool isHeld() const
    {
        pollfd end{lock_, POLLIN, 0};
        return lock_ >= 0 && ::poll(&end, 1, 0) == 0; // hung up once nobody holds the other end
    }

    QStringList asked;

public Q_SLOTS:
    QDBusUnixFileDescriptor Inhibit(const QString &what, const QString &who, const QString &,
                                    const QString &mode)
    {
        asked << what + u' ' + who + u' ' + mode;
        forget();
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            return {};
        lock_ = ends[0];
        QDBusUnixFileDescriptor given;
        given.giveFileDescriptor(ends[1]);
        return given;
    }

Q_SIGNALS:
    void PrepareForSleep(bool starting);

private:
    void forget()
    {
        if (lock_ >= 0)
            ::close(lock_);
        lock_ = -1;
    }

    int lock_ = -1;
};

} // namespace

class PowerWatcherTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    LoginManager manager_;

private Q_SLOTS:
    void initTestCase()
    {
        const QString address = u"unix:path="_s + folder_.filePath(u"bus"_s);
        daemon_.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s,
                                         u"--print-address"_s, u"--address="_s + address});
        QVERIFY2(daemon_.waitForReadyRead(), "dbus-daemon is needed");
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toLocal8Bit());
        auto bus = QDBusConnection::connectToBus(address, u"login"_s);
        QVERIFY(bus.registerObject(u"/org/freedesktop/login1"_s, &manager_,
                                   QDBusConnection::ExportAllSlots |
                                       QDBusConnection::ExportAllSignals));
        QVERIFY(bus.registerService(u"org.freedesktop.login1"_s));
    }

    // The computer waits until the display has stopped, and no longer; the next sleep as well.
    void sleepIsDelayedUntilTheDisplayHasStopped()
    {
        int sleeps = 0;
        int sleepsInTime = 0;
        int wakes = 0;
        const PowerWatcher watcher(
            [&] {
                ++sleeps;
                sleepsInTime += manager_.isHeld() ? 1 : 0;
            },
            [&] { ++wakes; });
        for (int round = 1; round <= 2; ++round) {
            QTRY_COMPARE(manager_.asked.size(), round);
            QCOMPARE(manager_.asked.last(), u"sleep QoVelmorRSS delay"_s);
            Q_EMIT manager_.PrepareForSleep(true);
            QTRY_COMPARE(sleeps, round);
            QCOMPARE(sleepsInTime, round);
            QTRY_VERIFY(!manager_.isHeld());
            QCOMPARE(wakes, round - 1);
            Q_EMIT manager_.PrepareForSleep(false);
            QTRY_COMPARE(wakes, round);
            QCOMPARE(sleeps, round);
        }
    }

    void cleanupTestCase()
    {
        QDBusConnection::disconnectFromBus(u"login"_s);
        daemon_.terminate();
        daemon_.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(PowerWatcherTest)
#include "powerwatcher_test.moc"
