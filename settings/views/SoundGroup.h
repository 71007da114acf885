// SPDX-License-Identifier: MIT
#pragma once

#include "settings/needs/SettingsWindow.h"
#include "settings/views/SettingsGroup.h"

class QComboBox;
class QSlider;

namespace qovelmor {

/// The two sounds and their volume. A sound that is chosen is heard once.
class SoundGroup final : public SettingsGroup
{
public:
    SoundGroup(Setup &setup, SettingsActions &actions);

    void fillSoundMenu(SoundMenu menu, const QStringList &names);
    void enableSoundMenu(SoundMenu menu, bool enabled);

private:
    using NameGetter = QString (Setup::*)() const;
    using NameAction = void (SettingsActions::*)(const QString &);

    QComboBox *addMenu(const QString &name, const QString &labelKey, NameGetter getter,
                       NameAction action);
    void addVolume();
    QComboBox *menuOf(SoundMenu menu) const;

    QComboBox *finishSoundName_ = nullptr;
    QComboBox *arrivalSoundName_ = nullptr;
    QSlider *playSoundVolume_ = nullptr;
};

} // namespace qovelmor
