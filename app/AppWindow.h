// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace qovelmor {

/// The identifiers of the main window's tabs.
namespace tab {
inline const QString list = QStringLiteral("list");
inline const QString message = QStringLiteral("message");
inline const QString setup = QStringLiteral("setup");
} // namespace tab

/// What the application controller asks of the windows. Main thread only.
///
/// The controller decides, the windows obey: a process without any widget answers with plain fields
/// and runs the same cycles.
class AppWindow
{
public:
    virtual ~AppWindow() = default;

    virtual void showStartupWindow() = 0;
    virtual void closeStartupWindow() = 0;
    virtual void showMainWindow() = 0; ///< and raises it
    virtual void hideMainWindow() = 0;
    virtual bool isMainWindowVisible() const = 0;

    virtual void selectTab(const QString &identifier) = 0;
    virtual QString selectedTab() const = 0;
    virtual void clearMessageSelection() = 0;
    virtual void scrollMessagesToTop() = 0;
    /// The selected row of the table on that tab, -1 when none is.
    virtual int selectedRow(const QString &tabIdentifier) const = 0;
    /// The table on that tab takes over the stored row height and font size.
    virtual void reloadTable(const QString &tabIdentifier) = 0;
    virtual void copyToPasteboard(const QString &text) = 0;
    virtual void createMenus() = 0; ///< the font and threshold menus, once the settings are read

    virtual void showLEDWindow() = 0;
    virtual void closeLEDWindow() = 0;
    virtual bool isLEDWindowVisible() const = 0;
    virtual void setDrawerButton(bool on) = 0;

    virtual bool descriptionButton() const = 0;
    virtual void setDescriptionButton(bool on) = 0;
    virtual void setDescriptionButtonEnabled(bool enabled) = 0;
    virtual bool isDescriptionDrawerOpen() const = 0;
    virtual void setDescriptionDrawerOpen(bool open) = 0;
    virtual bool isLedDrawerOpen() const = 0;
    virtual void setLedDrawerOpen(bool open) = 0;

    /// Start and stop buttons and menu items follow the controller's state.
    virtual void updateControls() = 0;
    /// Opens an alert with one button; returns at once. `answered` is called when it is closed.
    virtual void showAlert(const QString &title, const QString &text, const QString &button,
                           std::function<void()> answered = {}) = 0;
    /// Closes every dialog and ends the event loop.
    virtual void terminate() = 0;
};

} // namespace qovelmor
