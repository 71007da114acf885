// SPDX-License-Identifier: MIT
// Servers that misbehave: each time the feed fails with a cause that a person understands, offers
// nothing in that pass, and the feeds beside it are read.
#include "feeds/FeedFormat.h"
#include "feeds/HttpFeedLoader.h"
#include "feeds/RSSReader.h"
#include "platform/SystemClock.h"
#include "tests/feeds/FeedTexts.h"
#include "tests/support/HttpMisbehaviours.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace qovelmor;
using namespace qovelmor::feedtexts;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

QByteArray goodFeed()
{
    return rss2(item("<title>t</title><description>" + QByteArray(200, 'd') + "</description>")
                    .repeated(20));
}

HttpLimits shortLimits()
{
    HttpLimits limits;
    limits.connect = 400ms;
    limits.idle = 600ms;
    limits.total = 1500ms;
    limits.bodyBytes = 1024 * 1024;
    limits.headerBytes = 64 * 1024;
    return limits;
}

/// A port of this machine that takes connections into its queue and never accepts one; once the
/// queue is full, a hand-shake is not even answered.
class FullPort
{
public:
    FullPort()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const plain = reinterpret_cast<sockaddr *>(&address);
        sockets_.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        ::bind(sockets_.front(), plain, size);
        ::listen(sockets_.front(), 0);
        ::getsockname(sockets_.front(), plain, &size);
        port_ = ::ntohs(address.sin_port);
        for (int i = 0; i < 8; ++i) {
            sockets_.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
            ::connect(sockets_.back(), plain, size);
        }
    }
    ~FullPort()
    {
        for (const int socket : sockets_)
            ::close(socket);
    }
    FullPort(const FullPort &) = delete;
    FullPort &operator=(const FullPort &) = delete;

    QString address() const { return u"http://127.0.0.1:%1/"_s.arg(port_); }

private:
    std::vector<int> sockets_;
    int port_ = 0;
};

/// A real TLS server with a certificate that nobody has vouched for.
class SelfSignedServer
{
public:
    bool start()
    {
        QProcess maker;
        maker.setWorkingDirectory(folder_.path());
        maker.start(u"openssl"_s, {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s,
                                   u"-keyout"_s, u"key.pem"_s, u"-out"_s, u"cert.pem"_s, u"-days"_s,
                                   u"2"_s, u"-subj"_s, u"/CN=127.0.0.1"_s});
        if (!maker.waitForFinished() || maker.exitCode() != 0)
            return false;
        server_.setWorkingDirectory(folder_.path());
        server_.start(u"openssl"_s, {u"s_server"_s, u"-accept"_s, u"127.0.0.1:0"_s, u"-key"_s,
                                     u"key.pem"_s, u"-cert"_s, u"cert.pem"_s, u"-www"_s});
        QByteArray said;
        while (!said.contains("ACCEPT 127.0.0.1:")) {
            if (!server_.waitForReadyRead())
                return false;
            said += server_.readAllStandardOutput();
        }
        port_ = said.mid(said.indexOf("ACCEPT 127.0.0.1:") + 17).trimmed().toInt();
        return port_ > 0;
    }
    ~SelfSignedServer()
    {
        server_.kill();
        server_.waitForFinished();
    }
    QString address() const { return u"https://127.0.0.1:%1/"_s.arg(port_); }

private:
    QTemporaryDir folder_;
    QProcess server_;
    int port_ = 0;
};

} // namespace

class HttpFaultsTest : public QObject
{
    Q_OBJECT

private:
    SystemClock clock_;
    HttpServer server_;
    HttpClient client_{clock_, {}, shortLimits()};

    void verifyFailure(const QString &address, const QString &cause)
    {
        HttpFeedLoader loader(client_, clock_);
        RSSReader reader({loader, clock_}, address, true, u"名"_s, feedformat::rss2);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(reader.readHeadlines(), 1);
        const QString got = reader.lastErrorCause();
        QVERIFY2(got.contains(cause), qPrintable(got));
        QVERIFY2(got.endsWith(u'。') && !got.contains(u'\n'), qPrintable(got));
        QVERIFY2(!got.startsWith(u"読み込みに失敗しました"_s), qPrintable(got)); // says nothing
        QCOMPARE(reader.status(), -1);
        QCOMPARE(reader.count(), 0);
        QVERIFY2(timer.elapsed() < 30'000, qPrintable(QString::number(timer.elapsed())));
    }

    void verifyReadable()
    {
        HttpFeedLoader loader(client_, clock_);
        RSSReader reader({loader, clock_}, server_.address("/good"), true, u"名"_s,
                         feedformat::rss2);
        QCOMPARE(reader.readHeadlines(), 0);
        QCOMPARE(reader.count(), 20);
    }

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : {"http_proxy", "https_proxy", "all_proxy", "ALL_PROXY"})
            qunsetenv(name);
        addMisbehavingRoutes(server_);
        server_.route("/good", HttpServer::document(goodFeed()));
    }

    // The control: what is not spoilt is read.
    void aGoodFeed_isRead() { verifyReadable(); }

    void misbehaviour_data()
    {
        QTest::addColumn<int>("number");
        const auto rows = httpMisbehaviours(goodFeed());
        QVERIFY(rows.size() >= 60);
        for (std::size_t i = 0; i < rows.size(); ++i)
            QTest::newRow(rows[i].name) << static_cast<int>(i);
    }
    void misbehaviour()
    {
        QFETCH(int, number);
        static const auto rows = httpMisbehaviours(goodFeed());
        const HttpMisbehaviour &row = rows[static_cast<std::size_t>(number)];
        server_.route("/feed", row.reply);
        verifyFailure(server_.address("/feed"), row.cause);
    }

    void unreachable_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("cause");
        QTest::newRow("a name that nobody has")
            << u"http://no-such-host.invalid/"_s << u"サーバーが見つかりません"_s;
        QTest::newRow("a closed port") << u"http://127.0.0.1:1/"_s << u"接続できません"_s;
        QTest::newRow("no port of any kind") << u"http://127.0.0.1:99999/"_s << u"アドレス"_s;
        QTest::newRow("a local file") << u"file:///etc/passwd"_s << u"http か https"_s;
        QTest::newRow("no host") << u"http:///feed"_s << u"http か https"_s;
    }
    void unreachable()
    {
        QFETCH(QString, address);
        QFETCH(QString, cause);
        verifyFailure(address, cause);
    }

    void filteredPort_endsWithTheTimeForConnecting()
    {
        const FullPort port;
        verifyFailure(port.address(), u"秒以内にサーバーへ接続できませんでした"_s);
    }

    void tlsThatHangs_endsWithTheTimeForConnecting()
    {
        const HttpServer hanging; // waits for the end of a request that never comes
        verifyFailure(hanging.address("/").replace(u"http"_s, u"https"_s), u"秒"_s);
    }

    void certificateThatNobodyVouchesFor_isRefused()
    {
        SelfSignedServer tls;
        QVERIFY2(tls.start(), "openssl is needed");
        verifyFailure(tls.address(), u"証明書"_s);
        server_.route("/feed", HttpServer::redirection(tls.address().toUtf8()));
        verifyFailure(server_.address("/feed"), u"証明書"_s);
    }

    void afterAllThat_theOthersAreRead() { verifyReadable(); }
};

QTEST_GUILESS_MAIN(HttpFaultsTest)
#include "httpfaults_test.moc"
