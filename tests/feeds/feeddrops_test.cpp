// SPDX-License-Identifier: MIT
#include "FeedListDesk.h"
#include "feeds/AddressFile.h"
#include "platform/Localization.h"
#include "platform/views/AnswerableWindow.h"

#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QProgressBar>
#include <QUrl>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// What comes into the feed table and goes out of it: drags, drops, files, sizes.
class FeedDropsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowDrag_data();
    void rowDrag();
    void rowDrag_takesTheSelectionAlong();
    void rowDrag_neverReplacesARow();
    void rowMove_byKeys_data();
    void rowMove_byKeys();
    void textDrop_data();
    void textDrop();
    void linkDrop_data();
    void linkDrop();
    void linkFile_data();
    void linkFile();
    void droppedFile_staysWhereItIs();
    void import();
    void import_thatTakesLong_canBeBrokenOff_data();
    void import_thatTakesLong_canBeBrokenOff();
    void import_ofABrokenFile_isSaid();
    void exporting_data();
    void exporting();
    void export_asksBeforeAnotherFileIsReplaced_data();
    void export_asksBeforeAnotherFileIsReplaced();
    void export_thatFails_isSaid();
    void columnWidths_areStoredOnce();
    void columnWidths_ofTheLayoutAreNotStored();
    void sizes_areTakenFromTheStore_data();
    void sizes_areTakenFromTheStore();
};

// Rows. ---------------------------------------------------------------------------------------

namespace {

std::unique_ptr<QMimeData> draggedRow(const FeedListDesk &desk, int row)
{
    return std::unique_ptr<QMimeData>(
        desk.table().model()->mimeData({desk.table().model()->index(row, 3)}));
}

} // namespace

void FeedDropsTest::rowDrag_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("letters");
    QTest::newRow("onto its own place") << 1 << 1 << u""_s;
    QTest::newRow("just below itself") << 1 << 2 << u""_s;
    QTest::newRow("the last one below itself") << 3 << 4 << u""_s;
    QTest::newRow("one up") << 1 << 0 << u"bacd"_s;
    QTest::newRow("one down") << 1 << 3 << u"acbd"_s;
    QTest::newRow("to the top") << 3 << 0 << u"dabc"_s;
    QTest::newRow("below the last row") << 0 << 4 << u"bcda"_s;
}

void FeedDropsTest::rowDrag()
{
    QFETCH(int, from);
    QFETCH(int, target);
    QFETCH(QString, letters);
    FeedListDesk desk(u"abcd"_s);
    desk.control.isActive = true;
    const auto row = draggedRow(desk, from);
    const bool isMove = !letters.isEmpty();
    QCOMPARE(desk.drop(*row, desk.placeAbove(target), Qt::MoveAction, Qt::MoveAction), isMove);
    QCOMPARE(desk.lastDrop.wasOffered, isMove); // a refused place shows no mark
    QCOMPARE(desk.storedLetters(), isMove ? letters : u"abcd"_s);
    QCOMPARE(desk.calls, isMove ? (QStringList{u"stop"_s, u"start"_s}) : QStringList());
    for (int place = 0; place < 4; ++place)
        QCOMPARE(desk.cell(place, FeedTableModel::Name), QString(desk.letters()[place]).toUpper());
}

void FeedDropsTest::rowDrag_takesTheSelectionAlong()
{
    FeedListDesk desk(u"abcd"_s);
    desk.click(0);
    const auto row = draggedRow(desk, 0);
    QVERIFY(desk.drop(*row, desk.placeAbove(3), Qt::MoveAction, Qt::MoveAction));
    QCOMPARE(desk.letters(), u"bcad"_s);
    QCOMPARE(desk.table().selectedRow(), 2);
}

void FeedDropsTest::rowDrag_neverReplacesARow()
{
    FeedListDesk desk(u"abcd"_s);
    QVERIFY(!desk.table().dragDropOverwriteMode());
    const auto row = draggedRow(desk, 0);
    const QRect middle = desk.table().visualRect(desk.table().model()->index(2, 3));
    // A row's upper half is the place above it, its lower half the one below.
    QVERIFY(desk.drop(*row, QPoint(200, middle.center().y() + 2), Qt::MoveAction, Qt::MoveAction));
    QCOMPARE(desk.letters(), u"bcad"_s);
    QCOMPARE(desk.table().model()->rowCount(), 4);
}

void FeedDropsTest::rowMove_byKeys_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("letters");
    QTest::addColumn<int>("selected");
    QTest::newRow("up") << 1 << u"rowMoveUp"_s << u"bac"_s << 0;
    QTest::newRow("down") << 1 << u"rowMoveDown"_s << u"acb"_s << 2;
    QTest::newRow("the first one up") << 0 << u"rowMoveUp"_s << u"abc"_s << 0;
    QTest::newRow("the last one down") << 2 << u"rowMoveDown"_s << u"abc"_s << 2;
}

void FeedDropsTest::rowMove_byKeys()
{
    QFETCH(int, row);
    QFETCH(QString, action);
    FeedListDesk desk(u"abc"_s);
    desk.click(row);
    desk.table().setFocus();
    desk.key(action == u"rowMoveUp" ? Qt::Key_Up : Qt::Key_Down, Qt::ControlModifier);
    QTEST(desk.letters(), "letters");
    QTEST(desk.table().selectedRow(), "selected");
}

// From elsewhere. -----------------------------------------------------------------------------

void FeedDropsTest::textDrop_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("isOffered");
    QTest::addColumn<QString>("addresses");
    QTest::addColumn<QString>("statusKey");
    const QString before = u"http://a/ http://b/"_s;
    QTest::newRow("http, above a row")
        << u"http://n/"_s << 1 << true << u"http://a/ http://n/ http://b/"_s << u""_s;
    QTest::newRow("http, at the top")
        << u"http://n/"_s << 0 << true << u"http://n/ http://a/ http://b/"_s << u""_s;
    QTest::newRow("http, below the rows")
        << u"http://n/"_s << 9 << true << u"http://a/ http://b/ http://n/"_s << u""_s;
    QTest::newRow("feed becomes http")
        << u"feed://n/"_s << 0 << true << u"http://n/ http://a/ http://b/"_s << u""_s;
    // It can be let go over the table, so that the refusal can be explained.
    QTest::newRow("https is refused, and said")
        << u"https://n/"_s << 0 << true << before << u"FeedDropTypeInstead"_s;
    QTest::newRow("a word") << u"news"_s << 0 << false << before << u""_s;
    QTest::newRow("fewer than 7 characters") << u"http:/"_s << 0 << false << before << u""_s;
    QTest::newRow("a script") << u"javascript:alert(1)"_s << 0 << false << before << u""_s;
    QTest::newRow("a row's number") << u"1"_s << 0 << false << before << u""_s;
    QTest::newRow("nothing") << u""_s << 0 << false << before << u""_s;
}

void FeedDropsTest::textDrop()
{
    QFETCH(QString, text);
    QFETCH(int, target);
    QFETCH(QString, addresses);
    QFETCH(QString, statusKey);
    FeedListDesk desk(u"ab"_s);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    QMimeData data;
    data.setText(text);
    const bool isTaken = desk.drop(data, desk.placeAbove(target));
    QTEST(desk.lastDrop.wasOffered, "isOffered");
    QCOMPARE(isTaken, addresses.contains(u"//n/"));
    QStringList stored;
    for (const FeedEntry &entry : desk.storedEntries())
        stored << entry.address;
    QCOMPARE(stored.join(u' '), addresses);
    QCOMPARE(desk.statusLine.size(), statusKey.isEmpty() ? 0 : 1);
    if (!statusKey.isEmpty())
        QCOMPARE(desk.statusLine[0][0].toString(), localized(statusKey));
}

void FeedDropsTest::linkDrop_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("letters");
    QTest::newRow("a link from a browser") << u"http://n/"_s << u"a headline"_s << u"na"_s;
    QTest::newRow("a feed link") << u"feed://n/"_s << u""_s << u"na"_s;
    QTest::newRow("an https link") << u"https://n/"_s << u"http://n/"_s << u"a"_s;
    QTest::newRow("a file that is no link file") << u"file:///etc/hosts"_s << u""_s << u"a"_s;
}

void FeedDropsTest::linkDrop()
{
    QFETCH(QString, url);
    QFETCH(QString, text);
    FeedListDesk desk(u"a"_s);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    QMimeData data;
    data.setUrls({QUrl(url)});
    if (!text.isEmpty())
        data.setText(text);
    desk.drop(data, desk.placeAbove(0));
    QTEST(desk.letters(), "letters");
}

void FeedDropsTest::linkFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isTaken");
    const QByteArray webloc = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>URL</key>"
                              "<string>%1</string></dict></plist>";
    const auto filled = [&](const char *address) {
        return QByteArray(webloc).replace("%1", address);
    };
    QTest::newRow(".webloc") << u"x.webloc"_s << filled("http://n/") << true;
    QTest::newRow(".webloc with feed://") << u"x.webloc"_s << filled("feed://n/") << true;
    QTest::newRow(".webloc with https") << u"x.webloc"_s << filled("https://n/") << false;
    QTest::newRow(".webloc without address") << u"x.webloc"_s << filled("") << false;
    QTest::newRow(".webloc of rubbish") << u"x.webloc"_s << "\x01\x02"_ba << false;
    QTest::newRow(".url") << u"x.url"_s << "[InternetShortcut]\r\nURL=http://n/\r\n"_ba << true;
    QTest::newRow(".url without group") << u"x.url"_s << "URL=http://n/\n"_ba << false;
    QTest::newRow(".desktop") << u"x.desktop"_s << "[Desktop Entry]\nType=Link\nURL=http://n/\n"_ba
                              << true;
    QTest::newRow(".desktop of a program")
        << u"x.desktop"_s << "[Desktop Entry]\nType=Application\nURL=http://n/\n"_ba << false;
    QTest::newRow("another file") << u"x.txt"_s << "http://n/"_ba << false;
}

void FeedDropsTest::linkFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(bool, isTaken);
    FeedListDesk desk(u"a"_s);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    QFile file(desk.folder.filePath(name));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(content);
    file.close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file.fileName())});
    QCOMPARE(desk.drop(data, desk.placeAbove(0)), isTaken);
    QCOMPARE(desk.storedLetters(), isTaken ? u"na"_s : u"a"_s);
}

void FeedDropsTest::droppedFile_staysWhereItIs()
{
    FeedListDesk desk(u"a"_s);
    QMimeData data;
    data.setUrls({QUrl(u"http://n/"_s)});
    // A file manager would delete what was taken as a move.
    QVERIFY(desk.drop(data, desk.placeAbove(0), Qt::MoveAction));
    QCOMPARE(desk.lastDrop.action, Qt::CopyAction);
    QVERIFY(desk.drop(data, desk.placeAbove(0), Qt::LinkAction, Qt::LinkAction));
    QCOMPARE(desk.lastDrop.action, Qt::LinkAction);
}

// The feed list's file. -----------------------------------------------------------------------

namespace {

QFileDialog *openPanel(FeedListDesk &desk, const char *action, const char *panel)
{
    desk.find<QAction>(action)->trigger();
    desk.settle();
    return qobject_cast<QFileDialog *>(desk.openDialog(panel));
}

void choose(FeedListDesk &desk, QFileDialog &panel, const QString &path)
{
    auto *name = panel.findChild<QLineEdit *>(u"fileNameEdit"_s);
    QVERIFY(name);
    name->setText(path);
    QTest::keyClick(name, Qt::Key_Return);
    desk.settle();
}

} // namespace

void FeedDropsTest::import()
{
    FeedListDesk desk(u"ab"_s);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    const QString path = desk.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://a/"_s}));
    for (const QString &letters : {u"abna"_s, u"abnana"_s}) { // each import appends
        QFileDialog *panel = openPanel(desk, "actLoadURL", "loadURLPanel");
        QVERIFY(panel);
        QCOMPARE(panel->windowTitle(), localized(u"TitleLoadURL"_s));
        QCOMPARE(panel->labelText(QFileDialog::Accept), localized(u"Execute"_s));
        QVERIFY(panel->nameFilters().constFirst().contains(u"*.rssurl"_s));
        QSignalSpy fetched(desk.view.get(), &FeedListView::addressBeingFetched);
        choose(desk, *panel, path);
        QCOMPARE(desk.storedLetters(), letters);
        const QString sentence = localized(u"FetchingAddress"_s);
        QCOMPARE(fetched.size(), 4); // each address, and that it is over
        QCOMPARE(fetched[0][1].toString(), sentence.arg(u"http://n/"_s) + u" (1/2)"_s);
        QCOMPARE(fetched[2][1].toString(), sentence.arg(u"http://a/"_s) + u" (2/2)"_s);
        QCOMPARE(fetched[3][1].toString(), QString());
    }
    QCOMPARE(desk.cell(2, FeedTableModel::Name), u"New"_s);
}

void FeedDropsTest::import_thatTakesLong_canBeBrokenOff_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("the button") << 0;
    QTest::newRow("Escape") << 1;
    QTest::newRow("the window's close button") << 2;
}

void FeedDropsTest::import_thatTakesLong_canBeBrokenOff()
{
    QFETCH(int, way);
    FeedListDesk desk(u"ab"_s);
    const QString path = desk.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://o/"_s}));
    QFileDialog *chooser = openPanel(desk, "actLoadURL", "loadURLPanel");
    QVERIFY(chooser);
    desk.web.duringLoad = [&] { // a server that takes its time
        QTRY_VERIFY(desk.openDialog("importPanel"));
        QDialog *panel = desk.openDialog("importPanel");
        QVERIFY(isAnswerable(*panel));
        QCOMPARE(panel->windowTitle(), localized(u"TitleLoadURL"_s));
        QCOMPARE(desk.find<QProgressBar>("importProgress")->maximum(), 2);
        QVERIFY(desk.find<QLabel>("importText")->text().contains(u"http://n/"));
        if (way == 0)
            QTest::mouseClick(desk.find<QPushButton>("actImportCancel"), Qt::LeftButton);
        else if (way == 1)
            QTest::keyClick(panel, Qt::Key_Escape);
        else
            panel->close();
        QCOMPARE(desk.find<QLabel>("importText")->text(), localized(u"ImportCancelling"_s));
    };
    choose(desk, *chooser, path);
    QCOMPARE(desk.web.requested, QStringList{u"http://n/"_s});
    QVERIFY(!desk.openDialog("importPanel"));
    QCOMPARE(desk.storedLetters(), u"ab"_s);
    QCOMPARE(desk.statusLine.last()[0].toString(), localized(u"ImportCancelled"_s));
}

void FeedDropsTest::import_ofABrokenFile_isSaid()
{
    FeedListDesk desk(u"ab"_s);
    QFile file(desk.folder.filePath(u"bad.rssurl"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("no list");
    file.close();
    QFileDialog *panel = openPanel(desk, "actLoadURL", "loadURLPanel");
    QVERIFY(panel);
    QTest::ignoreMessage(QtWarningMsg, "File read error.");
    choose(desk, *panel, file.fileName());
    QCOMPARE(desk.statusLine.last()[0].toString(), localized(u"FeedFileReadError"_s));
    QCOMPARE(desk.letters(), u"ab"_s);
}

void FeedDropsTest::exporting_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("with the extension") << u"mine.rssurl"_s;
    QTest::newRow("without extension") << u"mine"_s;
    QTest::newRow("with another extension") << u"mine.txt"_s;
}

void FeedDropsTest::exporting()
{
    QFETCH(QString, typed);
    FeedListDesk desk(u"ab"_s);
    QFileDialog *panel = openPanel(desk, "actSaveURL", "saveURLPanel");
    QVERIFY(panel);
    QCOMPARE(panel->windowTitle(), localized(u"TitleSaveURL"_s));
    QCOMPARE(panel->labelText(QFileDialog::Accept), localized(u"Execute"_s));
    QCOMPARE(panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"untitled.rssurl"_s);
    choose(desk, *panel, desk.folder.filePath(typed));
    QCOMPARE(readAddressFile(desk.folder.filePath(u"mine.rssurl"_s)),
             (QStringList{u"http://a/"_s, u"http://b/"_s}));
}

void FeedDropsTest::export_asksBeforeAnotherFileIsReplaced_data()
{
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("replace") << true;
    QTest::newRow("Cancel") << false;
}

void FeedDropsTest::export_asksBeforeAnotherFileIsReplaced()
{
    QFETCH(bool, isReplaced);
    FeedListDesk desk(u"ab"_s);
    const QString path = desk.folder.filePath(u"mine.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://old/"_s}));
    QFileDialog *panel = openPanel(desk, "actSaveURL", "saveURLPanel");
    QVERIFY(panel);
    choose(desk, *panel, desk.folder.filePath(u"mine.txt"_s));

    QVERIFY(desk.openDialog("replaceFileAlert"));
    QCOMPARE(readAddressFile(path), QStringList{u"http://old/"_s});
    QTest::mouseClick(
        desk.find<QPushButton>(isReplaced ? "replaceFileAlertAccept" : "replaceFileAlertCancel"),
        Qt::LeftButton);
    QCOMPARE(readAddressFile(path), isReplaced ? (QStringList{u"http://a/"_s, u"http://b/"_s})
                                               : QStringList{u"http://old/"_s});
}

void FeedDropsTest::export_thatFails_isSaid()
{
    FeedListDesk desk(u"ab"_s);
    QVERIFY(QDir().mkpath(desk.folder.filePath(u"mine.rssurl"_s))); // a folder of that name
    QFileDialog *panel = openPanel(desk, "actSaveURL", "saveURLPanel");
    QVERIFY(panel);
    QTest::ignoreMessage(QtWarningMsg, "File save error.");
    choose(desk, *panel, desk.folder.filePath(u"mine.txt"_s));
    QTest::mouseClick(desk.find<QPushButton>("replaceFileAlertAccept"), Qt::LeftButton);
    QCOMPARE(desk.statusLine.last()[0].toString(), localized(u"FeedFileSaveError"_s));
}

// Sizes. --------------------------------------------------------------------------------------

void FeedDropsTest::columnWidths_areStoredOnce()
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

void FeedDropsTest::columnWidths_ofTheLayoutAreNotStored()
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

void FeedDropsTest::sizes_areTakenFromTheStore_data()
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

void FeedDropsTest::sizes_areTakenFromTheStore()
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

QTEST_MAIN(FeedDropsTest)
#include "feeddrops_test.moc"
