// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsActions.h"
#include "settings/needs/SettingsWindow.h"

#include <QWidget>

#include <array>
#include <vector>

class QHBoxLayout;
class QScrollArea;
class QVBoxLayout;

namespace qovelmor {

class BoardGroup;
class BrowserGroup;
class LogGroup;
class SerialDeviceNotifier;
class SettingsGroup;
class SoundGroup;

/// The tab "setup": every setting in groups, two columns of them where there is room. What the
/// window is too small for is scrolled.
class SettingsView final : public QWidget, public SettingsWindow
{
    Q_OBJECT

public:
    /// Both outlive the view. `devices` tells when the port menu is to be renewed.
    SettingsView(Setup &setup, SerialDeviceNotifier &devices);
    ~SettingsView() override;

    /// One more group, made by somebody else, after the group of the display. It renews itself.
    void addGroup(QWidget *group);

    void renewalControls() override;
    void fillSoundMenu(SoundMenu menu, const QStringList &names) override;
    void enableSoundMenu(SoundMenu menu, bool enabled) override;
    void enableShowLogButton(bool enabled) override;
    void showLogNote(const QString &text) override;
    void showBrowser(const QString &desktopFile) override;
    void openAlert(const QString &message, const QString &informative,
                   const QString &button) override;
    void openLogFilePanel(const FilePanel &panel) override;
    void openBrowserPanel(const FilePanel &panel) override;
    void openWithApplication(const QString &path) override;
    void showTab(const QString &identifier) override;

Q_SIGNALS:
    /// Asks the main window to come to the front with this tab.
    void tabWanted(const QString &identifier);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void createPage();
    void arrangeGroups();
    void putGroups();
    std::array<SettingsGroup *, 6> allGroups() const;

    Setup &setup_;
    SettingsActions actions_;
    BoardGroup *board_;
    SettingsGroup *display_;
    SettingsGroup *filters_;
    LogGroup *log_;
    SoundGroup *sounds_;
    BrowserGroup *browser_;
    QScrollArea *scroller_;
    QHBoxLayout *page_ = nullptr;
    QVBoxLayout *left_ = nullptr;
    QVBoxLayout *right_ = nullptr;
    std::vector<QWidget *> shownGroups_; ///< in the order of the page
    int columns_ = 1;
};

} // namespace qovelmor
