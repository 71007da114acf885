// SPDX-License-Identifier: MIT
#include "platform/views/ListTable.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double largestSize = 10'000; // nothing drawn is larger, whatever the store holds

int pixels(double points)
{
    return std::isfinite(points) ? static_cast<int>(std::clamp(points, 1.0, largestSize)) : 1;
}

bool isCheckBox(const QModelIndex &index)
{
    return index.flags().testFlag(Qt::ItemIsUserCheckable);
}

/// Something that lies elsewhere stays there: a file manager must not delete what was dropped on
/// us.
void takeAsCopy(QDropEvent &event, const QWidget *self)
{
    if (!event.isAccepted() || event.source() == self || event.dropAction() != Qt::MoveAction)
        return;
    if (event.possibleActions().testFlag(Qt::CopyAction))
        event.setDropAction(Qt::CopyAction);
    else if (event.possibleActions().testFlag(Qt::LinkAction))
        event.setDropAction(Qt::LinkAction);
}

} // namespace

ListTable::ListTable(QAbstractItemModel &model, const Names &names)
    : emptyState_(new QLabel(names.emptyText, viewport()))
{
    setObjectName(names.object);
    setAccessibleName(names.accessible);
    setModel(&model);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setVerticalScrollMode(ScrollPerPixel);
    setUpHeaders();

    emptyState_->setObjectName(names.emptyObject);
    emptyState_->setTextFormat(Qt::PlainText);
    emptyState_->setAlignment(Qt::AlignCenter);
    emptyState_->setWordWrap(true);
    emptyState_->setAttribute(Qt::WA_TransparentForMouseEvents); // what is dropped, the table gets
    showEmptyState();

    connect(&model, &QAbstractItemModel::rowsInserted, this, &ListTable::showEmptyState);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &ListTable::showEmptyState);
    connect(&model, &QAbstractItemModel::modelReset, this, [this] {
        showEmptyState();
        Q_EMIT selectedRowChanged(selectedRow()); // the selection model says nothing about a reset
    });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { Q_EMIT selectedRowChanged(selectedRow()); });
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        if (isLeftClick_ && !isCheckBox(index)) // two quick clicks there turn it twice
            Q_EMIT openRequested(index.row(), QGuiApplication::keyboardModifiers());
    });
}

void ListTable::setUpHeaders()
{
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    QHeaderView *header = horizontalHeader();
    header->setMinimumSectionSize(1);
    header->setStretchLastSection(true);
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->viewport()->installEventFilter(this);
    connect(header, &QHeaderView::sectionResized, this, [this] { isColumnResized_ = true; });
}

void ListTable::enableRowDrag()
{
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setDragDropOverwriteMode(false); // rows go between rows, none is replaced
    setDropIndicatorShown(true);
}

// Sizes. --------------------------------------------------------------------------------------

void ListTable::setLook(const TableLook &look)
{
    const auto columns = std::min(look.columnWidths.size(),
                                  static_cast<std::size_t>(std::max(model()->columnCount(), 0)));
    for (std::size_t column = 0; column < columns; ++column)
        setColumnWidth(static_cast<int>(column), pixels(look.columnWidths[column]));
    QFont cellFont = font();
    cellFont.setPixelSize(pixels(look.fontSize));
    setFont(cellFont);
    verticalHeader()->setDefaultSectionSize(pixels(look.rowHeight));
}

std::vector<double> ListTable::columnWidths() const
{
    std::vector<double> widths;
    widths.reserve(static_cast<std::size_t>(model()->columnCount()));
    for (int column = 0; column < model()->columnCount(); ++column)
        widths.push_back(columnWidth(column));
    return widths;
}

// The layout's own resizing is nobody's wish: only what happens between press and release counts.
bool ListTable::eventFilter(QObject *watched, QEvent *event)
{
    const bool isHeader = watched == horizontalHeader()->viewport();
    if (isHeader && event->type() == QEvent::MouseButtonPress)
        isColumnResized_ = false;
    if (isHeader && event->type() == QEvent::MouseButtonRelease &&
        std::exchange(isColumnResized_, false)) {
        // Later: at the end of the drag the header fits its last column anew.
        QMetaObject::invokeMethod(this, &ListTable::columnsResized, Qt::QueuedConnection);
    }
    return QTableView::eventFilter(watched, event);
}

void ListTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    emptyState_->setGeometry(viewport()->rect().adjusted(12, 12, -12, -12));
}

void ListTable::showEmptyState()
{
    emptyState_->setVisible(model()->rowCount() == 0);
}

// Rows. ---------------------------------------------------------------------------------------

int ListTable::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void ListTable::clearRow()
{
    clearSelection();
    setCurrentIndex({});
}

void ListTable::turnCheckBox(int row)
{
    for (int column = 0; column < model()->columnCount(); ++column) {
        const QModelIndex cell = model()->index(row, column);
        if (!isCheckBox(cell))
            continue;
        const bool isChecked = cell.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        model()->setData(cell, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
}

bool ListTable::isRowCommand(const QKeyEvent &event)
{
    const int row = selectedRow();
    if (row < 0)
        return false;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT openRequested(row, event.modifiers());
        return true;
    case Qt::Key_Space:
        turnCheckBox(row);
        return true;
    case Qt::Key_Delete:
        Q_EMIT deleteRequested();
        return true;
    case Qt::Key_Escape:
        clearRow();
        return true;
    default:
        break;
    }
    if (!event.matches(QKeySequence::Copy))
        return false;
    Q_EMIT copyRequested();
    return true;
}

void ListTable::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier)
        openRowMenu(); // the toolkit itself knows only the menu key
    else if (isRowCommand(*event))
        event->accept();
    else
        QTableView::keyPressEvent(event);
}

// A menu that a key asks for opens below the row it is for.
void ListTable::openRowMenu()
{
    scrollTo(currentIndex());
    const QRect row = visualRect(currentIndex());
    const QPoint place = viewport()->mapToGlobal(row.isValid() ? row.bottomLeft() : QPoint());
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, mapFromGlobal(place), place);
    QTableView::event(&asked);
}

bool ListTable::event(QEvent *event)
{
    if (event->type() != QEvent::ContextMenu ||
        static_cast<QContextMenuEvent *>(event)->reason() != QContextMenuEvent::Keyboard)
        return QTableView::event(event);
    openRowMenu();
    return true;
}

void ListTable::mousePressEvent(QMouseEvent *event)
{
    if (!indexAt(event->position().toPoint()).isValid())
        clearRow();
    QTableView::mousePressEvent(event);
}

void ListTable::mouseDoubleClickEvent(QMouseEvent *event)
{
    isLeftClick_ = event->button() == Qt::LeftButton; // its signal is the same for all buttons
    QTableView::mouseDoubleClickEvent(event);
}

void ListTable::dragEnterEvent(QDragEnterEvent *event)
{
    QTableView::dragEnterEvent(event);
    takeAsCopy(*event, this);
}

void ListTable::dragMoveEvent(QDragMoveEvent *event)
{
    QTableView::dragMoveEvent(event);
    takeAsCopy(*event, this);
}

void ListTable::dropEvent(QDropEvent *event)
{
    QTableView::dropEvent(event);
    takeAsCopy(*event, this);
}

} // namespace qovelmor
