// SPDX-License-Identifier: MIT
#include "WholeProgram.h"

#include <QTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
const auto feedA = u"http://town/a"_s;
const auto feedB = u"http://town/b"_s;

QStringList headlinesOf(const WholeProgram &program)
{
    QStringList headlines;
    for (const Message &message : *program.msgList.msgList())
        headlines << message.headline;
    return headlines;
}
} // namespace

class VelmorRSSTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void launch_bringsEverythingUpInOrder();
    void launchWithAutomaticDisplay_readsAndShows();
    void launchWithOptionHeld_startsNothing();
    void optionPressedDuringTheLaunch_startsNothing();
    void launchWithBoard_sendsLinesThere();
    void launchWithSilentBoard_usesTheScreen();
    void launchWithoutVirtualLED_keepsTheWindowShut();
    void storedButton_opensTheLEDWindow();
    void everyHeadlineIsShown_thenTheFeedsAreReadAgain();
    void readCommand_restartsARunningDisplay();
    void readCommand_withoutDisplay_onlyReads();
    void startAndStop_dropATemporaryFeed();
    void emptyList_readsOverAndOverFromMemory();
    void aReadThatWasAskedFor_alwaysFetches();
    void ledWindow_movesTheOutputAndBack();
    void drawers_followTheWindows();
    void tabs_rememberTheDescription();
    void dockClick_showsAndHides();
    void links_goToTheChosenBrowser();
    void linkThatNobodyTakes_raisesTheAlert();
    void finishSound_isPlayedAfterEachRead();
    void timerFire_startsTheDisplay();
    void randomCommands_leaveNothingBehind();
};

void VelmorRSSTest::launch_bringsEverythingUpInOrder()
{
    WholeProgram p;
    p.launch();
    QCOMPARE(p.window.calls, (QStringList{u"showStartupWindow"_s, u"closeStartupWindow"_s,
                                          u"showMainWindow"_s, u"createMenus"_s}));
    QCOMPARE(p.window.tab, tab::list);
    QVERIFY(p.window.ledWindowVisible); // without a board the on-screen board shows the lines
    QVERIFY(p.window.drawerButton);
    QVERIFY(!p.control.isOutputLED());
    QVERIFY(!p.control.isDisplayActive());
}

void VelmorRSSTest::launchWithAutomaticDisplay_readsAndShows()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s, u"二"_s});
    p.defaults.setBool(true, u"DisplayAuto"_s);
    p.launch();
    QCOMPARE(headlinesOf(p).size(), 2);
    QCOMPARE(p.window.tab, tab::message);
    QVERIFY(p.control.isDisplaying());
}

void VelmorRSSTest::launchWithOptionHeld_startsNothing()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.defaults.setBool(true, u"DisplayAuto"_s);
    p.launch([] { return true; });
    QCOMPARE(p.loader.loads.load(), 0);
    QVERIFY(!p.control.isDisplayActive());
}

// Whoever presses the key while the names of new feeds are still fetched is in time.
void VelmorRSSTest::optionPressedDuringTheLaunch_startsNothing()
{
    WholeProgram p;
    p.loader.serve(feedA, {u"一"_s});
    p.defaults.setArray({PropertyDictionary{{u"RSSAddressString"_s, feedA}}},
                        u"RSSSiteAddresses"_s);
    p.defaults.setBool(true, u"DisplayAuto"_s);
    bool isHeld = false;
    p.loader.onLoad = [&] { isHeld = true; };
    p.launch([&] { return isHeld; });
    QVERIFY(isHeld);
    QCOMPARE(p.loader.loads.load(), 1); // its name
    QVERIFY(!p.control.isDisplayActive());
}

void VelmorRSSTest::launchWithBoard_sendsLinesThere()
{
    WholeProgram p(true);
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    QVERIFY(p.control.isOutputLED());
    QVERIFY(!p.window.ledWindowVisible);
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(500ms);
    QCOMPARE(p.board->takeShown(), QStringList{u"一 11/21 09:30【町】"_s});
    QVERIFY(p.screen.takeShown().isEmpty());
    QVERIFY(p.control.isDisplaying());
}

void VelmorRSSTest::launchWithSilentBoard_usesTheScreen()
{
    WholeProgram p(true);
    p.board->answers = false;
    p.launch();
    QVERIFY(!p.control.isOutputLED());
    QVERIFY(p.window.ledWindowVisible);
}

void VelmorRSSTest::launchWithoutVirtualLED_keepsTheWindowShut()
{
    WholeProgram p;
    p.defaults.setBool(false, u"VirtualLED"_s);
    p.defaults.setInteger(1, u"LEDButtonState"_s); // it was open when the last session ended
    p.launch();
    QVERIFY(!p.window.ledWindowVisible);
    QVERIFY(!p.window.drawerButton);
}

void VelmorRSSTest::storedButton_opensTheLEDWindow()
{
    WholeProgram p(true);
    p.defaults.setInteger(1, u"LEDButtonState"_s);
    p.launch();
    QVERIFY(p.window.ledWindowVisible);
    QVERIFY(!p.control.isOutputLED());
    QCOMPARE(p.defaults.integerForKey(u"LEDButtonState"_s), 1);
}

void VelmorRSSTest::everyHeadlineIsShown_thenTheFeedsAreReadAgain()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s, u"二"_s});
    p.launch();
    p.control.actGetRSS();
    const int loads = p.loader.loads;
    p.control.actStartDisp();
    p.sleep(9s); // two lines of two seconds, a read of 1.2 seconds, the first line again
    const auto shown = p.screen.takeShown();
    QVERIFY(shown.size() >= 3);
    QCOMPARE(shown.first(3), (QStringList{u"一 11/21 09:30【町】"_s, u"二 11/21 09:30【町】"_s,
                                          u"一 11/21 09:30【町】"_s}));
    QCOMPARE(p.loader.loads.load(), loads + 1);
    QCOMPARE(p.control.completedPasses(), 1);
}

void VelmorRSSTest::readCommand_restartsARunningDisplay()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s, u"二"_s});
    p.launch();
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(3s);
    p.loader.serve(feedA, {u"三"_s});
    p.window.calls.clear();
    p.control.actGetRSS();
    QVERIFY(p.control.isDisplayActive());
    QCOMPARE(headlinesOf(p), QStringList{u"三"_s});
    QCOMPARE(p.control.lastDispLine(), 0);
    QCOMPARE(p.window.calls, (QStringList{u"clearMessageSelection"_s, u"scrollMessagesToTop"_s}));
}

void VelmorRSSTest::readCommand_withoutDisplay_onlyReads()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.addFeed(feedB, {u"二"_s});
    p.launch();
    p.control.actGetRSS();
    QVERIFY(!p.control.isDisplayActive());
    QCOMPARE(headlinesOf(p), (QStringList{u"一"_s, u"二"_s}));
    QVERIFY(p.control.canStartDisp());
}

void VelmorRSSTest::startAndStop_dropATemporaryFeed()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.loader.serve(feedB, {u"二"_s});
    const auto hasTemporary = [&] { return p.rssList.feeds().front()->address() == feedB; };
    QTest::ignoreMessage(QtWarningMsg, "readerList: List is tempReader");
    p.rssList.setTempReader(feedB);
    QVERIFY(hasTemporary());
    p.control.actStartDisp();
    QVERIFY(!hasTemporary());
    QTest::ignoreMessage(QtWarningMsg, "readerList: List is tempReader");
    p.rssList.setTempReader(feedB);
    QVERIFY(hasTemporary());
    p.control.actStopDisp();
    QVERIFY(!hasTemporary());
}

void VelmorRSSTest::emptyList_readsOverAndOverFromMemory()
{
    WholeProgram p;
    p.addFeed(feedA, {});
    p.launch();
    p.reuseAges.clear();
    p.control.actStartDisp();
    p.sleep(5s);
    p.control.actStopDisp();
    QVERIFY(p.reuseAges.size() >= 3);
    for (const auto age : p.reuseAges)
        QCOMPARE(age, 30s); // nothing was taken before, not even at the beginning
}

void VelmorRSSTest::aReadThatWasAskedFor_alwaysFetches()
{
    WholeProgram p;
    p.addFeed(feedA, {});
    p.launch();
    p.reuseAges.clear();
    p.control.actGetRSS();
    p.control.actGetRSS();
    QCOMPARE(p.reuseAges, (std::vector{0s, 0s}));
}

void VelmorRSSTest::ledWindow_movesTheOutputAndBack()
{
    WholeProgram p(true);
    p.addFeed(feedA, {u"一"_s, u"二"_s});
    p.launch();
    p.control.actGetRSS();
    p.control.actStartDisp();
    p.sleep(500ms);
    p.control.actDrawerButton();
    QVERIFY(!p.control.isOutputLED());
    QVERIFY(p.window.ledWindowVisible && p.window.drawerButton);
    QCOMPARE(p.defaults.integerForKey(u"LEDButtonState"_s), 1);
    QVERIFY(p.control.isDisplayActive());
    p.sleep(500ms);
    QCOMPARE(p.screen.takeShown().size(), 1);

    p.control.actDrawerButton();
    QVERIFY(p.control.isOutputLED());
    QVERIFY(!p.window.ledWindowVisible && !p.window.drawerButton);
    QCOMPARE(p.defaults.integerForKey(u"LEDButtonState"_s), 0);
    p.sleep(500ms);
    QCOMPARE(p.board->takeShown().size(), 2);
}

void VelmorRSSTest::drawers_followTheWindows()
{
    WholeProgram p(true);
    p.launch();
    p.window.tab = tab::message;
    p.control.actDescriptionDrawer();
    QVERIFY(p.window.descriptionDrawerOpen && p.window.descriptionButtonOn);
    QCOMPARE(p.defaults.integerForKey(u"DescButtonState"_s), 1);
    p.control.actDrawerButton(); // the LED window takes the description over
    QVERIFY(!p.window.descriptionDrawerOpen && p.window.ledDrawerOpen);
    p.control.actDrawerButton();
    QVERIFY(p.window.descriptionDrawerOpen);
    p.control.actDescriptionDrawer();
    QVERIFY(!p.window.descriptionDrawerOpen && !p.window.descriptionButtonOn);
    QCOMPARE(p.defaults.integerForKey(u"DescButtonState"_s), 0);
}

void VelmorRSSTest::tabs_rememberTheDescription()
{
    WholeProgram p;
    p.launch();
    p.window.descriptionButtonOn = true;
    p.control.tabViewDidSelectTabViewItem(tab::message);
    QVERIFY(p.window.descriptionDrawerOpen && p.window.descriptionButtonEnabled);
    p.control.tabViewDidSelectTabViewItem(tab::list);
    QVERIFY(!p.window.descriptionDrawerOpen && !p.window.descriptionButtonEnabled);
    QVERIFY(p.window.descriptionButtonOn);
}

void VelmorRSSTest::dockClick_showsAndHides()
{
    WholeProgram p;
    p.launch();
    QVERIFY(p.control.applicationShouldHandleReopen());
    QVERIFY(!p.window.mainWindowVisible);
    QVERIFY(p.control.applicationShouldHandleReopen());
    QVERIFY(p.window.mainWindowVisible);
    p.control.applicationShouldHandleReopen();
    p.control.secondLaunch();
    QVERIFY(p.window.mainWindowVisible);
    p.control.secondLaunch(); // shows, never hides
    QVERIFY(p.window.mainWindowVisible);
}

void VelmorRSSTest::links_goToTheChosenBrowser()
{
    WholeProgram p;
    p.launch();
    p.setup.setDesigBrowser(u"/usr/share/applications/some.desktop"_s);
    QVERIFY(p.control.siteAccessWithAddress(u"http://town/"_s));
    QCOMPARE(p.opener.opened, QStringList{u"http://town/"_s});
    QCOMPARE(p.opener.browsers, QStringList{u"/usr/share/applications/some.desktop"_s});
}

void VelmorRSSTest::linkThatNobodyTakes_raisesTheAlert()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launch();
    p.control.actGetRSS();
    p.opener.takes = false;
    p.msgList.actDoubleClickListView(0, false);
    QCOMPARE(p.window.alerts.size(), 1);
}

void VelmorRSSTest::finishSound_isPlayedAfterEachRead()
{
    WholeProgram p;
    p.launch();
    p.control.actGetRSS();
    QVERIFY(p.sounds.played.isEmpty());
    p.setup.setPlayFinishSound(true);
    p.control.actGetRSS();
    QCOMPARE(p.sounds.played, QStringList{u"Basso"_s});
}

void VelmorRSSTest::timerFire_startsTheDisplay()
{
    WholeProgram p;
    p.addFeed(feedA, {u"一"_s});
    const LocalTime now = localTime(p.clock.calendarNow());
    p.defaults.setArray({PropertyDictionary{{u"TimerValidate"_s, true},
                                            {u"TimerFireDay"_s, 127},
                                            {u"TimerFireTime"_s, now.hour * 60 + now.minute},
                                            {u"TimerOperation"_s, 1},
                                            {u"TimerAddress"_s, u""_s}}},
                        u"TimerList"_s);
    p.launch();
    p.timer.fire();
    QVERIFY(p.control.isDisplayActive());
    QCOMPARE(p.loader.loads.load(), 1);
}

// A person, a schedule, the power button and the network do anything in any order.
void VelmorRSSTest::randomCommands_leaveNothingBehind()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    const auto upTo = [&](int most) {
        return static_cast<int>(random() % static_cast<unsigned>(most));
    };

    for (int sequence = 0; sequence < 1000; ++sequence) {
        WholeProgram p(upTo(2) == 0);
        p.addFeed(feedA, {u"一"_s, u"二"_s});
        p.addFeed(feedB, {u"三"_s});
        p.launch();
        bool quit = false;
        for (int command = 0; command < 8 && !quit; ++command) {
            switch (upTo(10)) {
            case 0:
                p.control.actStartDisp();
                break;
            case 1:
                p.control.actStopDisp();
                break;
            case 2:
                p.control.actGetRSS();
                break;
            case 3:
                p.sleep(std::chrono::milliseconds(upTo(6000)));
                break;
            case 4:
                p.control.actDrawerButton();
                break;
            case 5:
                p.rssList.moveRSSReaderFromIndex(0, 2);
                break;
            case 6:
                p.timer.fire();
                break;
            case 7:
                p.loader.serve(feedA, upTo(2) == 0 ? QStringList() : QStringList{u"四"_s});
                break;
            case 8: {
                p.control.willSleepHandle();
                p.control.didWakeHandle();
                break;
            }
            case 9:
                if (upTo(4) == 0) {
                    p.control.actQuit();
                    quit = true;
                }
                break;
            }
            p.mainThread.drain();
        }
        QVERIFY2(!p.loader.overlapped, qPrintable(QString::number(seed))); // one read at a time
        p.control.actQuit();
        p.control.applicationWillTerminate();
        p.screen.stopShowString(); // its last line is on its way out
        QCOMPARE(p.control.dispRSSState(), 0);
        QVERIFY(!p.control.isReading());
        QCOMPARE(p.window.terminations, 1);
        QCOMPARE(p.clock.runningThreads(), 1);
    }
}

QTEST_GUILESS_MAIN(VelmorRSSTest)
#include "velmorrss_test.moc"
