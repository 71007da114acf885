// SPDX-License-Identifier: MIT
#include "messages/MessageTableModel.h"

#include "platform/Localization.h"
#include "platform/PlainText.h"

#include <QFont>

#include <array>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

// Identifier and title key of each column, in the order of MessageTableModel::Column.
struct ColumnNames
{
    QStringView identifier;
    QStringView titleKey;
};
constexpr std::array<ColumnNames, MessageTableModel::columnTotal> columnNames{{
    {u"MSGPresent", u"MessageColumnPresent"},
    {u"MSGDate", u"MessageColumnDate"},
    {u"MSGTitle", u"MessageColumnTitle"},
    {u"MSGString", u"MessageColumnString"},
}};

bool isFilled(const std::optional<QString> &text)
{
    return text && !text->isEmpty();
}

} // namespace

MessageTableModel::MessageTableModel(FirstSeen firstSeen, QObject *parent)
    : QAbstractTableModel(parent), firstSeen_(std::move(firstSeen))
{}

void MessageTableModel::show(const PresentationSnapshot &presentation, bool isMarked)
{
    const bool isOtherList = messages_ != presentation->messages;
    const int marked = isMarked ? presentation->messageIndex : noRow;
    if (isOtherList) {
        beginResetModel();
        messages_ = presentation->messages;
        markedRow_ = marked;
        endResetModel();
    } else if (marked != markedRow_) {
        const int unmarked = std::exchange(markedRow_, marked);
        markChanged(unmarked);
        markChanged(marked);
    }
}

void MessageTableModel::markChanged(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    const QModelIndex cell = index(row, MSGPresent);
    Q_EMIT dataChanged(cell, cell, {Qt::DisplayRole});
}

int MessageTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(messages_->size());
}

int MessageTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columnTotal;
}

QVariant MessageTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    if (role == Qt::DisplayRole)
        return cellText(index.row(), index.column());
    if (role == Qt::FontRole && (*messages_)[static_cast<std::size_t>(index.row())].isNew) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    return {};
}

QString MessageTableModel::cellText(int row, int column) const
{
    const Message &message = (*messages_)[static_cast<std::size_t>(row)];
    switch (column) {
    case MSGPresent:
        return row == markedRow_ ? u"▶"_s : QString::number(row + 1);
    case MSGDate: // the asterisk says that this is a first-seen time
        return isFilled(message.date) ? lineForWindow(*message.date)
                                      : u'*' + firstSeen_(message.headline);
    case MSGTitle:
        return lineForWindow(message.siteName.value_or(QString()));
    default: // the asterisk says that there is a description
        return (isFilled(message.description) ? u'*' : u' ') + lineForWindow(message.headline);
    }
}

QVariant MessageTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnTotal)
        return {};
    if (role == Qt::DisplayRole)
        return localized(columnNames[static_cast<std::size_t>(section)].titleKey.toString());
    if (role == Qt::UserRole)
        return identifier(section);
    return {};
}

QString MessageTableModel::identifier(int column)
{
    return columnNames[static_cast<std::size_t>(column)].identifier.toString();
}

} // namespace qovelmor
