// SPDX-License-Identifier: MIT
#pragma once

#include "app/RunCycle.h"
#include "app/TableCommands.h"
#include "feeds/needs/DisplayControl.h"
#include "messages/needs/RunControl.h"
#include "platform/ChangeNotice.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace qovelmor {

class AppWindow;
class Clock;
class LinkOpener;
class MainThread;
class MessageList;
class RSSList;
class RSSTimer;
class Setup;
class SoundPlayer;
class UserDefaults;

/// The application controller: brings the other controllers up, runs the reading and the display
/// cycle, answers the window's commands, and handles sleep, wake and quit.
///
/// Commands belong to the main thread. While one of them reads or waits (isBusy()), only painting
/// and posted updates run; what cannot be refused (quit, sleep, a second launch) is noted and done
/// afterwards.
class VelmorRSS final : public DisplayControl, public RunControl, private RunSteps
{
public:
    struct Services
    {
        Clock &clock;
        MainThread &mainThread;
        UserDefaults &defaults;
        /// How old an answer of a server may be that the next read takes again; 0: ask anew.
        std::function<void(std::chrono::seconds)> setReuseAge;
        LinkOpener &linkOpener;
        SoundPlayer &sounds;
    };
    struct Controllers
    {
        Setup &setup;
        RSSList &rssList;
        MessageList &msgList;
        RSSTimer &rssTimer;
    };

    VelmorRSS(Services services, Controllers controllers);
    ~VelmorRSS() override;

    /// The windows, before the launch.
    void setWindow(AppWindow &window);

    // Life of the program. ----------------------------------------------------------------------

    /// Brings everything up in the order that the parts need. `isOptionKeyHeld` is asked when all
    /// is there and the display is to start by itself; yes suppresses that.
    void applicationDidFinishLaunching(const std::function<bool()> &isOptionKeyHeld);
    void applicationWillTerminate();
    /// A click on the tray icon: shows the main window, or hides it.
    bool applicationShouldHandleReopen();
    /// Another start of the program: the main window comes up.
    void secondLaunch();
    /// Stops the display and clears the board. `delay` is what keeps the machine from falling
    /// asleep meanwhile; it is let go of when that is done.
    void willSleepHandle(std::shared_ptr<const void> delay = {});
    /// The display that was running before goes on.
    void didWakeHandle();

    // State.
    // -----------------------------------------------------------------------------------------

    bool isReading() const { return cycle_.isReading(); }
    bool isRunning() const { return cycle_.isRunning(); }
    bool isDispBreak() const override { return cycle_.isDispBreak(); }
    bool isDisplaying() const override;
    bool isDisplayActive() const override { return cycle_.dispRSSState() != 0; }
    bool isOutputLED() const override { return outputLED_.load(); }
    int dispRSSState() const override { return cycle_.dispRSSState(); }
    void setDispRSSState(int state) override { cycle_.setDispRSSState(state); }
    int lastDispLine() const { return cycle_.lastDispLine(); }
    void setLastDispLine(int index) override { cycle_.setLastDispLine(index); }
    bool isLEDWindowVisible() const override;
    bool isBusy() const { return busyDepth_ > 0; }
    bool canStartDisp() const;
    bool canStopDisp() const { return isDisplayActive(); }
    /// Whether the feeds have been read and shown once since the display was started last.
    int completedPasses() const { return completedPasses_.load(); }

    // The cycles.
    // ------------------------------------------------------------------------------------

    void startReadRSS();
    void stopReadRSS();
    void startDispRSS() override;
    void stopDispRSS() override;
    void tabSetAndStartDispRSS();
    void listChangeStarts() override { becomeBusy(); }
    void listChangeEnds() override { becomeIdle(); }
    void whenIdle(std::function<void()> work) override;
    void renewControls() { controlsNotice_.changed(); }

    // Commands.
    // --------------------------------------------------------------------------------------

    void actGetRSS();
    void actStartDisp();
    void actStopDisp();
    void actQuit();
    void actDrawerButton();
    void actOpenLEDWindow() { actDrawerButton(); }
    void actOpenMainWindow();
    void actDescriptionDrawer();
    /// Shows the main window's tab with the settings.
    void actPreferences();
    void actCopyRow() { tables_.actCopyRow(); }
    void actSizeBigger() { tables_.actSizeBigger(); }
    void actSizeSmaller() { tables_.actSizeSmaller(); }
    void actSizeOriginal() { tables_.actSizeOriginal(); }
    /// Opens the article of the selected message.
    void actOpenSelectedMessage();
    /// The display starts (again) at the selected message.
    void actDisplayFromSelection();
    /// Whether the menu item of an action can be chosen now.
    bool validateMenuItem(const QString &action) const;
    /// The title of the description drawer's menu item.
    QString descriptionItemTitle() const;
    void tabViewDidSelectTabViewItem(const QString &identifier);

    bool siteAccessWithAddress(const QString &address) override;
    void siteAccessErrorAlert() override;
    /// The board's port is gone and cannot be had back: the alert's button ends the program.
    void portLostAlert(const QString &title, const QString &text, const QString &button);

    /// Called on the main thread after each pass over the list that reached its end.
    void setPassListener(std::function<void()> listener) { passListener_ = std::move(listener); }
    /// The list is shown once; then the display rests until the program ends.
    void showOnePassOnly() { isOnePassOnly_ = true; }

private:
    class BusyScope;

    void readPages(ReadReason reason) override;
    void readFinished() override;
    int messageCount() const override;
    void displayStarts() override;
    void showMessage(int index) override;
    void displayStopped() override;
    void controlsChanged() override { renewControls(); }

    void bringPartsUp();
    void awakeFromNibx();
    void chooseOutput();
    void openLEDWindow();
    void closeLEDWindow();
    void storeDrawerButton();
    void becomeBusy() { ++busyDepth_; }
    void becomeIdle();
    void doWhatWasNoted();

    Services services_;
    Controllers controllers_;
    AppWindow *window_ = nullptr;
    TableCommands tables_;
    ChangeNotice controlsNotice_;
    ChangeNotice passNotice_;
    std::function<void()> passListener_;

    std::atomic<bool> outputLED_ = false;
    std::atomic<int> completedPasses_ = 0;
    std::atomic<bool> isOnePassOnly_ = false;
    bool displayedBefore_ = false;
    bool terminating_ = false;

    int busyDepth_ = 0;
    bool quitNoted_ = false;
    bool secondLaunchNoted_ = false;
    std::vector<std::function<void()>> powerNoted_; ///< sleep and wake, in the order they came in
    std::deque<std::function<void()>> workNoted_;

    RunCycle cycle_; // last: its thread uses everything above
};

} // namespace qovelmor
