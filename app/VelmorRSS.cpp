// SPDX-License-Identifier: MIT
#include "app/VelmorRSS.h"

#include "app/AppWindow.h"
#include "board/BoardLink.h"
#include "feeds/RSSList.h"
#include "messages/MessageList.h"
#include "platform/Clock.h"
#include "platform/LinkOpener.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/Sounds.h"
#include "platform/UserDefaults.h"
#include "schedule/RSSTimer.h"
#include "settings/Setup.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString ledButtonStateKey = u"LEDButtonState"_s;

// A cycle that took nothing is followed by the next one at once; for this long it answers from what
// the servers said last instead of asking them again every second.
constexpr auto emptyCycleReuse = 30s;

} // namespace

/// Marks the main thread as reading or waiting. What arrives meanwhile is done when the outermost
/// scope has ended, from the event loop.
class VelmorRSS::BusyScope
{
public:
    explicit BusyScope(VelmorRSS &owner)
        : owner_(owner), isMain_(owner.services_.mainThread.isCurrent())
    {
        if (isMain_)
            owner_.becomeBusy();
    }
    ~BusyScope()
    {
        if (isMain_)
            owner_.becomeIdle();
    }
    BusyScope(const BusyScope &) = delete;
    BusyScope &operator=(const BusyScope &) = delete;

private:
    VelmorRSS &owner_;
    bool isMain_;
};

VelmorRSS::VelmorRSS(Services services, Controllers controllers)
    : services_(services)
    , controllers_(controllers)
    , tables_(controllers.rssList, controllers.msgList)
    , controlsNotice_(services.mainThread)
    , passNotice_(services.mainThread)
    , cycle_(services.clock, *this)
{
    controlsNotice_.listen([this] {
        if (window_ != nullptr)
            window_->updateControls();
    });
    passNotice_.listen([this] {
        if (passListener_)
            passListener_();
    });
}

VelmorRSS::~VelmorRSS() = default;

void VelmorRSS::setWindow(AppWindow &window)
{
    window_ = &window;
    tables_.setWindow(window);
}

// Life of the program. ----------------------------------------------------------------------------

void VelmorRSS::applicationDidFinishLaunching(const std::function<bool()> &isOptionKeyHeld)
{
    bringPartsUp();
    if (services_.clock.sleepsEnded())
        return; // asked to quit meanwhile: that was noted and comes next
    window_->showMainWindow();

    controllers_.msgList.writeStringLog(u"QoVelmarRSS開始"_s);
    window_->selectTab(tab::list);
    // Also when that is the tab with which the window begins.
    tabViewDidSelectTabViewItem(tab::list);
    window_->createMenus();
    controllers_.setup.setUseNarrowFont(controllers_.setup.useNarrowFont());
    if (services_.defaults.integerForKey(ledButtonStateKey) == 1)
        actDrawerButton();
    chooseOutput();
    renewControls();
    if (controllers_.setup.dispAuto() && !isOptionKeyHeld()) {
        startReadRSS();
        tabSetAndStartDispRSS();
    }
}

// The names of new feeds are fetched here, which may take minutes. Nothing else may begin before
// every list has been read.
void VelmorRSS::bringPartsUp()
{
    const BusyScope busy(*this);
    window_->showStartupWindow();
    // The settings come first because the others read them.
    controllers_.setup.awakeFromNibx();
    awakeFromNibx();
    controllers_.rssList.awakeFromNibx();
    controllers_.msgList.awakeFromNibx();
    controllers_.rssTimer.awakeFromNibx();
    window_->closeStartupWindow();
}

void VelmorRSS::awakeFromNibx()
{
    window_->setDrawerButton(false);
    window_->setDescriptionButton(false);
    renewControls();
}

void VelmorRSS::chooseOutput()
{
    outputLED_ = false;
    if (controllers_.setup.hasLedSystem()) {
        if (!window_->isLEDWindowVisible()) {
            outputLED_ = true;
            controllers_.msgList.createProgressBar();
        }
    } else if (controllers_.setup.virtualLED()) {
        if (!window_->isLEDWindowVisible())
            openLEDWindow();
    } else {
        // The state of the last session may just have opened it.
        window_->closeLEDWindow();
        window_->setDrawerButton(false);
    }
}

void VelmorRSS::applicationWillTerminate()
{
    stopDispRSS();
    controllers_.msgList.applicationWillTerminate();
    controllers_.setup.applicationWillTerminate();
}

bool VelmorRSS::applicationShouldHandleReopen()
{
    if (isBusy())
        return true;
    if (window_->isMainWindowVisible())
        window_->hideMainWindow();
    else
        window_->showMainWindow();
    return true;
}

void VelmorRSS::secondLaunch()
{
    if (isBusy())
        secondLaunchNoted_ = true;
    else
        window_->showMainWindow();
}

void VelmorRSS::willSleepHandle(std::shared_ptr<const void> delay)
{
    if (isBusy()) {
        powerNoted_.emplace_back([this, delay = std::move(delay)] { willSleepHandle(delay); });
        return;
    }
    displayedBefore_ = isDisplayActive();
    if (displayedBefore_)
        stopDispRSS();
    controllers_.setup.ledSystem().clear();
}

void VelmorRSS::didWakeHandle()
{
    if (isBusy()) {
        powerNoted_.emplace_back([this] { didWakeHandle(); });
        return;
    }
    if (std::exchange(displayedBefore_, false))
        startDispRSS();
}

void VelmorRSS::doWhatWasNoted()
{
    if (isBusy())
        return;
    if (std::exchange(quitNoted_, false)) {
        actQuit();
        return;
    }
    if (std::exchange(secondLaunchNoted_, false))
        window_->showMainWindow();
    for (const auto &handle : std::exchange(powerNoted_, {}))
        handle();
    while (!workNoted_.empty() && !isBusy() && !terminating_) {
        const std::function<void()> work = std::move(workNoted_.front());
        workNoted_.pop_front();
        work();
    }
}

// State.
// ---------------------------------------------------------------------------------------------

bool VelmorRSS::isDisplaying() const
{
    return isOutputLED() ? controllers_.setup.ledSystem().isRunning() : isRunning();
}

bool VelmorRSS::isLEDWindowVisible() const
{
    return window_->isLEDWindowVisible();
}

bool VelmorRSS::canStartDisp() const
{
    return !isDisplayActive() && messageCount() > 0;
}

// The cycles.
// ----------------------------------------------------------------------------------------

void VelmorRSS::startReadRSS()
{
    const BusyScope busy(*this);
    cycle_.startReadRSS();
}

void VelmorRSS::stopReadRSS()
{
    const BusyScope busy(*this);
    cycle_.stopReadRSS();
}

void VelmorRSS::startDispRSS()
{
    if (services_.clock.sleepsEnded())
        return; // the program is on its way out
    // A timer may fire while the alert of the lost port stands: each line would end at once, and
    // the feeds would be read again every second.
    if (isOutputLED() && controllers_.setup.ledSystem().isLost())
        return;
    cycle_.startDispRSS();
}

void VelmorRSS::stopDispRSS()
{
    const BusyScope busy(*this);
    cycle_.stopDispRSS();
}

void VelmorRSS::tabSetAndStartDispRSS()
{
    window_->selectTab(tab::message);
    startDispRSS();
}

void VelmorRSS::becomeIdle()
{
    if (--busyDepth_ == 0)
        services_.mainThread.post([this] { doWhatWasNoted(); });
}

void VelmorRSS::whenIdle(std::function<void()> work)
{
    workNoted_.push_back(std::move(work));
    services_.mainThread.post([this] { doWhatWasNoted(); });
}

void VelmorRSS::readPages(ReadReason reason)
{
    if (isOnePassOnly_ && reason == ReadReason::EndOfList && completedPasses_ > 0) {
        while (services_.clock.sleepFor(100ms)) {
        }
        return;
    }
    const bool reuse = reason == ReadReason::EndOfList && controllers_.msgList.takenCount() == 0;
    services_.setReuseAge(reuse ? emptyCycleReuse : 0s);
    controllers_.msgList.readRSSPages();
    controllers_.rssList.renewTableView();
    controllers_.msgList.renewTableView();
}

void VelmorRSS::readFinished()
{
    const Setup &setup = controllers_.setup;
    if (setup.playFinishSound())
        services_.sounds.play(setup.finishSoundName(), setup.playSoundVolume());
}

int VelmorRSS::messageCount() const
{
    return controllers_.msgList.messageCount();
}

void VelmorRSS::displayStarts()
{
    controllers_.msgList.writeDispStartLog();
}

void VelmorRSS::showMessage(int index)
{
    controllers_.msgList.dispRSSDataWithIndex(index);
    if (isRunning() && index + 1 == messageCount()) {
        ++completedPasses_;
        passNotice_.changed();
    }
}

void VelmorRSS::displayStopped()
{
    controllers_.msgList.eraseDispNumber();
}

// Commands.
// ------------------------------------------------------------------------------------------

void VelmorRSS::actGetRSS()
{
    if (isBusy())
        return;
    const BusyScope busy(*this);
    controllers_.rssList.delTempReader();
    const bool displayed = isDisplayActive();
    if (displayed)
        stopDispRSS();
    window_->clearMessageSelection();
    startReadRSS();
    window_->scrollMessagesToTop();
    window_->selectTab(tab::message);
    if (displayed)
        startDispRSS();
}

void VelmorRSS::actStartDisp()
{
    if (isBusy())
        return;
    controllers_.rssList.delTempReader();
    tabSetAndStartDispRSS();
}

void VelmorRSS::actStopDisp()
{
    if (isBusy())
        return;
    controllers_.rssList.delTempReader();
    stopDispRSS();
}

void VelmorRSS::actQuit()
{
    services_.clock.endSleeps();
    if (isBusy()) {
        quitNoted_ = true;
        return;
    }
    if (std::exchange(terminating_, true))
        return;
    stopDispRSS();
    controllers_.setup.ledSystem().clear();
    window_->terminate();
}

void VelmorRSS::actDrawerButton()
{
    if (isBusy())
        return;
    const bool displayed = isDisplayActive();
    if (displayed)
        stopDispRSS();
    if (window_->isLEDWindowVisible())
        closeLEDWindow();
    else
        openLEDWindow();
    if (displayed)
        startDispRSS();
    storeDrawerButton();
}

void VelmorRSS::openLEDWindow()
{
    if (controllers_.setup.hasLedSystem())
        outputLED_ = false;
    if (window_->descriptionButton()) {
        window_->setDescriptionDrawerOpen(false);
        window_->setLedDrawerOpen(true);
    } else {
        window_->setLedDrawerOpen(false);
    }
    window_->showLEDWindow();
    window_->setDrawerButton(true);
}

void VelmorRSS::closeLEDWindow()
{
    if (controllers_.setup.hasLedSystem()) {
        outputLED_ = true;
        controllers_.msgList.createProgressBar();
    }
    window_->closeLEDWindow();
    window_->setDrawerButton(false);
    if (window_->descriptionButton())
        window_->setDescriptionDrawerOpen(true);
}

void VelmorRSS::storeDrawerButton()
{
    services_.defaults.setInteger(window_->isLEDWindowVisible() ? 1 : 0, ledButtonStateKey);
    services_.defaults.synchronize();
}

void VelmorRSS::actOpenMainWindow()
{
    window_->showMainWindow();
}

// The drawer that stands beside what the user looks at: the LED window's while that is open.
void VelmorRSS::actDescriptionDrawer()
{
    if (isBusy())
        return;
    const bool ofLED = window_->isLEDWindowVisible();
    const bool open = ofLED ? !window_->isLedDrawerOpen() : !window_->isDescriptionDrawerOpen();
    if (ofLED)
        window_->setLedDrawerOpen(open);
    else
        window_->setDescriptionDrawerOpen(open);
    window_->setDescriptionButton(open);
    controllers_.msgList.viewSettings().setDescButtonState(open ? 1 : 0);
}

void VelmorRSS::actPreferences()
{
    window_->showMainWindow();
    window_->selectTab(tab::setup);
}

void VelmorRSS::actOpenSelectedMessage()
{
    controllers_.msgList.actDoubleClickListView(window_->selectedRow(tab::message), false);
}

void VelmorRSS::actDisplayFromSelection()
{
    if (!isBusy())
        controllers_.msgList.actDoubleClickListView(window_->selectedRow(tab::message), true);
}

// Start and stop stay enabled, unlike their buttons: they do nothing where there is nothing to do,
// and an empty list can be started, which reads the feeds until there is something to show.
bool VelmorRSS::validateMenuItem(const QString &action) const
{
    if (action == u"actCopyRow"_s)
        return tables_.canCopyRow();
    if (action == u"actOpenSelectedMessage"_s || action == u"actDisplayFromSelection"_s)
        return window_->selectedTab() == tab::message && tables_.canCopyRow();
    if (action == u"actOpenMainWindow"_s)
        return !window_->isMainWindowVisible();
    if (action == u"actOpenLEDWindow"_s)
        return !window_->isLEDWindowVisible();
    if (action == u"actFontItem"_s)
        return controllers_.msgList.isFontItemEnabled();
    if (action == u"actBoarderItem"_s)
        return controllers_.msgList.isBoarderItemEnabled();
    return true;
}

QString VelmorRSS::descriptionItemTitle() const
{
    return window_->descriptionButton() ? u"詳細記事画面を閉じる"_s : u"詳細記事画面を開く"_s;
}

void VelmorRSS::tabViewDidSelectTabViewItem(const QString &identifier)
{
    const bool messages = identifier == tab::message;
    window_->setDescriptionDrawerOpen(messages && window_->descriptionButton());
    window_->setDescriptionButtonEnabled(messages);
}

bool VelmorRSS::siteAccessWithAddress(const QString &address)
{
    return services_.linkOpener.open(address, controllers_.setup.desigBrowser());
}

void VelmorRSS::siteAccessErrorAlert()
{
    window_->showAlert(localized(u"OpenURLError"_s), localized(u"OpenURLErrInfo"_s),
                       localized(u"Understand"_s));
}

void VelmorRSS::portLostAlert(const QString &title, const QString &text, const QString &button)
{
    window_->showAlert(title, text, button, [this] { actQuit(); });
}

} // namespace qovelmor
