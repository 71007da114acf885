// SPDX-License-Identifier: MIT
#include "platform/HttpClient.h"
#include "platform/SystemClock.h"
#include "tests/support/Gzip.h"
#include "tests/support/HttpServer.h"

#include <QDir>
#include <QRegularExpression>
#include <QtTest>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

HttpServer::Reply raw(const QByteArray &bytes)
{
    HttpServer::Reply reply;
    reply.bytes = bytes;
    return reply;
}

/// Our ends of the connections to a port of this machine.
std::vector<int> descriptorsTo(int port)
{
    std::vector<int> found;
    for (const QString &name :
         QDir(u"/proc/self/fd"_s)
             .entryList(QDir::NoDotAndDotDot | QDir::System | QDir::AllEntries)) {
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        if (::getpeername(name.toInt(), reinterpret_cast<sockaddr *>(&peer), &size) == 0 &&
            peer.sin_family == AF_INET && ntohs(peer.sin_port) == port)
            found.push_back(name.toInt());
    }
    return found;
}

} // namespace

class HttpClientTest : public QObject
{
    Q_OBJECT

private:
    SystemClock clock_;
    std::unique_ptr<HttpServer> server_;

    HttpResult get(const char *path, HttpLimits limits = {}, HttpHooks hooks = {})
    {
        return HttpClient(clock_, std::move(hooks), limits).get({server_->address(path), {}});
    }
    HttpReply reply(const HttpResult &result)
    {
        const auto *error = std::get_if<HttpError>(&result);
        if (error)
            qWarning("%s", qPrintable(error->cause));
        return error ? HttpReply{} : std::get<HttpReply>(result);
    }
    HttpError error(const HttpResult &result)
    {
        const auto *found = std::get_if<HttpError>(&result);
        return found ? *found : HttpError{};
    }

private Q_SLOTS:
    void init()
    {
        qunsetenv("http_proxy");
        server_ = std::make_unique<HttpServer>();
    }
    void cleanup() { server_.reset(); }

    void aDocument_comesWithItsMarks()
    {
        server_->route("/a", HttpServer::reply("200 OK",
                                               {"Content-Type: text/xml; charset=\"Shift_JIS\"",
                                                "ETag: \"tag\"",
                                                "Last-Modified: Thu, 01 May 2008 00:00:00 GMT"},
                                               "body"));
        const HttpReply got = reply(get("/a"));
        QCOMPARE(got.status, 200);
        QCOMPARE(got.body, QByteArray("body"));
        QCOMPARE(got.charset, QByteArray("Shift_JIS"));
        QCOMPARE(got.validators.entityTag, QByteArray("\"tag\""));
        QCOMPARE(got.validators.lastModified, QByteArray("Thu, 01 May 2008 00:00:00 GMT"));
        const auto request = server_->requests().front();
        const QString agent = QString::fromLatin1(request.headers.at("user-agent"));
        static const QRegularExpression nameAndVersion(u"^QoVelmorRSS/[0-9]+\\.[0-9]+"_s);
        QVERIFY2(nameAndVersion.match(agent).hasMatch(), qPrintable(agent));
        QVERIFY(request.headers.count("if-none-match") == 0);
    }

    void validators_areSentTogether_andNotModifiedIsAReply()
    {
        server_->route("/a", HttpServer::reply("304 Not Modified", {}, {}));
        const HttpClient client(clock_);
        const HttpResult result = client.get({server_->address("/a"), {"\"t\"", "date"}});
        QCOMPARE(reply(result).status, 304);
        const auto request = server_->requests().front();
        QCOMPARE(request.headers.at("if-none-match"), QByteArray("\"t\""));
        QCOMPARE(request.headers.at("if-modified-since"), QByteArray("date"));
        QCOMPARE(error(get("/a")).code, 304); // nobody had asked
    }

    // It would have to be held for each feed and sent with each request.
    void longValidators_areForgotten()
    {
        const QByteArray longest(1024, 't');
        server_->route("/a", HttpServer::reply("200 OK",
                                               {"ETag: " + longest, "Last-Modified: x" + longest},
                                               "body"));
        const HttpReply got = reply(get("/a"));
        QCOMPARE(got.validators.entityTag, longest);
        QCOMPARE(got.validators.lastModified, QByteArray());
    }

    void compressedBodies_areDecoded_data()
    {
        QTest::addColumn<QByteArray>("coding");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("gzip") << QByteArray("gzip") << gzip("hello feed");
        QTest::newRow("br") << QByteArray("br")
                            << QByteArray::fromHex("8b048068656c6c6f206665656403");
    }
    void compressedBodies_areDecoded()
    {
        QFETCH(QByteArray, coding);
        QFETCH(QByteArray, body);
        server_->route("/a", HttpServer::reply("200 OK", {"Content-Encoding: " + coding}, body));
        QCOMPARE(reply(get("/a")).body, QByteArray("hello feed"));
    }

    void statusOf400AndAbove_isAnError_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("retryAfter");
        QTest::newRow("404") << QByteArray("404 Not Found") << 404 << 0;
        QTest::newRow("400") << QByteArray("400 Bad Request") << 400 << 0;
        QTest::newRow("500") << QByteArray("500 Oops") << 500 << 0;
        QTest::newRow("503 later") << QByteArray("503 Busy\r\nRetry-After: 120") << 503 << 120;
        QTest::newRow("429 later") << QByteArray("429 Slow\r\nRetry-After: 5") << 429 << 5;
        QTest::newRow("500 later is not honoured")
            << QByteArray("500 No\r\nRetry-After: 5") << 500 << 0;
    }
    void statusOf400AndAbove_isAnError()
    {
        QFETCH(QByteArray, status);
        QFETCH(int, code);
        QFETCH(int, retryAfter);
        server_->route("/a", HttpServer::reply(status, {}, "page"));
        const HttpError got = error(get("/a"));
        QCOMPARE(got.kind, HttpError::Kind::Status);
        QCOMPARE(got.code, code);
        QCOMPARE(got.retryAfter.value_or(0s).count(), std::int64_t(retryAfter));
        QVERIFY(got.cause.contains(QString::number(code)));
    }

    void redirections_areFollowedTenTimes()
    {
        for (int i = 0; i < 11; ++i)
            server_->route("/" + QByteArray::number(i),
                           HttpServer::redirection("/" + QByteArray::number(i + 1)));
        server_->route("/11", HttpServer::document("end"));
        QCOMPARE(reply(get("/1")).body, QByteArray("end")); // ten hops
        const HttpError got = error(get("/0"));             // eleven
        QCOMPARE(got.code, 47);
        QVERIFY(got.cause.contains(u"10"_s));
    }

    void redirections_leaveTheWebNever()
    {
        for (const char *target :
             {"file:///etc/passwd", "ftp://127.0.0.1/x", "gopher://127.0.0.1/"}) {
            server_->route("/a", HttpServer::redirection(target));
            QCOMPARE(error(get("/a")).code, 1);
        }
    }

    void addresses_ofOtherKinds_areRefused()
    {
        const HttpClient client(clock_);
        for (const QString &address : {u"file:///etc/passwd"_s, u"feed://a/"_s, u""_s, u"http://"_s,
                                       u"x"_s, u"javascript:1"_s, u"--version"_s})
            QCOMPARE(error(client.get({address, {}})).kind, HttpError::Kind::Address);
    }

    void brokenAnswers_areErrors_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char *name, const QByteArray &bytes) {
            QTest::newRow(name) << bytes;
        };
        row("nothing", "");
        row("no HTTP", "hello\r\n\r\nhello");
        row("a Content-Length that promises more",
            "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nhalf");
        row("a Content-Length below zero", "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nhalf");
        row("a cut chunk", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n10\r\nhalf");
        row("a chunk's size that is no number",
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nhalf");
        row("no gzip", "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\nhello hello hello");
        row("an unknown coding", "HTTP/1.1 200 OK\r\nContent-Encoding: nonsense\r\n\r\nhello");
    }
    void brokenAnswers_areErrors()
    {
        QFETCH(QByteArray, bytes);
        server_->route("/a", raw(bytes));
        const HttpError got = error(get("/a"));
        QVERIFY(got.code != 0);
        QVERIFY(!got.cause.isEmpty());
    }

    void nobodyThere_isAnError()
    {
        QString address;
        {
            const HttpServer gone;
            address = gone.address("/");
        }
        QCOMPARE(error(HttpClient(clock_).get({address, {}})).code, 7);
    }

    void limits_endTheTransfer_data()
    {
        QTest::addColumn<int>("which");
        QTest::newRow("silence") << 0;
        QTest::newRow("a byte now and then, for ever") << 1;
        QTest::newRow("an endless body") << 2;
        QTest::newRow("a long body, announced") << 3;
        QTest::newRow("a gzip bomb") << 4;
        QTest::newRow("endless headers") << 5;
    }
    void limits_endTheTransfer()
    {
        QFETCH(int, which);
        const QByteArray head = "HTTP/1.1 200 OK\r\n";
        HttpServer::Reply answer = raw(head + "\r\n");
        if (which == 0)
            answer.holdsOpen = true;
        if (which == 1) {
            answer.atOnce = answer.bytes.size(); // the headers, else they would seem to be silence
            answer.bytes += QByteArray(1000, 'x');
            answer.pieceSize = 1;
            answer.pause = 30ms;
        }
        if (which == 2)
            answer.endless = QByteArray(100'000, 'x');
        if (which == 3)
            answer.bytes = head + "Content-Length: 999999\r\n\r\n";
        if (which == 4)
            answer = HttpServer::reply("200 OK", {"Content-Encoding: gzip"},
                                       gzip(QByteArray(4 * 1024 * 1024, 'x')));
        if (which == 5) {
            answer.bytes = head;
            answer.endless = QByteArray("X-Header: ") + QByteArray(1000, 'x') + "\r\n";
        }
        server_->route("/a", answer);
        HttpLimits limits;
        limits.idle = 200ms;
        limits.total = 700ms;
        limits.bodyBytes = 500'000;
        limits.headerBytes = 20'000;
        QElapsedTimer timer;
        timer.start();
        const HttpError got = error(get("/a", limits));
        QCOMPARE(got.kind, HttpError::Kind::Limit);
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    }

    void bodyLimit_isExact()
    {
        server_->route("/a", HttpServer::document(QByteArray(1000, 'x')));
        HttpLimits limits;
        limits.bodyBytes = 1000;
        QCOMPARE(reply(get("/a", limits)).body.size(), 1000);
        limits.bodyBytes = 999;
        const HttpError got = error(get("/a", limits));
        QCOMPARE(got.kind, HttpError::Kind::Limit);
        QVERIFY(got.cause.contains(u"999"_s));
    }

    void hooks_areCalledWhileWaiting_andEndTheRequest()
    {
        HttpServer::Reply silent = raw("HTTP/1.1 200 OK\r\n\r\n");
        silent.holdsOpen = true;
        server_->route("/a", silent);
        int idles = 0;
        HttpHooks hooks;
        hooks.idle = [&] { ++idles; };
        hooks.isAborted = [&] { return idles >= 5; };
        const HttpError got = error(get("/a", {}, hooks));
        QCOMPARE(got.kind, HttpError::Kind::Aborted);
        QCOMPARE(idles, 5);
    }

    // Else a browser that is started meanwhile would keep the connection open for its own life.
    void connections_areNotInherited()
    {
        HttpServer::Reply silent = raw("HTTP/1.1 200 OK\r\n\r\n");
        silent.holdsOpen = true;
        server_->route("/a", silent);
        int connections = 0;
        HttpHooks hooks;
        hooks.isAborted = [&] {
            const auto found = descriptorsTo(server_->port());
            for (const int descriptor : found)
                connections += (::fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0 ? 1 : -100;
            return !found.empty();
        };
        QCOMPARE(error(get("/a", {}, hooks)).kind, HttpError::Kind::Aborted);
        QCOMPARE(connections, 1);
    }

    void proxyVariables_areRespected()
    {
        server_->route("http://feeds.invalid/a", HttpServer::document("by proxy"));
        qputenv("http_proxy", server_->address("").toUtf8());
        const HttpResult result = HttpClient(clock_).get({u"http://feeds.invalid/a"_s, {}});
        qunsetenv("http_proxy");
        QCOMPARE(reply(result).body, QByteArray("by proxy"));
    }
};

QTEST_GUILESS_MAIN(HttpClientTest)
#include "httpclient_test.moc"
