// SPDX-License-Identifier: MIT
#pragma once

#include "app/BoardProgressBar.h"
#include "app/CommandLine.h"
#include "app/PortLossAlarm.h"
#include "app/QtMainThread.h"
#include "app/QtMinuteTimer.h"
#include "app/QtSoundPlayer.h"
#include "app/ScheduleActions.h"
#include "app/VelmorRSS.h"
#include "feeds/HttpFeedLoader.h"
#include "feeds/RSSList.h"
#include "messages/MessageList.h"
#include "messages/OnScreenBoard.h"
#include "platform/HttpClient.h"
#include "platform/LinkOpener.h"
#include "platform/SystemClock.h"
#include "platform/UserDefaults.h"
#include "schedule/RSSTimer.h"
#include "settings/Setup.h"
#include "settings/views/SerialDeviceNotifier.h"

#include <memory>

namespace qovelmor {

class GuideWindow;
class MainWindow;
class LEDWindow;
class TimerView;
class TerminalView;
class TrayIcon;
class VelmorSystem;

/// Makes every part of the program, connects them, and runs it. The order of the members is the
/// order of building: each stands on those above it.
class Program
{
public:
    explicit Program(const CommandLine &commandLine);
    ~Program();

    /// Runs the event loop; gives the exit status. Launch work runs from its first turn.
    int run();

private:
    void connectParts();
    void makeWindows();
    void addSettings();
    void addWindows();
    void makeTrayIcon();
    void launch();
    void startOnce();

    const CommandLine commandLine_;
    QtMainThread mainThread_;
    SystemClock clock_;
    UserDefaults defaults_;
    QtSoundPlayer sounds_;
    DesktopLinkOpener linkOpener_;
    HttpClient http_;
    HttpFeedLoader loader_;
    QtMinuteTimer minuteTimer_;
    ScheduleActions scheduleActions_;
    PortLossAlarm portLossAlarm_;

    /// Owned by the settings, which drop it at the start when no board answers.
    VelmorSystem *const ledSystem_;
    Setup setup_;
    RSSList rssList_;
    OnScreenBoard screen_;
    MessageList msgList_;
    std::unique_ptr<BoardProgressBar> boardProgress_;
    RSSTimer rssTimer_;
    VelmorRSS control_;

    SerialDeviceNotifier serialDevices_;
    std::unique_ptr<LEDWindow> ledWindow_;
    std::unique_ptr<TimerView> timerWindow_;
    std::unique_ptr<GuideWindow> guideWindow_;
    std::unique_ptr<MainWindow> mainWindow_;
    std::unique_ptr<TrayIcon> trayIcon_;
    std::unique_ptr<TerminalView> terminalView_;
    int exitStatus_ = 0;
};

} // namespace qovelmor
