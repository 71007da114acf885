// SPDX-License-Identifier: MIT
// The real program beside a login manager: what it does before the machine sleeps is done while its
// delay lock is held, and what was running goes on after waking.
#include "LoginManager.h"
#include "RunningProgram.h"
#include "tests/support/HttpServer.h"
#include "tests/support/MessageBus.h"
#include "tests/support/ScriptedBoard.h"

#include <QTest>

#include <future>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto endsSoon = 30s;
constexpr int happensSoon = 30'000; // ms, on a busy machine
constexpr int wouldHappenAtOnce = 700;

const QByteArray document("<rss version='2.0'><channel><title>t</title>"
                          "<item><title>a</title></item></channel></rss>");

/// A feed that answers at once, or not before it may.
class SlowFeed
{
public:
    explicit SlowFeed(HttpServer &server)
    {
        server.route("/feed", [this](const HttpServer::Request &) {
            const std::shared_future<void> gate = currentGate();
            if (gate.valid()) {
                ++waiting;
                gate.wait();
            }
            return HttpServer::document(document);
        });
    }

    void close()
    {
        const std::lock_guard lock(mutex_);
        open_ = {};
        gate_ = open_.get_future().share();
    }
    void open()
    {
        const std::lock_guard lock(mutex_);
        open_.set_value();
        gate_ = {};
    }

    std::atomic<int> waiting = 0;

private:
    std::shared_future<void> currentGate()
    {
        const std::lock_guard lock(mutex_);
        return gate_;
    }

    std::mutex mutex_;
    std::promise<void> open_;
    std::shared_future<void> gate_;
};

/// The program with a feed and a board, on a bus with a login manager. The name of a feed without
/// one is fetched at launch.
struct Bench
{
    explicit Bench(bool startsByItself, const QString &feedName = u"駅"_s) : feed(server)
    {
        if (!bus.start())
            qFatal("dbus-daemon is needed");
        login.emplace(bus.address());
        program.setVariable(u"DBUS_SYSTEM_BUS_ADDRESS"_s, bus.address());
        program.addFeed(server.address("/feed"), feedName, 2);
        program.set(u"DisplayAuto"_s, startsByItself);
        program.setBoard(board.path().toStdString());
    }

    qsizetype lines() const { return program.logBook().count(u" RSS表示:"_s); }
    bool isDisplaying() const
    {
        const qsizetype before = lines();
        return QTest::qWaitFor([&] { return lines() > before + 1; }, happensSoon);
    }
    /// Nothing to wait for: a line takes a small part of this time.
    bool isResting() const
    {
        const qsizetype before = lines();
        QTest::qWait(wouldHappenAtOnce);
        return lines() == before;
    }
    Inhibitor &lock(int index) { return *std::next(login->inhibitors.begin(), index); }
    bool hasLocks(std::size_t count) const
    {
        return QTest::qWaitFor([&] { return login->inhibitors.size() == count; }, happensSoon);
    }
    static bool isGivenBack(const Inhibitor &lock)
    {
        return QTest::qWaitFor([&] { return !lock.isHeld(); }, happensSoon);
    }

    HttpServer server;
    SlowFeed feed;
    ScriptedBoard board;
    MessageBus bus;
    std::optional<LoginManager> login;
    RunningProgram program;
};

} // namespace

class SleepDelayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sleep_isDelayedWhileTheDisplayStops();
    void sleepDuringAReadOfTheMainThread_isDelayedToItsEnd_data();
    void sleepDuringAReadOfTheMainThread_isDelayedToItsEnd();
    void wakeBeforeTheWorkIsDone_keepsTheNewLock();
    void wakeWithoutDisplayBefore_startsNothing();
    void loginManagerThatComesLateAndAgain_isAskedEachTime();
};

void SleepDelayTest::sleep_isDelayedWhileTheDisplayStops()
{
    Bench bench(true);
    QVERIFY(bench.login->come());
    QVERIFY(bench.program.start());
    QVERIFY(bench.hasLocks(1));
    const Inhibitor &first = bench.lock(0);
    QCOMPARE(first.asked[0], u"sleep"_s);
    QCOMPARE(first.asked[1], u"QoVelmorRSS"_s);
    QCOMPARE(first.asked[3], u"delay"_s);
    QVERIFY(bench.isDisplaying());

    // The display thread reads the feed: a stop waits for the end of that.
    bench.feed.close();
    QTRY_COMPARE_WITH_TIMEOUT(bench.feed.waiting, 1, happensSoon);
    bench.board.takeLines();
    Q_EMIT bench.login->PrepareForSleep(true);
    QTest::qWait(wouldHappenAtOnce);
    QVERIFY(first.isHeld());
    QVERIFY(!bench.board.lines().contains("lm_clear"));
    bench.feed.open();
    QVERIFY(Bench::isGivenBack(first));
    QTRY_VERIFY_WITH_TIMEOUT(bench.board.lines().contains("lm_clear"), happensSoon);
    QVERIFY(bench.isResting());
    QCOMPARE(bench.login->inhibitors.size(), std::size_t{1});

    Q_EMIT bench.login->PrepareForSleep(false);
    QVERIFY(bench.hasLocks(2));
    QVERIFY(bench.isDisplaying());
    QVERIFY(bench.lock(1).isHeld());
    QCOMPARE(bench.program.terminate(endsSoon), 0);
    QVERIFY(!bench.lock(1).isHeld());
}

void SleepDelayTest::sleepDuringAReadOfTheMainThread_isDelayedToItsEnd_data()
{
    QTest::addColumn<QString>("feedName");
    QTest::newRow("the read of the launch") << u"駅"_s;
    QTest::newRow("before that, the name of a new feed") << QString();
}

// At launch and for the button the main thread itself reads. Sleep waits for that too.
void SleepDelayTest::sleepDuringAReadOfTheMainThread_isDelayedToItsEnd()
{
    QFETCH(QString, feedName);
    Bench bench(true, feedName);
    QVERIFY(bench.login->come());
    bench.feed.close();
    QVERIFY(bench.program.start());
    QTRY_COMPARE_WITH_TIMEOUT(bench.feed.waiting, 1, happensSoon);
    QVERIFY(bench.hasLocks(1));
    const Inhibitor &first = bench.lock(0);
    Q_EMIT bench.login->PrepareForSleep(true);
    QTest::qWait(wouldHappenAtOnce);
    QVERIFY(first.isHeld());
    bench.feed.open();
    QVERIFY(Bench::isGivenBack(first));
    QVERIFY(bench.isResting()); // what the launch had started was stopped again
    Q_EMIT bench.login->PrepareForSleep(false);
    QVERIFY(bench.hasLocks(2));
    QVERIFY(bench.isDisplaying());
    QCOMPARE(bench.program.terminate(endsSoon), 0);
}

// The machine does not wait for ever: it may have slept and be awake again before the work is done.
void SleepDelayTest::wakeBeforeTheWorkIsDone_keepsTheNewLock()
{
    Bench bench(true);
    QVERIFY(bench.login->come());
    QVERIFY(bench.program.start());
    QVERIFY(bench.hasLocks(1));
    QVERIFY(bench.isDisplaying());
    bench.feed.close();
    QTRY_COMPARE_WITH_TIMEOUT(bench.feed.waiting, 1, happensSoon);
    for (std::size_t nights = 1; nights <= 2; ++nights) {
        Q_EMIT bench.login->PrepareForSleep(true);
        Q_EMIT bench.login->PrepareForSleep(false);
        QVERIFY(bench.hasLocks(1 + nights));
    }
    bench.feed.open();
    QVERIFY(Bench::isGivenBack(bench.lock(0)));
    QVERIFY2(bench.isDisplaying(), qPrintable(bench.program.logBook()));
    QVERIFY(bench.lock(2).isHeld());
    QCOMPARE(bench.program.terminate(endsSoon), 0);
}

void SleepDelayTest::wakeWithoutDisplayBefore_startsNothing()
{
    Bench bench(false);
    QVERIFY(bench.login->come());
    QVERIFY(bench.program.start());
    QVERIFY(bench.hasLocks(1));
    QTRY_VERIFY_WITH_TIMEOUT(bench.program.logBook().contains(u"QoVelmarRSS開始"_s), happensSoon);
    Q_EMIT bench.login->PrepareForSleep(true);
    QVERIFY(Bench::isGivenBack(bench.lock(0)));
    QTRY_VERIFY_WITH_TIMEOUT(bench.board.lines().contains("lm_clear"), happensSoon);
    Q_EMIT bench.login->PrepareForSleep(false);
    QVERIFY(bench.hasLocks(2));
    QTest::qWait(wouldHappenAtOnce);
    QVERIFY(!bench.program.logBook().contains(u" RSS表示開始"_s));
    QCOMPARE(bench.server.hits("/feed"), 0);
    QCOMPARE(bench.program.terminate(endsSoon), 0);
}

// It is restarted when its package is updated: a lock of the old one keeps nobody awake.
void SleepDelayTest::loginManagerThatComesLateAndAgain_isAskedEachTime()
{
    Bench bench(true);
    QVERIFY(bench.program.start());
    QVERIFY(bench.isDisplaying());
    QVERIFY(bench.login->come());
    QVERIFY(bench.hasLocks(1));
    bench.login->go();
    QVERIFY(bench.login->come());
    QVERIFY(bench.hasLocks(2));
    QVERIFY(Bench::isGivenBack(bench.lock(0)));
    Q_EMIT bench.login->PrepareForSleep(true);
    QVERIFY(Bench::isGivenBack(bench.lock(1)));
    QVERIFY(bench.isResting());
    QCOMPARE(bench.program.terminate(endsSoon), 0);
}

QTEST_GUILESS_MAIN(SleepDelayTest)
#include "sleepdelay_test.moc"
