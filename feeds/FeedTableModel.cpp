// SPDX-License-Identifier: MIT
#include "feeds/FeedTableModel.h"

#include "feeds/FeedListActions.h"
#include "feeds/RSSList.h"
#include "feeds/WebAddress.h"
#include "feeds/WebLocation.h"
#include "platform/Localization.h"
#include "platform/PlainText.h"
#include "platform/RowChange.h"
#include "platform/RowMove.h"

#include <QMimeData>

#include <array>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto rowMimeType = u"application/x-qovelmorrss-feed-row"_s;
const auto uriListMimeType = u"text/uri-list"_s;
const auto textMimeType = u"text/plain"_s;

/// The row that is being dragged; nothing for a drag from elsewhere.
std::optional<int> draggedRow(const QMimeData &data)
{
    if (!data.hasFormat(rowMimeType))
        return std::nullopt;
    bool isNumber = false;
    const int row = data.data(rowMimeType).toInt(&isNumber);
    return isNumber ? row : -1;
}

/// The row above which a drop lands; a view reports a drop on a row as that row's index.
int dropTarget(int row, const QModelIndex &parent, int rowCount)
{
    if (row >= 0)
        return row;
    return parent.isValid() ? parent.row() : rowCount;
}

/// Mark-up for a tooltip that shows the text as it is; a bare text that looks like mark-up would be
/// taken for it.
QString plainTooltip(const QString &text)
{
    return text.isEmpty() ? QString() : u"<p>"_s + forWindow(text).toHtmlEscaped() + u"</p>"_s;
}

} // namespace

FeedTableModel::FeedTableModel(RSSList &list, FeedListActions &actions, QObject *parent)
    : QAbstractTableModel(parent), list_(list), actions_(actions)
{
    refresh();
    list_.changes().listen([this, alive = std::weak_ptr<bool>(alive_)] {
        if (alive.lock())
            refresh();
    });
}

QString FeedTableModel::columnIdentifier(int column)
{
    static const std::array<QString, columnCountOfTable> identifiers{
        u"RSSValidate"_s, u"RSSStatus"_s, u"RSSDate"_s, u"RSSName"_s, u"RSSAddress"_s};
    return identifiers.at(static_cast<std::size_t>(column));
}

int FeedTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FeedTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columnCountOfTable;
}

QString FeedTableModel::text(const Row &row, int column)
{
    switch (column) {
    case Status:
        return row.status;
    case Date:
        return row.date;
    case Name:
        return row.name;
    case Address:
        return row.address;
    default:
        return {};
    }
}

QVariant FeedTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = rows_[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole && index.column() != Validate)
        return text(row, index.column());
    if (role == Qt::CheckStateRole && index.column() == Validate)
        return row.validate ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::ToolTipRole)
        return plainTooltip(row.errorCause);
    return {};
}

bool FeedTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != Validate || !value.isValid())
        return false;
    const bool isDone = list_.shouldEditTableColumn(index.row());
    refresh();
    return isDone;
}

Qt::ItemFlags FeedTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled; // between the rows and below them
    Qt::ItemFlags flags =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    if (index.column() == Validate)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant FeedTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCountOfTable)
        return {};
    if (role == Qt::UserRole)
        return columnIdentifier(section);
    return role == Qt::DisplayRole ? localized(columnIdentifier(section)) : QVariant();
}

void FeedTableModel::handleHeaderClick(int section)
{
    if (section != Validate)
        return;
    list_.invertValidates();
    refresh();
}

Qt::DropActions FeedTableModel::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction | Qt::LinkAction; // browsers offer links
}

QStringList FeedTableModel::mimeTypes() const
{
    return {rowMimeType, uriListMimeType, textMimeType};
}

QMimeData *FeedTableModel::mimeData(const QModelIndexList &indexes) const
{
    if (indexes.isEmpty())
        return nullptr;
    auto *data = new QMimeData; // the view takes it
    data->setData(rowMimeType, QByteArray::number(indexes.first().row()));
    return data;
}

bool FeedTableModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                     const QModelIndex &parent) const
{
    if (!data)
        return false;
    if (const std::optional<int> from = draggedRow(*data))
        return isRowMove(*from, dropTarget(row, parent, rowCount()), rows_.size());
    // An https address is refused when it is dropped: then the reason can be said.
    return dropVerdict(droppedAddress(*data)) != DropVerdict::Refused;
}

bool FeedTableModel::dropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                  const QModelIndex &parent)
{
    if (!data)
        return false;
    const int target = dropTarget(row, parent, rowCount());
    const std::optional<int> from = draggedRow(*data);
    const bool isDone = from ? actions_.acceptRowDrop(*from, target)
                             : actions_.acceptAddressDrop(droppedAddress(*data), target);
    refresh();
    return isDone;
}

std::vector<FeedTableModel::Row> FeedTableModel::presentRows() const
{
    std::vector<Row> rows;
    for (const RSSList::Reader &reader : list_.tableReaders()) {
        const auto orDash = [](const std::optional<QString> &text) {
            return text ? forWindow(*text) : u"-"_s;
        };
        rows.push_back({reader, reader->validate(), reader->statusString(), orDash(reader->date()),
                        orDash(reader->name()), forWindow(reader->address()),
                        reader->lastErrorCause()});
    }
    return rows;
}

std::shared_ptr<RSSReader> FeedTableModel::readerAt(int row) const
{
    return row >= 0 && row < rowCount() ? rows_[static_cast<std::size_t>(row)].reader : nullptr;
}

int FeedTableModel::rowOf(const std::shared_ptr<RSSReader> &reader) const
{
    const auto place = std::ranges::find(rows_, reader, &Row::reader);
    return reader && place != rows_.end() ? static_cast<int>(place - rows_.begin()) : -1;
}

void FeedTableModel::refresh()
{
    std::vector<Row> rows = presentRows();
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
