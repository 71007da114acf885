// SPDX-License-Identifier: MIT
#include "settings/views/BrowserGroup.h"

#include "platform/Localization.h"
#include "platform/PlainText.h"
#include "settings/views/SettingControls.h"

#include <QLineEdit>
#include <QPushButton>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

BrowserGroup::BrowserGroup(Setup &setup, SettingsActions &actions)
    : SettingsGroup(u"GroupBrowser"_s, setup, actions), desigBrowser_(new QLineEdit)
{
    nameControl(desigBrowser_, u"desigBrowser"_s, spokenText(u"DesignateBrowser"_s));
    desigBrowser_->setReadOnly(true);
    desigBrowser_->setPlaceholderText(localized(u"DefaultBrowserInUse"_s));
    QPushButton *select = settingButton(u"actSelectBrowser"_s, u"SelectBrowser"_s);
    QPushButton *standard = settingButton(u"actDefaultBrowser"_s, u"UseDefaultBrowser"_s);
    connect(select, &QPushButton::clicked, this, [this] { this->actions().actSelectBrowser(); });
    connect(standard, &QPushButton::clicked, this, [this] { this->actions().actDefaultBrowser(); });
    onRenewal([this] { showBrowser(this->setup().desigBrowser()); });

    addRow(u"DesignateBrowser"_s, desigBrowser_, desigBrowser_);
    addBelow(sideBySide({select, standard}));
}

void BrowserGroup::showBrowser(const QString &desktopFile)
{
    desigBrowser_->setText(desktopFile);
    desigBrowser_->setToolTip(plainTooltip(desktopFile));
    desigBrowser_->setCursorPosition(0);
}

} // namespace qovelmor
