// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CheckedRowsModel.h"
#include "schedule/TMRData.h"

namespace qovelmor {

class RSSTimer;

/// The timer table's rows: a copy of the schedule's list that follows its changes. Main thread
/// only.
class TimerTableModel final : public CheckedRowsModel
{
    Q_OBJECT

public:
    enum Column { Validate, FireDay, FireTime, Operation, Address };
    static constexpr int columnCountOfTable = 5;

    /// The schedule outlives the model.
    explicit TimerTableModel(RSSTimer &schedule, QObject *parent = nullptr);

    void refresh() override;

    /// The timer that a row shows; null for a row outside the table.
    std::shared_ptr<TMRData> timerAt(int row) const;

protected:
    int rowTotal() const override { return static_cast<int>(rows_.size()); }
    bool isChecked(int row) const override { return rowAt(row).validate(); }
    QString cellText(int row, int column) const override;
    bool turnCheck(int row) override;
    bool acceptRowDrop(int from, int target) override;

private:
    const TMRData &rowAt(int row) const { return rows_[static_cast<std::size_t>(row)]; }

    RSSTimer &schedule_;
    std::vector<TMRData> rows_;
    std::vector<std::weak_ptr<TMRData>> timers_; ///< of each row, to know it again
};

} // namespace qovelmor
