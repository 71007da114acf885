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

    void withReuse_youngResultsAreAnsweredAgain()
    {
        server_->route("/a", HttpServer::document("<a/>"));
        load("/a"); // before reuse was asked for
        load("/none");
        loader_->setReuseAge(30s);
        QVERIFY(std::holds_alternative<LoadedFeed>(load("/a")));
        QCOMPARE(error(load("/none")).code, 404);
        QCOMPARE(server_->requests().size(), std::size_t{2});
        clock_.ahead += 31s;
        load("/a");
        QCOMPARE(server_->hits("/a"), 2);
        loader_->setReuseAge(0s);
        load("/a");
        QCOMPARE(server_->hits("/a"), 3);
    }

    void withReuse_largeDocumentsAreNotKept()
    {
        server_->route("/a", HttpServer::document("<a>" + QByteArray(9'000'000, 'x') + "</a>"));
        loader_->setReuseAge(30s);
        load("/a");
        load("/a");
        QCOMPARE(server_->hits("/a"), 2);
    }

    // What is kept of all feeds together has a budget: the oldest document goes first.
    void withReuse_theOldestIsDroppedForTheNewest()
    {
        loader_->setReuseAge(30s);
        constexpr int documents = 12;
        for (int i = 0; i < documents; ++i) {
            const QByteArray path = "/" + QByteArray::number(i);
            server_->route(path, HttpServer::document("<a>" + QByteArray(1'000'000, 'x') + "</a>"));
            load(path.constData());
        }
        load("/0");
        QCOMPARE(server_->hits("/0"), 2);
        load("/11");
        QCOMPARE(server_->hits("/11"), 1);
    }

    void notModified_isUnchanged_andOnlyReusedForTheSameDocument()
    {
        server_->route("/a", [](const HttpServer::Request &request) {
            return request.headers.count("if-none-match") != 0
                       ? HttpServer::reply("304 Not Modified", {}, {})
                       : HttpServer::document("<a/>");
        });
        QVERIFY(std::holds_alternative<UnchangedFeed>(load("/a", {"\"1\"", {}})));
        loader_->setReuseAge(30s);
        QVERIFY(std::holds_alternative<UnchangedFeed>(load("/a", {"\"1\"", {}})));
        QCOMPARE(server_->hits("/a"), 1);
        QVERIFY(std::holds_alternative<LoadedFeed>(load("/a")));
        QCOMPARE(server_->hits("/a"), 2);
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

    void anAbortedLoad_isNotRemembered()
    {
        server_->route("/a", HttpServer::document("<a/>"));
        bool ends = true;
        HttpHooks hooks;
        hooks.isAborted = [&ends] { return ends; };
        const HttpClient client(clock_, hooks);
        HttpFeedLoader loader(client, clock_);
        loader.setReuseAge(30s);
        QVERIFY(std::holds_alternative<ReadError>(loader.load({server_->address("/a"), {}})));
        ends = false;
        QVERIFY(std::holds_alternative<LoadedFeed>(loader.load({server_->address("/a"), {}})));
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
