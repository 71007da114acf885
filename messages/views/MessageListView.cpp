// SPDX-License-Identifier: MIT
#include "messages/views/MessageListView.h"

#include "messages/MessageList.h"
#include "platform/Localization.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QStackedLayout>
#include <QTableView>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::array defaultColumnWidths = {48, 110, 170, 460};

QLabel *emptyState()
{
    auto *label = new QLabel(localized(u"NoMessagesYet"_s));
    label->setObjectName(u"noMessagesText"_s);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

} // namespace

MessageListView::MessageListView(MessageList &msgList)
    : msgList_(msgList)
    , model_(
          [&msgList](const QString &headline) { return msgList.dateStringWithMessage(headline); })
    , table_(new QTableView)
    , pages_(new QStackedLayout(this))
{
    table_->setObjectName(u"msgListView"_s);
    table_->setAccessibleName(localized(u"TabMessage"_s));
    table_->setModel(&model_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setShowGrid(false);
    table_->setAlternatingRowColors(true);
    table_->setWordWrap(false);
    table_->setTabKeyNavigation(false);
    table_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->verticalHeader()->setMinimumSectionSize(1);
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pages_->addWidget(emptyState());
    pages_->addWidget(table_);

    restoreColumnWidths();
    connect(table_->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this] { storeColumnWidths(); });
    connect(table_, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        const bool option = QApplication::keyboardModifiers().testFlag(Qt::AltModifier);
        msgList_.actDoubleClickListView(index.row(), option);
    });
    renew();
}

void MessageListView::clearSelection()
{
    table_->clearSelection();
    table_->setCurrentIndex({});
}

void MessageListView::scrollToRow(int row)
{
    table_->scrollTo(model_.index(row, 0));
}

void MessageListView::renew()
{
    const auto shown = msgList_.presentation();
    model_.show(shown, msgList_.isPresentMarked());
    pages_->setCurrentIndex(shown->messages->empty() ? 0 : 1);
    if (shown->scrollRequests != scrollRequestsSeen_) {
        scrollRequestsSeen_ = shown->scrollRequests;
        scrollToRow(shown->scrollToRow);
    }
}

void MessageListView::restoreColumnWidths()
{
    const auto stored = msgList_.viewSettings().columnWidths();
    for (int column = 0; column < MessageTableModel::columnTotal; ++column) {
        const auto place = static_cast<std::size_t>(column);
        const double width = place < stored.size() ? stored[place] : defaultColumnWidths[place];
        table_->setColumnWidth(column, std::max(1, static_cast<int>(width)));
    }
    const auto size = std::max(1, static_cast<int>(msgList_.viewSettings().fontSize()));
    QFont font = table_->font();
    font.setPixelSize(size);
    table_->setFont(font);
    const int rowHeight = static_cast<int>(msgList_.viewSettings().rowHeight());
    table_->verticalHeader()->setDefaultSectionSize(std::max(1, rowHeight));
}

void MessageListView::storeColumnWidths()
{
    if (!isVisible())
        return; // the layout's own resizing is nobody's wish
    std::vector<double> widths;
    widths.reserve(MessageTableModel::columnTotal);
    for (int column = 0; column < MessageTableModel::columnTotal; ++column)
        widths.push_back(table_->columnWidth(column));
    msgList_.viewSettings().setColumnWidths(widths);
}

} // namespace qovelmor
