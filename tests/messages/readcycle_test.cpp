// SPDX-License-Identifier: MIT
#include "ListHouse.h"

#include <QtTest>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

// A feed of `count` dated headlines, the newest first: "<name>0" is the newest.
void fill(ListFeed &feed, const QString &name, int count)
{
    for (int i = 0; i < count; ++i)
        feed.items.push_back(item(name + QString::number(i),
                                  QStringLiteral("11/14 %1:00").arg(11 - i, 2, 10, QChar(u'0'))));
}

} // namespace

class ReadCycleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void orders_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<bool>("eachSite");
        QTest::addColumn<QString>("headlines");
        QTest::newRow("oldest first, by site") << 0 << true << u"a2 a1 a0 b2 b1 b0"_s;
        QTest::newRow("newest first, by site") << 1 << true << u"a0 a1 a2 b0 b1 b2"_s;
        QTest::newRow("oldest first, all sites") << 0 << false << u"a2 b2 a1 b1 a0 b0"_s;
        QTest::newRow("newest first, all sites") << 1 << false << u"a0 b0 a1 b1 a2 b2"_s;
        // Places drawn: 0, 1 (last of one: append), 2 mod 2, 3 mod 3, 4 mod 4, 5 mod 5.
        QTest::newRow("random") << 2 << true << u"b2 b1 b0 a2 a0 a1"_s;
        QTest::newRow("random ignores the grouping") << 2 << false << u"b2 b1 b0 a2 a0 a1"_s;
    }

    void orders()
    {
        QFETCH(int, order);
        QFETCH(bool, eachSite);
        ListHouse house;
        fill(house.feeds.add(u"http://a/"_s), u"a"_s, 3);
        fill(house.feeds.add(u"http://b/"_s), u"b"_s, 3);
        house.list.setDispOrder(order);
        house.list.setDispEachRSS(eachSite);
        house.list.readRSSPages();
        QTEST(house.headlines().join(u' '), "headlines");
        QCOMPARE(house.list.messageCount(), 6);
        QCOMPARE(house.list.takenCount(), 6);
    }

    void capKeepsTheNewestOfEachSite()
    {
        ListHouse house;
        fill(house.feeds.add(u"http://a/"_s), u"a"_s, 5);
        fill(house.feeds.add(u"http://b/"_s), u"b"_s, 2);
        house.list.setUseMaxMsg(true);
        house.list.setMaxMessages(3);
        house.list.readRSSPages();
        QCOMPARE(house.headlines().join(u' '), u"a2 a1 a0 b1 b0"_s);
        QCOMPARE(house.list.takenCount(), 7); // counted before the cut
    }

    void capOfZeroActsAsThousand()
    {
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        for (int i = 0; i < 1005; ++i)
            feed.items.push_back(item(QString::number(i)));
        house.list.setUseMaxMsg(true);
        house.list.setMaxMessages(0);
        house.list.readRSSPages();
        QCOMPARE(house.list.messageCount(), 1000);
    }

    void randomOrderTakesOneMoreThanTheCapAndDoesNotCountIt()
    {
        ListHouse house;
        fill(house.feeds.add(u"http://a/"_s), u"a"_s, 20);
        house.list.setUseMaxMsg(true);
        house.list.setMaxMessages(10);
        house.list.setDispOrder(2);
        house.list.readRSSPages();
        QCOMPARE(house.list.messageCount(), 11);
        QCOMPARE(house.list.takenCount(), 10);
    }

    void randomOrderCountsFilteredHeadlinesTowardsTheCap()
    {
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        feed.items = {item(u"a"_s), item(u"PR: b"_s), item(u"PR: c"_s), item(u"d"_s), item(u"e"_s)};
        house.settings.commercialWord = u"PR"_s;
        house.list.setUseMaxMsg(true);
        house.list.setMaxMessages(2);
        house.list.setDispOrder(2);
        house.list.readRSSPages();
        QCOMPARE(house.list.messageCount(), 2); // a and d: d's index is the first one at the cap
        QCOMPARE(house.list.takenCount(), 1);
    }

    void resultsDecideWhatIsTaken_data()
    {
        QTest::addColumn<int>("result");
        QTest::addColumn<int>("taken");
        QTest::newRow("read") << 0 << 2;
        QTest::newRow("failed") << 1 << 0;
        QTest::newRow("headlines missing") << 2 << 2;
        QTest::newRow("dates missing") << 3 << 2;
        QTest::newRow("descriptions missing") << 4 << 2;
        QTest::newRow("links missing") << 5 << 2;
        QTest::newRow("unknown format") << 6 << 2;
    }

    void resultsDecideWhatIsTaken()
    {
        QFETCH(int, result);
        QFETCH(int, taken);
        ListHouse house;
        fill(house.feeds.add(u"http://bad/"_s, result), u"x"_s, 2);
        fill(house.feeds.add(u"http://good/"_s), u"y"_s, 1);
        house.list.readRSSPages();
        QCOMPARE(house.list.takenCount(), taken + 1);
    }

    void disabledFeedIsNotRead()
    {
        ListHouse house;
        ListFeed &off = house.feeds.add(u"http://off/"_s);
        fill(off, u"x"_s, 2);
        off.isValid = false;
        house.list.readRSSPages();
        QCOMPARE(off.reads, 0);
        QCOMPARE(house.list.messageCount(), 0);
        QCOMPARE(house.list.presentation()->progressMaximum, 0);
    }

    void commercialFilterLooksAtTheItemsTitle()
    {
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        feed.items = {item(u"cleaned"_s), item(u"PR in the headline"_s)};
        feed.titles = {u"PR: cleaned"_s, u"title"_s};
        house.settings.commercialWord = u"PR"_s;
        house.list.readRSSPages();
        QCOMPARE(house.headlines(), QStringList(u"PR in the headline"_s));
    }

    void ageFilter_data()
    {
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<QString>("headlines");
        QTest::newRow("off") << false << u"undated no-date old young"_s;
        QTest::newRow("on: what has no moment stays") << true << u"undated no-date young"_s;
    }

    void ageFilter()
    {
        QFETCH(bool, isOn);
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        feed.items = {item(u"young"_s, u"11/14 11:00"_s), item(u"old"_s, u"11/10 11:00"_s),
                      item(u"undated"_s), item(u"no-date"_s, u"00/00 00:00"_s)};
        house.settings.skipsOlder = isOn;
        house.settings.oldest = localMoment(u"2026-11-13T00:00:00"_s);
        house.list.readRSSPages();
        QTEST(house.headlines().join(u' '), "headlines");
    }

    void duplicatesGoBeforeTheWholeListIsSorted()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {item(u"same"_s, u"11/14 09:00"_s),
                                                 item(u"a"_s, u"11/14 10:00"_s)};
        house.feeds.add(u"http://b/"_s).items = {item(u"same"_s, u"11/14 08:00"_s),
                                                 item(u"b"_s, u"11/14 07:00"_s)};
        house.list.setDispEachRSS(false);
        // Before the sort the list is: same a b same.
        QTest::ignoreMessage(QtWarningMsg, "Remove message at 3 dueto duplicated");
        house.list.readRSSPages();
        QCOMPARE(house.headlines().join(u' '), u"b same a"_s);
        QCOMPARE(*house.list.msgList()->at(1).date, u"11/14 09:00"_s);
    }

    void everyPartOfAnItemIsKept()
    {
        ListHouse house;
        house.feeds.add(u"http://a/"_s).items = {
            {u"H"_s, u"11/14 09:00"_s, u"D"_s, u"S"_s, u"http://l/"_s}};
        house.list.readRSSPages();
        const Message expected{u"H"_s, u"11/14 09:00"_s, u"D"_s, u"http://l/"_s, u"S"_s, true};
        QVERIFY(house.list.msgList()->at(0) == expected);
    }

    void newMarksCompareWithTheCycleBefore()
    {
        ListHouse house;
        ListFeed &feed = house.feeds.add(u"http://a/"_s);
        feed.items = {item(u"a"_s), item(u"b"_s)};
        house.list.readRSSPages();
        QVERIFY(house.list.msgList()->at(0).isNew);
        QVERIFY(house.list.msgList()->at(1).isNew);
        feed.items = {item(u"b"_s), item(u"c"_s)};
        house.list.readRSSPages();
        QVERIFY(!house.list.msgList()->at(0).isNew);
        QVERIFY(house.list.msgList()->at(1).isNew);
    }
};

QTEST_APPLESS_MAIN(ReadCycleTest)
#include "readcycle_test.moc"
