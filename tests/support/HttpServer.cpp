// SPDX-License-Identifier: MIT
#include "tests/support/HttpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace qovelmor {

namespace {

constexpr std::chrono::milliseconds step{5};

bool isReadable(int descriptor, std::chrono::milliseconds limit)
{
    pollfd watched{descriptor, POLLIN, 0};
    return ::poll(&watched, 1, static_cast<int>(limit.count())) > 0;
}

HttpServer::Request parseRequest(const QByteArray &text)
{
    HttpServer::Request request;
    const QList<QByteArray> lines = text.split('\n');
    const QList<QByteArray> words = lines.front().split(' ');
    request.path = words.size() > 1 ? words[1] : QByteArray();
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines[i].indexOf(':');
        if (colon > 0)
            request.headers[lines[i].left(colon).toLower()] = lines[i].mid(colon + 1).trimmed();
    }
    return request;
}

} // namespace

HttpServer::HttpServer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(listener_, reinterpret_cast<sockaddr *>(&address), size) != 0 ||
        ::listen(listener_, 64) != 0)
        qFatal("the test server got no port");
    ::getsockname(listener_, reinterpret_cast<sockaddr *>(&address), &size);
    port_ = ::ntohs(address.sin_port);
    acceptor_ = std::thread([this] { acceptConnections(); });
}

HttpServer::~HttpServer()
{
    ends_ = true;
    acceptor_.join();
    for (std::thread &connection : connections_)
        connection.join();
    ::close(listener_);
}

QString HttpServer::address(const char *path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(port_).arg(QString::fromLatin1(path));
}

void HttpServer::route(const QByteArray &path, Handler handler)
{
    const std::lock_guard lock(mutex_);
    routes_[path] = std::move(handler);
}

void HttpServer::route(const QByteArray &path, Reply reply)
{
    route(path, [reply = std::move(reply)](const Request &) { return reply; });
}

int HttpServer::hits(const QByteArray &path) const
{
    const std::lock_guard lock(mutex_);
    return static_cast<int>(std::count_if(requests_.begin(), requests_.end(),
                                          [&](const Request &one) { return one.path == path; }));
}

std::vector<HttpServer::Request> HttpServer::requests() const
{
    const std::lock_guard lock(mutex_);
    return requests_;
}

HttpServer::Reply HttpServer::reply(const QByteArray &status,
                                    const std::vector<QByteArray> &headers, const QByteArray &body)
{
    QByteArray bytes = "HTTP/1.1 " + status + "\r\n";
    for (const QByteArray &header : headers)
        bytes += header + "\r\n";
    bytes += "Content-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n";
    Reply result;
    result.bytes = bytes + body;
    return result;
}

HttpServer::Reply HttpServer::document(const QByteArray &body, const QByteArray &contentType)
{
    return reply("200 OK", {"Content-Type: " + contentType}, body);
}

HttpServer::Reply HttpServer::redirection(const QByteArray &location)
{
    return reply("302 Found", {"Location: " + location}, {});
}

void HttpServer::acceptConnections()
{
    while (!ends_) {
        if (!isReadable(listener_, step))
            continue;
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection >= 0)
            connections_.emplace_back([this, connection] { serve(connection); });
    }
}

void HttpServer::serve(int connection)
{
    QByteArray text;
    while (!ends_ && !text.contains("\r\n\r\n")) {
        if (!isReadable(connection, step))
            continue;
        char buffer[4096];
        const ssize_t size = ::recv(connection, buffer, sizeof buffer, 0);
        if (size <= 0)
            break;
        text.append(buffer, static_cast<qsizetype>(size));
    }
    if (text.contains("\r\n\r\n")) {
        const Reply reply = answer(parseRequest(text));
        send(connection, reply);
        if (reply.resets) {
            // Closing without waiting for the other side's acknowledgement sends a reset.
            const linger atOnce{1, 0};
            ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        }
    }
    ::close(connection);
}

HttpServer::Reply HttpServer::answer(const Request &request)
{
    Handler handler;
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
        const auto found = routes_.find(request.path);
        if (found != routes_.end())
            handler = found->second;
    }
    return handler ? handler(request) : reply("404 Not Found", {}, "nothing here");
}

bool HttpServer::send(int connection, const Reply &reply)
{
    const auto write = [&](const char *data, qsizetype size) {
        while (size > 0) {
            const ssize_t sent =
                ::send(connection, data, static_cast<size_t>(size), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent < 0 && errno == EAGAIN && !ends_) {
                std::this_thread::sleep_for(step);
                continue;
            }
            if (sent <= 0)
                return false;
            data += sent;
            size -= static_cast<qsizetype>(sent);
        }
        return !ends_.load();
    };
    const qsizetype piece = reply.pieceSize > 0 ? reply.pieceSize : reply.bytes.size();
    if (!write(reply.bytes.constData(), reply.atOnce))
        return false;
    for (qsizetype at = reply.atOnce; at < reply.bytes.size(); at += piece) {
        const auto until = std::chrono::steady_clock::now() + reply.pause;
        while (!ends_ && std::chrono::steady_clock::now() < until)
            std::this_thread::sleep_for(std::min(step, reply.pause));
        if (!write(reply.bytes.constData() + at, std::min(piece, reply.bytes.size() - at)))
            return false;
    }
    while (!reply.endless.isEmpty()) {
        if (!write(reply.endless.constData(), reply.endless.size()))
            return false;
    }
    while (reply.holdsOpen && !ends_) {
        char byte = 0;
        if (isReadable(connection, step) && ::recv(connection, &byte, 1, 0) <= 0)
            break; // the other side has hung up
    }
    return true;
}

} // namespace qovelmor
