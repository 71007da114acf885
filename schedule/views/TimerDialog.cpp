// SPDX-License-Identifier: MIT
#include "schedule/views/TimerDialog.h"

#include "platform/Localization.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Day
{
    const char *name;
    const char *textKey;
    const char *spokenKey;
};

constexpr std::array<Day, 7> days{{{"sundayCheck", "TimerSunday", "TimerSundaySpoken"},
                                   {"mondayCheck", "TimerMonday", "TimerMondaySpoken"},
                                   {"tuesdayCheck", "TimerTuesday", "TimerTuesdaySpoken"},
                                   {"wednesdayCheck", "TimerWednesday", "TimerWednesdaySpoken"},
                                   {"thursdayCheck", "TimerThursday", "TimerThursdaySpoken"},
                                   {"fridayCheck", "TimerFriday", "TimerFridaySpoken"},
                                   {"saturdayCheck", "TimerSaturday", "TimerSaturdaySpoken"}}};

constexpr int minutesOfADay = 24 * 60;

QString text(const char *key)
{
    return localized(QString::fromLatin1(key));
}

QLineEdit *numberField(const QString &name, const char *spokenKey)
{
    auto *field = new QLineEdit;
    field->setObjectName(name);
    field->setAccessibleName(text(spokenKey));
    field->setAlignment(Qt::AlignRight);
    field->setInputMethodHints(Qt::ImhDigitsOnly);
    field->setMaximumWidth(field->fontMetrics().horizontalAdvance(u"0000000"_s));
    return field;
}

QHBoxLayout *rowIn(QWidget *row)
{
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    return layout;
}

QLabel *labelFor(const char *key, QWidget *buddy)
{
    auto *label = new QLabel(text(key));
    label->setBuddy(buddy);
    return label;
}

} // namespace

TimerDialog::TimerDialog(QWidget *parent)
    : QDialog(parent), validateCheck_(new QCheckBox(text("TimerEnabled")))
{
    setObjectName(u"timerPanel"_s);
    validateCheck_->setObjectName(u"validateCheck"_s);
    validateCheck_->setAccessibleName(text("TMRValidate"));

    auto *form = new QFormLayout(this);
    form->addRow(validateCheck_);
    form->addRow(new QLabel(text("TMRFireDay")), createDays());
    QWidget *time = createTime();
    form->addRow(labelFor("TimerTime", fireHourText_), time);
    timeHint_ = new QLabel(text("TimerTimeHint"));
    timeHint_->setObjectName(u"timeHint"_s);
    timeHint_->setWordWrap(true);
    form->addRow(QString(), timeHint_);
    form->addRow(new QLabel(text("TMROperation")), createActions());
    urlText_ = new QLineEdit;
    urlText_->setObjectName(u"urlText"_s);
    urlText_->setAccessibleName(text("TMRAddress"));
    urlText_->setPlaceholderText(u"RSSリストのURL"_s); // as the table shows an empty address
    urlText_->setMinimumWidth(320);
    form->addRow(labelFor("TimerAddress", urlText_), urlText_);
    form->addRow(createButtons());

    connect(fireHourText_, &QLineEdit::textChanged, this, [this] { renewHints(); });
    connect(fireMinuteText_, &QLineEdit::textChanged, this, [this] { renewHints(); });
    connect(actionRadio_, &QButtonGroup::idToggled, this, [this] { renewHints(); });
}

QWidget *TimerDialog::createDays()
{
    auto *row = new QWidget;
    QHBoxLayout *layout = rowIn(row);
    for (std::size_t day = 0; day < days.size(); ++day) {
        auto *check = new QCheckBox(text(days[day].textKey));
        check->setObjectName(QString::fromLatin1(days[day].name));
        check->setAccessibleName(text(days[day].spokenKey));
        layout->addWidget(check);
        dayChecks_[day] = check;
    }
    layout->addStretch(1);
    return row;
}

QWidget *TimerDialog::createTime()
{
    fireHourText_ = numberField(u"fireHourText"_s, "TimerHour");
    fireMinuteText_ = numberField(u"fireMinuteText"_s, "TimerMinute");
    auto *row = new QWidget;
    QHBoxLayout *layout = rowIn(row);
    layout->addWidget(fireHourText_);
    layout->addWidget(new QLabel(text("TimerHour")));
    layout->addWidget(fireMinuteText_);
    layout->addWidget(new QLabel(text("TimerMinute")));
    layout->addStretch(1);
    return row;
}

QWidget *TimerDialog::createActions()
{
    auto *row = new QWidget;
    row->setObjectName(u"actionRadio"_s);
    QHBoxLayout *layout = rowIn(row);
    actionRadio_ = new QButtonGroup(this);
    const std::array<std::pair<const char *, const char *>, 3> actions{
        {{"actionRadioStart", "TimerStart"},
         {"actionRadioStop", "TimerStop"},
         {"actionRadioNothing", "TimerNothing"}}};
    for (int column = 0; column < static_cast<int>(actions.size()); ++column) {
        const auto &[name, key] = actions[static_cast<std::size_t>(column)];
        auto *radio = new QRadioButton(text(key));
        radio->setObjectName(QString::fromLatin1(name));
        radio->setAccessibleName(spokenText(QString::fromLatin1(key)));
        actionRadio_->addButton(radio, column);
        layout->addWidget(radio);
    }
    layout->addStretch(1);
    return row;
}

QWidget *TimerDialog::createButtons()
{
    auto *buttons = new QDialogButtonBox;
    actEditExecute_ = buttons->addButton(text("Execute"), QDialogButtonBox::AcceptRole);
    actEditExecute_->setObjectName(u"actEditExecute"_s);
    QPushButton *cancel = buttons->addButton(text("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(u"actEditCancel"_s);
    for (QPushButton *button : {actEditExecute_, cancel})
        button->setAccessibleName(button->text());
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { Q_EMIT executed(draft()); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
    return buttons;
}

void TimerDialog::openWith(const QString &title, const TimerDraft &draft)
{
    setWindowTitle(title);
    validateCheck_->setChecked(draft.validate);
    for (std::size_t day = 0; day < days.size(); ++day)
        dayChecks_[day]->setChecked(draft.days[day]);
    fireHourText_->setText(draft.fireHour);
    fireMinuteText_->setText(draft.fireMinute);
    actionRadio_->button(draft.actionColumn)->setChecked(true);
    urlText_->setText(draft.address);
    renewHints();
    fireHourText_->setFocus();
    fireHourText_->selectAll();
    actEditExecute_->setDefault(true); // and again when the focus leaves the other one
    open();
}

TimerDraft TimerDialog::draft() const
{
    TimerDraft draft;
    draft.validate = validateCheck_->isChecked();
    for (std::size_t day = 0; day < days.size(); ++day)
        draft.days[day] = dayChecks_[day]->isChecked();
    draft.fireHour = fireHourText_->text();
    draft.fireMinute = fireMinuteText_->text();
    draft.actionColumn = actionRadio_->checkedId();
    draft.address = urlText_->text();
    return draft;
}

// Any time can be entered; one outside the day is kept and never comes, which is worth saying.
void TimerDialog::renewHints()
{
    const std::int32_t time = timerFrom(draft()).fireTime();
    timeHint_->setVisible(time < 0 || time >= minutesOfADay);
    urlText_->setEnabled(actionRadio_->checkedId() == 0);
}

} // namespace qovelmor
