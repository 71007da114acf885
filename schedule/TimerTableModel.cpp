// SPDX-License-Identifier: MIT
#include "schedule/TimerTableModel.h"

#include "schedule/RSSTimer.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

TimerTableModel::TimerTableModel(RSSTimer &schedule, QObject *parent)
    : CheckedRowsModel(
          {u"TMRValidate"_s, u"TMRFireDay"_s, u"TMRFireTime"_s, u"TMROperation"_s, u"TMRAddress"_s},
          u"timer"_s, parent)
    , schedule_(schedule)
{
    refresh();
    follow(schedule_.changes());
}

void TimerTableModel::refresh()
{
    const auto &timers = schedule_.timerList();
    std::vector<TMRData> rows;
    rows.reserve(timers.size());
    for (const auto &timer : timers)
        rows.push_back(*timer);
    takeRows(rows_, std::move(rows));
    timers_.assign(timers.begin(), timers.end());
}

std::shared_ptr<TMRData> TimerTableModel::timerAt(int row) const
{
    const bool isInside = row >= 0 && row < static_cast<int>(timers_.size());
    return isInside ? timers_[static_cast<std::size_t>(row)].lock() : nullptr;
}

QString TimerTableModel::cellText(int row, int column) const
{
    const TMRData &timer = rowAt(row);
    switch (column) {
    case FireDay:
        return timer.fireDayString();
    case FireTime:
        return timer.fireTimeString();
    case Operation:
        return timer.operationString();
    case Address:
        if (!timer.does(TimerOperation::StartDisplay))
            return {};
        return timer.address().isEmpty() ? u"RSSリストのURL"_s : timer.address();
    default:
        return {};
    }
}

bool TimerTableModel::turnCheck(int row)
{
    return schedule_.shouldEditTableColumn(row);
}

bool TimerTableModel::acceptRowDrop(int from, int target)
{
    return schedule_.acceptRowDrop(from, target);
}

} // namespace qovelmor
