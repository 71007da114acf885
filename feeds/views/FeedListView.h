// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedListActions.h"
#include "feeds/FeedTableModel.h"
#include "feeds/needs/FeedWindow.h"

#include <QWidget>

class QLabel;
class QStackedLayout;
class QTableView;

namespace qovelmor {

/// The tab "list": the table of feeds, or a sentence that says what to do while there are none.
class FeedListView final : public QWidget, public FeedWindow
{
    Q_OBJECT

public:
    explicit FeedListView(RSSList &list);

    QTableView *listView() const { return table_; }

    int selectedRow() const override;
    void showAddressBeingFetched(const QString &address) override;
    void showStatus(const QString &text) override;
    void copyToPasteboard(const QString &text) override;

Q_SIGNALS:
    /// A sentence for the status line of the main window.
    void statusChanged(const QString &text);
    /// A feed's address that is being fetched; empty when that is over.
    void addressBeingFetched(const QString &address);

private:
    void renew();
    void applyViewSettings();
    void storeColumnWidths();

    RSSList &list_;
    FeedListActions actions_;
    FeedTableModel model_;
    QTableView *table_;
    QStackedLayout *pages_;
};

} // namespace qovelmor
