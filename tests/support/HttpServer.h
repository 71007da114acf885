// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace qovelmor {

/// A real HTTP server on 127.0.0.1 for tests: plain sockets and threads, answers written out by
/// hand, so that it can break every rule. One connection serves one request.
class HttpServer
{
public:
    struct Request
    {
        QByteArray path;
        std::map<QByteArray, QByteArray> headers; ///< names in lower case
    };

    /// How an answer goes over the wire.
    struct Reply
    {
        QByteArray bytes;                   ///< everything, from the status line on
        qsizetype pieceSize = 0;            ///< 0: all at once; else so many bytes at a time …
        std::chrono::milliseconds pause{0}; ///< … with this pause before each
        qsizetype atOnce = 0;               ///< so many bytes go before the first pause
        bool holdsOpen = false;             ///< keeps silent after the bytes until the test ends
        bool resets = false;                ///< breaks the connection off after the bytes
        QByteArray endless;                 ///< repeated after the bytes for as long as it is taken
    };
    using Handler = std::function<Reply(const Request &)>;

    HttpServer();
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    /// "http://127.0.0.1:<port>" and the path.
    QString address(const char *path) const;
    int port() const { return port_; }

    void route(const QByteArray &path, Handler handler);
    void route(const QByteArray &path, Reply reply);

    int hits(const QByteArray &path) const;
    std::vector<Request> requests() const;

    /// A well-formed answer; `headers` are whole lines without their ends.
    static Reply reply(const QByteArray &status, const std::vector<QByteArray> &headers,
                       const QByteArray &body);
    static Reply document(const QByteArray &body,
                          const QByteArray &contentType = "application/xml");
    static Reply redirection(const QByteArray &location);

private:
    void acceptConnections();
    void serve(int connection);
    bool send(int connection, const Reply &reply);
    Reply answer(const Request &request);

    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> ends_{false};
    mutable std::mutex mutex_;
    std::map<QByteArray, Handler> routes_;
    std::vector<Request> requests_;
    std::vector<std::thread> connections_;
    std::thread acceptor_;
};

} // namespace qovelmor
