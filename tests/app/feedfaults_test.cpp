// SPDX-License-Identifier: MIT
// A pass of the real program over feeds that are hostile all at once: what it takes of the machine
// meanwhile and afterwards, and what it shows.
#include "RunningProgram.h"
#include "tests/support/Gzip.h"
#include "tests/support/HttpServer.h"
#include "tests/support/ProcessUse.h"

#include <QTest>

#include <atomic>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype mebibyte = 1024 * 1024;
constexpr long maxForServers = 256; // MiB above rest
constexpr long maxForDocuments = 512;
constexpr long maxAfter = 16;
constexpr double maxForADocument = 2; // s of the processor
constexpr int happensSoon = 120'000;  // ms, on a busy machine

QByteArray goodFeed()
{
    return "<rss version='2.0'><channel><title>t</title><item><title>a</title>"
           "<link>http://h/</link></item></channel></rss>";
}

QByteArray filled(const QByteArray &piece, qsizetype size)
{
    return "<rss>" + piece.repeated(size / piece.size());
}

// A sanitizer looks for wrong accesses, not at limits, and takes minutes for the whole size.
constexpr qsizetype full = (isSanitized() ? 1 : 31) * mebibyte;

/// What a server can do: nothing of it is worth parsing.
HttpServer::Reply hostileServer(int number)
{
    HttpServer::Reply reply;
    reply.bytes = "HTTP/1.1 200 OK\r\n";
    switch (number % 10) {
    case 0:
        reply.bytes += "\r\n<rss>";
        reply.endless = QByteArray(100'000, ' ');
        return reply;
    case 1:
        return HttpServer::reply("200 OK", {"Content-Encoding: gzip"},
                                 gzip(QByteArray(40 * mebibyte, ' ')));
    case 2:
        reply.bytes += ("X: " + QByteArray(995, 'x') + "\r\n").repeated(20'000) + "\r\n";
        return reply;
    case 3:
        reply.bytes += "X: " + QByteArray(20'000'000, 'x') + "\r\n\r\n";
        return reply;
    case 4:
        reply.bytes += "Transfer-Encoding: chunked\r\n\r\n";
        reply.endless = "186a0\r\n" + QByteArray(100'000, ' ') + "\r\n";
        return reply;
    case 5:
        reply.bytes += "Content-Length: 99999999\r\n\r\n" + goodFeed();
        return reply;
    case 6:
        reply.bytes += "Transfer-Encoding: chunked\r\n\r\nfff\r\n" + goodFeed();
        return reply;
    case 7:
        return HttpServer::redirection("/" + QByteArray::number(number));
    case 8:
        return HttpServer::document(filled("x", full)); // the end is missing
    default:
        return HttpServer::reply("500 No", {}, QByteArray(full, 'x'));
    }
}

/// What a document can do.
HttpServer::Reply hostileDocument(int number)
{
    const auto entities = [](qsizetype size, qsizetype count) {
        return "<!DOCTYPE a [<!ENTITY x '" + QByteArray(size, 'x') + "'>]><a>" +
               QByteArray("&x;").repeated(count) + "</a>";
    };
    switch (number) {
    case 0:
        return HttpServer::document(filled("<a/>", full));
    case 1:
        return HttpServer::document(filled("<a>x</a>x", full));
    case 2:
        return HttpServer::document(filled("<a b='' c=''/>", full));
    case 3:
        return HttpServer::document(QByteArray("<a>").repeated(1'000'000));
    case 4:
        return HttpServer::document("<" + QByteArray(60'000, 'a') + "/>");
    case 5:
        return HttpServer::document(entities(100'000, 100'000));
    case 6:
        return HttpServer::document(QByteArray("\xff\xfe") + filled("\x42\x30", full));
    case 7:
        return HttpServer::reply("200 OK", {"Content-Encoding: gzip"}, gzip(filled("<a/>", full)));
    case 8:
        return HttpServer::document(filled("<!---->&nbsp;", full));
    default:
        return HttpServer::document(filled("\x8d\x87", full), "text/xml; charset=Shift_JIS");
    }
}

/// A document full of descriptions whose clean-up would go on and on, with one headline.
QByteArray costlyFeed(const QByteArray &description)
{
    const QByteArray item =
        "<item><description><![CDATA[" + description + "]]></description></item>";
    return "<rss version='2.0'><channel><title>t</title><item><title>a</title></item>" +
           item.repeated(full / item.size()) + "</channel></rss>";
}

} // namespace

class FeedFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostileFeeds_areBoundedAndTheOthersAreRead_data()
    {
        QTest::addColumn<bool>("isDocument");
        QTest::addColumn<long>("most");
        QTest::newRow("servers") << false << maxForServers;
        QTest::newRow("documents") << true << maxForDocuments;
    }
    void hostileFeeds_areBoundedAndTheOthersAreRead();
    void costlyDescriptions_areBounded();
};

void FeedFaultsTest::hostileFeeds_areBoundedAndTheOthersAreRead()
{
    QFETCH(bool, isDocument);
    QFETCH(long, most);
    std::atomic<bool> isHostile{false};
    const int feedCount = isDocument ? 10 : 20;
    std::vector<HttpServer::Reply> hostile;
    hostile.reserve(static_cast<std::size_t>(feedCount));
    for (int i = 0; i < feedCount; ++i)
        hostile.push_back(isDocument ? hostileDocument(i) : hostileServer(i));
    HttpServer server;
    RunningProgram program;
    for (int i = 0; i < feedCount; ++i) {
        const QByteArray path = "/" + QByteArray::number(i);
        server.route(path, [&isHostile, &hostile, i](const HttpServer::Request &) {
            if (!isHostile)
                return HttpServer::document(goodFeed());
            return hostile[static_cast<std::size_t>(i)];
        });
        program.addFeed(server.address(path.constData()), u"悪い%1"_s.arg(i), 2);
    }
    server.route("/good", HttpServer::document(goodFeed()));
    program.addFeed(server.address("/good"), u"良い"_s, 2);
    program.set(u"DisplayAuto"_s, true);
    program.set(u"ScrollSpeed"_s, 0);
    QVERIFY(program.start());
    const auto linesOf = [&program](const QString &text) { return program.logBook().count(text); };

    // Two passes in peace: what is made once has been made.
    QTRY_VERIFY_WITH_TIMEOUT(linesOf(u" RSS読込終了:"_s) >= 2, happensSoon);
    const ProcessUse use(program.processId());
    const long rest = use.memoryKiB();
    QVERIFY(use.forgetPeak());
    const auto good = server.hits("/good");
    isHostile = true;
    QTRY_VERIFY_WITH_TIMEOUT(server.hits("/good") >= good + 2, happensSoon); // a whole hostile pass
    isHostile = false;
    const auto ends = linesOf(u" RSS読込終了:"_s);
    QTRY_VERIFY_WITH_TIMEOUT(linesOf(u" RSS読込終了:"_s) >= ends + 2, happensSoon);

    const long during = (use.peakMemoryKiB() - rest) / 1024;
    const long after = (use.memoryKiB() - rest) / 1024;
    qInfo("memory above rest: %ld MiB during, %ld MiB after", during, after);
    const QString log = program.logBook();
    for (int i = 0; i < feedCount; ++i) {
        const QString failure = u"/%1 結果:RSS読込エラー\n"_s.arg(i);
        QVERIFY2(log.contains(failure), qPrintable(failure));
    }
    QVERIFY(!log.contains(u"/good 結果:RSS読込エラー"_s));
    QVERIFY(log.contains(u" RSS読込終了:1\n"_s)); // the good one alone
    QCOMPARE(program.terminate(30s), 0);
    QVERIFY(program.isStoreWhole());
    if (isSanitized())
        return;
    QVERIFY2(during <= most, qPrintable(QString::number(during)));
    QVERIFY2(after <= maxAfter, qPrintable(QString::number(after)));
}

void FeedFaultsTest::costlyDescriptions_areBounded()
{
    const std::vector<QByteArray> descriptions{
        "/span>n" + QByteArray("<spa").repeated(180) + "<span",
        QByteArray("<<span></span>a/a>").repeated(10'000),
        QByteArray("<sp<<span></span>a/a>an></span>").repeated(10'000),
        QByteArray("&nbsp;").repeated(300'000),
    };
    HttpServer server;
    RunningProgram program;
    for (std::size_t i = 0; i < descriptions.size(); ++i) {
        const QByteArray path = "/" + QByteArray::number(i);
        server.route(path, HttpServer::document(costlyFeed(descriptions[i])));
        program.addFeed(server.address(path.constData()), u"重い%1"_s.arg(i), 2);
    }
    server.route("/good", HttpServer::document(goodFeed()));
    program.addFeed(server.address("/good"), u"良い"_s, 2);
    program.set(u"DisplayAuto"_s, true);
    QVERIFY(program.start());
    const ProcessUse use(program.processId());
    QTRY_VERIFY_WITH_TIMEOUT(server.hits("/0") > 0, happensSoon);
    const double before = use.processorSeconds();
    QTRY_VERIFY_WITH_TIMEOUT(program.logBook().contains(u" RSS読込終了:5\n"_s), happensSoon);
    const double taken = use.processorSeconds() - before;
    qInfo("processor time: %.2f s for %zu documents", taken, descriptions.size());
    QVERIFY(program.logBook().contains(u"watchBreak:RSSReader:pulloutTextString"_s));
    QCOMPARE(program.terminate(30s), 0);
    if (!isSanitized())
        QVERIFY(taken < maxForADocument * static_cast<double>(descriptions.size()));
}

QTEST_GUILESS_MAIN(FeedFaultsTest)
#include "feedfaults_test.moc"
