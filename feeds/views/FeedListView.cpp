// SPDX-License-Identifier: MIT
#include "feeds/views/FeedListView.h"

#include "feeds/FailureSentence.h"
#include "feeds/RSSList.h"
#include "feeds/views/AddressPanel.h"
#include "feeds/views/ImportPanel.h"
#include "platform/Localization.h"
#include "platform/PlainText.h"
#include "platform/views/Alert.h"
#include "platform/views/ListTable.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <functional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const std::vector<double> factoryColumnWidths = {44, 90, 100, 230, 340};

} // namespace

FeedListView::FeedListView(RSSList &list)
    : list_(list)
    , actions_(list)
    , model_(list, actions_)
    , table_(new ListTable(model_, {u"rssListView"_s, localized(u"TabList"_s), u"noFeedsText"_s,
                                    localized(u"NoFeedsYet"_s)}))
    , importPanel_(new ImportPanel(this))
    , filePanel_(*this)
{
    setFocusProxy(table_);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(table_, 1);
    layout->addWidget(createButtonRow());
    createRowMenu();
    fileActions_ = {createAction(u"actLoadURL"_s, u"MenuLoadURL"_s, &FeedListActions::actLoadURL),
                    createAction(u"actSaveURL"_s, u"MenuSaveURL"_s, &FeedListActions::actSaveURL)};

    table_->enableRowDrag();
    table_->setLook({factoryColumnWidths});
    applyViewSettings();
    connectTable();
    connect(importPanel_, &ImportPanel::cancelled, this, [this] { actions_.actImportCancel(); });
    list_.changes().listen([self = QPointer<FeedListView>(this)] {
        if (self)
            self->renew();
    });
    list_.setWindow(this);
    list_.renewControls();
}

FeedListView::~FeedListView()
{
    list_.setWindow(nullptr);
}

// Building. -----------------------------------------------------------------------------------

QPushButton *FeedListView::createButton(const QString &name, const QString &textKey,
                                        Command command)
{
    auto *button = new QPushButton(localized(textKey));
    button->setObjectName(name);
    button->setAccessibleName(spokenText(textKey));
    connect(button, &QPushButton::clicked, this,
            [this, command] { std::invoke(command, actions_); });
    return button;
}

QAction *FeedListView::createAction(const QString &name, const QString &textKey, Command command)
{
    auto *action = new QAction(localized(textKey), this);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, command] { std::invoke(command, actions_); });
    return action;
}

QWidget *FeedListView::createButtonRow()
{
    createButton_ =
        createButton(u"createButton"_s, u"FeedAddButton"_s, &FeedListActions::actCreateRSSURL);
    editButton_ =
        createButton(u"editButton"_s, u"FeedEditButton"_s, &FeedListActions::actEditRSSURL);
    deleteButton_ =
        createButton(u"deleteButton"_s, u"FeedDeleteButton"_s, &FeedListActions::actDeleteRSSURL);
    accessButton_ = createButton(u"accessButton"_s, u"FeedOpenButton"_s,
                                 &FeedListActions::actDoubleClickListView);
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(createButton_);
    layout->addWidget(editButton_);
    layout->addWidget(deleteButton_);
    layout->addStretch(1);
    layout->addWidget(accessButton_);
    return row;
}

// What the mouse does on a row, for the keyboard too (the menu key opens this menu).
void FeedListView::createRowMenu()
{
    rowActions_ = {
        createAction(u"rowOpen"_s, u"FeedOpenButton"_s, &FeedListActions::actDoubleClickListView),
        createAction(u"rowEdit"_s, u"FeedEditButton"_s, &FeedListActions::actEditRSSURL),
        createAction(u"rowDelete"_s, u"FeedDeleteButton"_s, &FeedListActions::actDeleteRSSURL),
        createAction(u"rowCopy"_s, u"FeedCopyItem"_s, &FeedListActions::actCopyRow)};
    const auto addMove = [this](const QString &name, const QString &textKey, int key, int step) {
        auto *action = new QAction(localized(textKey), this);
        action->setObjectName(name);
        action->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(key)));
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this,
                [this, step] { moveSelectedRow(selectedRow() + step); });
        rowActions_ << action;
    };
    addMove(u"rowMoveUp"_s, u"FeedMoveUpItem"_s, Qt::Key_Up, -1);
    addMove(u"rowMoveDown"_s, u"FeedMoveDownItem"_s, Qt::Key_Down, 2);
    auto *invertAll = new QAction(localized(u"FeedInvertAllItem"_s), this);
    invertAll->setObjectName(u"invertAll"_s);
    connect(invertAll, &QAction::triggered, this,
            [this] { model_.handleHeaderClick(FeedTableModel::Validate); });

    table_->setContextMenuPolicy(Qt::ActionsContextMenu);
    table_->addActions(rowActions_);
    table_->addAction(invertAll);
}

void FeedListView::connectTable()
{
    connect(table_, &ListTable::selectedRowChanged, this, &FeedListView::selectedRowChanged);
    connect(table_, &ListTable::openRequested, this, [this] { actions_.actDoubleClickListView(); });
    connect(table_, &ListTable::deleteRequested, this, [this] { actions_.actDeleteRSSURL(); });
    connect(table_, &ListTable::copyRequested, this, [this] { actions_.actCopyRow(); });
    connect(table_, &ListTable::columnsResized, this,
            [this] { list_.view().setColumnWidths(table_->columnWidths()); });
    connect(table_->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int section) { model_.handleHeaderClick(section); });
    // A feed that was added at the end of a long list is seen.
    connect(&model_, &QAbstractItemModel::rowsInserted, table_,
            [this](const QModelIndex &, int first) {
                table_->doItemsLayout(); // before it the scroll bar does not reach the new row
                table_->scrollTo(model_.index(first, 0));
            });
}

void FeedListView::applyViewSettings()
{
    table_->setLook(
        {list_.view().columnWidths(), list_.view().rowHeight(), list_.view().fontSize()});
}

// Following the list. -------------------------------------------------------------------------

int FeedListView::selectedRow() const
{
    return table_->selectedRow();
}

void FeedListView::selectedRowChanged(int row)
{
    selected_ = model_.readerAt(row);
    list_.renewControls();
    sayCause();
}

void FeedListView::renew()
{
    model_.refresh();
    const int row = model_.rowOf(selected_.lock());
    if (row >= 0 && row != selectedRow())
        table_->selectRow(row);
    else
        selected_ = model_.readerAt(selectedRow());
    list_.renewControls();
    sayCause();
    Q_EMIT feedsChanged();
}

void FeedListView::moveSelectedRow(int target)
{
    if (actions_.acceptRowDrop(selectedRow(), target))
        renew();
}

void FeedListView::sayCause()
{
    const std::shared_ptr<RSSReader> reader = selected_.lock();
    const QString cause = reader ? failureSentence(*reader) : QString();
    if (cause == saidCause_)
        return;
    saidCause_ = cause;
    Q_EMIT statusChanged(cause);
}

// What the list asks of its window. -----------------------------------------------------------

void FeedListView::renewControls(bool hasSelection)
{
    for (QPushButton *button : {editButton_, deleteButton_, accessButton_})
        button->setEnabled(hasSelection);
    for (QAction *action : rowActions_)
        action->setEnabled(hasSelection);
}

void FeedListView::showAddressBeingFetched(const QString &address)
{
    QString sentence;
    if (!address.isEmpty())
        sentence = localized(u"FetchingAddress"_s).arg(forWindow(address)) + fetchProgress_;
    fetchProgress_.clear();
    if (isFetching_ != !address.isEmpty()) {
        isFetching_ = !address.isEmpty();
        if (isFetching_)
            QGuiApplication::setOverrideCursor(Qt::BusyCursor);
        else
            QGuiApplication::restoreOverrideCursor();
    }
    if (addressPanel_ && addressPanel_->isVisible())
        addressPanel_->showFetching(sentence);
    if (isImporting_ && isFetching_)
        importPanel_->showProgress(fetchNumber_, sentence);
    Q_EMIT addressBeingFetched(forWindow(address), sentence);
}

void FeedListView::showFetchProgress(int number, int total)
{
    fetchNumber_ = number;
    if (total > 1)
        fetchProgress_ = u" (%1/%2)"_s.arg(number).arg(total);
}

void FeedListView::importStarts(int total)
{
    isImporting_ = true;
    importPanel_->begin(localized(u"TitleLoadURL"_s), total);
}

void FeedListView::importEnds()
{
    isImporting_ = false;
    importPanel_->end();
}

// Feeds that were deleted since, or switched off, are nobody's problem any more.
QString FeedListView::problem() const
{
    if (list_.validSiteCount() == 0)
        return localized(u"NoFeedsToRead"_s);
    const int failed = list_.failedSiteCount();
    return failed > 0 ? localized(u"FeedsFailed"_s).arg(failed) : QString();
}

void FeedListView::showStatus(const QString &text)
{
    Q_EMIT statusChanged(text);
}

void FeedListView::openAddressDialog(const QString &title, const QString &address)
{
    if (!addressPanel_) {
        addressPanel_ = new AddressPanel(this);
        connect(addressPanel_, &AddressPanel::addressEntered, this,
                [this](const QString &text) { actions_.actAddressExec(text); });
        connect(addressPanel_, &AddressPanel::cancelled, this,
                [this] { actions_.actAddressCancel(); });
    }
    addressPanel_->openWith(title, address);
}

void FeedListView::closeAddressDialog()
{
    if (addressPanel_)
        addressPanel_->closePanel();
}

void FeedListView::openDeleteAlert(const FeedAlert &alert)
{
    openAlert(*this,
              {u"deleteRSSURLAlert"_s, alert.title, alert.informative, alert.deleteButton,
               alert.cancelButton},
              [this](bool isDeletion) { actions_.deleteRSSURLAnswered(isDeletion); });
}

void FeedListView::openLoadPanel(const FeedFilePanel &panel)
{
    filePanel_.openForLoad(panel, [this](const QString &path) { actions_.loadURLChosen(path); });
}

void FeedListView::openSavePanel(const FeedFilePanel &panel)
{
    filePanel_.openForSave(panel, [this](const QString &path) { actions_.saveURLChosen(path); });
}

void FeedListView::copyToPasteboard(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace qovelmor
