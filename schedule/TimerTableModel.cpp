// SPDX-License-Identifier: MIT
#include "schedule/TimerTableModel.h"

#include "platform/Localization.h"
#include "platform/RowChange.h"
#include "platform/RowMove.h"
#include "schedule/RSSTimer.h"

#include <QMimeData>

#include <array>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto rowMimeType = u"application/x-qovelmorrss-timer-row"_s;

/// The row that is being dragged, -1 for a drag from elsewhere.
int draggedRow(const QMimeData *data)
{
    if (!data || !data->hasFormat(rowMimeType))
        return -1;
    bool isNumber = false;
    const int row = data->data(rowMimeType).toInt(&isNumber);
    return isNumber ? row : -1;
}

/// The row above which a drop lands; a view reports a drop on a row as that row's index.
int dropTarget(int row, const QModelIndex &parent, int rowCount)
{
    if (row >= 0)
        return row;
    return parent.isValid() ? parent.row() : rowCount;
}

} // namespace

TimerTableModel::TimerTableModel(RSSTimer &schedule, QObject *parent)
    : QAbstractTableModel(parent), schedule_(schedule)
{
    refresh();
    schedule_.changes().listen([this, alive = std::weak_ptr<bool>(alive_)] {
        if (alive.lock())
            refresh();
    });
}

QString TimerTableModel::columnIdentifier(int column)
{
    static const std::array<QString, columnCountOfTable> identifiers{
        u"TMRValidate"_s, u"TMRFireDay"_s, u"TMRFireTime"_s, u"TMROperation"_s, u"TMRAddress"_s};
    return identifiers.at(static_cast<std::size_t>(column));
}

int TimerTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TimerTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columnCountOfTable;
}

QString TimerTableModel::text(const TMRData &timer, int column) const
{
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

QVariant TimerTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const TMRData &timer = rows_[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole && index.column() != Validate)
        return text(timer, index.column());
    if (role == Qt::CheckStateRole && index.column() == Validate)
        return timer.validate() ? Qt::Checked : Qt::Unchecked;
    return {};
}

bool TimerTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != Validate || !value.isValid())
        return false;
    const bool isDone = schedule_.shouldEditTableColumn(index.row());
    refresh();
    return isDone;
}

Qt::ItemFlags TimerTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled; // between the rows and below them
    Qt::ItemFlags flags =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    if (index.column() == Validate)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant TimerTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCountOfTable)
        return {};
    if (role == Qt::UserRole)
        return columnIdentifier(section);
    return role == Qt::DisplayRole ? localized(columnIdentifier(section)) : QVariant();
}

QStringList TimerTableModel::mimeTypes() const
{
    return {rowMimeType};
}

QMimeData *TimerTableModel::mimeData(const QModelIndexList &indexes) const
{
    if (indexes.isEmpty())
        return nullptr;
    auto *data = new QMimeData; // the view takes it
    data->setData(rowMimeType, QByteArray::number(indexes.first().row()));
    return data;
}

bool TimerTableModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                      const QModelIndex &parent) const
{
    return isRowMove(draggedRow(data), dropTarget(row, parent, rowCount()), rows_.size());
}

bool TimerTableModel::dropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                   const QModelIndex &parent)
{
    const bool isDone =
        schedule_.acceptRowDrop(draggedRow(data), dropTarget(row, parent, rowCount()));
    refresh();
    return isDone;
}

void TimerTableModel::refresh()
{
    std::vector<TMRData> rows;
    for (const auto &timer : schedule_.timerList())
        rows.push_back(*timer);

    const RowChange change = rowChange(rows_, rows);
    const int afterReplaced = change.first + change.replaced;
    if (change.inserted > 0) {
        beginInsertRows({}, afterReplaced, afterReplaced + change.inserted - 1);
        rows_ = std::move(rows);
        endInsertRows();
    } else if (change.removed > 0) {
        beginRemoveRows({}, afterReplaced, afterReplaced + change.removed - 1);
        rows_ = std::move(rows);
        endRemoveRows();
    } else {
        rows_ = std::move(rows);
    }
    if (change.replaced > 0)
        Q_EMIT dataChanged(index(change.first, 0),
                           index(afterReplaced - 1, columnCountOfTable - 1));
}

} // namespace qovelmor
