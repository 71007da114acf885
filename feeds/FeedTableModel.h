// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CheckedRowsModel.h"

namespace qovelmor {

class FeedListActions;
class RSSList;
class RSSReader;

/// The feed table's rows: a copy of what the list and its readers hold, taken on the main thread
/// after each change. Cells are plain text; the view's font gives their size. The tooltip of a row
/// says why its feed could not be read. Addresses and link files can be dropped from elsewhere.
class FeedTableModel final : public CheckedRowsModel
{
    Q_OBJECT

public:
    enum Column { Validate, Status, Date, Name, Address };
    static constexpr int columnCountOfTable = 5;

    /// The list and its actions outlive the model.
    FeedTableModel(RSSList &list, FeedListActions &actions, QObject *parent = nullptr);

    /// A click in the header of the check boxes inverts every feed for itself.
    void handleHeaderClick(int section);

    Qt::DropActions supportedDropActions() const override;
    QStringList mimeTypes() const override;

    /// The feed that a row shows; null outside the rows.
    std::shared_ptr<RSSReader> readerAt(int row) const;
    /// -1 when no row shows it.
    int rowOf(const std::shared_ptr<RSSReader> &reader) const;
    void refresh() override;

protected:
    int rowTotal() const override { return static_cast<int>(rows_.size()); }
    bool isChecked(int row) const override { return rowAt(row).validate; }
    QString cellText(int row, int column) const override;
    QString tooltip(int row) const override;
    bool turnCheck(int row) override;
    bool acceptRowDrop(int from, int target) override;
    bool canDropFromElsewhere(const QMimeData &data) const override;
    bool acceptDropFromElsewhere(const QMimeData &data, int target) override;

private:
    struct Row
    {
        std::shared_ptr<RSSReader> reader;
        bool validate = false;
        QString status;
        QString date;
        QString name;
        QString address;
        QString errorCause;
        friend bool operator==(const Row &, const Row &) = default;
    };

    const Row &rowAt(int row) const { return rows_[static_cast<std::size_t>(row)]; }
    std::vector<Row> presentRows() const;

    RSSList &list_;
    FeedListActions &actions_;
    std::vector<Row> rows_;
};

} // namespace qovelmor
