// SPDX-License-Identifier: MIT
// What the application controller asks of the main window; MainWindow.cpp builds it.
#include "app/CommandRow.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "app/StartupWindow.h"
#include "app/VelmorRSS.h"
#include "feeds/views/FeedListView.h"
#include "messages/views/DescriptionDrawer.h"
#include "messages/views/LEDWindow.h"
#include "messages/views/MessageListView.h"
#include "platform/UserDefaults.h"
#include "platform/views/Alert.h"

#include <QApplication>
#include <QClipboard>
#include <QScreen>
#include <QSplitter>
#include <QTabWidget>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int defaultDrawerHeight = 110;
constexpr int highestDrawer = 2000;
// Frames count before the window manager has told how thick they are.
constexpr QMargins frameAllowance{0, 40, 0, 64};

} // namespace

void MainWindow::bringUp(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

void MainWindow::showStartupWindow()
{
    startupWindow_ = new StartupWindow;
    startupWindow_->setAttribute(Qt::WA_DeleteOnClose);
    startupWindow_->show();
}

void MainWindow::closeStartupWindow()
{
    if (startupWindow_ != nullptr)
        startupWindow_->close();
    startupWindow_ = nullptr;
}

void MainWindow::showMainWindow()
{
    bringUp(*this);
    menu_->validateItems();
}

void MainWindow::hideMainWindow()
{
    hide();
    menu_->validateItems();
}

bool MainWindow::isMainWindowVisible() const
{
    return isVisible() && !isMinimized();
}

void MainWindow::selectTab(const QString &identifier)
{
    for (int index = 0; index < mainTab_->count(); ++index) {
        QWidget *page = mainTab_->widget(index);
        if (page->property(identifierProperty).toString() != identifier)
            continue;
        mainTab_->setCurrentIndex(index);
        // Whoever asks for a tab goes on working there, also without a mouse.
        if (!page->isAncestorOf(focusWidget()))
            page->setFocus();
    }
}

QString MainWindow::selectedTab() const
{
    return mainTab_->currentWidget()->property(identifierProperty).toString();
}

void MainWindow::clearMessageSelection()
{
    messageView_->clearSelection();
}

void MainWindow::scrollMessagesToTop()
{
    messageView_->scrollToRow(0);
}

int MainWindow::selectedRow(const QString &tabIdentifier) const
{
    if (tabIdentifier == tab::list)
        return feedView_->selectedRow();
    return tabIdentifier == tab::message ? messageView_->selectedRow() : -1;
}

void MainWindow::reloadTable(const QString &tabIdentifier)
{
    if (tabIdentifier == tab::list)
        feedView_->applyViewSettings();
    else if (tabIdentifier == tab::message)
        messageView_->applyViewSettings();
}

void MainWindow::copyToPasteboard(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

void MainWindow::createMenus()
{
    menu_->createTextMenus();
    showProblems();
}

void MainWindow::showLEDWindow()
{
    ledWindow_.showBeside(geometry().marginsAdded(frameAllowance), screen()->availableGeometry());
    menu_->validateItems();
}

void MainWindow::closeLEDWindow()
{
    ledWindow_.hide();
    menu_->validateItems();
}

bool MainWindow::isLEDWindowVisible() const
{
    return ledWindow_.isVisible();
}

void MainWindow::setDrawerButton(bool on)
{
    commandRow_->setDrawerButton(on);
}

bool MainWindow::descriptionButton() const
{
    return commandRow_->descriptionButton();
}

void MainWindow::setDescriptionButton(bool on)
{
    commandRow_->setDescriptionButton(on);
    menu_->validateItems();
}

void MainWindow::setDescriptionButtonEnabled(bool enabled)
{
    commandRow_->setDescriptionButtonEnabled(enabled);
}

bool MainWindow::isDescriptionDrawerOpen() const
{
    return !descriptionDrawer_->isHidden();
}

void MainWindow::setDescriptionDrawerOpen(bool open)
{
    if (open == isDescriptionDrawerOpen())
        return;
    descriptionDrawer_->setVisible(open);
    if (!open)
        return;
    const qint64 stored = parts_.defaults.integerForKey(QString::fromUtf16(drawerHeightKey));
    const int height = stored > 0 ? static_cast<int>(std::min<qint64>(stored, highestDrawer))
                                  : defaultDrawerHeight;
    splitter_->setSizes({splitter_->height() - height, height});
}

bool MainWindow::isLedDrawerOpen() const
{
    return ledWindow_.isDrawerOpen();
}

void MainWindow::setLedDrawerOpen(bool open)
{
    ledWindow_.setDrawerOpen(open);
}

void MainWindow::updateControls()
{
    commandRow_->setCanStart(parts_.control.canStartDisp());
    commandRow_->setCanStop(parts_.control.canStopDisp());
    menu_->validateItems();
    messageView_->renew();
}

void MainWindow::showAlert(const QString &title, const QString &text, const QString &button,
                           std::function<void()> answered)
{
    const Alert alert{u"alert"_s, title, text, button};
    // What the sign's window asked for is answered there, and the keyboard goes back to it. An
    // answer that the program waits for stands over the main window, which nobody hides meanwhile.
    if (answered)
        openAlert(*this, alert, [answered = std::move(answered)](bool) { answered(); });
    else
        openAlert(ledWindow_.isActiveWindow() ? static_cast<QWidget &>(ledWindow_) : *this, alert);
}

void MainWindow::terminate()
{
    storeSizes();
    for (QWidget *window : QApplication::topLevelWidgets())
        window->hide();
    QCoreApplication::quit();
}

} // namespace qovelmor
