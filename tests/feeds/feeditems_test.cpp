// SPDX-License-Identifier: MIT
//
// Which node of a document becomes which item's date, description and link.
#include "feeds/RSSReader.h"
#include "platform/SimulatedClock.h"
#include "tests/feeds/FakeFeedLoader.h"
#include "tests/feeds/FeedTexts.h"

#include <QtTest>

using namespace qovelmor;
using namespace qovelmor::feedtexts;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString nothingMatches = u"00/00 00:00"_s;

QStringList listOf(int count, const std::function<QString(int)> &at)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list.append(at(i));
    return list;
}

} // namespace

class FeedItemsTest : public QObject
{
    Q_OBJECT

private:
    SimulatedClock clock_{{}};
    FakeFeedLoader loader_;

    std::unique_ptr<RSSReader> readFrom(int format, const QByteArray &document)
    {
        loader_.answerWith(document);
        auto made = std::make_unique<RSSReader>(
            FeedServices{loader_, clock_}, u"http://example.com/feed"_s, true, u"名前"_s, format);
        made->readHeadlines();
        return made;
    }

private Q_SLOTS:
    void init() { loader_ = FakeFeedLoader(); }

    void dates_data();
    void dates();
    void descriptions_data();
    void descriptions();
    void links_data();
    void links();
};

void FeedItemsTest::dates_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("expected");
    const QByteArray one = "<title>一</title>";
    const QByteArray w3c = "<dc:date>2008-05-01T12:10:00+09:00</dc:date>";
    const QByteArray rfc = "Thu, 01 May 2008 23:30:00 -0500";
    const QByteArray pubDate = "<pubDate>" + rfc + "</pubDate>";
    const QByteArray build = "<lastBuildDate>" + rfc + "</lastBuildDate>";
    const QByteArray published = "<published>2008-05-01T03:10:00Z</published>";
    const QByteArray updated = "<updated>2008-05-02T03:10:00Z</updated>";
    const QString w3cText = u"05/01 12:10"_s;
    const QString rfcText = u"05/02 13:30"_s;

    QTest::newRow("RSS 1.0, each item's own")
        << 1 << rss1({}, item(one + w3c)) << QStringList{w3cText};
    QTest::newRow("RSS 1.0, the channel's")
        << 1 << rss1(w3c, item(one) + item(one)) << QStringList{w3cText, w3cText};
    QTest::newRow("RSS 1.0, none") << 1 << rss1({}, item(one)) << QStringList{u""_s};
    QTest::newRow("RSS 1.0, items' go before the channel's, which then counts for none")
        << 1 << rss1(w3c, item(one + w3c) + item(one)) << QStringList{w3cText, u""_s};
    QTest::newRow("RSS 2.0, pubDate") << 2 << rss2(item(one + pubDate)) << QStringList{rfcText};
    QTest::newRow("RSS 2.0, dc:date") << 2 << rss2(item(one + w3c)) << QStringList{w3cText};
    QTest::newRow("RSS 2.0, pubDate before dc:date: dc:date of others is not looked at")
        << 2 << rss2(item(one + w3c) + item(one + pubDate)) << QStringList{rfcText, u""_s};
    QTest::newRow("RSS 2.0, lastBuildDate for all")
        << 2 << rss2(build + item(one) + item(one)) << QStringList{rfcText, rfcText};
    QTest::newRow("RSS 2.0, lastBuildDate before the channel's pubDate")
        << 2 << rss2(pubDate + build + item(one)) << QStringList{rfcText};
    QTest::newRow("RSS 2.0, the channel's pubDate is read in the wrong form")
        << 2 << rss2(pubDate + item(one)) << QStringList{nothingMatches};
    QTest::newRow("RSS 2.0, a channel's pubDate in that form")
        << 2 << rss2("<pubDate>2008-05-01T12:10:00+09:00</pubDate>" + item(one))
        << QStringList{w3cText};
    QTest::newRow("RSS 2.0, none") << 2 << rss2(item(one)) << QStringList{u""_s};
    QTest::newRow("Atom, published")
        << 3 << atom(entry(one + published)) << QStringList{u"05/01 12:10"_s};
    QTest::newRow("Atom, updated of the feed")
        << 3 << atom(updated + entry(one)) << QStringList{u"05/02 12:10"_s};
    QTest::newRow("Atom, updated of an entry does not count")
        << 3 << atom(entry(one + updated)) << QStringList{u""_s};
    QTest::newRow("Atom, an offset is no match")
        << 3 << atom(entry(one + "<published>2008-05-01T12:10:00+09:00</published>"))
        << QStringList{nothingMatches};
    QTest::newRow("matched by position, not by item")
        << 2 << rss2(item(one) + item(one + pubDate)) << QStringList{rfcText, u""_s};
}

void FeedItemsTest::dates()
{
    QFETCH(int, format);
    QFETCH(QByteArray, document);
    QFETCH(QStringList, expected);
    const auto made = readFrom(format, document);
    QCOMPARE(made->status(), 1);
    QCOMPARE(listOf(made->count(), [&](int i) { return made->headlineAtIndex(i).date; }), expected);
    QVERIFY(!made->dateAtIndex(0).isNull()); // never absent
}

void FeedItemsTest::descriptions_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("expected");
    const auto titled = [](const QByteArray &more) { return item("<title>t</title>" + more); };
    const auto described = [&](const char *text) {
        return titled("<description>" + QByteArray(text) + "</description>");
    };
    const auto summed = [](const char *text) {
        return entry("<title>t</title><summary>" + QByteArray(text) + "</summary>");
    };
    QTest::newRow("RSS 1.0") << 1 << rss1({}, described("一") + described("二"))
                             << QStringList{u"一"_s, u"二"_s};
    QTest::newRow("RSS 2.0") << 2 << rss2(described("一") + described("二"))
                             << QStringList{u"一"_s, u"二"_s};
    QTest::newRow("Atom") << 3 << atom(summed("一") + summed("二"))
                          << QStringList{u"一"_s, u"二"_s};
    QTest::newRow("cleaned") << 2 << rss2(described("<![CDATA[ <p>一</p>&nbsp;二 ]]>"))
                             << QStringList{u"一 二"_s};
    QTest::newRow("one without in the middle: the one behind keeps its own")
        << 2 << rss2(described("一") + titled({}) + described("三") + described("四"))
        << QStringList{u"一"_s, u""_s, u"三"_s, u"三"_s}; // the last one is past the nodes' number
    QTest::newRow("one without at the end")
        << 2 << rss2(described("一") + described("二") + titled({}))
        << QStringList{u"一"_s, u"二"_s, u""_s};
    QTest::newRow("past the nodes behind one without: its empty text is repeated")
        << 2 << rss2(titled({}) + described("二")) << QStringList{u""_s, u""_s};
    QTest::newRow("a description of the other kind, without one to reuse")
        << 3 << atom(entry("<title>t</title><description>一</description>")) << QStringList{u""_s};
    QTest::newRow("two in one item move the rest")
        << 2
        << rss2(titled("<description>一</description><description>二</description>") +
                described("三"))
        << QStringList{u"一"_s, u"二"_s};
    QTest::newRow("as many as items, not as titles")
        << 2 << rss2(item("<title>t</title><title>t</title><description>一</description>"))
        << QStringList{u"一"_s};
}

void FeedItemsTest::descriptions()
{
    QFETCH(int, format);
    QFETCH(QByteArray, document);
    QFETCH(QStringList, expected);
    const auto made = readFrom(format, document);
    QCOMPARE(listOf(static_cast<int>(expected.size()),
                    [&](int i) { return made->descriptionAtIndex(i); }),
             expected);
    QTest::ignoreMessage(QtWarningMsg, "descriptionAtIndex:index error");
    QVERIFY(made->descriptionAtIndex(static_cast<int>(expected.size())).isNull());
}

void FeedItemsTest::links_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("expected");
    const QByteArray linked = item("<title>t</title><link> http://a/?x=1&amp;y=2\n</link>");
    const QString raw = u" http://a/?x=1&y=2\n"_s; // not cleaned
    QTest::newRow("RSS 1.0") << 1 << rss1({}, linked) << QStringList{raw};
    QTest::newRow("RSS 2.0") << 2 << rss2(linked) << QStringList{raw};
    QTest::newRow("Atom") << 3 << atom(entry("<title>t</title><link href='http://a/'/>"))
                          << QStringList{u"http://a/"_s};
    QTest::newRow("several in an Atom entry are several entries of the list")
        << 3
        << atom(entry("<title>t</title><link href='1'/><link rel='self' href='2'/>") +
                entry("<title>t</title><link href='3'/>"))
        << QStringList{u"1"_s, u"2"_s, u"3"_s};
}

void FeedItemsTest::links()
{
    QFETCH(int, format);
    QFETCH(QByteArray, document);
    QFETCH(QStringList, expected);
    const auto made = readFrom(format, document);
    QCOMPARE(listOf(static_cast<int>(expected.size()), [&](int i) { return made->linkAtIndex(i); }),
             expected);
}

QTEST_GUILESS_MAIN(FeedItemsTest)
#include "feeditems_test.moc"
