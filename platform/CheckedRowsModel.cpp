// SPDX-License-Identifier: MIT
#include "platform/CheckedRowsModel.h"

#include "platform/ChangeNotice.h"
#include "platform/Localization.h"
#include "platform/RowMove.h"

#include <QCoreApplication>
#include <QMimeData>

#include <optional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int checkColumn = 0;

/// The process is named: a row of another running program is no row of ours.
QString rowTypeNamed(const QString &rowName)
{
    return u"application/x-qovelmorrss-%1-row-%2"_s.arg(rowName).arg(
        QCoreApplication::applicationPid());
}

/// The row that is being dragged; nothing for a drag from elsewhere.
std::optional<int> draggedRow(const QMimeData &data, const QString &rowType)
{
    if (!data.hasFormat(rowType))
        return std::nullopt;
    bool isNumber = false;
    const int row = data.data(rowType).toInt(&isNumber);
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

CheckedRowsModel::CheckedRowsModel(const QStringList &identifiers, const QString &rowName,
                                   QObject *parent)
    : QAbstractTableModel(parent), identifiers_(identifiers), rowType_(rowTypeNamed(rowName))
{}

void CheckedRowsModel::follow(ChangeNotice &changes)
{
    changes.listen([this, alive = std::weak_ptr<bool>(alive_)] {
        if (alive.lock())
            refresh();
    });
}

// Cells. --------------------------------------------------------------------------------------

int CheckedRowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rowTotal();
}

int CheckedRowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(identifiers_.size());
}

QVariant CheckedRowsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const bool isCheckBox = index.column() == checkColumn;
    if (role == Qt::DisplayRole && !isCheckBox)
        return cellText(index.row(), index.column());
    if (role == Qt::CheckStateRole && isCheckBox)
        return isChecked(index.row()) ? Qt::Checked : Qt::Unchecked;
    return role == Qt::ToolTipRole ? tooltip(index.row()) : QVariant();
}

bool CheckedRowsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != checkColumn || !value.isValid())
        return false;
    const bool isDone = turnCheck(index.row());
    refresh();
    return isDone;
}

Qt::ItemFlags CheckedRowsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled; // between the rows and below them
    Qt::ItemFlags flags =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    if (index.column() == checkColumn)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant CheckedRowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    if (role == Qt::UserRole)
        return identifiers_[section];
    return role == Qt::DisplayRole ? localized(identifiers_[section]) : QVariant();
}

// Drag and drop. ------------------------------------------------------------------------------

QMimeData *CheckedRowsModel::mimeData(const QModelIndexList &indexes) const
{
    if (indexes.isEmpty())
        return nullptr;
    auto *data = new QMimeData; // the view takes it
    data->setData(rowType_, QByteArray::number(indexes.first().row()));
    return data;
}

bool CheckedRowsModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                       const QModelIndex &parent) const
{
    if (!data)
        return false;
    if (const std::optional<int> from = draggedRow(*data, rowType_))
        return isRowMove(*from, dropTarget(row, parent, rowCount()),
                         static_cast<std::size_t>(rowCount()));
    return canDropFromElsewhere(*data);
}

bool CheckedRowsModel::dropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                    const QModelIndex &parent)
{
    if (!data)
        return false;
    const int target = dropTarget(row, parent, rowCount());
    const std::optional<int> from = draggedRow(*data, rowType_);
    const bool isDone =
        from ? acceptRowDrop(*from, target) : acceptDropFromElsewhere(*data, target);
    refresh();
    return isDone;
}

} // namespace qovelmor
