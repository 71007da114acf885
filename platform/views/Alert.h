// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>

#include <functional>

namespace qovelmor {

/// What an alert says. All texts are shown as they are written, never as mark-up, and a sentence
/// has the width of one.
struct Alert
{
    QString name; ///< object name; its buttons carry it with "Button", or "Accept" and "Cancel"
    QString title;
    QString informative = {};
    QString button = {};       ///< the default: Return
    QString cancelButton = {}; ///< Escape; empty: there is nothing to choose
    QString windowTitle = {};  ///< empty: the title
    QMessageBox::Icon icon = QMessageBox::Warning;
    QPixmap picture = {}; ///< in the icon's place
};

/// Opens the alert over the window of `parent`, which gets the keyboard back afterwards, and
/// returns at once. `answered` is told whether it was accepted; it is not called when `parent` goes
/// first.
void openAlert(QWidget &parent, const Alert &alert,
               std::function<void(bool isAccepted)> answered = {});

} // namespace qovelmor
