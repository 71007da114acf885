// SPDX-License-Identifier: MIT
#include "FeedListDesk.h"
#include "platform/Localization.h"

#include <QLineEdit>
#include <QMessageBox>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// Feeds are added, edited and deleted: the dialog, the fetch behind it, the confirmation.
class FeedDialogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void add_data();
    void add();
    void add_oneAfterTheOther();
    void add_cancelled_data();
    void add_cancelled();
    void add_nothingTyped_cannotBeEntered();
    void add_whatCannotBeRead_isSaid();
    void add_saysWhatItWaitsFor();
    void edit();
    void deletion_data();
    void deletion();
    void deletion_cancelled_data();
    void deletion_cancelled();
};

void FeedDialogsTest::add_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("byMouse");
    QTest::addColumn<QString>("addresses");
    QTest::newRow("no row selected: at the end")
        << -1 << u"http://n/"_s << false << u"http://a/ http://b/ http://n/"_s;
    QTest::newRow("before the selected row")
        << 1 << u"http://n/"_s << false << u"http://a/ http://n/ http://b/"_s;
    QTest::newRow("before the first row")
        << 0 << u"http://n/"_s << true << u"http://n/ http://a/ http://b/"_s;
    QTest::newRow("feed:// stays as typed")
        << -1 << u"feed://n/"_s << true << u"http://a/ http://b/ feed://n/"_s;
    QTest::newRow("https can be typed")
        << -1 << u"https://n/"_s << false << u"http://a/ http://b/ https://n/"_s;
}

void FeedDialogsTest::add()
{
    QFETCH(int, selected);
    QFETCH(QString, typed);
    QFETCH(bool, byMouse);
    FeedListDesk desk(u"ab"_s);
    desk.web.titles[typed] = u"New"_s;
    if (selected >= 0)
        desk.click(selected);
    desk.press("createButton");

    QDialog *panel = desk.openDialog("addressPanel");
    QVERIFY(panel);
    QCOMPARE(panel->windowTitle(), localized(u"Add URL"_s));
    auto *text = desk.find<QLineEdit>("addressText");
    QCOMPARE(text->text(), QString());
    QTest::keyClicks(text, typed);
    if (byMouse)
        desk.press("actAddressExec");
    else
        QTest::keyClick(text, Qt::Key_Return);
    desk.settle();

    QVERIFY(!desk.openDialog("addressPanel"));
    QStringList addresses;
    for (const FeedEntry &entry : desk.storedEntries())
        addresses << entry.address;
    QTEST(addresses.join(u' '), "addresses");
    const int row = static_cast<int>(addresses.indexOf(typed));
    QCOMPARE(desk.cell(row, FeedTableModel::Name), u"New"_s);
    QCOMPARE(desk.cell(row, FeedTableModel::Status), u"未読込"_s);
}

// During the first fetch the buttons were grey; the dialog must have recovered from that.
void FeedDialogsTest::add_oneAfterTheOther()
{
    FeedListDesk desk(u""_s);
    for (const QString &typed : {u"http://x/"_s, u"http://y/"_s}) {
        desk.press("createButton");
        auto *text = desk.find<QLineEdit>("addressText");
        QVERIFY(text->hasFocus());
        QVERIFY(desk.find<QPushButton>("actAddressExec")->isDefault());
        QTest::keyClicks(text, typed);
        QTest::keyClick(text, Qt::Key_Return);
        desk.settle();
    }
    QCOMPARE(desk.letters(), u"xy"_s);
}

void FeedDialogsTest::add_cancelled_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("Escape") << 0;
    QTest::newRow("the button") << 1;
    QTest::newRow("the window's close button") << 2;
}

void FeedDialogsTest::add_cancelled()
{
    QFETCH(int, way);
    FeedListDesk desk(u"ab"_s);
    for (int round = 0; round < 2; ++round) { // what was typed before is gone the next time
        desk.press("createButton");
        auto *text = desk.find<QLineEdit>("addressText");
        QCOMPARE(text->text(), QString());
        QTest::keyClicks(text, u"http://n/"_s);
        if (way == 0)
            QTest::keyClick(text, Qt::Key_Escape);
        else if (way == 1)
            desk.press("actAddressCancel");
        else
            desk.openDialog("addressPanel")->close();
        desk.settle();
        QVERIFY(!desk.openDialog("addressPanel"));
    }
    QCOMPARE(desk.letters(), u"ab"_s);
    QVERIFY(desk.web.requested.isEmpty());
}

void FeedDialogsTest::add_nothingTyped_cannotBeEntered()
{
    FeedListDesk desk(u"a"_s);
    desk.press("createButton");
    QVERIFY(!desk.isEnabled("actAddressExec"));
    QTest::keyClick(desk.find<QLineEdit>("addressText"), Qt::Key_Return);
    QVERIFY(desk.openDialog("addressPanel"));
    QTest::keyClicks(desk.find<QLineEdit>("addressText"), u"h"_s);
    QVERIFY(desk.isEnabled("actAddressExec"));
}

void FeedDialogsTest::add_whatCannotBeRead_isSaid()
{
    FeedListDesk desk(u""_s);
    desk.press("createButton");
    QTest::keyClicks(desk.find<QLineEdit>("addressText"), u"http://x/"_s);
    desk.press("actAddressExec");

    QCOMPARE(desk.cell(0, FeedTableModel::Name), u"-"_s);
    QCOMPARE(desk.cell(0, FeedTableModel::Date), u"-"_s);
    QCOMPARE(desk.cell(0, FeedTableModel::Status), u"未読込"_s);
    QCOMPARE(desk.statusLine.last()[0].toString(),
             localized(u"FeedCannotBeRead"_s).arg(u"http://x/"_s, u"ない <b>404</b>"_s));

    QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://x/)");
    desk.list.readerAt(0)->readHeadlines();
    desk.list.renewTableView();
    desk.settle();
    QCOMPARE(desk.cell(0, FeedTableModel::Status), u"読込エラー"_s);
}

void FeedDialogsTest::add_saysWhatItWaitsFor()
{
    FeedListDesk desk(u"a"_s);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    desk.press("createButton");
    QTest::keyClicks(desk.find<QLineEdit>("addressText"), u"http://n/"_s);

    const QString sentence = localized(u"FetchingAddress"_s).arg(u"http://n/"_s);
    QSignalSpy fetched(desk.view.get(), &FeedListView::addressBeingFetched);
    int loads = 0;
    desk.web.duringLoad = [&] {
        ++loads;
        QCOMPARE(fetched.size(), 1);
        QCOMPARE(fetched[0][1].toString(), sentence);
        QVERIFY(desk.openDialog("addressPanel"));
        QCOMPARE(desk.find<QLabel>("addressWaitText")->text(), sentence);
        QVERIFY(!desk.isEnabled("actAddressExec"));
        QVERIFY(!desk.find<QLineEdit>("addressText")->isEnabled());
        QVERIFY(QApplication::overrideCursor());
    };
    desk.press("actAddressExec");
    QCOMPARE(loads, 1);
    QCOMPARE(fetched.last()[1].toString(), QString());
    QVERIFY(!QApplication::overrideCursor());
}

void FeedDialogsTest::edit()
{
    FeedListDesk desk(u"abc"_s);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    desk.click(1);
    desk.press("editButton");
    QDialog *panel = desk.openDialog("addressPanel");
    QVERIFY(panel);
    QCOMPARE(panel->windowTitle(), localized(u"Edit URL"_s));
    auto *text = desk.find<QLineEdit>("addressText");
    QCOMPARE(text->text(), u"http://b/"_s);
    QTest::keyClicks(text, u"http://n/"_s); // the old one is selected
    QTest::keyClick(text, Qt::Key_Return);
    desk.settle();
    QCOMPARE(desk.storedLetters(), u"anc"_s);
    QCOMPARE(desk.cell(1, FeedTableModel::Name), u"New"_s);
    QCOMPARE(desk.table().selectedRow(), 1);
}

void FeedDialogsTest::deletion_data()
{
    QTest::addColumn<bool>("byKeys");
    QTest::newRow("buttons") << false;
    QTest::newRow("Delete, and Return for the default button") << true;
}

void FeedDialogsTest::deletion()
{
    QFETCH(bool, byKeys);
    FeedListDesk desk(u"abcd"_s);
    desk.control.isActive = true;
    desk.click(1);
    if (byKeys)
        desk.key(Qt::Key_Delete);
    else
        desk.press("deleteButton");

    auto *alert = qobject_cast<QMessageBox *>(desk.openDialog("deleteRSSURLAlert"));
    QVERIFY(alert);
    QCOMPARE(alert->text(), localized(u"DeleteRSSURL"_s));
    QCOMPARE(alert->informativeText(), localized(u"DeleteRSSInfo"_s));
    QCOMPARE(desk.find<QPushButton>("deleteRSSURLAlertAccept")->text(), localized(u"Delete"_s));
    QCOMPARE(desk.find<QPushButton>("deleteRSSURLAlertCancel")->text(), u"Cancel"_s);
    QCOMPARE(desk.letters(), u"abcd"_s); // nothing is gone before the answer
    if (byKeys)
        QTest::keyClick(alert, Qt::Key_Return);
    else
        QTest::mouseClick(desk.find<QPushButton>("deleteRSSURLAlertAccept"), Qt::LeftButton);
    desk.settle();

    QCOMPARE(desk.storedLetters(), u"acd"_s);
    QCOMPARE(desk.calls, (QStringList{u"stop"_s, u"start"_s}));
    QCOMPARE(desk.table().model()->rowCount(), 3);
    // The selection is on a feed that is there: the next deletion hits what is marked.
    QCOMPARE(desk.cell(desk.table().selectedRow(), FeedTableModel::Name), u"C"_s);
}

void FeedDialogsTest::deletion_cancelled_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Cancel") << false;
    QTest::newRow("Escape") << true;
}

void FeedDialogsTest::deletion_cancelled()
{
    QFETCH(bool, byKey);
    FeedListDesk desk(u"ab"_s);
    desk.click(1);
    desk.press("deleteButton");
    if (byKey)
        QTest::keyClick(desk.openDialog("deleteRSSURLAlert"), Qt::Key_Escape);
    else
        QTest::mouseClick(desk.find<QPushButton>("deleteRSSURLAlertCancel"), Qt::LeftButton);
    desk.settle();
    QVERIFY(!desk.openDialog("deleteRSSURLAlert"));
    QCOMPARE(desk.letters(), u"ab"_s);
}

QTEST_MAIN(FeedDialogsTest)
#include "feeddialogs_test.moc"
