// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include "app/ExitSignals.h"
#include "app/GuideWindow.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "app/PowerWatcher.h"
#include "app/RaiseService.h"
#include "app/TerminalView.h"
#include "app/TrayIcon.h"
#include "board/SerialDevices.h"
#include "board/VelmorSystem.h"
#include "feeds/views/FeedListView.h"
#include "messages/views/LEDWindow.h"
#include "messages/views/MessageListView.h"
#include "messages/views/MessageSwitchesView.h"
#include "platform/views/PlaceKeeper.h"
#include "schedule/views/TimerView.h"
#include "settings/views/SettingsView.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

QString documentFolder()
{
    return QDir::homePath() + u"/Documents/QoVelmorRSS"_s;
}

bool isOptionKeyHeld()
{
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::AltModifier);
}

} // namespace

Program::Program(const CommandLine &commandLine)
    : commandLine_(commandLine)
    , clock_(&mainThread_)
    , defaults_(UserDefaults::defaultPath())
    , sounds_(mainThread_)
    , http_(clock_, {[this] { return clock_.sleepsEnded() || rssList_.isImportCancelled(); },
                     [this] {
                         if (mainThread_.isCurrent())
                             mainThread_.pump(std::chrono::milliseconds::zero());
                     }})
    , loader_(http_, clock_)
    , portLossAlarm_(mainThread_)
    , ledSystem_(new VelmorSystem(clock_))
    , setup_({defaults_, clock_, sounds_, mainThread_, serialPortNames},
             std::unique_ptr<BoardLink>(ledSystem_))
    , rssList_({defaults_, {loader_, clock_}, mainThread_})
    , screen_(setup_, clock_, mainThread_)
    , msgList_({clock_, mainThread_, defaults_, sounds_, documentFolder(), u":/Information.txt"_s})
    , rssTimer_({defaults_, clock_, mainThread_, minuteTimer_, scheduleActions_})
    , control_({clock_, mainThread_, defaults_,
                [this](std::chrono::seconds age) { loader_.setReuseAge(age); }, linkOpener_,
                sounds_},
               {setup_, rssList_, msgList_, rssTimer_})
{
    connectParts();
    makeWindows();
}

Program::~Program()
{
    // The display thread ends before anything that it uses.
    clock_.endSleeps();
    control_.stopDispRSS();
}

void Program::connectParts()
{
    setup_.setMsgList(msgList_);
    rssList_.setControl(control_);
    rssList_.setMsgList(msgList_.logBook());
    ledSystem_->setMessageList(&msgList_.logBook());
    ledSystem_->setSetup(&setup_);
    ledSystem_->setPortLoss(&portLossAlarm_);
    portLossAlarm_.connect(control_);
    boardProgress_ = std::make_unique<BoardProgressBar>(clock_, [this] {
        return setup_.hasLedSystem() ? static_cast<ProgressBoard *>(ledSystem_) : nullptr;
    });
    msgList_.connect({rssList_, setup_, control_, screen_, boardProgress_.get()});
    scheduleActions_.connect(control_, rssList_, msgList_);
}

void Program::makeWindows()
{
    ledWindow_ = std::make_unique<LEDWindow>(screen_, defaults_);
    auto *feedView = new FeedListView(rssList_);
    auto *messageView = new MessageListView(msgList_);
    mainWindow_ =
        std::make_unique<MainWindow>(MainWindow::Controllers{control_, msgList_, setup_, defaults_},
                                     feedView, messageView, *ledWindow_);
    control_.setWindow(*mainWindow_);
    addSettings();
    addWindows();
    makeTrayIcon();
    if (commandLine_.terminal)
        terminalView_ = std::make_unique<TerminalView>(screen_, msgList_);
}

void Program::addSettings()
{
    auto *settingsView = new SettingsView(setup_, serialDevices_);
    settingsView->addGroup(new MessageSwitchesView(msgList_));
    mainWindow_->addTab(settingsView, tab::setup, u"TabSetup"_s, u"MenuShowTabSetup"_s);
    QObject::connect(settingsView, &SettingsView::tabWanted, mainWindow_.get(),
                     [this](const QString &identifier) {
                         mainWindow_->showMainWindow();
                         mainWindow_->selectTab(identifier);
                     });
}

void Program::addWindows()
{
    timerWindow_ = std::make_unique<TimerView>(rssTimer_);
    new PlaceKeeper(*timerWindow_, defaults_, u"TimerWindowGeometry"_s);
    mainWindow_->addWindow(timerWindow_.get(), u"actOpenTimerWindow"_s, u"MenuTimers"_s,
                           Qt::CTRL | Qt::Key_T);
    guideWindow_ = std::make_unique<GuideWindow>();
    new PlaceKeeper(*guideWindow_, defaults_, u"GuideWindowGeometry"_s);
    mainWindow_->setGuide(guideWindow_.get());
}

// What a person needs while the main window is hidden stands in the icon's menu.
void Program::makeTrayIcon()
{
    MainMenu &menu = mainWindow_->menu();
    trayIcon_ = std::make_unique<TrayIcon>(
        QList{menu.item(u"actOpenMainWindow"_s), menu.item(u"actOpenLEDWindow"_s),
              menu.item(u"actStartDisp"_s), menu.item(u"actStopDisp"_s), menu.item(u"actQuit"_s)});
    QObject::connect(trayIcon_.get(), &TrayIcon::clicked, mainWindow_.get(),
                     [this] { control_.applicationShouldHandleReopen(); });
    QObject::connect(trayIcon_.get(), &TrayIcon::menuOpens, &menu, &MainMenu::validateItems);
    mainWindow_->setHidesWhenClosed([this] { return trayIcon_->isThere(); });
}

int Program::run()
{
    const ExitSignals exitSignals([this] { control_.actQuit(); });
    const PowerWatcher powerWatcher(
        [this](PowerWatcher::DelayLock delay) { control_.willSleepHandle(std::move(delay)); },
        [this] { control_.didWakeHandle(); });
    const RaiseService raiseService(QFileInfo(defaults_.path()).path(),
                                    [this] { control_.secondLaunch(); });
    mainThread_.post([this] { launch(); });
    QCoreApplication::exec();
    control_.applicationWillTerminate();
    return exitStatus_;
}

void Program::launch()
{
    control_.applicationDidFinishLaunching(isOptionKeyHeld);
    if (clock_.sleepsEnded())
        return; // asked to quit meanwhile
    if (!defaults_.openReport().message.isEmpty())
        mainWindow_->showNotice(defaults_.openReport().message);
    if (commandLine_.once)
        startOnce();
}

// One pass over the list, for scripts: what the start has not begun by itself is begun here.
void Program::startOnce()
{
    control_.showOnePassOnly();
    control_.setPassListener([this] { control_.actQuit(); });
    if (!control_.isDisplayActive()) {
        control_.startReadRSS();
        control_.tabSetAndStartDispRSS();
    }
    if (msgList_.messageCount() == 0 && !clock_.sleepsEnded()) {
        std::fputs("qovelmorrss: no headline could be read.\n", stderr);
        exitStatus_ = 1;
        control_.actQuit();
    }
}

} // namespace qovelmor
