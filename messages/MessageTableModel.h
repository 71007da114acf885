// SPDX-License-Identifier: MIT
#pragma once

#include "messages/MessagePresentation.h"

#include <QAbstractTableModel>

#include <functional>

namespace qovelmor {

/// The message list as a table. Cells are plain text on one line; new messages are bold.
///
/// show() takes what the list presents. While the list stays the same only the ▶ mark moves: two
/// cells change, the model is not reset.
class MessageTableModel final : public QAbstractTableModel
{
public:
    enum Column { MSGPresent, MSGDate, MSGTitle, MSGString };
    static constexpr int columnTotal = 4;

    /// Gives the first-seen time of a headline without a date; asked while a cell is drawn, so it
    /// must answer from memory.
    using FirstSeen = std::function<QString(const QString &headline)>;

    explicit MessageTableModel(FirstSeen firstSeen, QObject *parent = nullptr);

    /// `isMarked`: the message on display carries the ▶ mark.
    void show(const PresentationSnapshot &presentation, bool isMarked);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    /// DisplayRole and FontRole (only the weight is set, the view's font gives the rest).
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// DisplayRole: the column's title; UserRole: its identifier ("MSGDate").
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    /// The identifier of a column, under which views remember it.
    static QString identifier(int column);

private:
    QString cellText(int row, int column) const;
    void markChanged(int row);

    static constexpr int noRow = -1;

    FirstSeen firstSeen_;
    MessageSnapshot messages_ = std::make_shared<const MessageVector>();
    int markedRow_ = noRow;
};

} // namespace qovelmor
