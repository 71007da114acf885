// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>

class QAction;
class QMenu;
class QMenuBar;

namespace qovelmor {

class BoardTextMenus;
class MessageList;
class VelmorRSS;

/// The menu bar. Each item carries the name of its command and calls it on the application
/// controller, which also says whether it can be chosen now.
class MainMenu final : public QObject
{
    Q_OBJECT

public:
    MainMenu(QMenuBar &bar, VelmorRSS &control, MessageList &msgList);

    /// The item of a command; null for one that the menu does not have.
    QAction *item(const QString &command) const { return items_.value(command); }

    /// The feed table's own items, before the end of the file menu.
    void addFeedItems(const QList<QAction *> &items);
    /// An item that brings up a tab of the main window.
    void addTabItem(QAction *item);
    /// An item that brings up a window.
    void addWindowItem(QAction *item);
    /// Font and threshold of the board's text, once the settings are read.
    void createTextMenus();

    /// Items follow the state of the program. Called whenever that may have changed, because an
    /// item that cannot be chosen has no shortcut either.
    void validateItems();

Q_SIGNALS:
    void guideRequested();
    void aboutRequested();

private:
    struct Item;

    QMenu *addMenu(QMenuBar &bar, const QString &name, const QString &textKey);
    void addItem(QMenu &menu, const Item &item);
    QAction *addPlainItem(QMenu &menu, const QString &name, const QString &textKey);

    VelmorRSS &control_;
    BoardTextMenus *textMenus_;
    QHash<QString, QAction *> items_;
    QMenu *tabMenu_ = nullptr;
    QMenu *windowMenu_ = nullptr;
    QAction *endOfFeedItems_ = nullptr;
    QAction *endOfTabItems_ = nullptr;
};

} // namespace qovelmor
