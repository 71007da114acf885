// SPDX-License-Identifier: MIT
#include "settings/views/SoundGroup.h"

#include "platform/Localization.h"
#include "settings/views/SettingControls.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <QSlider>

#include <functional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int volumeSteps = 100;

} // namespace

SoundGroup::SoundGroup(Setup &setup, SettingsActions &actions)
    : SettingsGroup(u"GroupSounds"_s, setup, actions)
{
    addCheck(u"playFinishSound"_s, u"PlayFinishSound"_s, &Setup::playFinishSound,
             &SettingsActions::actPlayFinishSoundCheck);
    finishSoundName_ = addMenu(u"finishSoundName"_s, u"FinishSoundName"_s, &Setup::finishSoundName,
                               &SettingsActions::actFinishSoundNamePopUp);
    addCheck(u"playArrivalSound"_s, u"PlayArrivalSound"_s, &Setup::playArrivalSound,
             &SettingsActions::actPlayArrivalSoundCheck);
    arrivalSoundName_ =
        addMenu(u"arrivalSoundName"_s, u"ArrivalSoundName"_s, &Setup::arrivalSoundName,
                &SettingsActions::actArrivalSoundNamePopUp);
    addVolume();
    onRenewal([this] {
        enableSoundMenu(SoundMenu::Finish, this->setup().playFinishSound());
        enableSoundMenu(SoundMenu::Arrival, this->setup().playArrivalSound());
    });
}

QComboBox *SoundGroup::addMenu(const QString &name, const QString &labelKey, NameGetter getter,
                               NameAction action)
{
    auto *menu = new QComboBox;
    nameControl(menu, name, spokenText(labelKey));
    menu->setMinimumContentsLength(10);
    keepFromWheel(menu);
    // Also the choice of the present sound counts: it is how a person hears it again.
    connect(menu, &QComboBox::textActivated, this,
            [this, action](const QString &sound) { std::invoke(action, actions(), sound); });
    onRenewal([this, menu, getter] { showChoice(menu, std::invoke(getter, setup())); });
    addRow(labelKey, menu, menu);
    return menu;
}

void SoundGroup::addVolume()
{
    playSoundVolume_ = new QSlider(Qt::Horizontal);
    nameControl(playSoundVolume_, u"playSoundVolume"_s, spokenText(u"PlaySoundVolume"_s));
    playSoundVolume_->setRange(0, volumeSteps);
    playSoundVolume_->setPageStep(10);
    // Told once when a drag ends, and at each step of the keyboard.
    playSoundVolume_->setTracking(false);
    keepFromWheel(playSoundVolume_);
    connect(playSoundVolume_, &QSlider::valueChanged, this, [this](int value) {
        actions().actPlaySoundVolumeSlider(static_cast<float>(value) / volumeSteps);
    });
    onRenewal([this] {
        const QSignalBlocker quiet(playSoundVolume_);
        playSoundVolume_->setValue(qRound(setup().playSoundVolume() * volumeSteps));
    });
    addRow(u"PlaySoundVolume"_s, playSoundVolume_, playSoundVolume_);
}

void SoundGroup::fillSoundMenu(SoundMenu menu, const QStringList &names)
{
    QComboBox *box = menuOf(menu);
    const QSignalBlocker quiet(box);
    box->clear();
    box->addItems(names);
}

void SoundGroup::enableSoundMenu(SoundMenu menu, bool enabled)
{
    menuOf(menu)->setEnabled(enabled);
}

QComboBox *SoundGroup::menuOf(SoundMenu menu) const
{
    return menu == SoundMenu::Finish ? finishSoundName_ : arrivalSoundName_;
}

} // namespace qovelmor
