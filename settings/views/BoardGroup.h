// SPDX-License-Identifier: MIT
#pragma once

#include "settings/views/SettingsGroup.h"

class QComboBox;
class QLabel;

namespace qovelmor {

/// The sign: its port, how it moves and shines, how its text is drawn.
class BoardGroup final : public SettingsGroup
{
public:
    BoardGroup(Setup &setup, SettingsActions &actions);

    /// The port menu as the devices are now.
    void renewPorts();

private:
    void addPort();
    void choosePort(int number);
    int rowOfChosenPort(const QStringList &names) const;

    QComboBox *portNumber_ = nullptr;
    QLabel *portNote_ = nullptr;
    /// Numbers shift when devices come and go; an open port stays selected by its name.
    QString chosenName_;
};

} // namespace qovelmor
