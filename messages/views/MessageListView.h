// SPDX-License-Identifier: MIT
#pragma once

#include "messages/MessageTableModel.h"

#include <QWidget>

class QLabel;
class QStackedLayout;
class QTableView;

namespace qovelmor {

class MessageList;

/// The tab "message": the table of headlines, or a sentence that says what to do while there are
/// none.
class MessageListView final : public QWidget
{
    Q_OBJECT

public:
    explicit MessageListView(MessageList &msgList);

    QTableView *listView() const { return table_; }
    void clearSelection();
    void scrollToRow(int row);
    /// Takes over what the list presents now.
    void renew();

private:
    void restoreColumnWidths();
    void storeColumnWidths();

    MessageList &msgList_;
    MessageTableModel model_;
    QTableView *table_;
    QStackedLayout *pages_;
    unsigned scrollRequestsSeen_ = 0;
};

} // namespace qovelmor
