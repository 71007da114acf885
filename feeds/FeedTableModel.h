// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QString>

#include <memory>
#include <vector>

namespace qovelmor {

class FeedListActions;
class RSSList;
class RSSReader;

/// The feed table's rows: a copy of what the list and its readers hold, taken on the main thread
/// after each change. Cells are plain text; the view's font gives their size.
class FeedTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Validate, Status, Date, Name, Address };
    static constexpr int columnCountOfTable = 5;

    /// The list and its actions outlive the model.
    FeedTableModel(RSSList &list, FeedListActions &actions, QObject *parent = nullptr);

    /// The column's name in the program: "RSSValidate", "RSSStatus", …
    static QString columnIdentifier(int column);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    /// The tooltip of a row says why its feed could not be read.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Only the check box can be set: a click on it inverts whether the feed is read.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// The identifier under Qt::UserRole, its localized text for display.
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    /// A click in the header of the check boxes inverts every feed for itself.
    void handleHeaderClick(int section);

    // Rows are dragged within the table (what travels is the row's number as text); addresses and
    // link files are dropped from elsewhere.
    Qt::DropActions supportedDropActions() const override;
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    /// The feed that a row shows; null outside the rows.
    std::shared_ptr<RSSReader> readerAt(int row) const;
    /// -1 when no row shows it.
    int rowOf(const std::shared_ptr<RSSReader> &reader) const;
    /// Takes over the list as it is now.
    void refresh();

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

    static QString text(const Row &row, int column);
    std::vector<Row> presentRows() const;

    RSSList &list_;
    FeedListActions &actions_;
    std::vector<Row> rows_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace qovelmor
