// SPDX-License-Identifier: MIT
#pragma once

#include "ControlTable.h"

#include <QKeySequence>

namespace qovelmor {

/// One row of the table of menu items: its place, its keys, and what it acts on.
struct MenuItem
{
    QString menu; ///< its object name, or for a menu of the right mouse button that of its view
    QString name;
    QKeySequence keys; ///< empty: the menu is the only way
    Effect effect;
    Deed before = {};
    int number = 0; ///< of items that have one name, the one that is chosen
    bool withBoard = false;
};

/// The menu bar.
std::vector<MenuItem> barItems();
/// The menu of the icon in the tray.
std::vector<MenuItem> trayItems();
/// The menus of the right mouse button.
std::vector<MenuItem> rowItems();

/// In the bar it rests as long as somebody sees the bar; it is chosen in the tray's menu.
inline const QString restingItem = QStringLiteral("actOpenMainWindow");

} // namespace qovelmor
