// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppWindow.h"

#include <QHash>
#include <QStringList>

namespace qovelmor {

/// The windows of a process without widgets: plain fields, and a list of what was asked for.
class PlainWindow final : public AppWindow
{
public:
    void showStartupWindow() override { calls << QStringLiteral("showStartupWindow"); }
    void closeStartupWindow() override { calls << QStringLiteral("closeStartupWindow"); }
    void showMainWindow() override
    {
        mainWindowVisible = true;
        calls << QStringLiteral("showMainWindow");
    }
    void hideMainWindow() override { mainWindowVisible = false; }
    bool isMainWindowVisible() const override { return mainWindowVisible; }

    void selectTab(const QString &identifier) override { tab = identifier; }
    QString selectedTab() const override { return tab; }
    void clearMessageSelection() override { calls << QStringLiteral("clearMessageSelection"); }
    void scrollMessagesToTop() override { calls << QStringLiteral("scrollMessagesToTop"); }
    int selectedRow(const QString &identifier) const override
    {
        return selectedRows.value(identifier, -1);
    }
    void reloadTable(const QString &identifier) override
    {
        calls << QStringLiteral("reloadTable ") + identifier;
    }
    void copyToPasteboard(const QString &text) override { pasteboard = text; }
    void createMenus() override { calls << QStringLiteral("createMenus"); }

    void showLEDWindow() override { ledWindowVisible = true; }
    void closeLEDWindow() override { ledWindowVisible = false; }
    bool isLEDWindowVisible() const override { return ledWindowVisible; }
    void setDrawerButton(bool on) override { drawerButton = on; }

    bool descriptionButton() const override { return descriptionButtonOn; }
    void setDescriptionButton(bool on) override { descriptionButtonOn = on; }
    void setDescriptionButtonEnabled(bool enabled) override { descriptionButtonEnabled = enabled; }
    bool isDescriptionDrawerOpen() const override { return descriptionDrawerOpen; }
    void setDescriptionDrawerOpen(bool open) override { descriptionDrawerOpen = open; }
    bool isLedDrawerOpen() const override { return ledDrawerOpen; }
    void setLedDrawerOpen(bool open) override { ledDrawerOpen = open; }

    void updateControls() override { ++controlUpdates; }
    void showAlert(const QString &title, const QString &, const QString &,
                   std::function<void()> answered) override
    {
        alerts << title;
        if (answered)
            answer = std::move(answered);
    }
    void terminate() override { ++terminations; }

    QStringList calls;
    QStringList alerts;
    std::function<void()> answer; ///< of the last alert that waits for one
    QString tab;
    QHash<QString, int> selectedRows; ///< of a tab's table
    QString pasteboard;
    bool mainWindowVisible = false;
    bool ledWindowVisible = false;
    bool drawerButton = false;
    bool descriptionButtonOn = false;
    bool descriptionButtonEnabled = true;
    bool descriptionDrawerOpen = false;
    bool ledDrawerOpen = false;
    int controlUpdates = 0;
    int terminations = 0;
};

} // namespace qovelmor
