// SPDX-License-Identifier: MIT
#include "settings/views/SettingsGroup.h"

#include "platform/Localization.h"
#include "settings/views/SettingControls.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>

#include <functional>

namespace qovelmor {

SettingsGroup::SettingsGroup(const QString &titleKey, Setup &setup, SettingsActions &actions)
    : QGroupBox(localized(titleKey)), setup_(setup), actions_(actions), rows_(new QFormLayout(this))
{
    rows_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    rows_->setRowWrapPolicy(QFormLayout::DontWrapRows);
    rows_->setVerticalSpacing(4); // so that most of the page is seen at once
}

void SettingsGroup::renew()
{
    for (const auto &show : renewals_)
        show();
}

QCheckBox *SettingsGroup::addCheck(const QString &name, const QString &textKey,
                                   bool (Setup::*getter)() const, Switch action)
{
    QCheckBox *check = settingCheck(name, textKey);
    connect(check, &QCheckBox::clicked, this,
            [this, action](bool on) { std::invoke(action, actions_, on); });
    onRenewal([this, check, getter] { check->setChecked(std::invoke(getter, setup_)); });
    addRow(check);
    return check;
}

QSpinBox *SettingsGroup::addNumber(const Number &number, int (Setup::*getter)() const,
                                   NumberAction action)
{
    auto *box = new QSpinBox;
    nameControl(box, number.name, spokenText(number.labelKey));
    box->setRange(number.least, number.most);
    box->setKeyboardTracking(false); // "12" does not act as "1" on its way
    box->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    keepFromWheel(box);
    connect(box, &QSpinBox::valueChanged, this,
            [this, action](int value) { std::invoke(action, actions_, value); });
    onRenewal([this, box, getter] { showNumber(box, std::invoke(getter, setup_)); });
    auto *hint = new QLabel(localized(number.hintKey));
    hint->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addRow(number.labelKey, sideBySide({box, hint}), box);
    return box;
}

void SettingsGroup::addRow(const QString &labelKey, QWidget *row, QWidget *buddy)
{
    auto *label = new QLabel(localized(labelKey));
    label->setBuddy(buddy);
    rows_->addRow(label, row);
}

void SettingsGroup::addRow(QWidget *row)
{
    rows_->addRow(row);
}

void SettingsGroup::addBelow(QWidget *row)
{
    rows_->addRow(QString(), row);
}

QWidget *SettingsGroup::sideBySide(const QList<QWidget *> &controls)
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget *control : controls)
        layout->addWidget(control);
    return row;
}

} // namespace qovelmor
