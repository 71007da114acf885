// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsActions.h"
#include "settings/Setup.h"

#include <QGroupBox>

#include <functional>
#include <vector>

class QCheckBox;
class QFormLayout;
class QSpinBox;

namespace qovelmor {

/// One framed group of the settings tab. A group adds its controls in its constructor; each control
/// knows the getter that it shows and the action that it calls.
class SettingsGroup : public QGroupBox
{
public:
    SettingsGroup(const QString &titleKey, Setup &setup, SettingsActions &actions);

    /// Sets every control from the settings.
    void renew();

protected:
    using Switch = void (SettingsActions::*)(bool);
    using NumberAction = void (SettingsActions::*)(int);

    struct Number
    {
        QString name;
        QString labelKey;
        QString hintKey; ///< what the number means, beside it
        int least;
        int most;
    };

    QCheckBox *addCheck(const QString &name, const QString &textKey, bool (Setup::*getter)() const,
                        Switch action);
    QSpinBox *addNumber(const Number &number, int (Setup::*getter)() const, NumberAction action);
    /// A labelled row; the label's shortcut key leads to `buddy`.
    void addRow(const QString &labelKey, QWidget *row, QWidget *buddy);
    void addRow(QWidget *row);
    /// Controls that belong to the row above, below its field.
    void addBelow(QWidget *row);
    /// A few controls side by side.
    static QWidget *sideBySide(const QList<QWidget *> &controls);

    void onRenewal(std::function<void()> show) { renewals_.push_back(std::move(show)); }
    Setup &setup() const { return setup_; }
    SettingsActions &actions() const { return actions_; }

private:
    Setup &setup_;
    SettingsActions &actions_;
    QFormLayout *rows_;
    std::vector<std::function<void()>> renewals_;
};

} // namespace qovelmor
