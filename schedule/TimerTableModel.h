// SPDX-License-Identifier: MIT
#pragma once

#include "schedule/TMRData.h"

#include <QAbstractTableModel>

#include <memory>
#include <vector>

namespace qovelmor {

class RSSTimer;

/// The timer table's rows: a copy of the schedule's list that follows its changes. Main thread
/// only.
class TimerTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Validate, FireDay, FireTime, Operation, Address };
    static constexpr int columnCountOfTable = 5;

    /// The schedule outlives the model.
    explicit TimerTableModel(RSSTimer &schedule, QObject *parent = nullptr);

    /// The column's name in the program: "TMRValidate", "TMRFireDay", …
    static QString columnIdentifier(int column);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Only the check box can be set: a click on it inverts the timer's `validate`.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// The identifier under Qt::UserRole, its localized text for display.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // Rows are dragged within the table only; what travels is the row's number as text.
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    /// Takes over the schedule's list as it is now.
    void refresh();

private:
    QString text(const TMRData &timer, int column) const;

    RSSTimer &schedule_;
    std::vector<TMRData> rows_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace qovelmor
