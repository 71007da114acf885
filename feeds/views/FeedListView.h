// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedListActions.h"
#include "feeds/FeedTableModel.h"
#include "feeds/needs/FeedWindow.h"
#include "feeds/views/AddressFilePanel.h"

#include <QList>
#include <QWidget>

class QAction;
class QPushButton;

namespace qovelmor {

class AddressPanel;
class ImportPanel;
class ListTable;

/// The tab "list": the table of feeds, the buttons below it, and the dialogs that they open.
class FeedListView final : public QWidget, public FeedWindow
{
    Q_OBJECT

public:
    explicit FeedListView(RSSList &list);
    ~FeedListView() override;

    ListTable *listView() const { return table_; }
    FeedListActions &actions() { return actions_; }
    /// Import and export, for the file menu.
    QList<QAction *> fileActions() const { return fileActions_; }
    /// Takes over row height and font size from the store.
    void applyViewSettings();
    /// What the user had better put right, as a sentence: feeds offered nothing at the last read,
    /// or there is none to read. Empty when all is well.
    QString problem() const;

    int selectedRow() const override;
    void renewControls(bool hasSelection) override;
    void showAddressBeingFetched(const QString &address) override;
    void showFetchProgress(int number, int total) override;
    void importStarts(int total) override;
    void importEnds() override;
    void showStatus(const QString &text) override;
    void openAddressDialog(const QString &title, const QString &address) override;
    void closeAddressDialog() override;
    void openDeleteAlert(const FeedAlert &alert) override;
    void openLoadPanel(const FeedFilePanel &panel) override;
    void openSavePanel(const FeedFilePanel &panel) override;
    void copyToPasteboard(const QString &text) override;

Q_SIGNALS:
    /// A sentence for the status line of the main window; empty takes the last one away.
    void statusChanged(const QString &text);
    /// What problem() says may be different now.
    void feedsChanged();
    /// A feed's name is being fetched; the sentence says so. Both are empty when that is over.
    void addressBeingFetched(const QString &address, const QString &sentence);

private:
    using Command = void (FeedListActions::*)();

    QPushButton *createButton(const QString &name, const QString &textKey, Command command);
    QAction *createAction(const QString &name, const QString &textKey, Command command);
    QWidget *createButtonRow();
    void createRowMenu();
    void connectTable();
    void selectedRowChanged(int row);
    void moveSelectedRow(int target);
    void renew();
    void sayCause();

    RSSList &list_;
    FeedListActions actions_;
    FeedTableModel model_;
    ListTable *table_;
    AddressPanel *addressPanel_ = nullptr;
    ImportPanel *importPanel_; ///< opens by itself when an import takes long
    AddressFilePanel filePanel_;
    QPushButton *createButton_ = nullptr;
    QPushButton *editButton_ = nullptr;
    QPushButton *deleteButton_ = nullptr;
    QPushButton *accessButton_ = nullptr;
    QList<QAction *> rowActions_; ///< they need a selected row
    QList<QAction *> fileActions_;
    std::weak_ptr<RSSReader> selected_; ///< the selection stays with its feed when rows move
    QString saidCause_;
    bool isFetching_ = false;
    bool isImporting_ = false;
    int fetchNumber_ = 0;
    QString fetchProgress_; ///< "(3/12)" while several addresses are fetched
};

} // namespace qovelmor
