// SPDX-License-Identifier: MIT
#pragma once

#include "schedule/TimerDraft.h"

#include <QDialog>

#include <array>

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qovelmor {

/// The dialog that makes or edits one timer. It keeps nothing: its contents leave it with
/// executed().
class TimerDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit TimerDialog(QWidget *parent);

    void openWith(const QString &title, const TimerDraft &draft);
    TimerDraft draft() const;

Q_SIGNALS:
    void executed(const TimerDraft &draft);
    void cancelled();

protected:
    void reject() override { Q_EMIT cancelled(); }

private:
    QWidget *createDays();
    QWidget *createTime();
    QWidget *createActions();
    QWidget *createButtons();
    void renewHints();

    QCheckBox *validateCheck_;
    std::array<QCheckBox *, 7> dayChecks_{};
    QLineEdit *fireHourText_ = nullptr;
    QLineEdit *fireMinuteText_ = nullptr;
    QLabel *timeHint_ = nullptr;
    QButtonGroup *actionRadio_ = nullptr;
    QLineEdit *urlText_ = nullptr;
    QPushButton *actEditExecute_ = nullptr;
};

} // namespace qovelmor
