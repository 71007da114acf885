// SPDX-License-Identifier: MIT
#pragma once

#include "platform/RowChange.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <memory>
#include <vector>

namespace qovelmor {

class ChangeNotice;

/// The common ground of the tables of feeds and of timers: a check box in the first column, plain
/// text in the others, rows that are dragged to another place within the table. Main thread only.
///
/// A derived model holds its rows, takes them over in refresh() and says what is in them.
class CheckedRowsModel : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    /// Check state of the first column, text of the others, a tooltip for the whole row.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Only the check box can be set: whatever the value, it is turned.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// The column's identifier under Qt::UserRole, its localized text for display.
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override { return {rowType_}; }
    /// What travels is the first row's number as text.
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    /// Takes over the list as it is now.
    virtual void refresh() = 0;

protected:
    /// `rowName` tells the rows of one table from those of another while they are dragged.
    CheckedRowsModel(const QStringList &identifiers, const QString &rowName, QObject *parent);

    /// refresh() after each such change, while the model lives.
    void follow(ChangeNotice &changes);

    virtual int rowTotal() const = 0;
    virtual bool isChecked(int row) const = 0;
    virtual QString cellText(int row, int column) const = 0;
    /// Rich text; empty for none.
    virtual QString tooltip(int /*row*/) const { return {}; }
    virtual bool turnCheck(int row) = 0;

    // `target` is the row above which something is dropped.
    virtual bool acceptRowDrop(int from, int target) = 0;
    virtual bool canDropFromElsewhere(const QMimeData & /*data*/) const { return false; }
    virtual bool acceptDropFromElsewhere(const QMimeData & /*data*/, int /*target*/)
    {
        return false;
    }

    /// `held` becomes `now` in the smallest steps, so that selection and scroll position survive.
    template <typename Row>
    void takeRows(std::vector<Row> &held, std::vector<Row> now);

private:
    const QStringList identifiers_;
    const QString rowType_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

template <typename Row>
void CheckedRowsModel::takeRows(std::vector<Row> &held, std::vector<Row> now)
{
    const RowChange change = rowChange(held, now);
    const int afterReplaced = change.first + change.replaced;
    if (change.inserted > 0) {
        beginInsertRows({}, afterReplaced, afterReplaced + change.inserted - 1);
        held = std::move(now);
        endInsertRows();
    } else if (change.removed > 0) {
        beginRemoveRows({}, afterReplaced, afterReplaced + change.removed - 1);
        held = std::move(now);
        endRemoveRows();
    } else {
        held = std::move(now);
    }
    if (change.replaced > 0)
        Q_EMIT dataChanged(index(change.first, 0), index(afterReplaced - 1, columnCount() - 1));
}

} // namespace qovelmor
