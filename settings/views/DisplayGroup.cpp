// SPDX-License-Identifier: MIT
#include "settings/views/DisplayGroup.h"

#include "platform/Localization.h"
#include "settings/views/ColorWell.h"
#include "settings/views/SettingControls.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

DisplayGroup::DisplayGroup(Setup &setup, SettingsActions &actions)
    : SettingsGroup(u"GroupDisplay"_s, setup, actions)
{
    addCheck(u"dispAuto"_s, u"DisplayAuto"_s, &Setup::dispAuto, &SettingsActions::actDispAuto);
    addCheck(u"isScroll"_s, u"ScrollToMessage"_s, &Setup::isScroll,
             &SettingsActions::actScrollCheck);
    addCheck(u"dispProgress"_s, u"DispProgress"_s, &Setup::dispProgress,
             &SettingsActions::actDispProgressCheck);
    addCheck(u"virtualLED"_s, u"VirtualLED"_s, &Setup::virtualLED,
             &SettingsActions::actVirtualLEDCheck);
    addCheck(u"useNarrowFont"_s, u"UseNarrowFont"_s, &Setup::useNarrowFont,
             &SettingsActions::actUseNarrowCheck);

    auto *well = new ColorWell;
    nameControl(well, u"lightLEDColor"_s, spokenText(u"LightLEDColor"_s));
    connect(well, &ColorWell::colorChosen, this,
            [this](const QColor &color) { this->actions().actLightLEDColor(color); });
    onRenewal([this, well] { well->setColor(this->setup().lightLEDColor()); });
    addRow(u"LightLEDColor"_s, well, well);
}

} // namespace qovelmor
