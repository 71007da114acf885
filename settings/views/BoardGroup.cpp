// SPDX-License-Identifier: MIT
#include "settings/views/BoardGroup.h"

#include "platform/Localization.h"
#include "settings/views/SettingControls.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What stands beside the port menu: what went wrong, and what choosing a port will do.
QString portSentence(const Setup &setup)
{
    QStringList sentences;
    const QString problem = setup.linkProblem();
    if (!problem.isEmpty())
        sentences << problem;
    if (!setup.hasLedSystem())
        sentences << localized(u"NoBoardLink"_s);
    if (!setup.hasLedSystem() || !problem.isEmpty())
        sentences << localized(u"PortNextStart"_s);
    else if (setup.chosenPort() != setup.portNumber())
        sentences << localized(u"PortThisRun"_s);
    return sentences.join(u'\n');
}

} // namespace

BoardGroup::BoardGroup(Setup &setup, SettingsActions &actions)
    : SettingsGroup(u"GroupBoard"_s, setup, actions)
{
    addPort();
    addNumber({u"scrollSpeed"_s, u"ScrollSpeed"_s, u"ScrollSpeedHint"_s, 1, 99},
              &Setup::scrollSpeed, &SettingsActions::actScrollSpeed);
    addNumber({u"moduleCount"_s, u"ModuleCount"_s, u"ModuleCountHint"_s, 1, 32},
              &Setup::moduleCount, &SettingsActions::actModuleCount);
    addNumber({u"brightness"_s, u"Brightness"_s, u"BrightnessHint"_s, 0, 10}, &Setup::brightness,
              &SettingsActions::actBrightness);
    addCheck(u"reverse180"_s, u"Reverse180"_s, &Setup::reverse180, &SettingsActions::actReverse180);
    addCheck(u"rotation"_s, u"RotationLeft90"_s, &Setup::rotation,
             &SettingsActions::actRotaionCheck);
    addCheck(u"useBitmapFont"_s, u"UseBitmapFont"_s, &Setup::useBitmapFont,
             &SettingsActions::actUseBitmapFontCheck);
}

void BoardGroup::addPort()
{
    portNumber_ = new QComboBox;
    nameControl(portNumber_, u"portNumber"_s, spokenText(u"PortNumber"_s));
    portNumber_->setMinimumContentsLength(10);
    portNumber_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    keepFromWheel(portNumber_);
    connect(portNumber_, &QComboBox::activated, this, [this](int number) { choosePort(number); });

    QPushButton *test = settingButton(u"actComPortTest"_s, u"ComPortTest"_s);
    connect(test, &QPushButton::clicked, this, [this] { actions().actComPortTest(); });
    addRow(u"PortNumber"_s, sideBySide({portNumber_, test}), portNumber_);

    portNote_ = settingNote(u"portNote"_s);
    addRow(portNote_);
    onRenewal([this] {
        chosenName_ = setup().portNames().value(setup().chosenPort());
        renewPorts();
    });
}

void BoardGroup::choosePort(int number)
{
    chosenName_ = portNumber_->itemText(number);
    actions().actPortNumber(number);
    renewPorts();
}

void BoardGroup::renewPorts()
{
    const QStringList names = setup().portNames();
    const QSignalBlocker quiet(portNumber_);
    portNumber_->clear();
    portNumber_->addItems(names);
    portNumber_->setPlaceholderText(localized(names.isEmpty() ? u"NoPorts"_s : u"PortNotThere"_s));
    portNumber_->setCurrentIndex(rowOfChosenPort(names));
    showNote(portNote_, portSentence(setup()));
}

int BoardGroup::rowOfChosenPort(const QStringList &names) const
{
    if (setup().hasLedSystem())
        return static_cast<int>(names.indexOf(chosenName_));
    const int number = setup().chosenPort(); // what the next start will count to
    return number >= 0 && number < names.size() ? number : -1;
}

} // namespace qovelmor
