// SPDX-License-Identifier: MIT
#pragma once

#include "AllWindows.h"

#include <functional>
#include <vector>

namespace qovelmor {

using Deed = std::function<void(AllWindows &)>;

/// One way in which a person uses a control.
struct Gesture
{
    QString name;
    std::function<void(AllWindows &, QWidget &)> make;
};

/// What a control acts on, as a state that can be observed: it changes, or becomes what is wanted.
struct Effect
{
    QString on; ///< the key of the store, the file, window or call
    std::function<QString(AllWindows &)> state;
    QString wanted; ///< null: anything but what it was
};

/// One row of a table of controls. A control that can be used for several things has several rows.
struct Control
{
    QString name;
    std::vector<Gesture> gestures;
    Effect effect;
    Deed before = {}; ///< brings the program where the control can be used
};

/// A window in the state in which a person finds its controls.
struct Stage
{
    QString name;
    QString window;
    Deed open;                     ///< from the start of the program
    std::vector<Control> controls; ///< in the order in which the Tab key goes through them
    bool withBoard = false;
};

// Gestures. ---------------------------------------------------------------------------------------

/// The space bar, and a click.
std::vector<Gesture> press();
/// A click with the mouse alone: for what takes no key.
std::vector<Gesture> click();
/// One key, once for each that is named.
std::vector<Gesture> keys(const std::vector<QKeyCombination> &all);
/// The text replaces what is there; Return.
std::vector<Gesture> type(const QString &text);
/// The key, and then the click on another control of the window.
std::vector<Gesture> keyThenClick(Qt::Key key, const QString &other);
/// The text, and then the click on another control of the window.
std::vector<Gesture> typeThenClick(const QString &text, const QString &other);
/// Return, and a double click on the first row of a table.
std::vector<Gesture> openRow();
/// A double click in its middle.
std::vector<Gesture> doubleClick();
/// A click on the header of a table's first column.
std::vector<Gesture> clickHeader();
/// All its text is selected and copied.
std::vector<Gesture> copyText();

// Effects. ----------------------------------------------------------------------------------------

/// A key of the store gets another value, on the disk.
Effect stores(const QString &key);
Effect opens(const QString &window);
/// The window closes, and the store's key keeps its value.
Effect closes(const QString &window, const QString &untouchedKey = {});
/// The window closes, and the store's key gets another value.
Effect closesAndStores(const QString &window, const QString &key);
Effect becomes(const QString &on, const QString &wanted,
               std::function<QString(AllWindows &)> state);
Effect changes(const QString &on, std::function<QString(AllWindows &)> state);
/// A request for this address arrives at the server.
Effect requests(const QString &address);
/// The browser is asked for this address.
Effect browses(const QString &address);
/// The browser is asked for another page.
Effect browses();
/// Another text stands in the clipboard.
Effect copies();
Effect copies(const QString &text);
/// The display runs, or stops.
Effect displays(bool isRunning);

/// Rows that are tested in another stage, for the order of the Tab key.
std::vector<Control> alsoThere(const QStringList &names);

/// One list after the other.
template <typename T>
std::vector<T> operator+(std::vector<T> some, const std::vector<T> &others)
{
    some.insert(some.end(), others.begin(), others.end());
    return some;
}

// Deeds. ------------------------------------------------------------------------------------------

Deed clicked(const QString &window, const QString &name);
Deed selected(const QString &window, const QString &table);
Deed inTurn(const std::vector<Deed> &deeds);
/// The first line is on its way.
void startDisplay(AllWindows &program);

} // namespace qovelmor
