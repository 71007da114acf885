// SPDX-License-Identifier: MIT
#include "feeds/HttpFeedLoader.h"
#include "feeds/RSSReader.h"
#include "platform/SystemClock.h"
#include "tests/feeds/FeedTexts.h"
#include "tests/support/HttpServer.h"

#include <QtTest>

using namespace qovelmor;
using namespace qovelmor::feedtexts;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The real clock with its steady part pushed ahead by the test.
class PushedClock final : public Clock
{
public:
    SteadyTime steadyNow() const override { return real_.steadyNow() + ahead; }
    CalendarTime calendarNow() const override { return real_.calendarNow(); }
    bool sleepUntil(SteadyTime deadline) override { return real_.sleepUntil(deadline - ahead); }
    void endSleeps() override { real_.endSleeps(); }
    bool sleepsEnded() const override { return real_.sleepsEnded(); }
    void threadStarts() override {}
    void threadEnds() override {}
    void threadWaits() override {}
    void threadResumes() override {}

    Duration ahead{0};

private:
    SystemClock real_;
};

} // namespace

class HttpFeedLoaderTest : public QObject
{
    Q_OBJECT

private:
    PushedClock clock_;
    std::unique_ptr<HttpServer> server_;
    std::unique_ptr<HttpClient> client_;
    std::unique_ptr<HttpFeedLoader> loader_;

    FeedLoad load(const char *path, HttpValidators validators = {})
    {
        return loader_->load({server_->address(path), std::move(validators)});
    }
    ReadError error(const FeedLoad &load)
    {
        const auto *found = std::get_if<ReadError>(&load);
        return found ? *found : ReadError{};
    }

private Q_SLOTS:
    void init()
    {
        server_ = std::make_unique<HttpServer>();
        client_ = std::make_unique<HttpClient>(clock_);
        loader_ = std::make_unique<HttpFeedLoader>(*client_, clock_);
    }
    void cleanup() { server_.reset(); }

    void errors_tellTheirDomain()
    {
        QCOMPARE(error(load("/none")).code, 404);
        QCOMPARE(error(load("/none")).domain, u"HTTP"_s);
        server_->route("/broken", HttpServer::document("<a>\n<b>\n</a>"));
        QCOMPARE(error(load("/broken")).code, 3);
        QCOMPARE(error(load("/broken")).domain, u"XML"_s);
        QVERIFY(error(load("/broken")).cause.startsWith(u"3行目"_s));
        QCOMPARE(error(loader_->load({u"file:///etc/passwd"_s, {}})).domain, u"Transfer"_s);
    }

    void aLimit_isSaidInTheLog()
    {
        server_->route("/large", HttpServer::document(QByteArray(2000, ' ')));
        HttpLimits limits;
        limits.bodyBytes = 1024;
        const HttpClient client(clock_, {}, limits);
        HttpFeedLoader loader(client, clock_);
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"^Feed limit\\.\\(http.*/large\\).*1 KiB"_s));
        const ReadError got = error(loader.load({server_->address("/large"), {}}));
        QCOMPARE(got.domain, u"Transfer limit"_s);
    }

    void theCharsetOfTheHeader_countsOverTheDeclaration()
    {
        server_->route("/a",
                       HttpServer::document("<?xml version='1.0' encoding='UTF-8'?><a>\x93\xfa</a>",
                                            "text/xml; charset=Shift_JIS"));
        const FeedLoad got = load("/a");
        const auto nodes = std::get<LoadedFeed>(got).document->nodesForXPath("/a").nodes;
        QCOMPARE(nodes.front().stringValue(), u"日"_s);
    }

    void withoutReuse_eachLoadAsks()
    {
        server_->route("/a", HttpServer::document("<a/>"));
        load("/a");
        load("/a");
        QCOMPARE(server_->hits("/a"), 2);
    }

    void withReuse_theYoungAnswerOfAnAskerHolds()
    {
        server_->route("/a", HttpServer::document("<a/>"));
        const auto loadAgain = [&](Clock::Duration age) {
            return loader_->load({server_->address("/a"), {}, clock_.steadyNow() - age});
        };
        QVERIFY(std::holds_alternative<LoadedFeed>(loadAgain(0s)));
        loader_->setReuseAge(30s);
        QVERIFY(std::holds_alternative<RecentFeed>(loadAgain(0s)));
        QVERIFY(std::holds_alternative<RecentFeed>(loadAgain(29s)));
        QCOMPARE(server_->hits("/a"), 1);
        QVERIFY(std::holds_alternative<LoadedFeed>(loadAgain(30s)));
        QVERIFY(std::holds_alternative<LoadedFeed>(load("/a"))); // who wants the document gets it
        loader_->setReuseAge(0s);
        QVERIFY(std::holds_alternative<LoadedFeed>(loadAgain(0s)));
        QCOMPARE(server_->hits("/a"), 4);
    }

    void withReuse_noServerIsAskedAgain_data()
    {
        QTest::addColumn<int>("feeds");
        QTest::addColumn<HttpServer::Reply>("answer");
        const auto padded = [](qsizetype size) {
            return rss2(item("<title>見出し</title><description>" + QByteArray(size, 'x') +
                             "</description>"));
        };
        const auto row = [](const char *name, int feeds, const HttpServer::Reply &answer) {
            QTest::newRow(name) << feeds << answer;
        };
        row("many large documents", 20, HttpServer::document(padded(600'000)));
        row("one of 9 MB", 1, HttpServer::document(padded(9'000'000)));
        row("large ones without headlines", 20,
            HttpServer::document(rss2("<link>" + QByteArray(600'000, 'x') + "</link>")));
        row("large ones that are no XML", 20, HttpServer::document(QByteArray(600'000, 'x')));
        row("nothing there", 2, HttpServer::reply("404 Not Found", {}, {}));
        row("a second's rest", 2, HttpServer::reply("503 Busy", {"Retry-After: 1"}, {}));
    }
    // Feeds of which nothing is shown are read again each second.
    void withReuse_noServerIsAskedAgain()
    {
        QFETCH(int, feeds);
        QFETCH(HttpServer::Reply, answer);
        std::vector<std::unique_ptr<RSSReader>> readers;
        for (int i = 0; i < feeds; ++i) {
            const QByteArray path = "/" + QByteArray::number(i);
            server_->route(path, answer);
            readers.push_back(std::make_unique<RSSReader>(
                FeedServices{*loader_, clock_}, server_->address(path), true, u"名"_s, 2));
        }
        const auto readAll = [&] {
            std::vector<std::tuple<int, int, int, QString>> results;
            for (const auto &reader : readers) {
                const int code = reader->readHeadlines();
                results.emplace_back(code, reader->status(), reader->count(),
                                     reader->lastErrorCause());
            }
            return results;
        };
        const auto requests = [&] { return static_cast<int>(server_->requests().size()); };

        const auto results = readAll();
        QCOMPARE(requests(), feeds);
        loader_->setReuseAge(30s);
        for (int second = 1; second <= 5; ++second) {
            clock_.ahead += 2s;
            QCOMPARE(readAll(), results);
            QCOMPARE(requests(), feeds);
        }
        clock_.ahead += 21s;
        QCOMPARE(readAll(), results);
        QCOMPARE(requests(), 2 * feeds);
        clock_.ahead += 2s;
        loader_->setReuseAge(0s); // a person asks for a read
        QCOMPARE(readAll(), results);
        QCOMPARE(requests(), 3 * feeds);
    }

    // A list may hold an address twice, and a server may never send the same bytes again.
    void withReuse_eachReaderKeepsItsOwnAnswer()
    {
        int documents = 0;
        server_->route("/a", [&documents](const HttpServer::Request &) {
            const QByteArray number = QByteArray::number(++documents);
            return HttpServer::document(rss2(item("<title>" + number + "</title>")));
        });
        RSSReader one({*loader_, clock_}, server_->address("/a"), true, u"名"_s, 2);
        RSSReader other({*loader_, clock_}, server_->address("/a"), true, u"名"_s, 2);
        for (int cycle = 0; cycle < 3; ++cycle) {
            QCOMPARE(one.readHeadlines(), 0);
            QCOMPARE(other.readHeadlines(), 0);
            QCOMPARE(one.titleAtIndex(0), u"1"_s);
            QCOMPARE(other.titleAtIndex(0), u"2"_s);
            loader_->setReuseAge(30s);
        }
        QCOMPARE(server_->hits("/a"), 2);
    }

    void notModified_isUnchanged()
    {
        server_->route("/a", HttpServer::reply("304 Not Modified", {}, {}));
        QVERIFY(std::holds_alternative<UnchangedFeed>(load("/a", {"\"1\"", {}})));
    }

    void retryAfter_isHonouredUpToAnHour_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<int>("seconds");
        QTest::addColumn<int>("held");
        QTest::newRow("429") << QByteArray("429 Slow") << 60 << 60;
        QTest::newRow("503, longer than an hour") << QByteArray("503 Busy") << 90'000 << 3600;
    }
    void retryAfter_isHonouredUpToAnHour()
    {
        QFETCH(QByteArray, status);
        QFETCH(int, seconds);
        QFETCH(int, held);
        server_->route(
            "/a", HttpServer::reply(status, {"Retry-After: " + QByteArray::number(seconds)}, {}));
        QVERIFY(std::holds_alternative<PostponedFeed>(load("/a")));
        clock_.ahead += std::chrono::seconds(held - 5);
        QVERIFY(std::holds_alternative<PostponedFeed>(load("/a")));
        QCOMPARE(server_->hits("/a"), 1);
        server_->route("/a", HttpServer::document("<a/>"));
        clock_.ahead += 6s;
        QVERIFY(std::holds_alternative<LoadedFeed>(load("/a")));
    }

    void aReader_readsOverHttp()
    {
        server_->route("/feed", [](const HttpServer::Request &request) {
            return request.headers.count("if-none-match") != 0
                       ? HttpServer::reply("304 Not Modified", {}, {})
                       : HttpServer::reply(
                             "200 OK", {"ETag: \"1\""},
                             rss2(item("<title>見出し</title><link>http://a/</link>")));
        });
        RSSReader reader({*loader_, clock_}, server_->address("/feed"));
        QCOMPARE(reader.name().value(), u"テスト"_s);
        QCOMPARE(reader.readHeadlines(), 0);
        QCOMPARE(reader.readHeadlines(), 0); // not modified
        QCOMPARE(reader.titleAtIndex(0), u"見出し"_s);
        const auto requests = server_->requests();
        QCOMPARE(requests.size(), std::size_t{3});
        QCOMPARE(requests[0].headers.count("if-none-match"), std::size_t{0});
        QCOMPARE(requests[1].headers.count("if-none-match"), std::size_t{0});
        QCOMPARE(requests[2].headers.count("if-none-match"), std::size_t{1});
    }
};

QTEST_GUILESS_MAIN(HttpFeedLoaderTest)
#include "httpfeedloader_test.moc"
