// SPDX-License-Identifier: MIT
#include "messages/views/MessageSwitchesView.h"

#include "messages/MessageList.h"
#include "platform/Localization.h"
#include "platform/TypedNumber.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include <functional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limitFieldCharacters = 6;

QHBoxLayout *addRow(QFormLayout &form, const QString &labelKey)
{
    auto *row = new QHBoxLayout;
    form.addRow(new QLabel(localized(labelKey)), row);
    return row;
}

} // namespace

MessageSwitchesView::MessageSwitchesView(MessageList &msgList)
    : QGroupBox(localized(u"SwitchesTitle"_s)), msgList_(msgList)
{
    setObjectName(u"messageSwitches"_s);
    auto *form = new QFormLayout(this);
    addLineParts(*form);
    addOrder(*form);
    addLimit(*form);
    addBetween(*form);
    renew();
}

QCheckBox *MessageSwitchesView::addCheck(QHBoxLayout &row, const QString &name, SwitchAction action)
{
    const QString text = localized(name); // the texts stand under the names of the actions
    auto *check = new QCheckBox(text);
    check->setObjectName(name);
    check->setAccessibleName(text);
    connect(check, &QCheckBox::clicked, this,
            [this, action](bool isOn) { std::invoke(action, msgList_, isOn); });
    row.addWidget(check);
    return check;
}

void MessageSwitchesView::addLineParts(QFormLayout &form)
{
    QHBoxLayout *row = addRow(form, u"SwitchesLine"_s);
    dispLine_ = addCheck(*row, u"actDispLineCheck"_s, &MessageList::actDispLineCheck);
    dispName_ = addCheck(*row, u"actDispNameCheck"_s, &MessageList::actDispNameCheck);
    dispDate_ = addCheck(*row, u"actDispDateCheck"_s, &MessageList::actDispDateCheck);
    dispDesc_ = addCheck(*row, u"actDispDescCheck"_s, &MessageList::actDispDescCheck);
    row->addStretch(1);
}

void MessageSwitchesView::addOrder(QFormLayout &form)
{
    auto *matrix = new QWidget;
    matrix->setObjectName(u"actDispOrderMatrix"_s);
    matrix->setAccessibleName(localized(u"SwitchesOrder"_s));
    dispOrder_ = new QButtonGroup(this);
    auto *row = new QHBoxLayout(matrix);
    row->setContentsMargins(0, 0, 0, 0);
    const QStringList names = {u"dispOrderOldest"_s, u"dispOrderNewest"_s, u"dispOrderRandom"_s};
    for (int order = 0; order < names.size(); ++order) {
        auto *choice = new QRadioButton(localized(names[order]));
        choice->setObjectName(names[order]);
        choice->setAccessibleName(localized(names[order]));
        dispOrder_->addButton(choice, order);
        row->addWidget(choice);
    }
    row->addStretch(1);
    form.addRow(localized(u"SwitchesOrder"_s), matrix);
    connect(dispOrder_, &QButtonGroup::idClicked, this,
            [this](int order) { msgList_.actDispOrderMatrix(order); });

    QHBoxLayout *grouping = addRow(form, QString());
    dispEachRSS_ = addCheck(*grouping, u"actDispEachRSSCheck"_s, &MessageList::actDispEachRSSCheck);
    grouping->addStretch(1);
}

void MessageSwitchesView::addLimit(QFormLayout &form)
{
    QHBoxLayout *row = addRow(form, u"SwitchesLimit"_s);
    useMaxMsg_ = addCheck(*row, u"actUseMaxMsgCheck"_s, &MessageList::actUseMaxMsgCheck);
    maxMessages_ = new QLineEdit;
    maxMessages_->setObjectName(u"actMaxMessagesText"_s);
    maxMessages_->setAccessibleName(localized(u"actMaxMessagesText"_s));
    maxMessages_->setToolTip(localized(u"SwitchesLimitTip"_s));
    maxMessages_->setMaxLength(limitFieldCharacters);
    maxMessages_->setFixedWidth(fontMetrics().averageCharWidth() * (limitFieldCharacters + 4));
    connect(maxMessages_, &QLineEdit::editingFinished, this, &MessageSwitchesView::takeLimit);
    row->addWidget(maxMessages_);
    row->addWidget(new QLabel(localized(u"SwitchesLimitUnit"_s)));
    row->addStretch(1);
}

void MessageSwitchesView::addBetween(QFormLayout &form)
{
    QHBoxLayout *row = addRow(form, u"SwitchesBetween"_s);
    dispInfo_ = addCheck(*row, u"actDispInfoCheck"_s, &MessageList::actDispInfoCheck);
    row->addStretch(1);
    row = addRow(form, QString());
    showCalendar_ = addCheck(*row, u"actShowCalendarCheck"_s, &MessageList::actShowCalendarCheck);
    row->addStretch(1);
}

void MessageSwitchesView::takeLimit()
{
    if (!maxMessages_->isModified())
        return; // the field was only left
    msgList_.actMaxMessagesText(typedInteger(maxMessages_->text()));
    renew();
}

void MessageSwitchesView::renew()
{
    const auto switches = msgList_.switches();
    dispLine_->setChecked(switches->isDispLine);
    dispDate_->setChecked(switches->isDispDate);
    dispName_->setChecked(switches->isDispName);
    dispDesc_->setChecked(switches->isDispDesc);
    if (QAbstractButton *order = dispOrder_->button(switches->dispOrder))
        order->setChecked(true);
    dispEachRSS_->setChecked(switches->dispEachRSS);
    useMaxMsg_->setChecked(switches->useMaxMsg);
    maxMessages_->setText(QString::number(switches->maxMessages));
    showCalendar_->setChecked(switches->showCalendar);
    dispInfo_->setChecked(switches->dispInfo);
}

void MessageSwitchesView::showEvent(QShowEvent *event)
{
    renew();
    QGroupBox::showEvent(event);
}

} // namespace qovelmor
