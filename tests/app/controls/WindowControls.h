// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>
#include <QWidget>

namespace qovelmor {

/// The controls of a window that a person can use, without the toolkit's parts of them (the corner
/// of a table, the button in a text field). Those of dialogs above the window are not its own.
QList<QWidget *> controlsOf(const QWidget &window);

/// Whether it is one of the texts of the program's table. What a text leaves open ("%1") may be
/// anything, and marks of keys do not count.
bool isLocalized(const QString &text);

/// The key that the text underlines; empty when it has none.
QString mnemonicOf(const QString &text);

/// Every Alt key of a window as it is shown, with the texts that want it.
QMap<QString, QStringList> mnemonicsOf(const QWidget &window);

} // namespace qovelmor
