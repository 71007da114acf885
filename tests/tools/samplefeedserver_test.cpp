// SPDX-License-Identifier: MIT
#include <QDateTime>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <arpa/inet.h>
#include <iconv.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

QString script()
{
    return qEnvironmentVariable("QOVELMOR_SOURCE_DIR") + u"/tools/sample_feed_server.py"_s;
}

// A connection to 127.0.0.1; -1 when nobody listens.
int connectedSocket(quint16 port)
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return descriptor;
    ::close(descriptor);
    return -1;
}

bool isListening(quint16 port)
{
    const int descriptor = connectedSocket(port);
    if (descriptor >= 0)
        ::close(descriptor);
    return descriptor >= 0;
}

struct Reply
{
    QByteArray head;
    QByteArray body;
};

Reply fetched(quint16 port, const QByteArray &path, const QByteArray &method = "GET")
{
    const int descriptor = connectedSocket(port);
    if (descriptor < 0)
        return {};
    const QByteArray request =
        method + ' ' + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n";
    QByteArray all;
    if (::write(descriptor, request.constData(), std::size_t(request.size())) == request.size()) {
        char bytes[4096];
        ssize_t count = 0;
        while ((count = ::read(descriptor, bytes, sizeof bytes)) > 0)
            all.append(bytes, count);
    }
    ::close(descriptor);
    const auto end = all.indexOf("\r\n\r\n");
    return {all.left(end), all.mid(end + 4)};
}

// The text of bytes in this encoding; nothing when they are not valid in it.
std::optional<QString> decoded(QByteArray bytes, const char *encoding)
{
    const iconv_t converter = ::iconv_open("UTF-8", encoding);
    QByteArray text(bytes.size() * 3, '\0');
    char *from = bytes.data();
    char *to = text.data();
    auto fromLeft = std::size_t(bytes.size());
    auto toLeft = std::size_t(text.size());
    const bool whole = ::iconv(converter, &from, &fromLeft, &to, &toLeft) == 0 && fromLeft == 0;
    ::iconv_close(converter);
    if (!whole)
        return std::nullopt;
    return QString::fromUtf8(text.left(text.size() - qsizetype(toLeft)));
}

// The server, started as the program's own scripts start it.
class Server
{
public:
    explicit Server(const QStringList &arguments = {})
    {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(u"python3"_s, QStringList{u"-B"_s, script()} + arguments);
        while (!process_.canReadLine() && process_.waitForReadyRead(20000)) {
        }
        address_ = QString::fromUtf8(process_.readLine()).trimmed();
    }
    ~Server()
    {
        if (process_.state() != QProcess::NotRunning) {
            process_.kill();
            process_.waitForFinished();
        }
    }
    QProcess &process() { return process_; }
    QString address() const { return address_; }
    quint16 port() const { return address_.section(u':', -1).toUShort(); }

private:
    QProcess process_;
    QString address_;
};

} // namespace

class SampleFeedServerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsItsAddressInOneLine();
    void feedsAreWhole_data();
    void feedsAreWhole();
    void itemLinksLeadToPages_data();
    void itemLinksLeadToPages();
    void datesAreNearThePresent();
    void whatIsNotThereIs404();
    void headHasNoBody();
    void endsWhenInputCloses();
    void endsOnSigterm();
    void endsWithItsParent();
    void takenPortIsSaidAndFails();
};

void SampleFeedServerTest::printsItsAddressInOneLine()
{
    Server server;
    static const QRegularExpression form(u"^http://127\\.0\\.0\\.1:[0-9]+$"_s);
    QVERIFY2(form.match(server.address()).hasMatch(), qPrintable(server.address()));
    QVERIFY(isListening(server.port()));
    QVERIFY(!fetched(server.port(), "/town.rdf").body.isEmpty());
    server.process().closeWriteChannel();
    QVERIFY(server.process().waitForFinished(5000));
    QCOMPARE(server.process().readAllStandardOutput(), QByteArray());
}

void SampleFeedServerTest::feedsAreWhole_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("items");
    QTest::addColumn<QString>("title");
    QTest::newRow("RSS 1.0") << "/town.rdf"_ba
                             << "application/rdf+xml; charset=utf-8"_ba
                             << "UTF-8"_ba << u"RDF"_s << u"item"_s << 6 << u"あおば町ニュース"_s;
    QTest::newRow("RSS 2.0 in Shift_JIS")
        << "/shop.rss"_ba
        << "application/rss+xml; charset=Shift_JIS"_ba
        << "CP932"_ba << u"rss"_s << u"item"_s << 5 << u"みどり商店街だより"_s;
    QTest::newRow("Atom") << "/station.atom"_ba
                          << "application/atom+xml; charset=utf-8"_ba
                          << "UTF-8"_ba << u"feed"_s << u"entry"_s << 4
                          << u"つばさ駅 運行とお天気"_s;
}

void SampleFeedServerTest::feedsAreWhole()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, encoding);
    QFETCH(QString, root);
    QFETCH(QString, item);
    QFETCH(int, items);
    QFETCH(QString, title);
    Server server;
    const Reply reply = fetched(server.port(), path);
    QVERIFY(reply.head.startsWith("HTTP/1.1 200 "));
    QVERIFY2(reply.head.contains("Content-Type: " + type), reply.head.constData());
    const auto text = decoded(reply.body, encoding.constData());
    QVERIFY(text);
    QVERIFY(!text->contains(u"{{"_s));

    QXmlStreamReader xml(*text);
    QVERIFY(xml.readNextStartElement());
    QCOMPARE(xml.name(), root);
    int count = 0;
    QString firstTitle;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == item)
            ++count;
        else if (xml.name() == u"title" && firstTitle.isEmpty())
            firstTitle = xml.readElementText();
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(count, items);
    QCOMPARE(firstTitle, title);
}

void SampleFeedServerTest::itemLinksLeadToPages_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("encoding");
    QTest::newRow("RSS 1.0") << "/town.rdf"_ba
                             << "UTF-8"_ba;
    QTest::newRow("RSS 2.0") << "/shop.rss"_ba
                             << "CP932"_ba;
    QTest::newRow("Atom") << "/station.atom"_ba
                          << "UTF-8"_ba;
}

void SampleFeedServerTest::itemLinksLeadToPages()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, encoding);
    Server server;
    const auto text = decoded(fetched(server.port(), path).body, encoding.constData());
    QVERIFY(text);
    const QRegularExpression link(QRegularExpression::escape(server.address()) + u"(/[a-z/]+)"_s);
    auto matches = link.globalMatch(*text);
    int followed = 0;
    while (matches.hasNext()) {
        const QString page = matches.next().captured(1);
        const Reply reply = fetched(server.port(), page.toUtf8());
        QVERIFY2(reply.head.startsWith("HTTP/1.1 200 "), qPrintable(page));
        QVERIFY(reply.head.contains("text/html"));
        ++followed;
    }
    QVERIFY(followed >= 5);
}

void SampleFeedServerTest::datesAreNearThePresent()
{
    Server server;
    const auto text = decoded(fetched(server.port(), "/shop.rss").body, "CP932");
    QVERIFY(text);
    static const QRegularExpression date(u"<pubDate>([^<]+)</pubDate>"_s);
    auto matches = date.globalMatch(*text);
    int dates = 0;
    while (matches.hasNext()) {
        const QString written = matches.next().captured(1);
        QVERIFY2(written.endsWith(u"+0900"_s), qPrintable(written));
        const auto moment = QDateTime::fromString(written, Qt::RFC2822Date);
        QVERIFY2(moment.isValid(), qPrintable(written));
        const qint64 age = moment.secsTo(QDateTime::currentDateTime());
        QVERIFY(age >= 0 && age < 3 * 24 * 3600);
        ++dates;
    }
    QCOMPARE(dates, 5);
}

void SampleFeedServerTest::whatIsNotThereIs404()
{
    Server server;
    QVERIFY(fetched(server.port(), "/nothing").head.startsWith("HTTP/1.1 404 "));
    QVERIFY(fetched(server.port(), "/../sample_feed_server.py").head.startsWith("HTTP/1.1 404 "));
    QVERIFY(fetched(server.port(), "/town.rdf?day=1").head.startsWith("HTTP/1.1 200 "));
}

void SampleFeedServerTest::headHasNoBody()
{
    Server server;
    const Reply reply = fetched(server.port(), "/town.rdf", "HEAD");
    QVERIFY(reply.head.startsWith("HTTP/1.1 200 "));
    QVERIFY(reply.body.isEmpty());
}

void SampleFeedServerTest::endsWhenInputCloses()
{
    Server server;
    server.process().closeWriteChannel();
    QVERIFY(server.process().waitForFinished(5000));
    QCOMPARE(server.process().exitCode(), 0);
    QVERIFY(!isListening(server.port()));
}

void SampleFeedServerTest::endsOnSigterm()
{
    Server server({u"--ignore-input"_s});
    QVERIFY(isListening(server.port()));
    ::kill(pid_t(server.process().processId()), SIGTERM);
    QVERIFY(server.process().waitForFinished(5000));
    QCOMPARE(server.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(server.process().exitCode(), 0);
}

// A script that starts it may be killed: the server does not stay behind.
void SampleFeedServerTest::endsWithItsParent()
{
    QProcess shell;
    shell.start(u"/bin/sh"_s, {u"-c"_s, u"python3 -B \"$0\" --ignore-input & wait"_s, script()});
    while (!shell.canReadLine() && shell.waitForReadyRead(20000)) {
    }
    const auto port = shell.readLine().trimmed().split(':').last().toUShort();
    QVERIFY(isListening(port));
    shell.kill();
    QVERIFY(shell.waitForFinished(5000));
    QTRY_VERIFY_WITH_TIMEOUT(!isListening(port), 5000);
}

void SampleFeedServerTest::takenPortIsSaidAndFails()
{
    Server first;
    QProcess second;
    second.start(u"python3"_s, {u"-B"_s, script(), u"--port"_s, QString::number(first.port())});
    QVERIFY(second.waitForFinished(10000));
    QCOMPARE(second.exitCode(), 1);
    QVERIFY(second.readAllStandardOutput().isEmpty());
    QVERIFY(second.readAllStandardError().contains(QByteArray::number(first.port())));
}

QTEST_GUILESS_MAIN(SampleFeedServerTest)
#include "samplefeedserver_test.moc"
