// SPDX-License-Identifier: MIT
#include "ListHouse.h"
#include "platform/Localization.h"
#include "platform/Worker.h"

#include <QtTest>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto lastMessages = u"LastRSSMessages"_s;
const auto noDateMessages = u"NoDateMessages"_s;

qsizetype storedCount(const QString &path, const QString &key)
{
    const UserDefaults stored(path);
    const auto array = stored.arrayForKey(key);
    return array ? qsizetype(array->size()) : -1;
}

} // namespace

class MessageListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readShowsItsProgress()
    {
        ListHouse house;
        QStringList seen;
        const auto look = [&] {
            const auto shown = house.list.presentation();
            seen.append(u"%1 %2/%3 %4"_s.arg(shown->statusText)
                            .arg(shown->progressValue)
                            .arg(shown->progressMaximum)
                            .arg(shown->progressRunning));
        };
        house.feeds.add(u"http://a/"_s).onRead = look;
        house.feeds.add(u"http://b/"_s, 1).onRead = look;
        Worker window(house.clock);
        window.start([&] {
            house.clock.sleepFor(999ms);
            look();
        });
        house.list.readRSSPages();
        window.join();
        look();
        QCOMPARE(seen, QStringList({u"http://a/ 0/2 1"_s, u"http://b/ 1/2 1"_s,
                                    localized(u"Read RSS complete"_s) + u" 2/2 1"_s, u" 2/2 0"_s}));
    }

    void windowIsToldOfChanges()
    {
        ListHouse house;
        int notices = 0;
        house.list.changeNotice().listen([&] { ++notices; });
        house.list.setStatusText(u"x"_s);
        house.list.setStatusText(u"y"_s);
        house.mainThread.drain();
        QCOMPARE(notices, 1);
        house.list.renewTableView();
        house.mainThread.drain();
        QCOMPARE(notices, 2);
    }

    void previousListStaysUntilTheNewOneIsWhole()
    {
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        feed.items = {item(u"a"_s)};
        house.list.readRSSPages();
        feed.items = {item(u"b"_s)};
        QStringList during;
        feed.onRead = [&] { during = house.headlines(); };
        house.list.readRSSPages();
        QCOMPARE(during, QStringList(u"a"_s));
        QCOMPARE(house.headlines(), QStringList(u"b"_s));
    }

    void listIsRememberedForTheNextStart()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {item(u"a"_s), item(u"b"_s)};
        house.list.readRSSPages();
        QCOMPARE(storedCount(house.storePath(), lastMessages), 2);

        QueueMainThread mainThread;
        UserDefaults defaults(house.storePath());
        MessageList next({house.clock, mainThread, defaults, house.sounds, house.documents(),
                          house.templatePath()});
        next.connect({house.feeds, house.settings, house.run, house.screen});
        next.awakeFromNibx();
        QCOMPARE(next.messageCount(), 0); // nothing is shown before the first read
        house.feeds.all[0]->items = {item(u"b"_s), item(u"c"_s)};
        next.readRSSPages();
        QVERIFY(!next.msgList()->at(0).isNew);
        QVERIFY(next.msgList()->at(1).isNew);
    }

    void quitDuringAReadStoresNothing()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {item(u"a"_s)};
        house.list.readRSSPages();
        house.feeds.all[0]->items = {item(u"b"_s)};
        house.feeds.all[0]->onRead = [&] { house.clock.endSleeps(); };
        ListFeed &second = house.feeds.add(u"http://b/"_s);
        house.list.readRSSPages();
        QCOMPARE(second.reads, 0);
        QCOMPARE(house.headlines(), QStringList(u"a"_s));
        QCOMPARE(storedCount(house.storePath(), lastMessages), 1);
        QVERIFY(!house.list.presentation()->progressRunning);
        QCOMPARE(house.list.presentation()->statusText, QString());
    }

    void storeThatCannotBeWrittenIsSaid()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {item(u"a"_s)};
        // A folder in the store's place cannot be replaced by a file.
        QVERIFY(QDir().mkpath(house.storePath() + u"/x"_s));
        house.list.readRSSPages();
        QVERIFY(!house.list.presentation()->statusText.isEmpty());
        QCOMPARE(house.list.presentation()->statusText, house.defaults.lastError());
        QCOMPARE(house.headlines(), QStringList(u"a"_s));
    }

    // A feed of 110 kB is enough for it: an item with no description of its own has the one before.
    void feedOfAnySize_leavesTheUsersEditsStorable()
    {
        ListHouse house;
        const QString essay(70'000, u'長');
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        for (int i = 0; i < 1000; ++i) {
            ItemRecord record = item(QString::number(i), u"11/14 10:30"_s);
            record.description = essay;
            feed.items.push_back(record);
        }
        QTest::ignoreMessage(
            QtWarningMsg,
            "readRSSPages: too much text to remember, long descriptions are cut in the store");
        house.list.readRSSPages();
        QCOMPARE(house.list.presentation()->statusText, QString()); // the save succeeded
        QCOMPARE(house.list.msgList()->at(999).description.value_or(QString()), essay);
        QTest::failOnWarning(QRegularExpression(u".*"_s)); // it is said once
        house.list.readRSSPages();

        house.defaults.setBool(false, u"UseRSSTimer"_s);
        QVERIFY(house.defaults.synchronize());
        UserDefaults reread(house.storePath());
        QVERIFY(reread.hasKey(u"UseRSSTimer"_s));
        QVERIFY(QFileInfo(house.storePath()).size() < 17 * 1024 * 1024);

        QueueMainThread mainThread;
        MessageList next({house.clock, mainThread, reread, house.sounds, house.documents(),
                          house.templatePath()});
        next.connect({house.feeds, house.settings, house.run, house.screen});
        next.awakeFromNibx();
        feed.items.resize(10);
        feed.items.push_back(item(u"another"_s, u"11/14 10:30"_s));
        next.readRSSPages();
        for (const Message &message : *next.msgList())
            QCOMPARE(message.isNew, message.headline == u"another"_s);
    }

    void listOfAnOrdinarySizeIsStoredAsItIs()
    {
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        for (int i = 0; i < 100; ++i)
            feed.items.push_back({QString::number(i), u"11/14 10:30"_s, QString(20'000, u'長'),
                                  u"サイト"_s, u"http://a/"_s + QString::number(i)});
        house.list.readRSSPages();
        const UserDefaults stored(house.storePath());
        QVERIFY(messagesFrom(stored.arrayForKey(lastMessages).value_or(PropertyArray())) ==
                *house.list.msgList());
    }

    void firstSeenTimesAreSavedWithTheRead()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {item(u"a"_s)};
        for (int i = 0; i < 1000; ++i)
            house.list.dateStringWithMessage(QString::number(i));
        QCOMPARE(storedCount(house.storePath(), noDateMessages), -1);
        house.list.readRSSPages();
        QCOMPARE(storedCount(house.storePath(), noDateMessages), 1000);
    }

    void firstSeenTimesAreSavedWithTheNextMessage()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {item(u"a"_s)};
        house.list.readRSSPages();
        house.list.dateStringWithMessage(u"drawn"_s);
        QCOMPARE(storedCount(house.storePath(), noDateMessages), -1);
        house.list.dispRSSDataWithIndex(0);
        QCOMPARE(storedCount(house.storePath(), noDateMessages), 1);
    }

    void firstSeenTimesAreSavedOnRequestAndAtTheEnd()
    {
        ListHouse house;
        house.list.dateStringWithMessage(u"a"_s);
        house.list.saveFirstSeenTimes();
        QCOMPARE(storedCount(house.storePath(), noDateMessages), 1);
        house.list.dateStringWithMessage(u"b"_s);
        house.list.applicationWillTerminate();
        QCOMPARE(storedCount(house.storePath(), noDateMessages), 2);
    }

    void randomInsertionOfNothingIsLogged()
    {
        ListHouse house;
        QTest::ignoreMessage(QtWarningMsg, "randomAddObject: object is nil");
        house.list.randomAddObject(std::nullopt);
        QCOMPARE(house.list.messageCount(), 0);
        QCOMPARE(house.drawn.load(), -1);
    }

    void randomInsertion()
    {
        ListHouse house;
        for (const QString &headline : {u"a"_s, u"b"_s, u"c"_s, u"d"_s}) {
            Message message;
            message.headline = headline;
            house.list.randomAddObject(message);
        }
        // 0: empty list; 1 mod 1 is the last place: append; 2 mod 2 and 3 mod 3: the front.
        QCOMPARE(house.headlines().join(u' '), u"d c a b"_s);
    }

    void dateOperationsUseThePresent()
    {
        ListHouse house;
        QVERIFY(house.list.dateWithString(u"11/14 11:00"_s) ==
                localMoment(u"2026-11-14T11:00:00"_s));
        QVERIFY(house.list.dateWithString(u"11/14 13:00"_s) ==
                localMoment(u"2025-11-14T13:00:00"_s));
        QVERIFY(!house.list.isTooOldDate(u"11/04 12:00"_s));
        QVERIFY(house.list.isTooOldDate(u"11/04 11:59"_s));
        QCOMPARE(house.list.dateStringWithMessage(u"x"_s), u"11/14 12:00"_s);
    }

    void launchHandsTheFontSettingsOn()
    {
        ListHouse house;
        house.list.awakeFromNibx();
        QCOMPARE(house.journal.take(),
                 QStringList({u"screen font HiraMinPro-W3"_s, u"board font HiraMinPro-W3"_s,
                              u"board boarder 72"_s}));
    }

    void fontSettingsReachBoardAndStoreAtOnce()
    {
        ListHouse house;
        house.list.actFontItem(u"IPAexMincho"_s);
        house.list.actBoarderItem(96);
        house.list.setExpansion(-0.2F);
        const QStringList told = house.journal.take();
        QVERIFY(told.contains(u"board font IPAexMincho"_s));
        QVERIFY(told.contains(u"screen font IPAexMincho"_s));
        QVERIFY(told.contains(u"board boarder 96"_s));
        QVERIFY(told.contains(u"board expansion -0.2"_s) || !told.filter(u"board exp"_s).isEmpty());
        QVERIFY(!told.filter(u"screen expansion"_s).isEmpty());
        const UserDefaults stored(house.storePath());
        QCOMPARE(stored.stringForKey(u"LEDViewFontName"_s), u"IPAexMincho"_s);
        QCOMPARE(stored.integerForKey(u"FontBoarderValue"_s), 96);
    }

    void boarderMenuHandsTheStoredThresholdOn()
    {
        ListHouse house;
        house.list.setFontBoarder(16);
        house.journal.take();
        const auto items = house.list.createBoarderMenu();
        QVERIFY(items[1].isChecked);
        QCOMPARE(house.journal.take(), QStringList(u"board boarder 16"_s));
    }

    void menusAreEnabledByOutputAndFontFiles_data()
    {
        QTest::addColumn<bool>("onBoard");
        QTest::addColumn<bool>("bitmapFont");
        QTest::addColumn<bool>("fontEnabled");
        QTest::addColumn<bool>("boarderEnabled");
        QTest::newRow("screen") << false << false << true << false;
        QTest::newRow("screen, bitmap fonts") << false << true << true << false;
        QTest::newRow("board, outline font") << true << false << true << true;
        QTest::newRow("board, bitmap fonts") << true << true << false << false;
    }

    void menusAreEnabledByOutputAndFontFiles()
    {
        QFETCH(bool, onBoard);
        QFETCH(bool, bitmapFont);
        ListHouse house;
        house.run.outputLED = onBoard;
        house.settings.usesBitmapFont = bitmapFont;
        QTEST(house.list.isFontItemEnabled(), "fontEnabled");
        QTEST(house.list.isBoarderItemEnabled(), "boarderEnabled");
    }

    void doubleClickOpensTheLink()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {{u"a"_s, {}, {}, {}, u"http://l/a"_s}};
        house.list.readRSSPages();
        house.list.actDoubleClickListView(0, false);
        QCOMPARE(house.journal.take(), QStringList(u"open http://l/a"_s));
        house.run.browserTakes = false;
        house.list.actDoubleClickListView(0, false);
        QCOMPARE(house.journal.take(), QStringList({u"open http://l/a"_s, u"alert"_s}));
    }

    void doubleClickOutsideTheListDoesNothing()
    {
        ListHouse house;
        house.list.actDoubleClickListView(0, false);
        house.list.actDoubleClickListView(-1, true);
        QVERIFY(house.journal.take().isEmpty());
    }

    void optionDoubleClickStartsAgainAtTheRow_data()
    {
        QTest::addColumn<bool>("isActive");
        QTest::addColumn<QStringList>("asked");
        QTest::newRow("while displaying")
            << true << QStringList{u"stop"_s, u"line 5"_s, u"start"_s};
        QTest::newRow("while stopped") << false << QStringList{u"line 5"_s, u"start"_s};
    }

    void optionDoubleClickStartsAgainAtTheRow()
    {
        QFETCH(bool, isActive);
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        for (int i = 0; i < 6; ++i)
            feed.items.push_back(item(QString::number(i)));
        house.list.readRSSPages();
        house.run.hasDisplayThread = isActive;
        house.list.actDoubleClickListView(5, true);
        QTEST(house.journal.take(), "asked");
    }

    void doubleClickOnTheSignOpensTheMessageOnDisplay()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {item(u"a"_s),
                                                 {u"b"_s, {}, {}, {}, u"http://l/b"_s}};
        house.list.readRSSPages();
        house.list.dispRSSDataWithIndex(1);
        house.journal.take();
        house.list.actDoubleClickRSSView();
        QCOMPARE(house.journal.take(), QStringList(u"open http://l/b"_s));

        house.run.state = 0; // only while the display runs
        house.list.actDoubleClickRSSView();
        QVERIFY(house.journal.take().isEmpty());

        house.run.state = 1;
        house.feeds.all.clear();
        house.list.readRSSPages();
        QTest::ignoreMessage(QtWarningMsg, "actDoubleClickRSSView: index error");
        house.list.actDoubleClickRSSView();
        QVERIFY(house.journal.take().isEmpty());
    }

    void copyOfARow()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {{u"H"_s, u"11/14 10:30"_s, u"D"_s, {}, {}}};
        house.list.readRSSPages();
        QCOMPARE(house.list.actCopyRow(0).value_or(QString()), u"11/14 10:30 H＊＊＊D"_s);
        for (const int outside : {-1, 1}) {
            QTest::ignoreMessage(QtWarningMsg, "actCopyRow: index error");
            QVERIFY(!house.list.actCopyRow(outside));
        }
    }

    void markIsShownOnlyWhileDisplaying_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("isMarked");
        QTest::newRow("stopped") << 0 << false;
        QTest::newRow("displaying") << 1 << true;
        QTest::newRow("stop asked") << 2 << false;
    }

    void markIsShownOnlyWhileDisplaying()
    {
        QFETCH(int, state);
        ListHouse house;
        house.run.state = state;
        QTEST(house.list.isPresentMarked(), "isMarked");
    }

    void unreadableInformationFileIsSaid()
    {
        ListHouse house;
        QVERIFY(QDir().mkpath(house.documents() + u"/Information.txt"_s)); // a folder in its place
        bool isTold = false;
        house.list.changeNotice().listen([&] { isTold = true; });
        house.list.setDispInfo(true);
        house.mainThread.drain();
        QVERIFY(isTold);
        QCOMPARE(house.list.informationProblem(), localized(u"InformationFileError"_s));
        house.list.readRSSPages();
        QVERIFY(house.journal.take().isEmpty()); // no title line
        QCOMPARE(house.list.informationProblem(), localized(u"InformationFileError"_s));
        house.list.setDispInfo(false);
        QCOMPARE(house.list.informationProblem(), QString());
    }
};

QTEST_APPLESS_MAIN(MessageListTest)
#include "messagelist_test.moc"
