// SPDX-License-Identifier: MIT
#include "feeds/FeedTableModel.h"

#include "feeds/FeedListActions.h"
#include "feeds/RSSList.h"
#include "feeds/WebAddress.h"
#include "feeds/WebLocation.h"
#include "platform/PlainText.h"

#include <QMimeData>

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

FeedTableModel::FeedTableModel(RSSList &list, FeedListActions &actions, QObject *parent)
    : CheckedRowsModel(
          {u"RSSValidate"_s, u"RSSStatus"_s, u"RSSDate"_s, u"RSSName"_s, u"RSSAddress"_s},
          u"feed"_s, parent)
    , list_(list)
    , actions_(actions)
{
    refresh();
    follow(list_.changes());
}

// Rows. ---------------------------------------------------------------------------------------

std::vector<FeedTableModel::Row> FeedTableModel::presentRows() const
{
    const auto orDash = [](const std::optional<QString> &text) {
        return text ? lineForWindow(*text) : u"-"_s;
    };
    const RSSList::ReaderList readers = list_.tableReaders();
    std::vector<Row> rows;
    rows.reserve(readers.size());
    for (const RSSList::Reader &reader : readers) {
        rows.push_back({reader, reader->validate(), reader->statusString(), orDash(reader->date()),
                        orDash(reader->name()), lineForWindow(reader->address()),
                        reader->lastErrorCause()});
    }
    return rows;
}

void FeedTableModel::refresh()
{
    takeRows(rows_, presentRows());
}

std::shared_ptr<RSSReader> FeedTableModel::readerAt(int row) const
{
    return row >= 0 && row < rowCount() ? rowAt(row).reader : nullptr;
}

int FeedTableModel::rowOf(const std::shared_ptr<RSSReader> &reader) const
{
    const auto place = std::ranges::find(rows_, reader, &Row::reader);
    return reader && place != rows_.end() ? static_cast<int>(place - rows_.begin()) : -1;
}

QString FeedTableModel::cellText(int row, int column) const
{
    switch (column) {
    case Status:
        return rowAt(row).status;
    case Date:
        return rowAt(row).date;
    case Name:
        return rowAt(row).name;
    case Address:
        return rowAt(row).address;
    default:
        return {};
    }
}

QString FeedTableModel::tooltip(int row) const
{
    return plainTooltip(rowAt(row).errorCause);
}

// Check boxes. --------------------------------------------------------------------------------

bool FeedTableModel::turnCheck(int row)
{
    return list_.shouldEditTableColumn(row);
}

void FeedTableModel::handleHeaderClick(int section)
{
    if (section != Validate)
        return;
    list_.invertValidates();
    refresh();
}

// Drops. --------------------------------------------------------------------------------------

Qt::DropActions FeedTableModel::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction | Qt::LinkAction; // browsers offer links
}

QStringList FeedTableModel::mimeTypes() const
{
    return CheckedRowsModel::mimeTypes() << u"text/uri-list"_s << u"text/plain"_s;
}

bool FeedTableModel::acceptRowDrop(int from, int target)
{
    return actions_.acceptRowDrop(from, target);
}

bool FeedTableModel::canDropFromElsewhere(const QMimeData &data) const
{
    // An https address is refused when it is dropped: then the reason can be said.
    return dropVerdict(droppedAddress(data)) != DropVerdict::Refused;
}

bool FeedTableModel::acceptDropFromElsewhere(const QMimeData &data, int target)
{
    return actions_.acceptAddressDrop(droppedAddress(data), target);
}

} // namespace qovelmor
