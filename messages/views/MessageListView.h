// SPDX-License-Identifier: MIT
#pragma once

#include "messages/MessageTableModel.h"

#include <QTimer>
#include <QWidget>

namespace qovelmor {

class ListTable;
class MessageList;

/// The tab "message": the table of headlines, or a sentence that says what to do while there are
/// none.
class MessageListView final : public QWidget
{
    Q_OBJECT

public:
    explicit MessageListView(MessageList &msgList);

    ListTable *listView() const { return table_; }
    /// -1 when no row is selected.
    int selectedRow() const;
    void clearSelection();
    void scrollToRow(int row);
    /// Takes over what the list presents now.
    void renew();
    /// Takes over column widths, row height and font size from the store.
    void applyViewSettings();

private:
    QString firstSeenTime(const QString &headline);

    MessageList &msgList_;
    MessageTableModel model_;
    ListTable *table_;
    QTimer firstSeenSave_;
    unsigned scrollRequestsSeen_ = 0;
};

} // namespace qovelmor
