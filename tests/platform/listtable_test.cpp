// SPDX-License-Identifier: MIT
#include "platform/views/ListTable.h"

#include <QContextMenuEvent>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

#include <optional>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class ListTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doubleClick_opensWithTheLeftButton_data();
    void doubleClick_opensWithTheLeftButton();
    void menuOfARowOutOfSight_opensInTheTable_data();
    void menuOfARowOutOfSight_opensInTheTable();
};

namespace {

/// A table that shows some of its hundred rows; where it is asked for a menu.
class LongTable : private QStandardItemModel, public ListTable
{
public:
    LongTable()
        : QStandardItemModel(100, 2)
        , ListTable(static_cast<QStandardItemModel &>(*this),
                    {u"table"_s, u"table"_s, u"empty"_s, u"empty"_s})
    {
        resize(300, 200);
        show();
    }
    QModelIndex cell(int row) const { return ListTable::model()->index(row, 1); }

    std::optional<QPoint> menuPlace;

protected:
    void contextMenuEvent(QContextMenuEvent *event) override { menuPlace = event->globalPos(); }
};

} // namespace

void ListTableTest::doubleClick_opensWithTheLeftButton_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("opened");
    QTest::newRow("left") << Qt::LeftButton << 1;
    QTest::newRow("right") << Qt::RightButton << 0;
    QTest::newRow("middle") << Qt::MiddleButton << 0;
    QTest::newRow("back") << Qt::BackButton << 0;
}

void ListTableTest::doubleClick_opensWithTheLeftButton()
{
    QFETCH(Qt::MouseButton, button);
    LongTable table;
    QSignalSpy opened(&table, &ListTable::openRequested);
    const QPoint place = table.visualRect(table.cell(2)).center();
    QTest::mouseClick(table.viewport(), button, {}, place);
    QTest::mouseDClick(table.viewport(), button, {}, place);
    QTEST(int(opened.count()), "opened");
}

void ListTableTest::menuOfARowOutOfSight_opensInTheTable_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("below") << 99;
    QTest::newRow("above") << 0;
    QTest::newRow("in sight") << 51;
}

void ListTableTest::menuOfARowOutOfSight_opensInTheTable()
{
    QFETCH(int, row);
    LongTable table;
    table.selectRow(row);
    table.scrollTo(table.cell(50), QAbstractItemView::PositionAtTop);
    QTest::keyClick(&table, Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(table.menuPlace);
    const QPoint place = table.viewport()->mapFromGlobal(*table.menuPlace);
    QVERIFY(table.viewport()->rect().contains(place));
    QCOMPARE(table.indexAt(place).row(), row);
}

QTEST_MAIN(ListTableTest)
#include "listtable_test.moc"
