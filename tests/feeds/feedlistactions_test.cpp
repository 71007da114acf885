// SPDX-License-Identifier: MIT
#include "FeedListParts.h"
#include "feeds/AddressFile.h"
#include "platform/Localization.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class FeedListActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void add_opensAnEmptyDialog();
    void add_takesTheTextAsTyped();
    void edit_opensTheDialogWithTheAddress();
    void edit_findsItsFeedAfterAMove();
    void edit_ofAFeedThatIsGone_changesNothing();
    void withoutSelection_isLogged_data();
    void withoutSelection_isLogged();
    void cancel_closesTheDialog();
    void deletion();
    void deletion_cancelled();
    void deletion_ofAFeedThatMoved();
    void deletion_ofAFeedThatIsGone();
    void doubleClick_opensTheSite();
    void copy_data();
    void copy();
    void import_appends();
    void import_cancelled_addsNothing();
    void import_saysWhatItAdded();
    void import_ofAFileThatCannotBeRead();
    void import_duringQuit_losesNothing();
    void export_writesTheAddresses();
    void export_thatFails_isSaid();
    void rowDrop_data();
    void rowDrop();
    void addressDrop_data();
    void addressDrop();
    void addressDrop_goesAboveTheRowThatWasThere();
};

void FeedListActionsTest::add_opensAnEmptyDialog()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    parts.window.selected = 1;
    parts.actions.actCreateRSSURL();
    QCOMPARE(parts.calls, QStringList{u"dialog "_s + localized(u"Add URL"_s) + u' '});

    parts.actions.actAddressExec(u"http://n/"_s);
    QCOMPARE(parts.letters(), u"anb"_s); // before the selected row
    QCOMPARE(parts.storedLetters(), u"anb"_s);
    QCOMPARE(parts.calls.last(), u"close"_s);
}

void FeedListActionsTest::add_takesTheTextAsTyped()
{
    FeedListParts parts;
    parts.startWith(u""_s);
    for (const QString &typed : {u"feed://n/"_s, u"https://n/"_s, u" x "_s, u""_s}) {
        parts.actions.actCreateRSSURL();
        parts.actions.actAddressExec(typed);
        QCOMPARE(parts.list.tableReaders().back()->address(), typed);
    }
}

void FeedListActionsTest::edit_opensTheDialogWithTheAddress()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.window.selected = 1;
    parts.actions.actEditRSSURL();
    QCOMPARE(parts.calls, QStringList{u"dialog "_s + localized(u"Edit URL"_s) + u" http://b/"_s});
    parts.actions.actAddressExec(u"http://n/"_s);
    QCOMPARE(parts.storedLetters(), u"anc"_s);
}

void FeedListActionsTest::edit_findsItsFeedAfterAMove()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.window.selected = 0;
    parts.actions.actEditRSSURL();
    parts.actions.acceptRowDrop(0, 3); // the dialog is still open
    parts.actions.actAddressExec(u"http://n/"_s);
    QCOMPARE(parts.letters(), u"bcn"_s);
}

void FeedListActionsTest::edit_ofAFeedThatIsGone_changesNothing()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.window.selected = 0;
    parts.actions.actEditRSSURL();
    parts.list.removeReader(0);
    parts.actions.actAddressExec(u"http://n/"_s);
    QCOMPARE(parts.letters(), u"bc"_s);
    QCOMPARE(parts.calls.last(), u"close"_s);
}

using Action = void (FeedListActions::*)();

void FeedListActionsTest::withoutSelection_isLogged_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("edit") << &FeedListActions::actEditRSSURL << "RSSList:index error1"_ba;
    QTest::newRow("open") << &FeedListActions::actDoubleClickListView << "RSSList:index error2"_ba;
    QTest::newRow("copy") << &FeedListActions::actCopyRow << "RSSList:index error3"_ba;
    QTest::newRow("delete") << &FeedListActions::actDeleteRSSURL << ""_ba;
}

void FeedListActionsTest::withoutSelection_isLogged()
{
    QFETCH(Action, action);
    QFETCH(QByteArray, line);
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    for (int row : {-1, 2}) {
        parts.window.selected = row;
        if (!line.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, line.constData());
        (parts.actions.*action)();
    }
    QVERIFY(parts.calls.isEmpty());
    QVERIFY(parts.window.alerts.empty());
    QVERIFY(parts.window.pasteboard.isNull());
}

void FeedListActionsTest::cancel_closesTheDialog()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    parts.actions.actCreateRSSURL();
    parts.actions.actAddressCancel();
    QCOMPARE(parts.calls.last(), u"close"_s);
    QCOMPARE(parts.letters(), u"ab"_s);
}

void FeedListActionsTest::deletion()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.control.isActive = true;
    parts.window.selected = 1;
    parts.actions.actDeleteRSSURL();
    QVERIFY(parts.calls.isEmpty()); // nothing happens before the answer

    QCOMPARE(parts.window.alerts.size(), std::size_t{1});
    const FeedAlert &alert = parts.window.alerts.front();
    QCOMPARE(alert.title, localized(u"DeleteRSSURL"_s));
    QCOMPARE(alert.informative, localized(u"DeleteRSSInfo"_s));
    QCOMPARE(alert.deleteButton, localized(u"Delete"_s));
    QCOMPARE(alert.cancelButton, u"Cancel"_s); // literal, not localized

    parts.actions.deleteRSSURLAnswered(true);
    QCOMPARE(parts.calls, (QStringList{u"stop"_s, u"start"_s}));
    QCOMPARE(parts.storedLetters(), u"ac"_s);
}

void FeedListActionsTest::deletion_cancelled()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.control.isActive = true;
    parts.window.selected = 1;
    parts.actions.actDeleteRSSURL();
    parts.actions.deleteRSSURLAnswered(false);
    QCOMPARE(parts.calls, QStringList{u"close"_s});
    QCOMPARE(parts.letters(), u"abc"_s);
}

void FeedListActionsTest::deletion_ofAFeedThatMoved()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.window.selected = 0;
    parts.actions.actDeleteRSSURL();
    parts.actions.acceptRowDrop(0, 2);
    parts.actions.deleteRSSURLAnswered(true);
    QCOMPARE(parts.letters(), u"bc"_s);
}

void FeedListActionsTest::deletion_ofAFeedThatIsGone()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.window.selected = 0;
    parts.actions.actDeleteRSSURL();
    parts.list.removeReader(0);
    parts.actions.deleteRSSURLAnswered(true);
    QCOMPARE(parts.letters(), u"bc"_s);
}

void FeedListActionsTest::doubleClick_opensTheSite()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    parts.window.selected = 1;
    parts.actions.actDoubleClickListView();
    QCOMPARE(parts.calls, QStringList{u"open http://b/"_s});
    parts.control.opensSites = false;
    parts.actions.actDoubleClickListView();
    QCOMPARE(parts.calls.mid(1), (QStringList{u"open http://b/"_s, u"open failed"_s}));
}

void FeedListActionsTest::copy_data()
{
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<bool>("isKnown");
    QTest::addColumn<QString>("text");
    QTest::newRow("never read") << false << true << u"- A http://a/"_s;
    QTest::newRow("read") << true << true << u"%1 A http://a/"_s;
    QTest::newRow("without a name") << false << false << u"- (null) http://a/"_s;
}

void FeedListActionsTest::copy()
{
    QFETCH(bool, isRead);
    QFETCH(bool, isKnown);
    QFETCH(QString, text);

    FeedListParts parts;
    parts.startWith(u"a"_s);
    parts.window.selected = 0;
    const RSSList::Reader reader = parts.list.readerAt(0);
    if (!isKnown)
        reader->setName(std::nullopt);
    if (isRead) {
        parts.web.itemsIn = u"http://a/"_s;
        parts.web.titles[u"http://a/"_s] = u"A"_s;
        QCOMPARE(reader->readHeadlines(), 0);
        QVERIFY(reader->date());
        text = text.arg(*reader->date());
    }
    parts.actions.actCopyRow();
    QCOMPARE(parts.window.pasteboard, text);
}

void FeedListActionsTest::import_appends()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    parts.web.titles[u"http://n/"_s] = u"New"_s;
    const QString path = parts.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://a/"_s}));

    parts.actions.actLoadURL();
    QCOMPARE(parts.window.panels.size(), std::size_t{1});
    QCOMPARE(parts.window.panels[0].title, localized(u"TitleLoadURL"_s));
    QCOMPARE(parts.window.panels[0].button, localized(u"Execute"_s));
    QCOMPARE(parts.window.panels[0].fileType, u"rssurl"_s);

    parts.control.isActive = true;
    parts.actions.loadURLChosen(path);
    QCOMPARE(parts.storedLetters(), u"abna"_s);
    QCOMPARE(parts.calls, (QStringList{u"stop"_s, u"start"_s}));
    QCOMPARE(parts.list.readerAt(2)->name(), u"New"_s);
    parts.actions.loadURLChosen(path); // twice lists every feed twice
    QCOMPARE(parts.storedLetters(), u"abnana"_s);
}

void FeedListActionsTest::import_ofAFileThatCannotBeRead()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    parts.control.isActive = true;
    QTest::ignoreMessage(QtWarningMsg, "File read error.");
    parts.actions.loadURLChosen(parts.folder.filePath(u"missing.rssurl"_s));
    QVERIFY(parts.calls.isEmpty()); // the display was not stopped for it
    QCOMPARE(parts.letters(), u"ab"_s);
    QCOMPARE(parts.window.statuses, QStringList{localized(u"FeedFileReadError"_s)});
}

void FeedListActionsTest::import_duringQuit_losesNothing()
{
    FeedListParts parts;
    parts.startWith(u"a"_s);
    const QString path = parts.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://o/"_s}));
    parts.web.duringLoad = [&] { parts.clock.endSleeps(); };
    parts.actions.loadURLChosen(path);
    QCOMPARE(parts.storedLetters(), u"ano"_s); // their names are fetched at the next start
}

void FeedListActionsTest::export_writesTheAddresses()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    parts.list.shouldEditTableColumn(0); // disabled feeds are exported too
    parts.actions.actSaveURL();
    QCOMPARE(parts.window.panels.size(), std::size_t{1});
    QCOMPARE(parts.window.panels[0].title, localized(u"TitleSaveURL"_s));
    QCOMPARE(parts.window.panels[0].button, localized(u"Execute"_s));
    QCOMPARE(parts.window.panels[0].fileName, u"untitled.rssurl"_s);

    parts.actions.saveURLChosen(parts.folder.filePath(u"mine.txt"_s));
    QCOMPARE(readAddressFile(parts.folder.filePath(u"mine.rssurl"_s)),
             (QStringList{u"http://a/"_s, u"http://b/"_s}));
    const QString written = parts.folder.filePath(u"mine.rssurl"_s);
    QCOMPARE(parts.window.statuses, QStringList{localized(u"FeedFileSaved"_s).arg(written)});
}

void FeedListActionsTest::export_thatFails_isSaid()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    QTest::ignoreMessage(QtWarningMsg, "File save error.");
    parts.actions.saveURLChosen(parts.folder.filePath(u"no/such/folder/mine"_s));
    QCOMPARE(parts.window.statuses, QStringList{localized(u"FeedFileSaveError"_s)});
}

void FeedListActionsTest::rowDrop_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<QString>("letters");
    QTest::newRow("onto itself") << 1 << 1 << false << u"abcd"_s;
    QTest::newRow("just below itself") << 1 << 2 << false << u"abcd"_s;
    QTest::newRow("one up") << 1 << 0 << true << u"bacd"_s;
    QTest::newRow("one down") << 1 << 3 << true << u"acbd"_s;
    QTest::newRow("to the end") << 0 << 4 << true << u"bcda"_s;
    QTest::newRow("to the top") << 3 << 0 << true << u"dabc"_s;
    QTest::newRow("the last one below itself") << 3 << 4 << false << u"abcd"_s;
    QTest::newRow("from nowhere") << -1 << 1 << false << u"abcd"_s;
    QTest::newRow("from past the list") << 4 << 0 << false << u"abcd"_s;
    QTest::newRow("to past the end") << 0 << 5 << false << u"abcd"_s;
}

void FeedListActionsTest::rowDrop()
{
    QFETCH(int, from);
    QFETCH(int, target);
    QFETCH(bool, isAccepted);
    FeedListParts parts;
    parts.startWith(u"abcd"_s);
    parts.control.isActive = true;
    QCOMPARE(parts.actions.acceptRowDrop(from, target), isAccepted);
    QTEST(parts.letters(), "letters");
    QCOMPARE(parts.calls, isAccepted ? (QStringList{u"stop"_s, u"start"_s}) : QStringList());
    if (isAccepted)
        QCOMPARE(parts.storedLetters(), parts.letters());
}

void FeedListActionsTest::addressDrop_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<QString>("letters");
    QTest::addColumn<int>("statuses");
    QTest::newRow("http at the top") << u"http://n/"_s << 0 << true << u"nab"_s << 0;
    QTest::newRow("feed becomes http") << u"feed://n/"_s << 1 << true << u"anb"_s << 0;
    QTest::newRow("at the end") << u"http://n/"_s << 2 << true << u"abn"_s << 0;
    QTest::newRow("what cannot be read is added, and said")
        << u"http://x/"_s << 2 << true << u"abx"_s << 1;
    QTest::newRow("https is refused, and said") << u"https://n/"_s << 0 << false << u"ab"_s << 1;
    QTest::newRow("any text is refused") << u"news"_s << 0 << false << u"ab"_s << 0;
    QTest::newRow("nothing is refused") << u""_s << 0 << false << u"ab"_s << 0;
}

void FeedListActionsTest::addressDrop()
{
    QFETCH(QString, text);
    QFETCH(int, target);
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    parts.web.titles[u"http://n/"_s] = u"New"_s;
    QTEST(parts.actions.acceptAddressDrop(text, target), "isAccepted");
    QVERIFY(parts.web.requested.isEmpty()); // who dropped it is not kept waiting for the fetch
    parts.mainThread.drain();
    QTEST(parts.letters(), "letters");
    QTEST(static_cast<int>(parts.window.statuses.size()), "statuses");
    if (parts.letters().endsWith(u'x')) {
        const QString sentence = localized(u"FeedCannotBeRead"_s);
        QCOMPARE(parts.window.statuses.constFirst(), sentence.arg(text, u"ない <b>404</b>"_s));
    }
    if (parts.letters().size() == 3)
        QCOMPARE(parts.storedLetters(), parts.letters());
}

// The list may have changed when the drop's turn comes.
void FeedListActionsTest::addressDrop_goesAboveTheRowThatWasThere()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    QVERIFY(parts.actions.acceptAddressDrop(u"http://n/"_s, 1));
    QVERIFY(parts.actions.acceptAddressDrop(u"http://o/"_s, 2));
    parts.list.moveRSSReaderFromIndex(1, 0); // b is the first one now
    parts.list.removeReader(2);              // and c is gone
    parts.mainThread.drain();
    QCOMPARE(parts.storedLetters(), u"nbao"_s);
}

void FeedListActionsTest::import_cancelled_addsNothing()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    const QString path = parts.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://o/"_s, u"http://p/"_s}));
    parts.web.titles = {
        {u"http://n/"_s, u"N"_s}, {u"http://o/"_s, u"O"_s}, {u"http://p/"_s, u"P"_s}};
    parts.control.isActive = true;
    parts.web.duringLoad = [&] {
        QVERIFY(!parts.list.isImportCancelled());
        if (parts.web.requested.size() == 2) {
            parts.actions.actImportCancel();
            QVERIFY(parts.list.isImportCancelled()); // ends the transfer too
        }
    };
    parts.actions.loadURLChosen(path);
    QCOMPARE(parts.web.requested, (QStringList{u"http://n/"_s, u"http://o/"_s}));
    QCOMPARE(parts.letters(), u"ab"_s);
    QCOMPARE(parts.window.statuses.constLast(), localized(u"ImportCancelled"_s));
    QCOMPARE(parts.calls, (QStringList{u"stop"_s, u"start"_s}));
    QVERIFY(!parts.list.isImportCancelled());

    parts.web.duringLoad = {};
    parts.actions.loadURLChosen(path); // the next one is not
    QCOMPARE(parts.storedLetters(), u"abnop"_s);
}

void FeedListActionsTest::import_saysWhatItAdded()
{
    FeedListParts parts;
    parts.startWith(u"a"_s);
    parts.web.titles[u"http://n/"_s] = u"New"_s;
    const QString path = parts.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://n/"_s}));
    parts.actions.loadURLChosen(path);
    QCOMPARE(parts.window.statuses.constLast(), localized(u"ImportDone"_s).arg(2));
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://x/"_s, u"http://y/"_s}));
    parts.actions.loadURLChosen(path);
    QCOMPARE(parts.window.statuses.constLast(), localized(u"ImportDoneUnread"_s).arg(3).arg(2));
}

QTEST_GUILESS_MAIN(FeedListActionsTest)
#include "feedlistactions_test.moc"
