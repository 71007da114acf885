// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace qovelmor {

/// A question with two answers. Texts are shown as they stand, never as mark-up.
struct Confirmation
{
    QString name; ///< object name of the alert; its buttons carry it with "Accept" and "Cancel"
    QString title;
    QString informative;
    QString acceptButton; ///< the default: Return
    QString cancelButton; ///< Escape
};

/// Opens the alert over the window of `parent` and returns at once. `answered` is told whether it
/// was accepted; it is not called when `parent` goes first.
void openConfirmation(QWidget &parent, const Confirmation &question,
                      std::function<void(bool isAccepted)> answered);

} // namespace qovelmor
