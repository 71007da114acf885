// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>

class QButtonGroup;
class QCheckBox;
class QFormLayout;
class QHBoxLayout;
class QLineEdit;

namespace qovelmor {

class MessageList;

/// The switches of the message list: what the line of a message holds, in which order messages come
/// and how many, and what is shown between them. Each acts and is stored at once.
class MessageSwitchesView final : public QGroupBox
{
    Q_OBJECT

public:
    /// The list outlives the view.
    explicit MessageSwitchesView(MessageList &msgList);

    /// Takes over what is stored.
    void renew();

protected:
    void showEvent(QShowEvent *event) override;

private:
    using SwitchAction = void (MessageList::*)(bool);

    QCheckBox *addCheck(QHBoxLayout &row, const QString &name, SwitchAction action);
    void addLineParts(QFormLayout &form);
    void addOrder(QFormLayout &form);
    void addLimit(QFormLayout &form);
    void addBetween(QFormLayout &form);
    void takeLimit();

    MessageList &msgList_;
    QCheckBox *dispLine_ = nullptr;
    QCheckBox *dispDate_ = nullptr;
    QCheckBox *dispName_ = nullptr;
    QCheckBox *dispDesc_ = nullptr;
    QButtonGroup *dispOrder_ = nullptr;
    QCheckBox *dispEachRSS_ = nullptr;
    QCheckBox *useMaxMsg_ = nullptr;
    QLineEdit *maxMessages_ = nullptr;
    QCheckBox *showCalendar_ = nullptr;
    QCheckBox *dispInfo_ = nullptr;
};

} // namespace qovelmor
