// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QWidget;

namespace qovelmor {

/// A check box with this name and the text of this key.
QCheckBox *settingCheck(const QString &name, const QString &textKey);
/// A button with this name and the text of this key.
QPushButton *settingButton(const QString &name, const QString &textKey);
/// A sentence below other controls, wrapped; empty and hidden at first.
QLabel *settingNote(const QString &name);
/// Shows a sentence, or hides the label when there is none.
void showNote(QLabel *note, const QString &text);

/// Names a control for the program and for screen readers.
void nameControl(QWidget *control, const QString &name, const QString &spoken);

/// Shows a number without telling anyone. A stored number beyond the range is shown as it is.
void showNumber(QSpinBox *box, int number);
/// Selects an entry of a menu; one that the menu lacks stands in it as a grey text.
void showChoice(QComboBox *menu, const QString &text);

/// A turn of the wheel over the control scrolls the page, unless the control has been chosen
/// before: nobody's settings change because the mouse happened to be there.
void keepFromWheel(QWidget *control);

} // namespace qovelmor
