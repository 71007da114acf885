// SPDX-License-Identifier: MIT
#include "settings/views/LogGroup.h"

#include "platform/Localization.h"
#include "platform/PlainText.h"
#include "settings/views/SettingControls.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

LogGroup::LogGroup(Setup &setup, SettingsActions &actions)
    : SettingsGroup(u"GroupLog"_s, setup, actions)
{
    addCheck(u"logRSSRead"_s, u"LogRSSRead"_s, &Setup::logRSSRead,
             &SettingsActions::actLogRSSReadCheck);
    addCheck(u"logRSSDisp"_s, u"LogRSSDisp"_s, &Setup::logRSSDisp,
             &SettingsActions::actLogRSSDispCheck);
    addCheck(u"logTimer"_s, u"LogTimer"_s, &Setup::logTimer, &SettingsActions::actLogTimerCheck);
    addCheck(u"logSystem"_s, u"LogSystem"_s, &Setup::logSystem,
             &SettingsActions::actLogSystemCheck);

    logFilePath_ = new QLineEdit;
    nameControl(logFilePath_, u"logFilePath"_s, spokenText(u"LogFilePath"_s));
    logFilePath_->setReadOnly(true);
    QPushButton *choose = settingButton(u"actLogFilePath"_s, u"LogFileChoose"_s);
    showLogButton_ = settingButton(u"actDispLog"_s, u"LogFileShow"_s);
    showLogButton_->setEnabled(false); // until a log is open
    addRow(u"LogFilePath"_s, logFilePath_, logFilePath_);
    addBelow(sideBySide({choose, showLogButton_}));
    logNote_ = settingNote(u"logNote"_s);
    addRow(logNote_);

    connect(choose, &QPushButton::clicked, this, [this] { this->actions().actLogFilePath(); });
    connect(showLogButton_, &QPushButton::clicked, this, [this] { this->actions().actDispLog(); });
    onRenewal([this] {
        logFilePath_->setText(this->setup().logFilePath());
        logFilePath_->setToolTip(plainTooltip(this->setup().logFilePath()));
        logFilePath_->setCursorPosition(0);
    });
}

void LogGroup::enableShowLogButton(bool enabled)
{
    showLogButton_->setEnabled(enabled);
}

void LogGroup::showLogNote(const QString &text)
{
    showNote(logNote_, text);
}

void LogGroup::chooseFile(const QString &path)
{
    actions().actLogFileChosen(path);
    renew();
    showLogNote(localized(u"LogFileLater"_s));
}

} // namespace qovelmor
