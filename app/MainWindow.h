// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppWindow.h"

#include <QMainWindow>
#include <QPointer>

class QAction;
class QLabel;
class QMessageBox;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QSplitter;
class QTabWidget;
class QToolButton;

namespace qovelmor {

class FeedListView;
class LEDWindow;
class MessageList;
class MessageListView;
class StartupWindow;
class UserDefaults;
class VelmorRSS;

/// The main window: the tabs with the two tables, the buttons of the run cycle, the status line and
/// the description drawer. Shows the controllers' state and forwards what the user does.
class MainWindow final : public QMainWindow, public AppWindow
{
    Q_OBJECT

public:
    struct Controllers
    {
        VelmorRSS &control;
        MessageList &msgList;
        UserDefaults &defaults;
    };
    /// The views become children of the window; the LED window stays its own.
    MainWindow(Controllers controllers, FeedListView *feedView, MessageListView *messageView,
               LEDWindow &ledWindow);
    ~MainWindow() override;

    void showStartupWindow() override;
    void closeStartupWindow() override;
    void showMainWindow() override;
    void hideMainWindow() override;
    bool isMainWindowVisible() const override;

    void selectTab(const QString &identifier) override;
    QString selectedTab() const override;
    void clearMessageSelection() override;
    void scrollMessagesToTop() override;
    void createMenus() override;

    void showLEDWindow() override;
    void closeLEDWindow() override;
    bool isLEDWindowVisible() const override;
    void setDrawerButton(bool on) override;

    bool descriptionButton() const override;
    void setDescriptionButton(bool on) override;
    void setDescriptionButtonEnabled(bool enabled) override;
    bool isDescriptionDrawerOpen() const override;
    void setDescriptionDrawerOpen(bool open) override;
    bool isLedDrawerOpen() const override;
    void setLedDrawerOpen(bool open) override;

    void updateControls() override;
    void showAlert(const QString &title, const QString &text, const QString &button,
                   std::function<void()> answered) override;
    void terminate() override;

    /// A sentence in the status line that stays until the next read.
    void showNotice(const QString &text);

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showFetching(const QString &sentence);
    QWidget *createCommandRow();
    QWidget *createStatusRow();
    QToolButton *createToggle(const QString &name, const QString &text);
    void createActions();
    void showPresentation();
    void restoreSizes();
    void storeSizes();

    VelmorRSS &control_;
    MessageList &msgList_;
    UserDefaults &defaults_;
    FeedListView *feedView_;
    MessageListView *messageView_;
    LEDWindow &ledWindow_;
    StartupWindow *startupWindow_ = nullptr;

    QTabWidget *mainTab_ = nullptr;
    QSplitter *splitter_ = nullptr;
    QPlainTextEdit *descriptionDrawer_ = nullptr;
    QPushButton *startDispButton_ = nullptr;
    QPushButton *stopDispButton_ = nullptr;
    QPushButton *getRSSButton_ = nullptr;
    QToolButton *drawerButton_ = nullptr;
    QToolButton *descriptionButton_ = nullptr;
    QLabel *statusText_ = nullptr;
    QLabel *messageNumberText_ = nullptr;
    QProgressBar *progressIndi_ = nullptr;
    QAction *actStartDisp_ = nullptr;
    QAction *actStopDisp_ = nullptr;
    QString notice_;
    bool isPainted_ = false;
};

} // namespace qovelmor
