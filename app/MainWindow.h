// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppWindow.h"

#include <QMainWindow>
#include <QTimer>

class QSplitter;
class QTabWidget;

namespace qovelmor {

class CommandRow;
class DescriptionDrawer;
class FeedListView;
class LEDWindow;
class MainMenu;
class MessageList;
class MessageListView;
class Setup;
class StartupWindow;
class StatusRow;
class UserDefaults;
class VelmorRSS;

/// The main window: menus, buttons, the tabs with the two tables, the description drawer and the
/// status line, each a piece of its own. It shows the controllers' state and forwards what the user
/// does.
class MainWindow final : public QMainWindow, public AppWindow
{
    Q_OBJECT

public:
    struct Controllers
    {
        VelmorRSS &control;
        MessageList &msgList;
        Setup &setup;
        UserDefaults &defaults;
    };
    /// The views become children of the window; the LED window stays its own.
    MainWindow(Controllers controllers, FeedListView *feedView, MessageListView *messageView,
               LEDWindow &ledWindow);
    ~MainWindow() override;

    /// One more tab, with an item in the view menu.
    void addTab(QWidget *view, const QString &identifier, const QString &textKey,
                const QString &itemTextKey);
    /// A window of its own that an item of the window menu brings up; the item carries `name`.
    void addWindow(QWidget *window, const QString &name, const QString &itemTextKey,
                   const QKeySequence &keys = {});
    /// The window that the help menu brings up.
    void setGuide(QWidget *window);
    MainMenu &menu() const { return *menu_; }
    /// Whether closing the window only hides it, because something can bring it back. Otherwise it
    /// quits.
    void setHidesWhenClosed(std::function<bool()> hides) { hidesWhenClosed_ = std::move(hides); }

    /// A sentence in the status line; see StatusRow.
    void showNotice(const QString &text);
    void showFetching(const QString &address, const QString &sentence);

    void showStartupWindow() override;
    void closeStartupWindow() override;
    void showMainWindow() override;
    void hideMainWindow() override;
    bool isMainWindowVisible() const override;

    void selectTab(const QString &identifier) override;
    QString selectedTab() const override;
    void clearMessageSelection() override;
    void scrollMessagesToTop() override;
    int selectedRow(const QString &tabIdentifier) const override;
    void reloadTable(const QString &tabIdentifier) override;
    void copyToPasteboard(const QString &text) override;
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

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    static constexpr auto identifierProperty = "identifier"; ///< of a tab's view
    static constexpr auto drawerHeightKey = u"DescriptionDrawerHeight";

    static void bringUp(QWidget &window);
    void layOut();
    void connectParts();
    void showPresentation();
    void showProblems();
    void showAbout();
    void restoreSizes();
    void storeSizes();

    Controllers parts_;
    FeedListView *feedView_;
    MessageListView *messageView_;
    LEDWindow &ledWindow_;
    StartupWindow *startupWindow_ = nullptr;

    MainMenu *menu_;
    CommandRow *commandRow_;
    QTabWidget *mainTab_;
    DescriptionDrawer *descriptionDrawer_;
    QSplitter *splitter_;
    StatusRow *statusRow_;
    QTimer problemWatch_;
    std::function<bool()> hidesWhenClosed_;
    bool isPainted_ = false;
};

} // namespace qovelmor
