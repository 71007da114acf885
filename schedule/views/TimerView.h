// SPDX-License-Identifier: MIT
#pragma once

#include "schedule/TimerTableModel.h"
#include "schedule/needs/TimerWindow.h"

#include <QList>
#include <QWidget>

class QAction;
class QCheckBox;
class QPushButton;

namespace qovelmor {

class ListTable;
class RSSTimer;
class TimerDialog;

/// The timer window: the table of timers, the commands that change it, and whether timers fire at
/// all.
class TimerView final : public QWidget, public TimerWindow
{
    Q_OBJECT

public:
    /// The schedule outlives the window.
    explicit TimerView(RSSTimer &schedule);
    ~TimerView() override;

    int selectedRow() const override;
    void setColumnWidth(int column, double points) override;
    void renewControls(bool useTimer, bool canEdit) override;
    void openDialog(const QString &title, const TimerDraft &draft) override;
    void closeDialog() override;
    void openDeleteAlert(const TimerAlert &contents) override;

private:
    using Command = void (RSSTimer::*)();

    QWidget *createButtonRow();
    QPushButton *createButton(const QString &name, const QString &textKey, Command command);
    void createRowMenu();
    QAction *createAction(const QString &name, const QString &textKey);
    void connectTable();
    void moveSelectedRow(int target);
    void selectedRowChanged(int row);
    void renew();

    RSSTimer &schedule_;
    TimerTableModel model_;
    ListTable *timerView_;
    QCheckBox *useTimerCheck_ = nullptr;
    QPushButton *createButton_ = nullptr;
    QPushButton *editButton_ = nullptr;
    QPushButton *deleteButton_ = nullptr;
    TimerDialog *timerPanel_;
    QList<QAction *> rowActions_;     ///< they need a selected row
    std::weak_ptr<TMRData> selected_; ///< the selection stays with its timer when rows move
};

} // namespace qovelmor
