// SPDX-License-Identifier: MIT
// Sleeping and waking, announced by a login manager of the test's own on a bus of its own.
#include "LoginManager.h"
#include "app/PowerWatcher.h"
#include "tests/support/MessageBus.h"

#include <QTest>

#include <optional>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class PowerWatcherTest : public QObject
{
    Q_OBJECT

private:
    MessageBus bus_;
    std::optional<LoginManager> manager_;

    bool isHeld() const
    {
        return !manager_->inhibitors.empty() && manager_->inhibitors.back().isHeld();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(bus_.start(), "dbus-daemon is needed");
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus_.address().toLocal8Bit());
        manager_.emplace(bus_.address());
        QVERIFY(manager_->come());
    }

    // The computer waits until the display has stopped, and no longer; the next sleep as well.
    void sleepIsDelayedUntilTheDisplayHasStopped()
    {
        std::size_t sleeps = 0;
        std::size_t wakes = 0;
        PowerWatcher::DelayLock stopping;
        const PowerWatcher watcher(
            [&](PowerWatcher::DelayLock delay) {
                ++sleeps;
                stopping = std::move(delay);
            },
            [&] { ++wakes; });
        for (std::size_t round = 1; round <= 2; ++round) {
            QTRY_COMPARE(manager_->inhibitors.size(), round);
            QCOMPARE(manager_->inhibitors.back().asked[0], u"sleep"_s);
            QCOMPARE(manager_->inhibitors.back().asked[1], u"QoVelmorRSS"_s);
            QCOMPARE(manager_->inhibitors.back().asked[3], u"delay"_s);
            Q_EMIT manager_->PrepareForSleep(true);
            QTRY_COMPARE(sleeps, round);
            QVERIFY(isHeld());
            stopping.reset();
            QTRY_VERIFY(!isHeld());
            QCOMPARE(wakes, round - 1);
            Q_EMIT manager_->PrepareForSleep(false);
            QTRY_COMPARE(wakes, round);
            QCOMPARE(sleeps, round);
        }
        QTRY_VERIFY(isHeld());
    }

    void cleanupTestCase() { manager_.reset(); }
};

QTEST_GUILESS_MAIN(PowerWatcherTest)
#include "powerwatcher_test.moc"
