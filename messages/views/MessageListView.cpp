// SPDX-License-Identifier: MIT
#include "messages/views/MessageListView.h"

#include "messages/MessageList.h"
#include "messages/views/IconedCell.h"
#include "platform/Localization.h"
#include "platform/views/ListTable.h"

#include <QVBoxLayout>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const std::vector<double> factoryColumnWidths = {48, 110, 170, 460};
constexpr auto firstSeenDelay = 500ms; // a page is drawn cell by cell and saved once

} // namespace

MessageListView::MessageListView(MessageList &msgList)
    : msgList_(msgList)
    , model_([this](const QString &headline) { return firstSeenTime(headline); })
    , table_(new ListTable(model_, {u"msgListView"_s, localized(u"TabMessage"_s),
                                    u"noMessagesText"_s, localized(u"NoMessagesYet"_s)}))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(table_);
    setFocusProxy(table_);

    table_->setItemDelegateForColumn(MessageTableModel::MSGPresent, new IconedCell(table_));
    firstSeenSave_.setSingleShot(true);
    firstSeenSave_.setInterval(firstSeenDelay);
    connect(&firstSeenSave_, &QTimer::timeout, this, [this] { msgList_.saveFirstSeenTimes(); });

    table_->setLook({factoryColumnWidths});
    applyViewSettings();
    connect(table_, &ListTable::columnsResized, this,
            [this] { msgList_.viewSettings().setColumnWidths(table_->columnWidths()); });
    connect(table_, &ListTable::openRequested, this,
            [this](int row, Qt::KeyboardModifiers modifiers) {
                msgList_.actDoubleClickListView(row, modifiers.testFlag(Qt::AltModifier));
            });
    renew();
}

// Drawing a cell asks for the time and may note a new one; the disk is left for later.
QString MessageListView::firstSeenTime(const QString &headline)
{
    if (!firstSeenSave_.isActive())
        firstSeenSave_.start();
    return msgList_.dateStringWithMessage(headline);
}

int MessageListView::selectedRow() const
{
    return table_->selectedRow();
}

void MessageListView::clearSelection()
{
    table_->clearRow();
}

void MessageListView::scrollToRow(int row)
{
    table_->scrollTo(model_.index(row, 0));
}

void MessageListView::renew()
{
    const auto shown = msgList_.presentation();
    model_.show(shown, msgList_.isPresentMarked());
    if (shown->scrollRequests != scrollRequestsSeen_) {
        scrollRequestsSeen_ = shown->scrollRequests;
        scrollToRow(shown->scrollToRow);
    }
}

void MessageListView::applyViewSettings()
{
    const MessageViewSettings &settings = msgList_.viewSettings();
    table_->setLook({settings.columnWidths(), settings.rowHeight(), settings.fontSize()});
}

} // namespace qovelmor
