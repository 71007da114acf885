// SPDX-License-Identifier: MIT
#include "TimerParts.h"
#include "tests/support/DraggingHand.h"

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// Rows of the timer table dragged from press to release, through the window system.
class TimerDragTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void rowIsDragged_data();
    void rowIsDragged();
};

void TimerDragTest::initTestCase()
{
    if (QGuiApplication::platformName() == u"offscreen")
        QFAIL("nothing can be dragged without a window system");
}

void TimerDragTest::rowIsDragged_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("target"); // the row above which it is dropped, 4: below the last
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("selected");
    QTest::newRow("down") << 0 << 3 << QStringList{u"b"_s, u"c"_s, u"a"_s, u"d"_s} << 2;
    QTest::newRow("up") << 3 << 1 << QStringList{u"a"_s, u"d"_s, u"b"_s, u"c"_s} << 1;
    QTest::newRow("to the end") << 1 << 4 << QStringList{u"a"_s, u"c"_s, u"d"_s, u"b"_s} << 3;
    QTest::newRow("just below itself")
        << 1 << 2 << QStringList{u"a"_s, u"b"_s, u"c"_s, u"d"_s} << 1;
}

void TimerDragTest::rowIsDragged()
{
    QFETCH(int, from);
    QFETCH(int, target);
    TimerParts parts(namedTimers({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    QVERIFY(QTest::qWaitForWindowExposed(parts.view.get()));
    ListTable &table = parts.table();
    const QRect row = table.visualRect(table.model()->index(std::min(target, 3), 2));
    const QPoint place =
        target < 4 ? row.topLeft() + QPoint(20, 1) : row.bottomLeft() + QPoint(20, 30);

    DraggingHand().drag(*table.viewport(), parts.cell(from, 2), *table.viewport(), place);
    QFETCH(QStringList, names);
    const auto settledNames = [&parts] {
        parts.mainThread.drain();
        return parts.storedNames();
    };
    QTRY_COMPARE(settledNames(), names);
    QCOMPARE(parts.shownNames(), names); // no row is taken away by the view
    QTEST(parts.view->selectedRow(), "selected");
}

QTEST_MAIN(TimerDragTest)
#include "timerdrag_test.moc"
