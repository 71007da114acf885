// SPDX-License-Identifier: MIT
#include "feeds/views/FeedListView.h"

#include "feeds/RSSList.h"
#include "platform/Localization.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QStackedLayout>
#include <QTableView>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::array defaultColumnWidths = {44, 90, 100, 230, 340};

QLabel *emptyState()
{
    auto *label = new QLabel(localized(u"NoFeedsYet"_s));
    label->setObjectName(u"noFeedsText"_s);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

} // namespace

FeedListView::FeedListView(RSSList &list)
    : list_(list)
    , actions_(list)
    , model_(list, actions_)
    , table_(new QTableView)
    , pages_(new QStackedLayout(this))
{
    table_->setObjectName(u"rssListView"_s);
    table_->setAccessibleName(localized(u"TabList"_s));
    table_->setModel(&model_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setShowGrid(false);
    table_->setAlternatingRowColors(true);
    table_->setWordWrap(false);
    table_->setTabKeyNavigation(false);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->verticalHeader()->setMinimumSectionSize(1);
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->horizontalHeader()->setSectionsClickable(true);
    table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pages_->addWidget(emptyState());
    pages_->addWidget(table_);

    applyViewSettings();
    connect(table_->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this] { storeColumnWidths(); });
    connect(table_->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int section) { model_.handleHeaderClick(section); });
    connect(table_, &QTableView::doubleClicked, this,
            [this] { actions_.actDoubleClickListView(); });
    list_.changes().listen([this] { renew(); });
    list_.setWindow(*this);
    renew();
}

int FeedListView::selectedRow() const
{
    const auto rows = table_->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void FeedListView::showAddressBeingFetched(const QString &address)
{
    Q_EMIT addressBeingFetched(address);
}

void FeedListView::showStatus(const QString &text)
{
    Q_EMIT statusChanged(text);
}

void FeedListView::copyToPasteboard(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

void FeedListView::renew()
{
    model_.refresh();
    pages_->setCurrentIndex(model_.rowCount() == 0 ? 0 : 1);
}

void FeedListView::applyViewSettings()
{
    const auto stored = list_.view().columnWidths();
    for (int column = 0; column < FeedTableModel::columnCountOfTable; ++column) {
        const auto place = static_cast<std::size_t>(column);
        const double width = place < stored.size() ? stored[place] : defaultColumnWidths[place];
        table_->setColumnWidth(column, std::max(1, static_cast<int>(width)));
    }
    QFont font = table_->font();
    font.setPixelSize(std::max(1, static_cast<int>(list_.view().fontSize())));
    table_->setFont(font);
    const int rowHeight = static_cast<int>(list_.view().rowHeight());
    table_->verticalHeader()->setDefaultSectionSize(std::max(1, rowHeight));
}

void FeedListView::storeColumnWidths()
{
    if (!isVisible())
        return; // the layout's own resizing is nobody's wish
    std::vector<double> widths;
    widths.reserve(FeedTableModel::columnCountOfTable);
    for (int column = 0; column < FeedTableModel::columnCountOfTable; ++column)
        widths.push_back(table_->columnWidth(column));
    list_.view().setColumnWidths(widths);
}

} // namespace qovelmor
