// SPDX-License-Identifier: MIT
#include "WholeProgram.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
const auto feedA = u"http://town/a"_s;
const auto remembered = u"LastRSSMessages"_s;

/// A program whose launch fetches the name of a feed, with a headline from the day before.
struct LaunchedProgram : WholeProgram
{
    explicit LaunchedProgram(const std::function<void(LaunchedProgram &)> &meanwhile,
                             bool withBoard = false)
        : WholeProgram(withBoard)
    {
        loader.serve(feedA, {u"一"_s});
        defaults.setArray({PropertyDictionary{{u"RSSAddressString"_s, feedA}}},
                          u"RSSSiteAddresses"_s);
        defaults.setArray({PropertyDictionary{{u"HeadlineString"_s, u"昨日"_s}}}, remembered);
        bool isFirst = true;
        loader.onLoad = [&] {
            if (std::exchange(isFirst, false))
                meanwhile(*this);
            mainThread.drain(); // the program's own loader runs what is posted, too
        };
        launch();
        loader.onLoad = {};
    }

    QString rememberedHeadline() const
    {
        const auto messages = defaults.arrayForKey(remembered).value_or(PropertyArray());
        const auto *first = messages.empty() ? nullptr : messages[0].get<PropertyDictionary>();
        return first ? first->string(u"HeadlineString"_s).value_or(u""_s) : u"none"_s;
    }
};

PropertyArray startTimerNow(const WholeProgram &p, const QString &address)
{
    const LocalTime now = localTime(p.clock.calendarNow());
    return {PropertyDictionary{{u"TimerValidate"_s, true},
                               {u"TimerFireDay"_s, 127},
                               {u"TimerFireTime"_s, now.hour * 60 + now.minute},
                               {u"TimerOperation"_s, 1},
                               {u"TimerAddress"_s, address}}};
}
} // namespace

/// What comes from outside, at a busy moment too: sleep, quitting, commands, changes of the list.
class VelmorRSSBusyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sleepAndWake_pauseTheDisplay();
    void wakeWithoutDisplayBefore_startsNothing();
    void quit_stopsTheDisplayAndClearsTheBoard();
    void quitTwice_terminatesOnce();
    void commandsWhileBusy_areRefused();
    void workForLater_waitsForTheEndOfARead();
    void listChange_letsNothingElseBegin();
    void longTitleLine_holdsUpNeitherReadNorStop_data();
    void longTitleLine_holdsUpNeitherReadNorStop();
    void startDuringTheLaunch_isRefused();
    void sleepDuringTheLaunch_waitsForADarkBoard();
    void quitDuringTheLaunch_showsNoWindow();
    void secondStartDuringTheLaunch_isNoted();
    void timersOwnFetch_letsNothingElseBegin();
};

void VelmorRSSBusyTest::sleepAndWake_pauseTheDisplay()
{
    WholeProgram p(true);
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(500ms);
    const int clears = p.board->clears;
    p.control.willSleepHandle();
    QVERIFY(!p.control.isDisplayActive());
    QVERIFY(p.board->clears > clears);
    p.clock.suspendFor(8h);
    p.control.didWakeHandle();
    QVERIFY(p.control.isDisplayActive());
}

void VelmorRSSBusyTest::wakeWithoutDisplayBefore_startsNothing()
{
    WholeProgram p;
    p.launch();
    p.control.willSleepHandle();
    p.control.didWakeHandle();
    QVERIFY(!p.control.isDisplayActive());
}

void VelmorRSSBusyTest::quit_stopsTheDisplayAndClearsTheBoard()
{
    WholeProgram p(true);
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(500ms);
    const auto asked = p.clock.steadyNow();
    p.control.actQuit();
    QCOMPARE(p.window.terminations, 1);
    QCOMPARE(p.clock.steadyNow(), asked); // no sleep was slept
    QVERIFY(p.board->clears > 0);
    QVERIFY(!p.control.isDisplayActive());
    p.control.applicationWillTerminate();
}

void VelmorRSSBusyTest::quitTwice_terminatesOnce()
{
    WholeProgram p;
    p.launch();
    p.control.actQuit();
    p.control.actQuit();
    p.mainThread.drain();
    QCOMPARE(p.window.terminations, 1);
}

// A second command cannot start in the middle of a read on the main thread; what cannot be refused
// is done afterwards.
void VelmorRSSBusyTest::commandsWhileBusy_areRefused()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.window.mainWindowVisible = false;
    bool tried = false;
    p.msgList.changeNotice().listen([&] {
        if (!p.control.isBusy() || std::exchange(tried, true))
            return;
        const int loads = p.loader.loads;
        p.control.actGetRSS();
        p.control.actStartDisp();
        p.control.actDrawerButton();
        p.control.secondLaunch();
        p.control.willSleepHandle();
        p.control.didWakeHandle();
        QCOMPARE(p.loader.loads.load(), loads);
        QVERIFY(!p.control.isDisplayActive());
        QVERIFY(!p.window.mainWindowVisible);
    });
    // The simulated clock does not pump: the notice is run from the loader's place in the read.
    p.loader.onLoad = [&] { p.mainThread.drain(); };
    p.control.actGetRSS();
    p.loader.onLoad = {};
    QVERIFY(tried);
    p.mainThread.drain();
    QVERIFY(p.window.mainWindowVisible);
}

void VelmorRSSBusyTest::workForLater_waitsForTheEndOfARead()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    QStringList done;
    p.loader.onLoad = [&] {
        p.control.whenIdle([&] { done << u"first"_s; });
        p.control.whenIdle([&] { done << u"second"_s; });
        p.mainThread.drain(); // what is posted runs during a read, and must not do this
        QVERIFY(done.isEmpty());
    };
    p.control.actGetRSS();
    p.loader.onLoad = {};
    QVERIFY(done.isEmpty());
    p.mainThread.drain();
    QCOMPARE(done, (QStringList{u"first"_s, u"second"_s}));
    p.control.whenIdle([&] { done << u"at once"_s; });
    p.mainThread.drain();
    QCOMPARE(done.size(), 3);
}

// A timer or a command in the middle of an import would read and show a list that is about to
// change.
void VelmorRSSBusyTest::listChange_letsNothingElseBegin()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    int during = 0;
    p.loader.onLoad = [&] {
        const int loads = p.loader.loads;
        QVERIFY(p.control.isBusy());
        p.control.actGetRSS();
        QCOMPARE(p.loader.loads.load(), loads);
        ++during;
    };
    p.rssList.appendAddresses({u"http://town/n"_s});
    p.loader.onLoad = {};
    QCOMPARE(during, 1);
    QVERIFY(!p.control.isBusy());
}

void VelmorRSSBusyTest::longTitleLine_holdsUpNeitherReadNorStop_data()
{
    QTest::addColumn<bool>("onBoard");
    QTest::newRow("board") << true;
    QTest::newRow("screen") << false;
}

// Nothing to read: one read follows the other, while the title line of the first still runs.
void VelmorRSSBusyTest::longTitleLine_holdsUpNeitherReadNorStop()
{
    QFETCH(bool, onBoard);
    WholeProgram p(onBoard);
    p.addFeed(feedA, {});
    p.launch();
    p.msgList.setDispInfo(true);
    p.screen.stepsOfALine = 300;
    if (onBoard)
        p.board->setStepsOfALine(300);
    p.reuseAges.clear();
    p.control.actStartDisp();
    p.sleep(10s);
    const auto reads = p.reuseAges.size();
    QVERIFY2(reads >= 5, qPrintable(QString::number(reads)));
    const auto asked = p.clock.steadyNow();
    p.control.actStopDisp();
    QVERIFY(p.clock.steadyNow() - asked <= 2s); // the read under way is waited for
    const QStringList shown = onBoard ? p.board->takeShown() : p.screen.takeShown();
    QCOMPARE(shown.size(), 1);
}

// The tray's menu is asked over the bus, so that it is no input that could be eaten. A display that
// started before the lists are read would read no feed and remember that there was no headline.
void VelmorRSSBusyTest::startDuringTheLaunch_isRefused()
{
    LaunchedProgram p([](LaunchedProgram &launched) {
        QVERIFY(launched.control.isBusy());
        launched.control.actStartDisp();
        QVERIFY(!launched.control.isDisplayActive());
    });
    QVERIFY(!p.control.isBusy());
    QVERIFY(!p.control.isDisplayActive());
    QCOMPARE(p.rememberedHeadline(), u"昨日"_s);
    p.control.actStartDisp(); // the launch is over
    QVERIFY(p.control.isDisplayActive());
}

void VelmorRSSBusyTest::sleepDuringTheLaunch_waitsForADarkBoard()
{
    bool isReleased = false;
    bool wasDark = false;
    LaunchedProgram p(
        [&](LaunchedProgram &launched) {
            launched.setup.setDispAuto(true);
            const auto release = [&](const int *) {
                isReleased = true;
                wasDark = !launched.control.isDisplayActive() && launched.board->clears > 0 &&
                          !launched.board->isRunning();
            };
            launched.control.willSleepHandle(
                std::shared_ptr<const int>(static_cast<const int *>(nullptr), release));
            QVERIFY(!isReleased);
        },
        true);
    QVERIFY(isReleased);
    QVERIFY(wasDark);
    QVERIFY(!p.control.isDisplayActive());
    p.control.didWakeHandle();
    QVERIFY(p.control.isDisplayActive()); // what the launch had begun goes on
}

void VelmorRSSBusyTest::quitDuringTheLaunch_showsNoWindow()
{
    LaunchedProgram p([](LaunchedProgram &launched) {
        launched.setup.setDispAuto(true);
        launched.control.actQuit();
        QCOMPARE(launched.window.terminations, 0); // not in the middle of it
    });
    QCOMPARE(p.window.calls, (QStringList{u"showStartupWindow"_s, u"closeStartupWindow"_s}));
    QVERIFY(!p.window.mainWindowVisible);
    QVERIFY(!p.window.ledWindowVisible);
    QVERIFY(!p.control.isDisplayActive());
    QCOMPARE(p.window.terminations, 1);
    QCOMPARE(p.rememberedHeadline(), u"昨日"_s);
}

void VelmorRSSBusyTest::secondStartDuringTheLaunch_isNoted()
{
    LaunchedProgram p([](LaunchedProgram &launched) {
        launched.control.secondLaunch();
        QVERIFY(!launched.window.mainWindowVisible);
    });
    QCOMPARE(p.window.calls.count(u"showMainWindow"_s), 2);
}

// The name of a timer's feed is fetched between the stop and the read.
void VelmorRSSBusyTest::timersOwnFetch_letsNothingElseBegin()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.loader.serve(u"http://town/n"_s, {u"二"_s});
    p.defaults.setArray(startTimerNow(p, u"http://town/n"_s), u"TimerList"_s);
    p.launch();
    bool tried = false;
    p.loader.onLoad = [&] {
        if (std::exchange(tried, true))
            return; // the read that follows
        QCOMPARE(p.loader.loadsOf(u"http://town/n"_s), 1);
        QVERIFY(p.control.isBusy());
        p.control.actStartDisp();
        QVERIFY(!p.control.isDisplayActive());
        p.control.willSleepHandle();
        p.mainThread.drain();
    };
    p.timer.fire();
    p.loader.onLoad = {};
    QVERIFY(tried);
    QVERIFY(p.control.isDisplayActive());
    p.mainThread.drain();
    QVERIFY(!p.control.isDisplayActive()); // to sleep, when the timer was done
}

QTEST_GUILESS_MAIN(VelmorRSSBusyTest)
#include "velmorrssbusy_test.moc"
