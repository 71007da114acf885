// SPDX-License-Identifier: MIT
#pragma once

#include <QTableView>

#include <vector>

class QLabel;

namespace qovelmor {

/// How a table looks, as the user left it. Numbers are kept as given; the table shows at least one
/// pixel of each.
struct TableLook
{
    std::vector<double> columnWidths; ///< in column order; columns beyond keep what they have
    double rowHeight = 17.0;
    double fontSize = 12.0;
};

/// A table that lists things, one row each: a row is selected as a whole, cells are lines of plain
/// text and are not edited. While it is empty it says what to do.
///
/// The keys of the table: Return opens the selected row, Space turns its check box, Delete asks for
/// its deletion, Escape takes the selection away, as does a click below the last row; the menu key
/// and Shift+F10 open the row's menu.
class ListTable : public QTableView
{
    Q_OBJECT

public:
    struct Names
    {
        QString object;
        QString accessible;
        QString emptyObject; ///< of the sentence that an empty table shows
        QString emptyText;
    };

    /// The model outlives the table.
    ListTable(QAbstractItemModel &model, const Names &names);

    /// -1 when no row is selected.
    int selectedRow() const;
    void clearRow();

    void setLook(const TableLook &look);
    std::vector<double> columnWidths() const;

    /// Rows can be dragged; they, and whatever else the model takes, can be dropped between rows.
    void enableRowDrag();

Q_SIGNALS:
    void selectedRowChanged(int row);
    /// A double click of the left button on a row (not in its check box), or Return.
    void openRequested(int row, Qt::KeyboardModifiers modifiers);
    void deleteRequested();
    void copyRequested();
    /// The user has resized columns: once, when the mouse button is let go.
    void columnsResized();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpHeaders();
    void showEmptyState();
    bool isRowCommand(const QKeyEvent &event);
    void turnCheckBox(int row);
    void openRowMenu();

    QLabel *emptyState_;
    bool isColumnResized_ = false;
    bool isLeftClick_ = false; ///< the double click that is being handled
};

} // namespace qovelmor
