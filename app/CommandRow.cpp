// SPDX-License-Identifier: MIT
#include "app/CommandRow.h"

#include "app/CommandIcons.h"
#include "app/VelmorRSS.h"
#include "platform/Localization.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include <functional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

CommandRow::CommandRow(VelmorRSS &control)
    : control_(control)
    , startDispButton_(createButton(u"startDispButton"_s, u"StartDisplayButton"_s,
                                    u"StartDisplayTip"_s, &VelmorRSS::actStartDisp))
    , stopDispButton_(createButton(u"stopDispButton"_s, u"StopDisplayButton"_s, u"StopDisplayTip"_s,
                                   &VelmorRSS::actStopDisp))
    , getRSSButton_(createButton(u"getRSSButton"_s, u"ReadFeedsButton"_s, u"ReadFeedsTip"_s,
                                 &VelmorRSS::actGetRSS))
    , drawerButton_(createToggle(u"drawerButton"_s, u"LEDWindowButton"_s, u"LEDWindowTip"_s,
                                 &VelmorRSS::actDrawerButton))
    , descriptionButton_(createToggle(u"descriptionButton"_s, u"DescriptionButton"_s,
                                      u"DescriptionTip"_s, &VelmorRSS::actDescriptionDrawer))
{
    showIcons();
    getRSSButton_->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(startDispButton_);
    layout->addWidget(stopDispButton_);
    layout->addWidget(getRSSButton_);
    layout->addStretch(1);
    layout->addWidget(drawerButton_);
    layout->addWidget(descriptionButton_);
}

QPushButton *CommandRow::createButton(const QString &name, const QString &textKey,
                                      const QString &tipKey, void (VelmorRSS::*command)())
{
    auto *button = new QPushButton(localized(textKey));
    button->setObjectName(name);
    button->setAccessibleName(spokenText(textKey));
    button->setToolTip(localized(tipKey));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this,
            [this, command] { std::invoke(command, control_); });
    return button;
}

QToolButton *CommandRow::createToggle(const QString &name, const QString &textKey,
                                      const QString &tipKey, void (VelmorRSS::*command)())
{
    auto *toggle = new QToolButton;
    toggle->setObjectName(name);
    toggle->setText(localized(textKey));
    toggle->setAccessibleName(spokenText(textKey));
    toggle->setToolTip(localized(tipKey));
    toggle->setCheckable(true);
    toggle->setFocusPolicy(Qt::StrongFocus);
    connect(toggle, &QToolButton::clicked, this, [this, toggle, command] {
        toggle->setChecked(!toggle->isChecked());
        std::invoke(command, control_);
    });
    return toggle;
}

void CommandRow::showIcons()
{
    startDispButton_->setIcon(startIcon(palette()));
    stopDispButton_->setIcon(stopIcon(palette()));
}

void CommandRow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        showIcons();
    QWidget::changeEvent(event);
}

void CommandRow::setCanStart(bool canStart)
{
    startDispButton_->setEnabled(canStart);
}

void CommandRow::setCanStop(bool canStop)
{
    stopDispButton_->setEnabled(canStop);
}

void CommandRow::setDrawerButton(bool on)
{
    drawerButton_->setChecked(on);
}

bool CommandRow::descriptionButton() const
{
    return descriptionButton_->isChecked();
}

void CommandRow::setDescriptionButton(bool on)
{
    descriptionButton_->setChecked(on);
}

void CommandRow::setDescriptionButtonEnabled(bool enabled)
{
    descriptionButton_->setEnabled(enabled);
}

} // namespace qovelmor
