// SPDX-License-Identifier: MIT
#include "settings/views/SettingsView.h"

#include "platform/BrowserList.h"
#include "platform/LinkOpener.h"
#include "platform/Localization.h"
#include "platform/views/Alert.h"
#include "settings/Setup.h"
#include "settings/views/BoardGroup.h"
#include "settings/views/BrowserGroup.h"
#include "settings/views/BrowserPanel.h"
#include "settings/views/DisplayGroup.h"
#include "settings/views/FilterGroup.h"
#include "settings/views/LogFilePanel.h"
#include "settings/views/LogGroup.h"
#include "settings/views/SerialDeviceNotifier.h"
#include "settings/views/SettingControls.h"
#include "settings/views/SoundGroup.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int groupsInLeftColumn = 3;   // of two columns; they are about as high as the others
constexpr int spaceBetweenColumns = 30; // with the margins of the page

bool takesTab(const QWidget &control)
{
    return (control.focusPolicy() & Qt::TabFocus) != 0;
}

QWidget *firstControl(const QWidget &group)
{
    const auto controls = group.findChildren<QWidget *>();
    const auto first = std::find_if(controls.begin(), controls.end(),
                                    [](const QWidget *control) { return takesTab(*control); });
    return first == controls.end() ? nullptr : *first;
}

/// The Tab key goes through the controls of `group` after those of `before`.
void setTabOrderAfter(const QWidget &before, const QWidget &group)
{
    QWidget *last = nullptr;
    for (QWidget *control : before.findChildren<QWidget *>()) {
        if (takesTab(*control))
            last = control;
    }
    for (QWidget *control : group.findChildren<QWidget *>()) {
        if (!takesTab(*control))
            continue;
        QWidget::setTabOrder(last, control);
        last = control;
    }
}

} // namespace

SettingsView::SettingsView(Setup &setup, SerialDeviceNotifier &devices)
    : setup_(setup)
    , actions_(setup)
    , board_(new BoardGroup(setup, actions_))
    , display_(new DisplayGroup(setup, actions_))
    , filters_(new FilterGroup(setup, actions_))
    , log_(new LogGroup(setup, actions_))
    , sounds_(new SoundGroup(setup, actions_))
    , browser_(new BrowserGroup(setup, actions_))
    , scroller_(new QScrollArea)
{
    createPage();
    connect(&devices, &SerialDeviceNotifier::devicesChanged, board_,
            [this] { board_->renewPorts(); });
    setup_.setWindow(*this);
}

SettingsView::~SettingsView()
{
    setup_.removeWindow();
}

// The page. -----------------------------------------------------------------------------------

void SettingsView::createPage()
{
    auto *page = new QWidget;
    page_ = new QHBoxLayout(page);
    left_ = new QVBoxLayout;
    right_ = new QVBoxLayout;
    page_->addLayout(left_, 1);
    page_->addLayout(right_);
    const auto groups = allGroups();
    shownGroups_.assign(groups.begin(), groups.end());
    left_->addStretch(1);
    right_->addStretch(1);
    putGroups();

    scroller_->setObjectName(u"settingsPage"_s);
    scroller_->setWidgetResizable(true);
    scroller_->setFrameShape(QFrame::NoFrame);
    scroller_->setFocusPolicy(Qt::NoFocus);
    scroller_->setWidget(page);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroller_);
    setFocusProxy(firstControl(*board_));
}

std::array<SettingsGroup *, 6> SettingsView::allGroups() const
{
    return {board_, display_, filters_, log_, sounds_, browser_};
}

void SettingsView::addGroup(QWidget *group)
{
    const auto display = std::find(shownGroups_.begin(), shownGroups_.end(), display_);
    shownGroups_.insert(std::next(display), group);
    putGroups();
    setTabOrderAfter(*display_, *group);
}

void SettingsView::arrangeGroups()
{
    int widest = 0;
    for (const QWidget *group : shownGroups_)
        widest = std::max(widest, group->minimumSizeHint().width());
    const int space = width() - scroller_->verticalScrollBar()->sizeHint().width();
    const int columns = space >= 2 * widest + spaceBetweenColumns ? 2 : 1;
    if (columns != std::exchange(columns_, columns))
        putGroups();
}

void SettingsView::putGroups()
{
    const int all = static_cast<int>(shownGroups_.size());
    const int inLeft = columns_ == 2 ? groupsInLeftColumn : all;
    for (int index = 0; index < all; ++index) {
        QWidget *group = shownGroups_[static_cast<std::size_t>(index)];
        if (index < inLeft)
            left_->insertWidget(index, group);
        else
            right_->insertWidget(index - inLeft, group);
    }
    page_->setStretch(1, columns_ - 1);
}

void SettingsView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrangeGroups();
}

void SettingsView::hideEvent(QHideEvent *event)
{
    // What is half typed counts, also when the tab is left or the program ends.
    if (QWidget *control = scroller_->widget()->focusWidget(); control && control->hasFocus())
        control->clearFocus();
    QWidget::hideEvent(event);
}

// What the settings ask. ----------------------------------------------------------------------

void SettingsView::renewalControls()
{
    for (SettingsGroup *group : allGroups())
        group->renew();
}

void SettingsView::fillSoundMenu(SoundMenu menu, const QStringList &names)
{
    sounds_->fillSoundMenu(menu, names);
}

void SettingsView::enableSoundMenu(SoundMenu menu, bool enabled)
{
    sounds_->enableSoundMenu(menu, enabled);
}

void SettingsView::enableShowLogButton(bool enabled)
{
    log_->enableShowLogButton(enabled);
}

void SettingsView::showLogNote(const QString &text)
{
    log_->showLogNote(text);
}

void SettingsView::showBrowser(const QString &desktopFile)
{
    browser_->showBrowser(desktopFile);
}

void SettingsView::openAlert(const QString &message, const QString &informative,
                             const QString &button)
{
    Alert alert{u"alert"_s, message, informative, button};
    alert.windowTitle = window()->windowTitle();
    if (informative.isEmpty())
        alert.icon = QMessageBox::Information;
    qovelmor::openAlert(*window(), alert);
}

void SettingsView::openLogFilePanel(const FilePanel &panel)
{
    qovelmor::openLogFilePanel(this, panel, setup_.logFilePath(),
                               [this](const QString &path) { log_->chooseFile(path); });
}

void SettingsView::openBrowserPanel(const FilePanel &panel)
{
    auto *browsers = new BrowserPanel(panel, installedBrowsers(), window());
    connect(browsers, &BrowserPanel::browserChosen, this,
            [this](const QString &file) { actions_.actBrowserChosen(file); });
    browsers->open();
}

void SettingsView::openWithApplication(const QString &path)
{
    if (!openTextFile(path))
        log_->showLogNote(localized(u"LogFileShowError"_s));
}

void SettingsView::showTab(const QString &identifier)
{
    Q_EMIT tabWanted(identifier);
}

} // namespace qovelmor
