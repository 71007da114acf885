// SPDX-License-Identifier: MIT
#include "FeedListDesk.h"
#include "platform/Localization.h"

#include <QAccessible>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>

#include <cstdlib>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class FeedListViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controlsHaveNamesAndTexts_data();
    void controlsHaveNamesAndTexts();
    void controlsHaveAccessibleNames_data();
    void controlsHaveAccessibleNames();
    void mnemonicsDiffer();
    void tabKey_goesThroughTheControls();
    void buttons_followTheSelection();
    void rowMenu_opensByKeyBelowItsRow_data();
    void rowMenu_opensByKeyBelowItsRow();
    void emptyTable_saysWhatToDo();
    void checkBox_data();
    void checkBox();
    void headerClick_data();
    void headerClick();
    void open_data();
    void open();
    void open_thatFails_raisesTheAlert();
    void copy_data();
    void copy();
    void selection_canBeTakenAway_data();
    void selection_canBeTakenAway();
    void errorCause_isSaidAsPlainText();
    void addedFeed_isScrolledTo();
    void problem_isOfTheFeedsThatOfferNothing();
};

void FeedListViewTest::controlsHaveNamesAndTexts_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("createButton") << u"FeedAddButton"_s;
    QTest::newRow("editButton") << u"FeedEditButton"_s;
    QTest::newRow("deleteButton") << u"FeedDeleteButton"_s;
    QTest::newRow("accessButton") << u"FeedOpenButton"_s;
    QTest::newRow("rowOpen") << u"FeedOpenButton"_s;
    QTest::newRow("rowEdit") << u"FeedEditButton"_s;
    QTest::newRow("rowDelete") << u"FeedDeleteButton"_s;
    QTest::newRow("rowCopy") << u"FeedCopyItem"_s;
    QTest::newRow("rowMoveUp") << u"FeedMoveUpItem"_s;
    QTest::newRow("rowMoveDown") << u"FeedMoveDownItem"_s;
    QTest::newRow("invertAll") << u"FeedInvertAllItem"_s;
    QTest::newRow("actLoadURL") << u"MenuLoadURL"_s;
    QTest::newRow("actSaveURL") << u"MenuSaveURL"_s;
    QTest::newRow("noFeedsText") << u"NoFeedsYet"_s;
}

void FeedListViewTest::controlsHaveNamesAndTexts()
{
    QFETCH(QString, key);
    FeedListDesk desk(u"a"_s);
    const auto *control = desk.find<QObject>(QTest::currentDataTag());
    QCOMPARE(control->property("text").toString(), localized(key));
    QVERIFY(localized(key) != key); // the table holds it
    QVERIFY(!desk.table().accessibleName().isEmpty());
    QCOMPARE(desk.table().objectName(), u"rssListView"_s);
}

void FeedListViewTest::mnemonicsDiffer()
{
    FeedListDesk desk(u"a"_s);
    QStringList mnemonics;
    for (const char *name : {"createButton", "editButton", "deleteButton", "accessButton"})
        mnemonics << QKeySequence::mnemonic(desk.find<QPushButton>(name)->text()).toString();
    QCOMPARE(mnemonics.count(QString()), 0);
    QCOMPARE(mnemonics.removeDuplicates(), 0);
}

void FeedListViewTest::tabKey_goesThroughTheControls()
{
    FeedListDesk desk(u"a"_s);
    desk.click(0);
    desk.table().setFocus();
    for (const char *next : {"createButton", "editButton", "deleteButton", "accessButton"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(next));
    }
}

void FeedListViewTest::buttons_followTheSelection()
{
    FeedListDesk desk(u"ab"_s);
    const auto areEnabled = [&] {
        return QList<bool>{desk.isEnabled("createButton"), desk.isEnabled("editButton"),
                           desk.isEnabled("deleteButton"), desk.isEnabled("accessButton"),
                           desk.find<QAction>("rowCopy")->isEnabled()};
    };
    QCOMPARE(areEnabled(), (QList<bool>{true, false, false, false, false}));
    desk.click(1);
    QCOMPARE(areEnabled(), (QList<bool>{true, true, true, true, true}));
    desk.list.removeReader(0);
    desk.list.removeReader(0);
    desk.settle();
    QCOMPARE(areEnabled(), (QList<bool>{true, false, false, false, false}));
}

void FeedListViewTest::rowMenu_opensByKeyBelowItsRow_data()
{
    QTest::addColumn<bool>("byMenuKey");
    QTest::newRow("menu key") << true; // which the window system reports as an event of its own
    QTest::newRow("Shift+F10") << false;
}

void FeedListViewTest::rowMenu_opensByKeyBelowItsRow()
{
    QFETCH(bool, byMenuKey);
    FeedListDesk desk(u"abc"_s);
    desk.click(1);
    QPoint place;
    QStringList items;
    QTimer look; // the menu runs an event loop of its own
    connect(&look, &QTimer::timeout, &look, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (menu == nullptr)
            return;
        place = menu->pos();
        for (const QAction *item : menu->actions())
            items << item->objectName();
        menu->close();
    });
    look.start(10);
    if (byMenuKey) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(&desk.table(), &event);
    } else {
        desk.key(Qt::Key_F10, Qt::ShiftModifier);
    }
    QVERIFY(items.contains(u"rowEdit"_s));
    const QRect row = desk.table().visualRect(desk.table().model()->index(1, 0));
    QVERIFY(std::abs(desk.table().viewport()->mapFromGlobal(place).y() - row.bottom()) < 4);
}

void FeedListViewTest::emptyTable_saysWhatToDo()
{
    FeedListDesk desk(u""_s);
    auto *sentence = desk.find<QLabel>("noFeedsText");
    QVERIFY(sentence->isVisible());
    QVERIFY(desk.table().viewport()->rect().contains(sentence->geometry()));

    desk.web.titles[u"http://n/"_s] = u"New"_s;
    QMimeData link;
    link.setText(u"http://n/"_s);
    QVERIFY(desk.drop(link, sentence->geometry().center()));
    QCOMPARE(desk.letters(), u"n"_s);
    QVERIFY(!sentence->isVisible());

    desk.list.removeReader(0);
    desk.settle();
    QVERIFY(sentence->isVisible());
}

void FeedListViewTest::controlsHaveAccessibleNames_data()
{
    QTest::addColumn<QString>("opener");
    QTest::newRow("the tab") << u""_s;
    QTest::newRow("the address dialog") << u"createButton"_s;
    QTest::newRow("the confirmation") << u"deleteButton"_s;
}

void FeedListViewTest::controlsHaveAccessibleNames()
{
    QFETCH(QString, opener);
    FeedListDesk desk(u"ab"_s);
    desk.click(0);
    if (!opener.isEmpty())
        desk.press(opener.toLatin1().constData());
    int controls = 0;
    for (QWidget *widget : desk.view->findChildren<QWidget *>()) {
        if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0)
            continue;
        const QAccessibleInterface *access = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(access && !access->text(QAccessible::Name).isEmpty(),
                 qPrintable(widget->objectName()));
        QVERIFY(!widget->objectName().isEmpty());
        ++controls;
    }
    QCOMPARE(controls, opener.isEmpty() ? 5 : opener == u"createButton" ? 8 : 7);
    QCOMPARE(QAccessible::queryAccessibleInterface(&desk.table())->role(), QAccessible::Table);
}

void FeedListViewTest::checkBox_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("click") << false;
    QTest::newRow("Space on the selected row") << true;
}

void FeedListViewTest::checkBox()
{
    QFETCH(bool, byKey);
    FeedListDesk desk(u"abc"_s);
    if (byKey)
        desk.click(1);
    for (const bool isOn : {false, true}) {
        if (byKey)
            desk.key(Qt::Key_Space);
        else
            desk.clickCheckBox(1);
        QCOMPARE(desk.list.readerAt(1)->validate(), isOn);
        QCOMPARE(desk.storedEntries()[1].validate, isOn);
        QCOMPARE(desk.storedEntries()[0].validate, true);
        QCOMPARE(desk.table().model()->index(1, 0).data(Qt::CheckStateRole).toInt(),
                 int(isOn ? Qt::Checked : Qt::Unchecked));
    }
}

void FeedListViewTest::headerClick_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("of the check boxes: each for itself") << 0 << u"010"_s;
    QTest::newRow("of another column") << 3 << u"101"_s;
}

void FeedListViewTest::headerClick()
{
    QFETCH(int, column);
    FeedListDesk desk(u"abc"_s);
    desk.clickCheckBox(1);
    const QHeaderView *header = desk.table().horizontalHeader();
    const QPoint place(header->sectionViewportPosition(column) + 20, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
    desk.settle();
    QString enabled;
    for (const FeedEntry &entry : desk.storedEntries())
        enabled += entry.validate ? u'1' : u'0';
    QTEST(enabled, "enabled");

    desk.find<QAction>("invertAll")->trigger(); // the same for the keyboard
    desk.settle();
    QCOMPARE(desk.list.validSiteCount(), enabled == u"010" ? 2 : 1);
}

void FeedListViewTest::open_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<QStringList>("calls");
    const QStringList opened{u"open http://b/"_s};
    QTest::newRow("double click") << u"double"_s << opened;
    QTest::newRow("Return") << u"return"_s << opened;
    QTest::newRow("the button") << u"button"_s << opened;
    QTest::newRow("the row menu") << u"menu"_s << opened;
    QTest::newRow("a double click in the check box only turns it twice")
        << u"box"_s << QStringList();
}

void FeedListViewTest::open()
{
    QFETCH(QString, way);
    FeedListDesk desk(u"ab"_s);
    if (way == u"double")
        desk.doubleClick(1);
    else if (way == u"box")
        desk.doubleClick(1, FeedTableModel::Validate);
    else
        desk.click(1);
    desk.calls.removeIf([](const QString &call) { return call.startsWith(u"controls"); });
    if (way == u"return")
        desk.key(Qt::Key_Return);
    else if (way == u"button")
        desk.press("accessButton");
    else if (way == u"menu")
        desk.find<QAction>("rowOpen")->trigger();
    QTEST(desk.calls, "calls");
}

void FeedListViewTest::open_thatFails_raisesTheAlert()
{
    FeedListDesk desk(u"ab"_s);
    desk.control.opensSites = false;
    desk.doubleClick(0);
    QCOMPARE(desk.calls, (QStringList{u"open http://a/"_s, u"open failed"_s}));
}

void FeedListViewTest::copy_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Ctrl+C") << true;
    QTest::newRow("the row menu") << false;
}

void FeedListViewTest::copy()
{
    QFETCH(bool, byKey);
    FeedListDesk desk(u"ab"_s);
    QGuiApplication::clipboard()->clear();
    desk.click(1);
    if (byKey)
        desk.key(Qt::Key_C, Qt::ControlModifier);
    else
        desk.find<QAction>("rowCopy")->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"- B http://b/"_s);
}

void FeedListViewTest::selection_canBeTakenAway_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Escape") << true;
    QTest::newRow("a click below the rows") << false;
}

void FeedListViewTest::selection_canBeTakenAway()
{
    QFETCH(bool, byKey);
    FeedListDesk desk(u"ab"_s);
    desk.click(1);
    QCOMPARE(desk.table().selectedRow(), 1);
    if (byKey)
        desk.key(Qt::Key_Escape);
    else
        QTest::mouseClick(desk.table().viewport(), Qt::LeftButton, {}, desk.placeAbove(2));
    QCOMPARE(desk.table().selectedRow(), -1);
    QVERIFY(!desk.isEnabled("editButton"));
}

void FeedListViewTest::errorCause_isSaidAsPlainText()
{
    FeedListDesk desk(u"ab"_s);
    QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://b/)");
    desk.list.readerAt(1)->readHeadlines();
    desk.list.renewTableView();
    desk.settle();
    desk.click(1);
    QCOMPARE(desk.statusLine.last()[0].toString(),
             localized(u"FeedCannotBeRead"_s).arg(u"http://b/"_s, u"ない <b>404</b>"_s));
    desk.click(0); // nothing is wrong with this one
    QCOMPARE(desk.statusLine.last()[0].toString(), QString());
    desk.click(1);
    QVERIFY(desk.statusLine.last()[0].toString().contains(u"<b>404</b>"));
    const QVariant tip = desk.table().model()->index(1, 1).data(Qt::ToolTipRole);
    QCOMPARE(tip.toString(), u"<p>ない &lt;b&gt;404&lt;/b&gt;</p>"_s);

    desk.web.titles[u"http://b/"_s] = u"B"_s;
    desk.web.itemsIn = u"http://b/"_s;
    QCOMPARE(desk.list.readerAt(1)->readHeadlines(), 0);
    desk.list.renewTableView();
    desk.settle();
    QCOMPARE(desk.statusLine.last()[0].toString(), QString()); // it is over
}

void FeedListViewTest::addedFeed_isScrolledTo()
{
    FeedListDesk desk(u"abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz"_s);
    desk.web.titles[u"http://new/"_s] = u"New"_s;
    desk.press("createButton");
    QTest::keyClicks(desk.find<QLineEdit>("addressText"), u"http://new/"_s);
    desk.press("actAddressExec");
    const QRect row = desk.table().visualRect(desk.table().model()->index(52, 3));
    QVERIFY(desk.table().viewport()->rect().contains(row.center()));
}

void FeedListViewTest::problem_isOfTheFeedsThatOfferNothing()
{
    FeedListDesk desk(u"ab"_s);
    desk.web.titles[u"http://a/"_s] = u"A"_s;
    desk.web.itemsIn = u"http://a/"_s;
    desk.list.readerAt(0)->readHeadlines();
    QVERIFY(desk.view->problem().isEmpty());
    desk.web.postponed << u"http://a/"_s; // offers what it holds
    for (int row : {0, 1})
        desk.list.readerAt(row)->readHeadlines();
    QVERIFY(!desk.list.readerAt(0)->lastErrorCause().isEmpty());
    QCOMPARE(desk.view->problem(), localized(u"FeedsFailed"_s).arg(1));

    desk.list.removeReader(1); // the one that failed
    QVERIFY(desk.view->problem().isEmpty());
    desk.list.shouldEditTableColumn(0);
    QCOMPARE(desk.view->problem(), localized(u"NoFeedsToRead"_s));
}

QTEST_MAIN(FeedListViewTest)
#include "feedlistview_test.moc"
