// SPDX-License-Identifier: MIT
#include "FeedListDesk.h"
#include "tests/support/DraggingHand.h"

#include <QDrag>
#include <QMouseEvent>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// Drags from press to release, through the window system.
class FeedDragTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void rowIsDragged_data();
    void rowIsDragged();
    void textIsDraggedIn_data();
    void textIsDraggedIn();
};

namespace {

/// Something in another window that can be dragged away, as a link in a browser.
class LinkLabel final : public QLabel
{
public:
    explicit LinkLabel(const QString &link) : QLabel(link)
    {
        setMinimumSize(300, 40);
        setWindowTitle(u"browser"_s);
    }

protected:
    void mousePressEvent(QMouseEvent *) override {}
    void mouseMoveEvent(QMouseEvent *) override
    {
        auto *drag = new QDrag(this);
        auto *offer = new QMimeData;
        offer->setText(text());
        drag->setMimeData(offer);
        drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::MoveAction);
    }
};

} // namespace

void FeedDragTest::initTestCase()
{
    if (QGuiApplication::platformName() == u"offscreen")
        QFAIL("nothing can be dragged without a window system");
}

void FeedDragTest::rowIsDragged_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("letters");
    QTest::newRow("down") << 0 << 3 << u"bcad"_s;
    QTest::newRow("up") << 3 << 1 << u"adbc"_s;
    QTest::newRow("below the last row") << 1 << 9 << u"acdb"_s;
    QTest::newRow("just below itself") << 1 << 2 << u"abcd"_s;
}

void FeedDragTest::rowIsDragged()
{
    QFETCH(int, from);
    QFETCH(int, target);
    QFETCH(QString, letters);
    FeedListDesk desk(u"abcd"_s);
    DraggingHand().drag(*desk.table().viewport(), desk.pointIn(from, FeedTableModel::Name),
                        *desk.table().viewport(), desk.placeAbove(target));
    desk.settle();
    QTRY_COMPARE(desk.storedLetters(), letters);
    QCOMPARE(desk.table().model()->rowCount(), 4); // no row is taken away by the view
    QCOMPARE(desk.table().selectedRow(), static_cast<int>(letters.indexOf(u"abcd"_s[from])));
}

void FeedDragTest::textIsDraggedIn_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("letters");
    QTest::newRow("http") << u"http://n/"_s << u"anb"_s;
    QTest::newRow("https") << u"https://n/"_s << u"ab"_s;
    QTest::newRow("a word") << u"news"_s << u"ab"_s;
}

void FeedDragTest::textIsDraggedIn()
{
    QFETCH(QString, text);
    QFETCH(QString, letters);
    FeedListDesk desk(u"ab"_s);
    desk.view->move(100, 100);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    LinkLabel link(text);
    link.move(100, 620);
    link.show();
    QVERIFY(QTest::qWaitForWindowExposed(&link));
    desk.settle();

    DraggingHand().drag(link, {20, 20}, *desk.table().viewport(),
                        desk.placeAbove(1) + QPoint(0, 2));
    desk.settle();
    QTRY_COMPARE(desk.storedLetters(), letters);
    QCOMPARE(desk.statusLine.size(), text.startsWith(u"https") ? 1 : 0);
}

QTEST_MAIN(FeedDragTest)
#include "feeddrag_test.moc"
