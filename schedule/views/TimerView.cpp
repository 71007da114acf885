// SPDX-License-Identifier: MIT
#include "schedule/views/TimerView.h"

#include "platform/Localization.h"
#include "platform/views/Alert.h"
#include "platform/views/ListTable.h"
#include "schedule/RSSTimer.h"
#include "schedule/views/TimerDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const std::vector<double> factoryColumnWidths = {52, 130, 70, 110, 260};
constexpr double rowHeight = 24;
constexpr double fontSize = 14;
constexpr QSize factorySize{680, 340};

} // namespace

TimerView::TimerView(RSSTimer &schedule)
    : schedule_(schedule)
    , model_(schedule)
    , timerView_(new ListTable(model_, {u"timerView"_s, localized(u"TimerTable"_s),
                                        u"noTimersText"_s, localized(u"NoTimersYet"_s)}))
    , timerPanel_(new TimerDialog(this))
{
    setObjectName(u"timerWindow"_s);
    setWindowTitle(localized(u"TimerWindow"_s));
    resize(factorySize);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(timerView_, 1);
    layout->addWidget(createButtonRow());
    createRowMenu();
    timerView_->enableRowDrag();
    timerView_->setLook({factoryColumnWidths, rowHeight, fontSize});
    connectTable();

    auto *closing = new QShortcut(QKeySequence::Close, this);
    connect(closing, &QShortcut::activated, this, &QWidget::close);
    connect(timerPanel_, &TimerDialog::executed, this,
            [this](const TimerDraft &draft) { schedule_.actEditExecute(draft); });
    connect(timerPanel_, &TimerDialog::cancelled, this, [this] { schedule_.actEditCancel(); });
    schedule_.changes().listen([self = QPointer<TimerView>(this)] {
        if (self)
            self->renew();
    });
    schedule_.setWindow(*this);
    schedule_.renewControls();
}

TimerView::~TimerView()
{
    schedule_.removeWindow();
}

// Building. -----------------------------------------------------------------------------------

QWidget *TimerView::createButtonRow()
{
    useTimerCheck_ = new QCheckBox(localized(u"UseTimer"_s));
    useTimerCheck_->setObjectName(u"useTimerCheck"_s);
    useTimerCheck_->setAccessibleName(spokenText(u"UseTimer"_s));
    connect(useTimerCheck_, &QCheckBox::clicked, this,
            [this](bool on) { schedule_.actUseTimerCheck(on); });
    createButton_ = createButton(u"createButton"_s, u"TimerAddButton"_s, &RSSTimer::actCreateTimer);
    editButton_ = createButton(u"editButton"_s, u"TimerEditButton"_s, &RSSTimer::actEditTimer);
    deleteButton_ =
        createButton(u"deleteButton"_s, u"TimerDeleteButton"_s, &RSSTimer::actDeleteTimer);

    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(createButton_);
    layout->addWidget(editButton_);
    layout->addWidget(deleteButton_);
    layout->addStretch(1);
    layout->addWidget(useTimerCheck_);
    return row;
}

QPushButton *TimerView::createButton(const QString &name, const QString &textKey, Command command)
{
    auto *button = new QPushButton(localized(textKey));
    button->setObjectName(name);
    button->setAccessibleName(spokenText(textKey));
    connect(button, &QPushButton::clicked, this,
            [this, command] { std::invoke(command, schedule_); });
    return button;
}

QAction *TimerView::createAction(const QString &name, const QString &textKey)
{
    auto *action = new QAction(localized(textKey), this);
    action->setObjectName(name);
    rowActions_ << action;
    return action;
}

// What the mouse does on a row, for the keyboard too (the menu key opens this menu).
void TimerView::createRowMenu()
{
    connect(createAction(u"rowEdit"_s, u"TimerEditButton"_s), &QAction::triggered, this,
            [this] { schedule_.actEditTimer(); });
    connect(createAction(u"rowDelete"_s, u"TimerDeleteButton"_s), &QAction::triggered, this,
            [this] { schedule_.actDeleteTimer(); });
    const auto addMove = [this](const QString &name, const QString &textKey, int key, int step) {
        QAction *action = createAction(name, textKey);
        action->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(key)));
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this,
                [this, step] { moveSelectedRow(selectedRow() + step); });
    };
    addMove(u"rowMoveUp"_s, u"TimerMoveUpItem"_s, Qt::Key_Up, -1);
    addMove(u"rowMoveDown"_s, u"TimerMoveDownItem"_s, Qt::Key_Down, 2);
    timerView_->setContextMenuPolicy(Qt::ActionsContextMenu);
    timerView_->addActions(rowActions_);
}

void TimerView::connectTable()
{
    connect(timerView_, &ListTable::selectedRowChanged, this, &TimerView::selectedRowChanged);
    connect(timerView_, &ListTable::openRequested, this,
            [this] { schedule_.actDoubleClickTimerView(); });
    connect(timerView_, &ListTable::deleteRequested, this, [this] { schedule_.actDeleteTimer(); });
    connect(timerView_, &ListTable::columnsResized, this,
            [this] { schedule_.setColumnWidths(timerView_->columnWidths()); });
    connect(
        &model_, &QAbstractItemModel::rowsInserted, timerView_,
        [this](const QModelIndex &, int first) { timerView_->scrollTo(model_.index(first, 0)); });
}

// Following the schedule. ---------------------------------------------------------------------

void TimerView::selectedRowChanged(int row)
{
    selected_ = model_.timerAt(row);
    schedule_.renewControls();
}

void TimerView::renew()
{
    model_.refresh();
    const int row = selectedRow();
    if (row >= 0 && row != timerView_->selectedRow())
        timerView_->selectRow(row);
    else
        selectedRowChanged(timerView_->selectedRow());
}

void TimerView::moveSelectedRow(int target)
{
    if (schedule_.acceptRowDrop(selectedRow(), target))
        renew();
}

// What the schedule asks. ---------------------------------------------------------------------

// The table may be a moment behind the list: the row in the list is the one that counts.
int TimerView::selectedRow() const
{
    const auto &timers = schedule_.timerList();
    const auto place = std::ranges::find(timers, selected_.lock());
    return place == timers.end() ? -1 : static_cast<int>(place - timers.begin());
}

void TimerView::setColumnWidth(int column, double points)
{
    std::vector<double> widths = timerView_->columnWidths();
    widths.at(static_cast<std::size_t>(column)) = points;
    timerView_->setLook({widths, rowHeight, fontSize});
}

void TimerView::renewControls(bool useTimer, bool canEdit)
{
    useTimerCheck_->setChecked(useTimer);
    for (QPushButton *button : {editButton_, deleteButton_})
        button->setEnabled(canEdit);
    for (QAction *action : rowActions_)
        action->setEnabled(canEdit);
}

void TimerView::openDialog(const QString &title, const TimerDraft &draft)
{
    timerPanel_->openWith(title, draft);
}

void TimerView::closeDialog()
{
    timerPanel_->hide();
}

void TimerView::openDeleteAlert(const TimerAlert &contents)
{
    openAlert(*this,
              {u"deleteTimerAlert"_s, contents.title, contents.informative, contents.deleteButton,
               contents.cancelButton},
              [this](bool isDeletion) { schedule_.deleteTimerAnswered(isDeletion); });
}

} // namespace qovelmor
