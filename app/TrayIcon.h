// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace qovelmor {

/// The program's icon in the desktop's tray, where there is one. A click on it is a signal; its
/// menu offers what a hidden main window cannot.
class TrayIcon final : public QObject
{
    Q_OBJECT

public:
    /// The items belong to others and outlive the icon.
    explicit TrayIcon(const QList<QAction *> &items, QObject *parent = nullptr);

    /// Whether somebody can get a hidden window back by it.
    bool isThere() const;

Q_SIGNALS:
    void clicked();
    /// The menu is about to be shown.
    void menuOpens();

private:
    QMenu menu_;
    QSystemTrayIcon icon_;
};

} // namespace qovelmor
