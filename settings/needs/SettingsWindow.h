// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace qovelmor {

/// Which of the two sounds a control belongs to.
enum class SoundMenu { Finish, Arrival };

/// A panel that asks for a file. It is opened and stays open; the answer comes back as a call of
/// the operation that the opening function names.
struct FilePanel
{
    QString title;
    QString button;
    QString folder;
    QString fileName; ///< proposed name; empty for a panel that opens files
    QString fileType; ///< extension of the files that can be chosen; empty for any
};

/// The settings tab as the settings see it; the main window answers. Main thread only. The bodies
/// here do nothing: a process without a window uses them as they are.
class SettingsWindow
{
public:
    virtual ~SettingsWindow() = default;

    /// Sets every control of the tab from the settings, the port menu included.
    virtual void renewalControls() {}
    /// Fills a sound menu with these names, in this order.
    virtual void fillSoundMenu(SoundMenu, const QStringList &) {}
    virtual void enableSoundMenu(SoundMenu, bool) {}
    virtual void enableShowLogButton(bool) {}
    /// A note beside the log's controls: why nothing is being logged. An empty text clears it.
    virtual void showLogNote(const QString &) {}
    /// Shows the path of the chosen browser's desktop entry; empty for the system's browser.
    virtual void showBrowser(const QString &) {}

    /// Opens an alert with one button.
    virtual void openAlert(const QString & /*message*/, const QString & /*informative*/,
                           const QString & /*button*/)
    {}
    /// Opens a save panel that may create folders; its answer is actLogFileChosen().
    virtual void openLogFilePanel(const FilePanel &) {}
    /// Opens a panel for one existing file; its answer is actBrowserChosen().
    virtual void openBrowserPanel(const FilePanel &) {}
    /// Opens a file with the application that the system associates with it.
    virtual void openWithApplication(const QString & /*path*/) {}
    /// Brings the main window to the front and selects its tab with this identifier.
    virtual void showTab(const QString & /*identifier*/) {}
};

} // namespace qovelmor
