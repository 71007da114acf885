// SPDX-License-Identifier: MIT
#include "FeedListDesk.h"
#include "platform/Localization.h"

#include <QFile>
#include <QUrl>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// What is dragged within the feed table and dropped onto it.
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

QTEST_MAIN(FeedDropsTest)
#include "feeddrops_test.moc"
