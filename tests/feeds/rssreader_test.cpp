// SPDX-License-Identifier: MIT
#include "feeds/FeedFormat.h"
#include "feeds/RSSReader.h"
#include "platform/SimulatedClock.h"
#include "tests/feeds/FakeFeedLoader.h"
#include "tests/feeds/FeedTexts.h"
#include "tests/support/StridingClock.h"

#include <QtTest>

using namespace qovelmor;
using namespace qovelmor::feedtexts;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString feedAddress = u"http://example.com/feed"_s;

/// 10 May 2008, 10:20 local time.
Clock::CalendarTime readMoment()
{
    return std::chrono::system_clock::from_time_t(
        QDateTime(QDate(2008, 5, 10), QTime(10, 20)).toSecsSinceEpoch());
}

} // namespace

class RssReaderTest : public QObject
{
    Q_OBJECT

private:
    SimulatedClock clock_{readMoment()};
    FakeFeedLoader loader_;

    std::unique_ptr<RSSReader> reader(int format)
    {
        return std::make_unique<RSSReader>(FeedServices{loader_, clock_}, feedAddress, true,
                                           u"名前"_s, format);
    }

    std::unique_ptr<RSSReader> readFrom(int format, const QByteArray &document)
    {
        loader_.answerWith(document);
        auto made = reader(format);
        made->readHeadlines();
        return made;
    }

private Q_SLOTS:
    void init() { loader_ = FakeFeedLoader(); }

    void construction_withNameAndFormat_asksNobody()
    {
        const auto made = reader(feedformat::atom);
        QVERIFY(loader_.requests.empty());
        QCOMPARE(made->name().value(), u"名前"_s);
        QCOMPARE(made->format(), feedformat::atom);
        QCOMPARE(made->status(), 0);
        QCOMPARE(made->statusString(), u"未読込"_s);
        QVERIFY(!made->date());
        QCOMPARE(made->count(), 0);
        QVERIFY(made->validate());
        QVERIFY(!made->isReaderChanged());
        QVERIFY(!made->watchBreak());
        QVERIFY(made->lastErrorCause().isEmpty());
    }

    void construction_fetchesTheName_data()
    {
        QTest::addColumn<bool>("hasName");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::newRow("no name") << false << u""_s << 2;
        QTest::newRow("empty name") << true << u""_s << 2;
        QTest::newRow("format unknown") << true << u"名前"_s << 0;
        QTest::newRow("format past the last") << true << u"名前"_s << 4;
        QTest::newRow("format below the first") << true << u"名前"_s << -1;
    }
    void construction_fetchesTheName()
    {
        QFETCH(bool, hasName);
        QFETCH(QString, name);
        QFETCH(int, format);
        loader_.answerWith(rss1({}, {}));
        const RSSReader made({loader_, clock_}, feedAddress, false,
                             hasName ? std::optional(name) : std::nullopt, format);
        QCOMPARE(loader_.requests.size(), std::size_t{1});
        QCOMPARE(made.name().value(), u"テスト"_s);
        QCOMPARE(made.format(), feedformat::rss1);
        QVERIFY(!made.validate());
    }

    void construction_byAddressAlone_isEnabled()
    {
        loader_.answerWith(atom({}));
        const RSSReader made({loader_, clock_}, feedAddress);
        QVERIFY(made.validate());
        QCOMPARE(made.address(), feedAddress);
        QCOMPARE(made.format(), feedformat::atom);
    }

    void readName_findsTheKind_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("format");
        QTest::newRow("RSS 2.0") << rss2({}) << 2;
        QTest::newRow("RSS 1.0") << rss1({}, {}) << 1;
        QTest::newRow("Atom") << atom({}) << 3;
    }
    void readName_findsTheKind()
    {
        QFETCH(QByteArray, document);
        QFETCH(int, format);
        loader_.answerWith(document);
        const auto made = reader(feedformat::rss2);
        QCOMPARE(made->readName().value(), u"テスト"_s);
        QCOMPARE(made->format(), format);
    }

    void readName_withoutATitle_saysSo()
    {
        loader_.answerWith("<feed><link/></feed>");
        const auto made = reader(feedformat::rss2);
        QTest::ignoreMessage(QtWarningMsg, "Title get error.");
        QTest::ignoreMessage(QtWarningMsg, "error code = 0");
        QTest::ignoreMessage(QtWarningMsg, "nodes count = 0");
        QVERIFY(!made->readName());
        QCOMPARE(made->format(), feedformat::unknown);
    }

    void readName_anErrorOfTheFirstQuery_countsForAll()
    {
        loader_.answerWith(atom({}), {{"/rss/channel/title", 1207}});
        const auto made = reader(feedformat::rss2);
        QTest::ignoreMessage(QtWarningMsg, "Title get error.");
        QTest::ignoreMessage(QtWarningMsg, "error code = 1207");
        QTest::ignoreMessage(QtWarningMsg, "nodes count = 1");
        QVERIFY(!made->readName());
        QCOMPARE(made->format(), feedformat::unknown);
    }

    void readName_whenLoadingFails_keepsTheFormatAndReports()
    {
        RecordingLog log;
        const auto made = reader(feedformat::atom);
        made->setMessageList(&log);
        loader_.answer(ReadError{404, u"HTTP"_s, u"ありません"_s});
        made->setNameOnWeb();
        QVERIFY(!made->name());
        QCOMPARE(made->format(), feedformat::atom);
        QCOMPARE(log.errors.size(), std::size_t{1});
        QCOMPARE(log.errors[0].first, feedAddress);
        QCOMPARE(log.errors[0].second.code, 404);
        QCOMPARE(log.errors[0].second.domain, u"HTTP"_s);
        QCOMPARE(made->lastErrorCause(), u"ありません"_s);
    }

    void readName_withoutALog_handsItsErrorOverLater()
    {
        loader_.answer(ReadError{6, u"Transfer"_s, u"サーバーなし"_s});
        RSSReader made({loader_, clock_}, feedAddress);
        QVERIFY(!made.name());
        RecordingLog log;
        made.setMessageList(nullptr);
        made.setMessageList(&log);
        QCOMPARE(log.errors.size(), std::size_t{1});
        QCOMPARE(log.errors[0].second.code, 6);
        made.setMessageList(&log);
        QCOMPARE(log.errors.size(), std::size_t{1}); // once
    }

    void readHeadlines_ofADisabledFeed_doesNothing()
    {
        const auto made = reader(feedformat::rss2);
        made->setValidate(false);
        QCOMPARE(made->readHeadlines(), 6);
        QCOMPARE(made->status(), 0);
        QVERIFY(loader_.requests.empty());
    }

    void readHeadlines_success_replacesEverything()
    {
        const auto made = readFrom(feedformat::rss2, rss2(item("<title>古い</title>")));
        loader_.answerWith(rss2(item("<title>一</title><link>http://a/</link>"
                                     "<description>本文</description>"
                                     "<pubDate>Thu, 01 May 2008 23:30:00 +0900</pubDate>")));
        QCOMPARE(made->readHeadlines(), 0);
        QCOMPARE(made->status(), 1);
        QCOMPARE(made->statusString(), u"読込済み"_s);
        QCOMPARE(made->date().value(), u"05/10 10:20"_s);
        QCOMPARE(made->count(), 1);
        QCOMPARE(made->titleAtIndex(0), u"一"_s);
        QCOMPARE(made->dateAtIndex(0), u"05/01 23:30"_s);
        QCOMPARE(made->descriptionAtIndex(0), u"本文"_s);
        QCOMPARE(made->linkAtIndex(0), u"http://a/"_s);
        const ItemRecord record{u"一"_s, u"05/01 23:30"_s, u"本文"_s, u"名前"_s, u"http://a/"_s};
        QCOMPARE(made->headlineAtIndex(0), record);
        QCOMPARE(made->headlines(), std::vector<ItemRecord>{record});
    }

    void readHeadlines_ofAnUnreachableFeed_isOne()
    {
        const auto made = readFrom(feedformat::rss2, rss2(item("<title>一</title>")));
        loader_.answer(ReadError{28, u"Transfer"_s, u"時間切れ"_s});
        QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://example.com/feed)");
        QCOMPARE(made->readHeadlines(), 1);
        QCOMPARE(made->status(), -1);
        QCOMPARE(made->statusString(), u"読込エラー"_s);
        QCOMPARE(made->count(), 1); // the items of the last success stay
        QCOMPARE(made->lastErrorCause(), u"時間切れ"_s);
        loader_.answerWith(rss2(item("<title>二</title>")));
        QCOMPARE(made->readHeadlines(), 0);
        QVERIFY(made->lastErrorCause().isEmpty());
    }

    void readHeadlines_thatFails_logsTheCauseOnce_data()
    {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("line");
        const QString start = u"RSS read error cause: XML 3 "_s;
        QTest::newRow("a sentence") << u"閉じていません。"_s << start + u"閉じていません。"_s;
        QTest::newRow("of several lines") << u"a\nb\r\x1b[2Jc"_s << start + u"a b  [2Jc"_s;
        QTest::newRow("with placeholders") << u"%1 %2 %s"_s << start + u"%1 %2 %s"_s;
        QTest::newRow("of any length") << QString(60'000, u'x') << start + QString(500, u'x');
    }
    void readHeadlines_thatFails_logsTheCauseOnce()
    {
        QFETCH(QString, cause);
        QFETCH(QString, line);
        const auto made = reader(feedformat::rss2);
        loader_.answer(ReadError{3, u"XML"_s, cause});
        static QStringList lines;
        lines.clear();
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { lines << text; });
        made->readHeadlines();
        qInstallMessageHandler(before);
        QCOMPARE(lines, (QStringList{u"RSS read error.(%1)"_s.arg(feedAddress), line}));
    }

    void readHeadlines_failures_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<int>("result");
        const auto row = [](const char *name, int format, const char *query, const char *message,
                            int result) {
            QTest::newRow(name) << format << QByteArray(query) << QByteArray(message) << result;
        };
        const char *noTitles = "Headline get error.";
        const char *noDates = "Date get error.";
        const char *noDescriptions = "Description get error.";
        const char *noLinks = "Link get error 1207";
        row("RSS 1.0 titles", 1, "/rdf:RDF/item/title", noTitles, 0);
        row("RSS 1.0 item dates", 1, "/rdf:RDF/item/dc:date", noDates, 3);
        row("RSS 1.0 channel date", 1, "/rdf:RDF/channel/dc:date", noDates, 3);
        row("RSS 1.0 items", 1, "rdf:RDF/item", noDescriptions, 4);
        row("RSS 1.0 descriptions", 1, "/rdf:RDF/item/description", noDescriptions, 4);
        row("RSS 1.0 links", 1, "/rdf:RDF/item/link", noLinks, 5);
        row("RSS 2.0 titles", 2, "/rss/channel/item/title", noTitles, 0);
        row("RSS 2.0 item pubDate", 2, "/rss/channel/item/pubDate", noDates, 3);
        row("RSS 2.0 item dc:date", 2, "/rss/channel/item/dc:date", noDates, 3);
        row("RSS 2.0 lastBuildDate", 2, "/rss/channel/lastBuildDate", noDates, 3);
        row("RSS 2.0 channel pubDate", 2, "/rss/channel/pubDate", noDates, 3);
        row("RSS 2.0 items", 2, "/rss/channel/item", noDescriptions, 4);
        row("RSS 2.0 descriptions", 2, "/rss/channel/item/description", noDescriptions, 4);
        row("RSS 2.0 links", 2, "/rss/channel/item/link", noLinks, 5);
        row("Atom titles", 3, "/feed/entry/title", noTitles, 0);
        row("Atom published", 3, "/feed/entry/published", noDates, 3);
        row("Atom updated", 3, "/feed/updated", noDates, 3);
        row("Atom entries", 3, "feed/entry", noDescriptions, 4);
        row("Atom summaries", 3, "feed/entry/summary", noDescriptions, 4);
        row("Atom links", 3, "/feed/entry/link/@href", noLinks, 5);
    }
    void readHeadlines_failures()
    {
        QFETCH(int, format);
        QFETCH(QByteArray, query);
        QFETCH(QByteArray, message);
        QFETCH(int, result);
        const QByteArray contents = "<title>一</title><link href='h'>h</link>"
                                    "<description>本文</description><summary>本文</summary>";
        const QByteArray document = format == 1   ? rss1({}, item(contents))
                                    : format == 2 ? rss2(item(contents))
                                                  : atom(entry(contents));
        const auto made = readFrom(format, document);
        QCOMPARE(made->status(), 1);
        loader_.answerWith(document, {{query.toStdString(), 1207}});
        QTest::ignoreMessage(QtWarningMsg, message.constData());
        QCOMPARE(made->readHeadlines(), result);
        QCOMPARE(made->status(), -1);
        QCOMPARE(made->statusString(), u"読込エラー"_s);
        QCOMPARE(made->count(), 1); // offered again
    }

    void readHeadlines_withoutTitles_keepsTheItemsOfTheReadBefore()
    {
        const auto made = readFrom(feedformat::atom, atom(entry("<title>一</title>")));
        loader_.answerWith(atom({}));
        QTest::ignoreMessage(QtWarningMsg, "Headline get error.");
        QCOMPARE(made->readHeadlines(), 0);
        QCOMPARE(made->status(), -1);
        QCOMPARE(made->titleAtIndex(0), u"一"_s);
        QCOMPARE(made->lastErrorCause(), u"文書に見出しがありません。"_s);
        QVERIFY(!made->offersNothing());
    }

    void readHeadlines_ofAnUnknownFormat_asksNothing()
    {
        loader_.answerWith("<html/>");
        loader_.answerWith(rss2(item("<title>一</title>")));
        QTest::ignoreMessage(QtWarningMsg, "Title get error.");
        QTest::ignoreMessage(QtWarningMsg, "error code = 0");
        QTest::ignoreMessage(QtWarningMsg, "nodes count = 0");
        RSSReader made({loader_, clock_}, feedAddress);
        const QString cause = u"RSS でも Atom でもない文書です。"_s;
        QCOMPARE(made.lastErrorCause(), cause);
        QTest::ignoreMessage(QtWarningMsg, "Headline get error.");
        QCOMPARE(made.readHeadlines(), 0);
        QCOMPARE(made.status(), -1);
        QCOMPARE(made.lastErrorCause(), cause);
        loader_.answerWith(rss2({}));
        QVERIFY(made.readName());
        QVERIFY(made.lastErrorCause().isEmpty());
    }

    // The loader may say that its last answer holds: then the read ends as the last one did.
    void recentAnswer_endsTheReadAsTheLastOneDid_data()
    {
        QTest::addColumn<QByteArray>("document"); // empty: there is none
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("date");
        QTest::newRow("read") << rss2(item("<title>一</title>")) << 0 << 1 << u"05/10 10:25"_s;
        QTest::newRow("without titles") << rss2({}) << 0 << -1 << QString();
        QTest::newRow("failed") << QByteArray() << 1 << -1 << QString();
    }
    void recentAnswer_endsTheReadAsTheLastOneDid()
    {
        QFETCH(QByteArray, document);
        QFETCH(int, code);
        const auto made = reader(feedformat::rss2);
        if (document.isEmpty())
            loader_.answer(ReadError{28, u"Transfer"_s, u"時間切れ"_s});
        else
            loader_.answerWith(document);
        const auto answered = clock_.steadyNow();
        QCOMPARE(made->readHeadlines(), code);
        QVERIFY(!loader_.requests.back().answered);
        const QString cause = made->lastErrorCause();
        QCOMPARE(made->offersNothing(), code == 1);

        clock_.setCalendar(readMoment() + std::chrono::minutes(5));
        loader_.answer(PostponedFeed{{503, u"HTTP"_s, u"混雑"_s}}); // no answer that could hold
        made->readHeadlines();
        loader_.answer(RecentFeed{});
        QCOMPARE(made->readHeadlines(), code);
        QVERIFY(loader_.requests.back().answered == answered);
        QTEST(made->status(), "status");
        QTEST(made->date().value_or(QString()), "date");
        QCOMPARE(made->lastErrorCause(), cause);
        QCOMPARE(made->offersNothing(), code == 1);
        clock_.setCalendar(readMoment());
    }

    void lastAnswer_holdsForItsAddressAndFormat()
    {
        const auto made = readFrom(feedformat::rss2, rss2(item("<title>一</title>")));
        made->readHeadlines();
        QVERIFY(loader_.requests.back().answered);
        loader_.answerWith(atom({}));
        made->readName();                           // also finds the format anew
        QVERIFY(!loader_.requests.back().answered); // the document itself is wanted
        made->readHeadlines();
        QVERIFY(!loader_.requests.back().answered);
        made->setAddress(u"http://example.com/other"_s);
        made->readHeadlines();
        QVERIFY(!loader_.requests.back().answered);
    }

    void description_thatNeverEnds_isEmptyAndLogged()
    {
        RecordingLog log;
        loader_.answerWith(
            rss2(item("<title>一</title><description>1 &gt; 0 &lt;b&gt;</description>") +
                 item("<title>二</title><description>よい</description>")));
        const auto made = reader(feedformat::rss2);
        made->setMessageList(&log);
        QCOMPARE(made->readHeadlines(), 0);
        QCOMPARE(made->descriptionAtIndex(0), u""_s);
        QCOMPARE(made->descriptionAtIndex(1), u"よい"_s);
        QCOMPARE(log.watchBreaks,
                 std::vector<QString>{u"watchBreak:RSSReader:pulloutTextString"_s});
    }

    void description_thatTakesTooLong_isEmptyAndLogged_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("place");
        const auto much = [](QStringView piece) { return piece.toString().repeated(300); };
        const QString pulloutPlace = u"watchBreak:RSSReader:pulloutTextString"_s;
        QTest::newRow("mark-up") << much(u"<b>太") << pulloutPlace;
        QTest::newRow("hard blanks") << much(u"&nbsp;x") << pulloutPlace;
        QTest::newRow("blanks at the head")
            << much(u"　") + u"太"_s << u"watchBreak:RSSReader:removeHeadSpace"_s;
        QTest::newRow("blanks at the tail") << u"太"_s + much(u" ") << pulloutPlace;
    }
    void description_thatTakesTooLong_isEmptyAndLogged()
    {
        QFETCH(QString, text);
        QFETCH(QString, place);
        SimulatedClock still(readMoment());
        StridingClock clock(still);
        clock.setStride(5ms);
        RecordingLog log;
        loader_.answerWith(rss2(item("<title>一</title><description>" +
                                     text.toHtmlEscaped().toUtf8() + "</description>") +
                                item("<title>二</title><description>よい</description>")));
        RSSReader made({loader_, clock}, feedAddress, true, u"名前"_s, feedformat::rss2);
        made.setMessageList(&log);
        QCOMPARE(made.readHeadlines(), 0);
        QCOMPARE(made.descriptionAtIndex(0), u""_s);
        QCOMPARE(made.descriptionAtIndex(1), u"よい"_s);
        QCOMPARE(log.watchBreaks, std::vector<QString>{place});
        QVERIFY(!made.pulloutTextString(text));
        QCOMPARE(log.watchBreaks, std::vector<QString>(2, place));
        clock.setStride(3ms); // 300 passes in less than a second
        QVERIFY(made.pulloutTextString(text));
        QCOMPARE(log.watchBreaks.size(), std::size_t{2});
    }

    void blanksThatTakeTooLong_areLoggedUnderTheirPlace()
    {
        SimulatedClock still(readMoment());
        StridingClock clock(still);
        clock.setStride(150ms);
        RecordingLog log;
        RSSReader made({loader_, clock}, feedAddress, true, u"名前"_s, feedformat::rss2);
        made.setMessageList(&log);
        const QString blanks(10, u' ');
        QVERIFY(!made.removeHeadSpace(blanks));
        QCOMPARE(log.watchBreaks, std::vector<QString>{u"watchBreak:RSSReader:removeHeadSpace"_s});
        QVERIFY(!made.removeTailSpace(blanks));
        QCOMPARE(log.watchBreaks.back(), u"watchBreak:RSSReader:pulloutTextString"_s);
        QCOMPARE(log.watchBreaks.size(), std::size_t{2});
    }

    // None of them takes long, all of them would take minutes.
    void descriptionsThatTakeTooLongTogether_areEmptyFromThereOnAndLogged()
    {
        SimulatedClock still(readMoment());
        StridingClock clock(still);
        clock.setStride(10ms);
        RecordingLog log;
        const QByteArray items =
            item("<title>一</title><description>&lt;b&gt;太&lt;/b&gt;</description>").repeated(100);
        RSSReader made({loader_, clock}, feedAddress, true, u"名前"_s, feedformat::rss2);
        made.setMessageList(&log);
        for (std::size_t read = 1; read <= 2; ++read) { // each document anew
            loader_.answerWith(rss2(items));
            QCOMPARE(made.readHeadlines(), 0);
            QCOMPARE(made.count(), 100);
            QCOMPARE(made.descriptionAtIndex(0), u"太"_s);
            int clean = 0;
            while (made.descriptionAtIndex(clean) == u"太"_s)
                ++clean;
            QCOMPARE(clean, 15); // eight looks at the clock each
            for (int i = clean; i < 100; ++i)
                QCOMPARE(made.descriptionAtIndex(i), u""_s);
            QCOMPARE(log.watchBreaks.size(), read * 20);
        }
        QCOMPARE(log.watchBreaks.back(), u"watchBreak:RSSReader:pulloutTextString"_s);
        QCOMPARE(made.pulloutTextString(u"<b>太</b>"_s), u"太"_s); // outside of any document
    }

    void cleanUp_whenTheProgramQuits_endsAtOnce()
    {
        SimulatedClock clock(readMoment());
        RecordingLog log;
        loader_.answerWith(rss2(item("<title>一</title><description>よい</description>")));
        RSSReader made({loader_, clock}, feedAddress, true, u"名前"_s, feedformat::rss2);
        made.setMessageList(&log);
        clock.endSleeps();
        QCOMPARE(made.readHeadlines(), 0);
        QCOMPARE(made.descriptionAtIndex(0), u""_s);
        QVERIFY(!made.pulloutTextString(u"よい"_s));
        QVERIFY(!made.removeHeadSpace(u" "_s));
        QVERIFY(!made.removeTailSpace(u" "_s));
        QVERIFY(log.watchBreaks.empty());
    }

    void title_isNotCleaned()
    {
        const auto made = readFrom(feedformat::rss2,
                                   rss2(item("<title> &lt;b&gt;一&lt;/b&gt;&amp;nbsp;\n</title>")));
        QCOMPARE(made->titleAtIndex(0), u" <b>一</b>&nbsp;\n"_s);
    }

    // Hundreds of thousands of lines, read after read, would fill the disk in a week.
    void documentOfWhichTheSameIsToBeSaidOfEachItem_isLoggedAFewTimes()
    {
        RecordingLog log;
        QByteArray items;
        for (int i = 0; i < 200; ++i)
            items += item("<title>一</title><description>1 &gt; 0 &lt;b&gt;</description>");
        const auto made = reader(feedformat::rss2);
        made->setMessageList(&log);
        static int warnings = 0;
        const auto readsAnew = [&](std::size_t watchBreaks) {
            QCOMPARE(made->readHeadlines(), 0);
            QCOMPARE(made->count(), 200);
            QCOMPARE(log.watchBreaks.size(), watchBreaks);
            warnings = 0;
            const auto before = qInstallMessageHandler(
                [](QtMsgType, const QMessageLogContext &, const QString &) { ++warnings; });
            for (int i = 0; i < 200; ++i)
                made->headlineAtIndex(i); // there are no links
            qInstallMessageHandler(before);
            QCOMPARE(warnings, 20); // each read says so anew
        };
        for (std::size_t read = 1; read <= 2; ++read) {
            loader_.answerWith(rss2(items));
            readsAnew(read * 20);
        }
        loader_.answer(UnchangedFeed{}); // the items are offered anew, but not cleaned
        readsAnew(40);
        loader_.answer(PostponedFeed{{503, u"HTTP"_s, u"混雑"_s}});
        readsAnew(40);
    }

    void headlineAtIndex_outside_namesTheFirstListThatIsTooShort_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("index");
        QTest::addColumn<QByteArray>("message");
        const QByteArray whole = "<title>一</title><link href='a'/><summary>本</summary>";
        QTest::newRow("titles") << atom(entry(whole)) << 1
                                << QByteArray("headlineAtIndex1:index error");
        QTest::newRow("negative") << atom(entry(whole)) << -1
                                  << QByteArray("headlineAtIndex1:index error");
        QTest::newRow("descriptions") << atom(entry("<title>一</title><title>二</title>")) << 1
                                      << QByteArray("headlineAtIndex3:index error");
        QTest::newRow("links") << atom(entry(whole) + entry("<title>二</title>")) << 1
                               << QByteArray("headlineAtIndex4:index error");
    }
    void headlineAtIndex_outside_namesTheFirstListThatIsTooShort()
    {
        QFETCH(QByteArray, document);
        QFETCH(int, index);
        QFETCH(QByteArray, message);
        const auto made = readFrom(feedformat::atom, document);
        QTest::ignoreMessage(QtWarningMsg, message.constData());
        const ItemRecord record = made->headlineAtIndex(index);
        QCOMPARE(record.siteName, u"名前"_s);
        QCOMPARE(record.link, u""_s);
        QVERIFY(!record.link.isNull());
    }

    void entries_pastTheEnd_areLogged()
    {
        const auto made = readFrom(feedformat::atom, atom(entry("<title>一</title>")));
        QTest::ignoreMessage(QtWarningMsg, "titleAtIndex:index error");
        QVERIFY(made->titleAtIndex(1).isNull());
        QTest::ignoreMessage(QtWarningMsg, "dateAtIndex:index error");
        QVERIFY(made->dateAtIndex(1).isNull());
        QTest::ignoreMessage(QtWarningMsg, "descriptionAtIndex:index error");
        QVERIFY(made->descriptionAtIndex(1).isNull());
        QTest::ignoreMessage(QtWarningMsg, "linkAtIndex:index error");
        QVERIFY(made->linkAtIndex(0).isNull());
        QTest::ignoreMessage(QtWarningMsg, "titleAtIndex:index error");
        QVERIFY(made->titleAtIndex(-1).isNull());
    }

    void validators_goWithTheItemsOfTheirDocumentOnly()
    {
        const HttpValidators validators{"\"tag\"", "Thu, 01 May 2008 00:00:00 GMT"};
        const auto made = reader(feedformat::rss2);
        loader_.answerWith(rss2(item("<title>一</title>")), {}, validators);
        made->readHeadlines();
        QVERIFY(loader_.requests.back().validators.isEmpty()); // the first read

        loader_.answer(UnchangedFeed{});
        clock_.setCalendar(readMoment() + std::chrono::minutes(5));
        QCOMPARE(made->readHeadlines(), 0);
        QCOMPARE(loader_.requests.back().validators, validators);
        QCOMPARE(made->status(), 1);
        QCOMPARE(made->date().value(), u"05/10 10:25"_s);
        QCOMPARE(made->count(), 1);

        loader_.answerWith(rss2({}));
        made->readName(); // also finds the format anew
        QVERIFY(loader_.requests.back().validators.isEmpty());

        made->setAddress(u"http://example.com/other"_s);
        QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://example.com/other)");
        made->readHeadlines();
        QVERIFY(loader_.requests.back().validators.isEmpty());
        clock_.setCalendar(readMoment());
    }

    void validators_areNotSentAfterTheFormatChanged()
    {
        const auto made = reader(feedformat::rss2);
        loader_.answerWith(rss2(item("<title>一</title>")), {}, {"\"tag\"", {}});
        made->readHeadlines();
        loader_.answerWith(atom({}));
        made->readName();
        QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://example.com/feed)");
        made->readHeadlines();
        QVERIFY(loader_.requests.back().validators.isEmpty());
    }

    void postponed_withItems_offersThemAsTheyAre()
    {
        const auto made = readFrom(feedformat::rss2, rss2(item("<title>一</title>")));
        loader_.answer(PostponedFeed{{503, u"HTTP"_s, u"混雑"_s}});
        QCOMPARE(made->readHeadlines(), 0);
        QCOMPARE(made->status(), 1);
        QCOMPARE(made->count(), 1);
        QCOMPARE(made->lastErrorCause(), u"混雑"_s);
        QVERIFY(!made->offersNothing());
    }

    void postponed_withoutItems_isAFailure()
    {
        const auto made = reader(feedformat::rss2);
        loader_.answer(PostponedFeed{{503, u"HTTP"_s, u"混雑"_s}});
        QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://example.com/feed)");
        QCOMPARE(made->readHeadlines(), 1);
        QCOMPARE(made->status(), -1);
        QVERIFY(made->offersNothing());
    }

    void cleanUpOperations()
    {
        const auto made = reader(feedformat::rss2);
        QCOMPARE(made->pulloutTextString(u"W<a href=\"x\">y</a>\nX&nbsp;Y&lt;Z"_s).value(),
                 u"WX Y"_s);
        QCOMPARE(made->removeHeadSpace(u" 　 a "_s).value(), u"a "_s);
        QCOMPARE(made->removeTailSpace(u"a　 \t"_s).value(), u"a　"_s);
        QCOMPARE(made->dateFormatChange(u"2008-05-01T03:10:00Z"_s, 3), u"05/01 12:10"_s);
    }

    void isExistSummary_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<bool>("expected");
        QTest::newRow("description") << QByteArray("<description/>") << true;
        QTest::newRow("summary") << QByteArray("<summary>x</summary>") << true;
        QTest::newRow("neither") << QByteArray("<title/>") << false;
        QTest::newRow("only deeper inside") << QByteArray("<a><summary/></a>") << false;
        QTest::newRow("with a prefix") << QByteArray("<m:description xmlns:m='m'/>") << false;
    }
    void isExistSummary()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, expected);
        const auto parsed = XmlDocument::parse(item(contents));
        const auto nodes = parsed.document->nodesForXPath("/item").nodes;
        QCOMPARE(reader(feedformat::rss2)->isExistSummary(nodes.front()), expected);
    }
};

QTEST_GUILESS_MAIN(RssReaderTest)
#include "rssreader_test.moc"
