// SPDX-License-Identifier: MIT
#include "FeedListDesk.h"

#include <QHeaderView>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The widths of the columns, the height of the rows and the size of the letters.
class FeedTableSizesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnWidths_areStoredOnce();
    void columnWidths_ofTheLayoutAreNotStored();
    void sizes_areTakenFromTheStore_data();
    void sizes_areTakenFromTheStore();
};

void FeedTableSizesTest::columnWidths_areStoredOnce()
{
    FeedListDesk desk(u"a"_s);
    QHeaderView *header = desk.table().horizontalHeader();
    const auto widthsInStore = [&] { return desk.list.view().columnWidths(); };
    QVERIFY(widthsInStore().empty());
    const int edge = header->sectionViewportPosition(2) - 1;
    const int before = header->sectionSize(1);
    QTest::mousePress(header->viewport(), Qt::LeftButton, {}, {edge, 5});
    for (int step = 5; step <= 40; step += 5)
        QTest::mouseMove(header->viewport(), {edge + step, 5});
    QCOMPARE(header->sectionSize(1), before + 40);
    QVERIFY(widthsInStore().empty()); // not at each step: storing touches the disk
    QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, {edge + 40, 5});
    desk.settle();
    QCOMPARE(widthsInStore(), desk.table().columnWidths());
    QCOMPARE(widthsInStore()[1], double(before + 40));
    QCOMPARE(widthsInStore().size(), std::size_t(5));
}

void FeedTableSizesTest::columnWidths_ofTheLayoutAreNotStored()
{
    FeedListDesk desk(u"a"_s);
    desk.view->resize(600, 300);
    desk.settle();
    desk.click(0);
    QHeaderView *header = desk.table().horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(3) + 30, 5});
    desk.settle();
    QVERIFY(desk.list.view().columnWidths().empty());
}

void FeedTableSizesTest::sizes_areTakenFromTheStore_data()
{
    QTest::addColumn<std::vector<double>>("widths");
    QTest::addColumn<double>("rowHeight");
    QTest::addColumn<double>("fontSize");
    QTest::addColumn<QList<int>>("shown"); // first three widths, row height, font
    QTest::newRow("nothing stored")
        << std::vector<double>{} << 17.0 << 12.0 << QList<int>{44, 90, 100, 17, 12};
    QTest::newRow("all columns") << std::vector<double>{60, 70, 80, 90, 100} << 21.0 << 14.0
                                 << QList<int>{60, 70, 80, 21, 14};
    QTest::newRow("columns beyond keep theirs")
        << std::vector<double>{60} << 17.0 << 12.0 << QList<int>{60, 90, 100, 17, 12};
    QTest::newRow("too many") << std::vector<double>{60, 70, 80, 90, 100, 110} << 17.0 << 12.0
                              << QList<int>{60, 70, 80, 17, 12};
    QTest::newRow("at least one pixel")
        << std::vector<double>{0, -5, 2.9} << -4.0 << 0.0 << QList<int>{1, 1, 2, 1, 1};
    QTest::newRow("out of all bounds")
        << std::vector<double>{60, 70, 80} << 1e300 << -1e300 << QList<int>{60, 70, 80, 10000, 1};
}

void FeedTableSizesTest::sizes_areTakenFromTheStore()
{
    QFETCH(std::vector<double>, widths);
    QFETCH(double, rowHeight);
    QFETCH(double, fontSize);
    FeedListParts parts;
    if (!widths.empty())
        parts.list.view().setColumnWidths(widths);
    parts.list._setRowHeight(rowHeight);
    parts.list.setFont(fontSize);
    const FeedListView view(parts.list);
    const ListTable &table = *view.listView();
    const QList<int> shown{table.columnWidth(0), table.columnWidth(1), table.columnWidth(2),
                           table.verticalHeader()->defaultSectionSize(), table.font().pixelSize()};
    QTEST(shown, "shown");
    QCOMPARE(parts.list.view().rowHeight(), rowHeight); // stored as given
}

QTEST_MAIN(FeedTableSizesTest)
#include "feedtablesizes_test.moc"
