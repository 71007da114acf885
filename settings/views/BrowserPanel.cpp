// SPDX-License-Identifier: MIT
#include "settings/views/BrowserPanel.h"

#include "platform/Localization.h"
#include "platform/PlainText.h"
#include "settings/views/SettingControls.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

BrowserPanel::BrowserPanel(const FilePanel &panel, const std::vector<BrowserEntry> &browsers,
                           QWidget *parent)
    : QDialog(parent), panel_(panel), list_(new QListWidget), select_(new QPushButton(panel.button))
{
    setObjectName(u"browserPanel"_s);
    setWindowTitle(panel.title);
    setAttribute(Qt::WA_DeleteOnClose);
    nameControl(list_, u"browserList"_s, spokenText(u"InstalledBrowsers"_s));
    nameControl(select_, u"browserSelect"_s, panel.button);
    QPushButton *other = settingButton(u"browserFromFile"_s, u"BrowserFromFile"_s);
    QPushButton *cancel = settingButton(u"browserCancel"_s, u"Cancel"_s);

    auto *label =
        new QLabel(localized(browsers.empty() ? u"NoBrowsers"_s : u"InstalledBrowsers"_s));
    label->setWordWrap(true);
    label->setObjectName(u"browserLabel"_s);
    label->setBuddy(list_);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(other);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(select_);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list_, 1);
    layout->addLayout(buttons);
    // In its dialog, which makes it so again when the focus leaves others.
    select_->setDefault(true);
    fill(browsers);

    const auto takeCurrent = [this] {
        if (const QListWidgetItem *item = list_->currentItem())
            finish(item->data(Qt::UserRole).toString());
    };
    connect(select_, &QPushButton::clicked, this, takeCurrent);
    connect(list_, &QListWidget::itemDoubleClicked, this, takeCurrent);
    connect(other, &QPushButton::clicked, this, [this] { openFilePanel(); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void BrowserPanel::fill(const std::vector<BrowserEntry> &browsers)
{
    for (const BrowserEntry &browser : browsers) {
        auto *item = new QListWidgetItem(browser.name, list_);
        item->setData(Qt::UserRole, browser.desktopFile);
        item->setToolTip(plainTooltip(browser.desktopFile));
    }
    list_->setCurrentRow(0);
    select_->setEnabled(!browsers.empty());
}

void BrowserPanel::openFilePanel()
{
    auto *files = new QFileDialog(this, panel_.title, panel_.folder);
    files->setObjectName(u"browserFilePanel"_s);
    files->setAttribute(Qt::WA_DeleteOnClose);
    files->setFileMode(QFileDialog::ExistingFile);
    files->setNameFilter(u"*."_s + panel_.fileType);
    files->setLabelText(QFileDialog::Accept, panel_.button);
    files->setOptions(QFileDialog::DontResolveSymlinks | QFileDialog::ReadOnly);
    connect(files, &QFileDialog::fileSelected, this, [this](const QString &file) { finish(file); });
    files->open();
}

void BrowserPanel::finish(const QString &desktopFile)
{
    Q_EMIT browserChosen(desktopFile);
    accept();
}

} // namespace qovelmor
