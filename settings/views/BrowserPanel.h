// SPDX-License-Identifier: MIT
#pragma once

#include "platform/BrowserList.h"
#include "settings/needs/SettingsWindow.h"

#include <QDialog>

class QListWidget;
class QPushButton;

namespace qovelmor {

/// The panel that chooses a browser: the installed ones by name, or any desktop entry as a file.
class BrowserPanel final : public QDialog
{
    Q_OBJECT

public:
    BrowserPanel(const FilePanel &panel, const std::vector<BrowserEntry> &browsers,
                 QWidget *parent);

Q_SIGNALS:
    void browserChosen(const QString &desktopFile);

private:
    void fill(const std::vector<BrowserEntry> &browsers);
    void openFilePanel();
    void finish(const QString &desktopFile);

    const FilePanel panel_;
    QListWidget *list_;
    QPushButton *select_;
};

} // namespace qovelmor
