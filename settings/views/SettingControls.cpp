// SPDX-License-Identifier: MIT
#include "settings/views/SettingControls.h"

#include "platform/Localization.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

class WheelFilter final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *control = qobject_cast<QWidget *>(watched);
        if (event->type() != QEvent::Wheel || control == nullptr || control->hasFocus())
            return false;
        event->ignore(); // so that it goes on to the page
        return true;
    }
};

} // namespace

void nameControl(QWidget *control, const QString &name, const QString &spoken)
{
    control->setObjectName(name);
    control->setAccessibleName(spoken);
}

QCheckBox *settingCheck(const QString &name, const QString &textKey)
{
    auto *check = new QCheckBox(localized(textKey));
    nameControl(check, name, spokenText(textKey));
    return check;
}

QPushButton *settingButton(const QString &name, const QString &textKey)
{
    auto *button = new QPushButton(localized(textKey));
    button->setAutoDefault(false);
    nameControl(button, name, spokenText(textKey));
    return button;
}

QLabel *settingNote(const QString &name)
{
    auto *note = new QLabel;
    note->setObjectName(name);
    note->setTextFormat(Qt::PlainText); // it may hold the path of a device or a file
    note->setTextInteractionFlags(Qt::TextSelectableByMouse);
    note->setWordWrap(true);
    note->hide();
    return note;
}

void showNote(QLabel *note, const QString &text)
{
    note->setText(text);
    note->setVisible(!text.isEmpty());
}

void showNumber(QSpinBox *box, int number)
{
    const QSignalBlocker quiet(box);
    box->setRange(std::min(box->minimum(), number), std::max(box->maximum(), number));
    box->setValue(number);
}

void showChoice(QComboBox *menu, const QString &text)
{
    const QSignalBlocker quiet(menu);
    menu->setPlaceholderText(text);
    menu->setCurrentIndex(menu->findText(text));
}

void keepFromWheel(QWidget *control)
{
    control->setFocusPolicy(Qt::StrongFocus);
    control->installEventFilter(new WheelFilter(control));
}

} // namespace qovelmor
