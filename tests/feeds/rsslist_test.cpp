// SPDX-License-Identifier: MIT
#include "FeedListParts.h"

#include <QRandomGenerator>
#include <QTest>

#include <thread>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class RSSListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Start-up.
    void firstRun_fetchesTheFourNames();
    void completeEntry_isNotFetched();
    void incompleteEntry_isFetchedAndSaved_data();
    void incompleteEntry_isFetchedAndSaved();
    void start_showsEachAddress();
    void start_skipsWhatIsNoEntry();
    void quitDuringTheStart_savesNothing();

    // Adding and editing.
    void add_data();
    void add();
    void edit();
    void edit_outsideTheList_changesNothing();
    void unreadableFeed_isAddedWithoutAName();
    void error_beforeThereWasALog_isReported();
    void import_countsWhatHasNoName_data();
    void import_countsWhatHasNoName();

    // The display rests.
    void change_stopsTheDisplay_data();
    void change_stopsTheDisplay();
    void add_stopsBeforeItFetches();

    // Enabling.
    void checkBox_invertsAndSaves();
    void headerClick_invertsEachForItself();
    void validSiteCount_countsTheEnabled();
    void failedSiteCount_countsWhatOffersNothing();

    // The one-feed list.
    void tempReader_standsInTheListsPlace();
    void tempReader_isSavedInTheListsPlace();

    void moves_areAPermutation();
    void moves_outsideTheList_changeNothing();
    void view_isStoredAtOnce();
    void feeds_whileTheListChanges();
};

// Start-up. -------------------------------------------------------------------------------------

void RSSListTest::firstRun_fetchesTheFourNames()
{
    FeedListParts parts;
    for (const PropertyValue &value : factoryFeedEntries()) {
        const QString address = feedEntryFrom(value)->address;
        parts.web.titles[address] = u"Name of "_s + address.mid(8);
    }
    parts.list.awakeFromNibx();
    QCOMPARE(parts.list.readerCount(), 4);
    QCOMPARE(parts.web.requested.size(), 4);
    QCOMPARE(parts.calls, QStringList{u"controls 0"_s});

    const std::vector<FeedEntry> stored = parts.storedEntries();
    QCOMPARE(stored.size(), std::size_t{4});
    for (const FeedEntry &entry : stored) {
        QCOMPARE(entry.name, u"Name of "_s + entry.address.mid(8));
        QCOMPARE(entry.format, 2);
    }
    parts.web.requested.clear();
    parts.list.createReaders(); // the next start has nothing to ask for
    QVERIFY(parts.web.requested.isEmpty());
}

void RSSListTest::completeEntry_isNotFetched()
{
    FeedListParts parts;
    parts.storeEntries({{false, u"http://a/"_s, u"My name"_s, 3}});
    parts.list.awakeFromNibx();
    QVERIFY(parts.web.requested.isEmpty());
    const RSSList::Reader reader = parts.list.readerAt(0);
    QCOMPARE(reader->name(), u"My name"_s);
    QCOMPARE(reader->format(), 3);
    QCOMPARE(reader->validate(), false);
    QVERIFY(!QFile::exists(parts.storePath())); // nothing new, nothing saved
}

void RSSListTest::incompleteEntry_isFetchedAndSaved_data()
{
    QTest::addColumn<std::shared_ptr<PropertyValue>>("entry");
    const auto row = [](const char *name, const PropertyDictionary &entry) {
        QTest::newRow(name) << std::make_shared<PropertyValue>(entry);
    };
    const PropertyEntry address{u"RSSAddressString"_s, u"http://a/"_s};
    row("without a format", {address, {u"RSSNameString"_s, u"old"_s}});
    row("without a name", {address, {u"RSSFormat"_s, 2}});
    row("with an empty name", {address, {u"RSSNameString"_s, u""_s}, {u"RSSFormat"_s, 2}});
    row("with an unknown format", {address, {u"RSSNameString"_s, u"old"_s}, {u"RSSFormat"_s, 4}});
    row("with nothing but the address", {address});
}

void RSSListTest::incompleteEntry_isFetchedAndSaved()
{
    QFETCH(std::shared_ptr<PropertyValue>, entry);
    FeedListParts parts;
    parts.web.titles[u"http://a/"_s] = u"Title"_s;
    parts.defaults.setArray({*entry, toDictionary({true, u"http://b/"_s, u"B"_s, 1})},
                            u"RSSSiteAddresses"_s);
    parts.list.awakeFromNibx();
    QCOMPARE(parts.web.requested, QStringList{u"http://a/"_s});
    QVERIFY((parts.storedEntries() == std::vector<FeedEntry>{{false, u"http://a/"_s, u"Title"_s, 2},
                                                             {true, u"http://b/"_s, u"B"_s, 1}}));
}

void RSSListTest::start_showsEachAddress()
{
    FeedListParts parts;
    parts.startWith(u"ab"_s);
    QCOMPARE(parts.window.shown, (QStringList{u"http://a/"_s, u"http://b/"_s, u""_s}));
}

void RSSListTest::start_skipsWhatIsNoEntry()
{
    FeedListParts parts;
    parts.defaults.setArray(
        {u"http://x/"_s, 5, PropertyDictionary(), toDictionary({true, u"http://a/"_s, u"A"_s, 2})},
        u"RSSSiteAddresses"_s);
    parts.list.awakeFromNibx();
    QCOMPARE(parts.letters(), u"a"_s);
}

void RSSListTest::quitDuringTheStart_savesNothing()
{
    FeedListParts parts;
    parts.storeEntries({{true, u"http://a/"_s, u"old"_s, 0}});
    QVERIFY(parts.defaults.synchronize());
    parts.web.duringLoad = [&] { parts.clock.endSleeps(); };
    parts.list.awakeFromNibx();
    QCOMPARE(parts.storedEntries().front().name, u"old"_s);
}

// Adding and editing. ---------------------------------------------------------------------------

void RSSListTest::add_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("letters");
    QTest::newRow("no row selected: at the end") << -1 << u"abcn"_s;
    QTest::newRow("the first row: before it") << 0 << u"nabc"_s;
    QTest::newRow("the last row: before it") << 2 << u"abnc"_s;
    QTest::newRow("the row past the last: at the end") << 3 << u"abcn"_s;
    QTest::newRow("far outside: at the end") << 1000 << u"abcn"_s;
}

void RSSListTest::add()
{
    QFETCH(int, index);
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.web.titles[u"http://n/"_s] = u"New"_s;
    parts.list.createReaderWithAddress(u"http://n/"_s, index, RSSList::AddressMode::Add);
    QTEST(parts.letters(), "letters");
    QCOMPARE(parts.web.requested, QStringList{u"http://n/"_s});
    QCOMPARE(parts.window.shown.mid(4), (QStringList{u"http://n/"_s, u""_s}));

    parts.list.renewRSSList();
    QTEST(parts.storedLetters(), "letters");
}

void RSSListTest::edit()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.web.titles[u"http://n/"_s] = u"New"_s;
    parts.list.readerAt(1)->setValidate(false);
    parts.list.createReaderWithAddress(u"http://n/"_s, 1, RSSList::AddressMode::Edit);
    QCOMPARE(parts.letters(), u"anc"_s);
    QCOMPARE(parts.list.readerAt(1)->name(), u"New"_s);
    QCOMPARE(parts.list.readerAt(1)->validate(), true); // it is another feed
}

void RSSListTest::edit_outsideTheList_changesNothing()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    for (int index : {-1, 3})
        parts.list.createReaderWithAddress(u"http://n/"_s, index, RSSList::AddressMode::Edit);
    QCOMPARE(parts.letters(), u"abc"_s);
}

void RSSListTest::unreadableFeed_isAddedWithoutAName()
{
    FeedListParts parts;
    parts.startWith(u"a"_s);
    parts.list.createReaderWithAddress(u"http://x/"_s, -1, RSSList::AddressMode::Add);
    parts.list.renewRSSList();
    QCOMPARE(parts.letters(), u"ax"_s);
    QVERIFY(!parts.list.readerAt(1)->name());
    QVERIFY((parts.storedEntries()[1] == FeedEntry{true, u"http://x/"_s, u""_s, 0}));

    QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://x/)");
    QCOMPARE(parts.list.readerAt(1)->readHeadlines(), 1);
    QCOMPARE(parts.list.readerAt(1)->statusString(), u"読込エラー"_s);
}

void RSSListTest::error_beforeThereWasALog_isReported()
{
    FeedListParts parts;
    parts.startWith(u""_s);
    parts.list.createReaderWithAddress(u"http://x/"_s, -1, RSSList::AddressMode::Add);
    QCOMPARE(parts.log.errors.size(), std::size_t{1});
    QCOMPARE(parts.log.errors.front().first, u"http://x/"_s);
}

void RSSListTest::import_countsWhatHasNoName_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("unread");
    QTest::newRow("a feed") << u"http://n/"_s << 0;
    QTest::newRow("nothing there") << u"http://x/"_s << 1;
    QTest::newRow("a page that is no feed") << u"http://page/"_s << 1;
}

void RSSListTest::import_countsWhatHasNoName()
{
    QFETCH(QString, address);
    QFETCH(int, unread);
    FeedListParts parts;
    parts.startWith(u"a"_s);
    parts.web.titles[u"http://n/"_s] = u"New"_s;
    parts.web.pages << u"http://page/"_s;
    QCOMPARE(parts.list.appendAddresses({address}).unread, unread);
    QCOMPARE(parts.list.readerAt(1)->lastErrorCause().isEmpty(), unread == 0);
    QCOMPARE(parts.window.statuses.size(), unread); // says why
}

// The display rests. ----------------------------------------------------------------------------

using Change = std::function<void(FeedListParts &)>;

void RSSListTest::change_stopsTheDisplay_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    using enum RSSList::AddressMode;
    row("add", [](FeedListParts &p) { p.list.createReaderWithAddress(u"http://n/"_s, -1, Add); });
    row("edit", [](FeedListParts &p) { p.list.createReaderWithAddress(u"http://n/"_s, 0, Edit); });
    row("delete", [](FeedListParts &p) { p.list.removeReader(0); });
    row("import", [](FeedListParts &p) {
        p.list.appendAddresses({u"http://n/"_s, u"http://o/"_s});
    });
    row("move", [](FeedListParts &p) { p.list.moveRSSReaderFromIndex(0, 2); });
}

void RSSListTest::change_stopsTheDisplay()
{
    QFETCH(Change, change);
    FeedListParts resting;
    resting.startWith(u"abc"_s);
    change(resting);
    QVERIFY(resting.calls.isEmpty());

    FeedListParts displaying;
    displaying.startWith(u"abc"_s);
    displaying.control.isActive = true;
    change(displaying);
    QCOMPARE(displaying.calls, (QStringList{u"stop"_s, u"start"_s}));
}

void RSSListTest::add_stopsBeforeItFetches()
{
    FeedListParts parts;
    parts.startWith(u"a"_s);
    parts.control.isActive = true;
    parts.web.duringLoad = [&] {
        QVERIFY(!parts.control.isActive);
        QCOMPARE(parts.control.changesRunning, 1); // a timer that fires now has to wait
    };
    parts.list.createReaderWithAddress(u"http://n/"_s, -1, RSSList::AddressMode::Add);
    QCOMPARE(parts.web.requested.size(), 1);
    QCOMPARE(parts.control.changesRunning, 0);
}

// Enabling. -------------------------------------------------------------------------------------

void RSSListTest::checkBox_invertsAndSaves()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.control.isActive = true;
    QVERIFY(parts.list.shouldEditTableColumn(2));
    QCOMPARE(parts.storedEntries()[2].validate, false);
    QVERIFY(parts.list.shouldEditTableColumn(2));
    QCOMPARE(parts.storedEntries()[2].validate, true);
    QVERIFY(parts.calls.isEmpty()); // the display goes on: the list keeps its order and contents

    for (int row : {-1, 3}) {
        QTest::ignoreMessage(QtWarningMsg, "RSSList:index error4");
        QVERIFY(!parts.list.shouldEditTableColumn(row));
    }
}

void RSSListTest::headerClick_invertsEachForItself()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.list.shouldEditTableColumn(1);
    parts.list.invertValidates();
    const std::vector<FeedEntry> stored = parts.storedEntries();
    QCOMPARE(stored[0].validate, false);
    QCOMPARE(stored[1].validate, true);
    QCOMPARE(stored[2].validate, false);
}

void RSSListTest::validSiteCount_countsTheEnabled()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    QCOMPARE(parts.list.validSiteCount(), 3);
    parts.list.shouldEditTableColumn(0);
    QCOMPARE(parts.list.validSiteCount(), 2);
    QCOMPARE(parts.list.readerCount(), 3);
}

void RSSListTest::failedSiteCount_countsWhatOffersNothing()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.web.titles[u"http://a/"_s] = u"A"_s;
    parts.web.itemsIn = u"http://a/"_s;
    QCOMPARE(parts.list.failedSiteCount(), 0); // nothing has been read
    parts.list.createReaderWithAddress(u"http://x/"_s, -1, RSSList::AddressMode::Add);
    QCOMPARE(parts.list.failedSiteCount(), 0); // the name could not be had; that is no read
    for (int row : {0, 1, 2})
        parts.list.readerAt(row)->readHeadlines();
    QCOMPARE(parts.list.failedSiteCount(), 2); // b and c
    parts.list.shouldEditTableColumn(1);
    QCOMPARE(parts.list.failedSiteCount(), 1);
    parts.list.removeReader(2);
    QCOMPARE(parts.list.failedSiteCount(), 0);
}

// The one-feed list. ----------------------------------------------------------------------------

void RSSListTest::tempReader_standsInTheListsPlace()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.web.titles[u"http://t/"_s] = u"Temporary"_s;
    parts.list.setTempReader(u"http://t/"_s);

    QTest::ignoreMessage(QtWarningMsg, "readerList: List is tempReader");
    const auto feeds = parts.list.feeds();
    QCOMPARE(feeds.size(), std::size_t{1});
    QCOMPARE(feeds.front()->address(), u"http://t/"_s);
    QCOMPARE(parts.list.validSiteCount(), 1);
    QCOMPARE(parts.letters(), u"abc"_s); // the table goes on showing the list

    parts.list.delTempReader();
    QCOMPARE(parts.list.feeds().size(), std::size_t{3});
    QCOMPARE(parts.list.validSiteCount(), 3);
}

void RSSListTest::tempReader_isSavedInTheListsPlace()
{
    // Every start, stop and read drops the one-feed list first, so this does not happen by itself.
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    parts.list.setTempReader(u"http://t/"_s);
    QTest::ignoreMessage(QtWarningMsg, "readerList: List is tempReader");
    parts.list.saveSiteAddresses();
    QCOMPARE(parts.storedLetters(), u"t"_s);
    parts.list.delTempReader();
    parts.list.saveSiteAddresses();
    QCOMPARE(parts.storedLetters(), u"abc"_s);
}

void RSSListTest::moves_areAPermutation()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    FeedListParts parts;
    QString expected = u"abcdefghij"_s;
    parts.startWith(expected);
    for (int i = 0; i < 300; ++i) {
        const int from = random.bounded(10);
        const int target = random.bounded(11);
        parts.list.moveRSSReaderFromIndex(from, target);
        // Taking the row out first moves the place below it up by one.
        const QChar moved = expected.at(from);
        expected.remove(from, 1).insert(target > from ? target - 1 : target, moved);
        QCOMPARE(parts.letters(), expected);
    }
}

void RSSListTest::moves_outsideTheList_changeNothing()
{
    FeedListParts parts;
    parts.startWith(u"abc"_s);
    for (const auto &[from, target] : {std::pair(-1, 0), {3, 0}, {0, -1}, {0, 4}})
        parts.list.moveRSSReaderFromIndex(from, target);
    QCOMPARE(parts.letters(), u"abc"_s);
}

void RSSListTest::view_isStoredAtOnce()
{
    FeedListParts parts;
    QCOMPARE(parts.list.view().rowHeight(), 17.0);
    QCOMPARE(parts.list.view().fontSize(), 12.0);
    QVERIFY(parts.list.view().columnWidths().empty());

    parts.list._setRowHeight(-3.0); // no bound, in either direction
    parts.list.setFont(200.5);
    QCOMPARE(parts.list.font(), 200.5);
    parts.list.view().setColumnWidths({10.0, 20.5});
    UserDefaults onDisk(parts.storePath());
    QCOMPARE(onDisk.floatForKey(u"RSSRowHeight"_s), -3.0);
    QCOMPARE(onDisk.floatForKey(u"RSSFontSize"_s), 200.5);
    QVERIFY((FeedViewSettings(onDisk).columnWidths() == std::vector<double>{10.0, 20.5}));
}

void RSSListTest::feeds_whileTheListChanges()
{
    FeedListParts parts;
    parts.startWith(u"abcdef"_s);
    std::atomic<bool> done = false;
    std::atomic<int> wrong = 0;
    std::thread reader([&] {
        while (!done) {
            const auto feeds = parts.list.feeds();
            wrong += feeds.size() == 6 || feeds.size() == 7 ? 0 : 1;
            for (const auto &feed : feeds)
                wrong += feed->address().isEmpty() ? 1 : 0;
            parts.list.validSiteCount();
            parts.list.renewTableView();
        }
    });
    for (int i = 0; i < 30; ++i) {
        parts.list.moveRSSReaderFromIndex(i % 6, (i + 3) % 6);
        parts.list.shouldEditTableColumn(i % 6);
        parts.list.appendAddresses({u"http://x/"_s});
        parts.list.removeReader(6);
    }
    done = true;
    reader.join();
    QCOMPARE(wrong.load(), 0);
}

QTEST_GUILESS_MAIN(RSSListTest)
#include "rsslist_test.moc"
