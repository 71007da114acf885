// SPDX-License-Identifier: MIT
#include "tests/support/HttpMisbehaviours.h"

#include "tests/support/Gzip.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype mebibyte = 1024 * 1024;

// Parts of the sentences that the user reads.
const QString tooLate = u"以内に受信が終わりませんでした"_s;
const QString silence = u"何も届きませんでした"_s;
const QString cutOff = u"受信が途中で切れました"_s;
const QString noFeed = u"XML として正しくありません"_s;
const QString empty = u"文書が空です"_s;
const QString badHttp = u"応答が HTTP として正しくありません"_s;
const QString bigHeader = u"ヘッダーが大きすぎます"_s;
const QString bigBody = u"文書が大きすぎます"_s;
const QString notPacked = u"展開できません"_s;
const QString tooManyHops = u"リダイレクト"_s;
const QString otherScheme = u"http と https 以外"_s;

class Table
{
public:
    explicit Table(const QByteArray &feed) : feed_(feed) {}

    void timing();
    void sizes();
    void lengths();
    void codings();
    void statusLines();
    void statuses();
    void redirections();

    std::vector<HttpMisbehaviour> take() { return std::move(rows_); }

private:
    void add(const char *name, const HttpServer::Reply &reply, const QString &cause)
    {
        rows_.push_back({name, reply, cause});
    }
    void addBytes(const char *name, const QByteArray &bytes, const QString &cause)
    {
        HttpServer::Reply reply;
        reply.bytes = bytes;
        add(name, reply, cause);
    }
    void addChunks(const char *name, const QByteArray &chunks, const QString &cause)
    {
        addBytes(name, head_ + "Transfer-Encoding: chunked\r\n\r\n" + chunks, cause);
    }
    void addCoded(const char *name, const QByteArray &coding, const QByteArray &body,
                  const QString &cause)
    {
        add(name, HttpServer::reply("200 OK", {"Content-Encoding: " + coding}, body), cause);
    }
    void addEndless(const char *name, const QByteArray &bytes, const QByteArray &endless,
                    const QString &cause)
    {
        HttpServer::Reply reply;
        reply.bytes = bytes;
        reply.endless = endless;
        add(name, reply, cause);
    }
    void addStatus(const QByteArray &status, const QString &cause)
    {
        names_.push_back("status " + status);
        statusRows_.push_back({nullptr, HttpServer::reply(status, {}, feed_), cause});
    }

    QByteArray feed_;
    const QByteArray head_ = "HTTP/1.1 200 OK\r\n";
    std::vector<HttpMisbehaviour> rows_;
    std::vector<HttpMisbehaviour> statusRows_;
    std::vector<QByteArray> names_;
};

void Table::timing()
{
    const auto slow = [this](const char *name, const QByteArray &bytes, qsizetype piece,
                             std::chrono::milliseconds pause, bool holdsOpen,
                             const QString &cause) {
        HttpServer::Reply reply;
        reply.bytes = bytes;
        reply.pieceSize = piece;
        reply.pause = pause;
        reply.holdsOpen = holdsOpen;
        add(name, reply, cause);
    };
    const QByteArray whole = HttpServer::document(feed_).bytes;
    slow("silent from the beginning", {}, 0, 0ms, true, silence);
    slow("silent after the status line", head_, 0, 0ms, true, silence);
    slow("silent after the headers", head_ + "\r\n", 0, 0ms, true, silence);
    slow("silent in the middle of the document", whole.chopped(10), 0, 0ms, true, silence);
    slow("silent at the end of an unannounced length", head_ + "\r\n" + feed_, 0, 0ms, true,
         silence);
    slow("dripping headers", head_ + QByteArray("X: y\r\n").repeated(900), 6, 100ms, false,
         tooLate);
    slow("one dripping header", head_ + "X: " + QByteArray(9000, 'x'), 1, 100ms, false, u"秒"_s);
    HttpServer::Reply dripping;
    dripping.bytes = head_ + "\r\n" + feed_;
    dripping.atOnce = head_.size() + 2;
    dripping.pieceSize = 1;
    dripping.pause = 100ms;
    add("a byte of the document now and then", dripping, tooLate);
    slow("an interim answer now and then",
         QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(900), 25, 100ms, false, tooLate);
    HttpServer::Reply reset;
    reset.bytes = whole.chopped(10);
    reset.resets = true;
    add("reset in the middle of the document", reset, cutOff);
    reset.bytes = {};
    add("reset before anything", reset, cutOff);
}

void Table::sizes()
{
    addEndless("an endless document", head_ + "\r\n", QByteArray(100'000, ' '), bigBody);
    addEndless("endless chunks", head_ + "Transfer-Encoding: chunked\r\n\r\n",
               "186a0\r\n" + QByteArray(100'000, ' ') + "\r\n", bigBody);
    addEndless("endless headers", head_, "X-Header: " + QByteArray(1000, 'x') + "\r\n", bigHeader);
    addEndless("one endless header", head_ + "X-Header: ", QByteArray(1000, 'x'), bigHeader);
    addEndless("an endless status line", "HTTP/1.1 200 O", QByteArray(1000, 'K'), bigHeader);
    addEndless("endless interim answers", {}, "HTTP/1.1 100 Continue\r\n\r\n", bigHeader);
    addEndless("an endless chunk size", head_ + "Transfer-Encoding: chunked\r\n\r\n1;", "extension",
               u"秒"_s);
    addEndless("endless trailers", head_ + "Transfer-Encoding: chunked\r\n\r\n0\r\n",
               "X-Trailer: " + QByteArray(1000, 'x') + "\r\n", bigHeader);
    addBytes("20 MB of headers",
             head_ + ("X-Header: " + QByteArray(990, 'x') + "\r\n").repeated(20'000) + "\r\n" +
                 feed_,
             bigHeader);
    addBytes("20 MB in one header",
             head_ + "X: " + QByteArray(20'000'000, 'x') + "\r\n\r\n" + feed_, bigHeader);
    addBytes("a gigabyte announced", head_ + "Content-Length: 1000000000\r\n\r\n" + feed_, bigBody);
    addCoded("a gzip bomb", "gzip", gzip(QByteArray(8 * mebibyte, ' ')), bigBody);
}

void Table::lengths()
{
    const auto announced = [this](const QByteArray &length) {
        return head_ + "Content-Length: " + length + "\r\n\r\n" + feed_;
    };
    addBytes("nothing at all", {}, u"何も返しませんでした"_s);
    addBytes("an empty document", announced("0"), empty);
    addBytes("a length that promises more", announced("99999"), cutOff);
    addBytes("a length that promises less", announced("99"), noFeed);
    addBytes("a length below zero", announced("-5"), badHttp);
    addBytes("a length that is no number", announced("abc"), badHttp);
    addBytes("two lengths that differ", announced("5\r\nContent-Length: 9"), noFeed);
    addBytes("a document without a length, cut", head_ + "\r\n" + feed_.chopped(10), noFeed);
    const QByteArray size = QByteArray::number(feed_.size(), 16);
    addChunks("a chunk that is cut", size + "\r\n" + feed_.chopped(10), cutOff);
    addChunks("no last chunk", size + "\r\n" + feed_ + "\r\n", cutOff);
    addChunks("a chunk size that is no number", "zz\r\n" + feed_, cutOff);
    addChunks("a chunk size below zero", "-5\r\n" + feed_, cutOff);
    addChunks("a chunk size beyond all numbers", "ffffffffffffffffff\r\n" + feed_, cutOff);
    addChunks("a chunk that is longer than its size", "5\r\n" + feed_ + "\r\n0\r\n\r\n", cutOff);
    addChunks("only the last chunk", "0\r\n\r\n", empty);
}

void Table::codings()
{
    const QByteArray packed = gzip(feed_);
    addCoded("gzip cut short", "gzip", packed.first(packed.size() / 2), noFeed);
    addCoded("gzip with a wrong sum", "gzip", packed.chopped(8) + QByteArray(8, '\1'), notPacked);
    addCoded("gzip that is none", "gzip", feed_, notPacked);
    addCoded("gzip, only its header", "gzip", packed.first(10), empty);
    addCoded("brotli that is none", "br", QByteArray(100, '\xff'), notPacked);
    addCoded("an unknown coding", "nonsense", feed_, notPacked);
    addCoded("a coding twenty times", QByteArray("gzip, ").repeated(19) + "gzip", packed,
             notPacked);
    addBytes("gzip without saying so", HttpServer::document(packed).bytes, u"。"_s);
    addBytes("an unknown transfer coding", head_ + "Transfer-Encoding: nonsense\r\n\r\n" + feed_,
             notPacked);
    add("a document in an unknown character set",
        HttpServer::document("<?xml version='1.0' encoding='x-no-such'?><rss/>"), u"文字コード"_s);
    add("a document that is not in its character set",
        HttpServer::document(QByteArray("<rss>\xff\xfe</rss>"), "text/xml; charset=utf-8"), noFeed);
    add("a page instead of a feed",
        HttpServer::document("<!DOCTYPE html><html><body><p>Please log in<br></body></html>",
                             "text/html"),
        noFeed);
}

void Table::statusLines()
{
    addBytes("no HTTP", "hello\r\n\r\n" + feed_, badHttp);
    addBytes("a greeting of a mail server", "220 mail.example ESMTP\r\n", badHttp);
    addBytes("a document without headers", feed_, badHttp);
    addBytes("binary noise", QByteArray::fromHex("160301020001fcff00ff").repeated(50), badHttp);
    addBytes("zero bytes", QByteArray(500, '\0'), badHttp);
    addBytes("a version that does not exist", "HTTP/7.5 200 OK\r\n\r\n" + feed_, badHttp);
    addBytes("a status that is no number", "HTTP/1.1 abc OK\r\n\r\n" + feed_, badHttp);
    addBytes("the status 0", "HTTP/1.1 000 OK\r\n\r\n" + feed_, badHttp);
    addBytes("a header with a zero byte", head_ + QByteArray("X-Zero: a\0b\r\n\r\n", 15) + feed_,
             badHttp);
    addBytes("headers that never end", head_ + "Content-Type: text/xml\r\n", empty);
}

void Table::statuses()
{
    for (const int status :
         {400, 401, 403, 404, 407, 410, 418, 429, 451, 499, 500, 502, 503, 504, 599})
        addStatus(QByteArray::number(status) + " No", u"HTTP %1"_s.arg(status));
    addStatus("304 Not Modified", u"HTTP 304"_s); // nobody asked whether
    addStatus("429 Slow\r\nRetry-After: 60", u"HTTP 429"_s);
    addStatus("503 Busy\r\nRetry-After: Fri, 31 Dec 2100 23:59:59 GMT", u"HTTP 503"_s);
    addStatus("503 Busy\r\nRetry-After: soon", u"HTTP 503"_s);
    addStatus("503 Busy\r\nRetry-After: -99999999999999999999", u"HTTP 503"_s);
    // The names are whole now and stay where they are.
    static const std::vector<QByteArray> names = names_;
    for (std::size_t i = 0; i < statusRows_.size(); ++i)
        add(names[i].constData(), statusRows_[i].reply, statusRows_[i].cause);
}

void Table::redirections()
{
    const auto to = [this](const char *name, const QByteArray &location, const QString &cause) {
        add(name, HttpServer::redirection(location), cause);
    };
    to("a redirection to itself", "/feed", tooManyHops);
    to("a redirection in a circle", "/circle", tooManyHops);
    to("a redirection that grows", "/growing", tooManyHops);
    to("a redirection to a local file", "file:///etc/passwd", otherScheme);
    to("a redirection to another protocol", "ftp://127.0.0.1/feed", otherScheme);
    to("a redirection to a data address", "data:text/xml,<rss/>", otherScheme);
    to("a redirection to a script", "javascript:alert(1)", otherScheme);
    to("a redirection to a closed port", "http://127.0.0.1:1/", u"接続できません"_s);
    to("a redirection to a port that cannot be", "http://127.0.0.1:99999/", u"アドレスの形"_s);
    to("a redirection to nobody", "http://no-such-host.invalid/", u"サーバーが見つかりません"_s);
    to("a redirection to what is not there", "/nowhere", u"HTTP 404"_s);
    add("a redirection without a target", HttpServer::reply("302 Found", {}, {}), empty);
}

} // namespace

std::vector<HttpMisbehaviour> httpMisbehaviours(const QByteArray &feed)
{
    Table table(feed);
    table.timing();
    table.sizes();
    table.lengths();
    table.codings();
    table.statusLines();
    table.statuses();
    table.redirections();
    return table.take();
}

void addMisbehavingRoutes(HttpServer &server)
{
    server.route("/circle", HttpServer::redirection("/back"));
    server.route("/back", HttpServer::redirection("/circle"));
    for (QByteArray path = "/growing"; path.size() < 40; path += "/x")
        server.route(path, HttpServer::redirection(path + "/x"));
}

} // namespace qovelmor
