// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <variant>

namespace qovelmor {

/// What one request may cost at most.
struct HttpLimits
{
    std::chrono::milliseconds connect{10'000}; ///< name look-up, connection and TLS hand-shake
    std::chrono::milliseconds idle{20'000};    ///< without a byte
    std::chrono::milliseconds total{60'000};   ///< with all redirections
    qsizetype bodyBytes = 32 * 1024 * 1024;    ///< after decoding gzip or br
    qsizetype headerBytes = 256 * 1024;        ///< of all answers together
    int redirections = 10;
};

/// What a waiting request asks of its caller; both may be empty. They are called on the thread that
/// asked for the document, at least every 50 ms while there is nothing to receive.
struct HttpHooks
{
    std::function<bool()> isAborted; ///< true ends the request at once (the program quits)
    std::function<void()> idle;      ///< the main thread lets its window live here
};

/// The two marks by which a server recognises a document it has sent before (RFC 9110, 8.8).
struct HttpValidators
{
    QByteArray entityTag;
    QByteArray lastModified;

    bool isEmpty() const { return entityTag.isEmpty() && lastModified.isEmpty(); }
    friend bool operator==(const HttpValidators &, const HttpValidators &) = default;
};

struct HttpRequest
{
    QString address;
    HttpValidators validators; ///< not empty: the server may answer "not modified"
};

struct HttpReply
{
    int status = 0;     ///< below 400; 304 only when validators were sent
    QByteArray body;    ///< decoded from its transfer and content codings
    QByteArray charset; ///< of the Content-Type header; empty when it names none
    HttpValidators validators;
};

struct HttpError
{
    enum class Kind {
        Address,  ///< not http or https, or no address at all
        Transfer, ///< the network or the protocol failed
        Limit,    ///< one of HttpLimits was hit
        Status,   ///< the server answered 400 or above
        Aborted   ///< the caller's hook said so
    };
    Kind kind = Kind::Transfer;
    int code = 0;  ///< HTTP status, else the number of libcurl's error
    QString cause; ///< a sentence for the user
    /// How long the server wants to be left alone (Retry-After of a 429 or 503).
    std::optional<std::chrono::seconds> retryAfter;
};

using HttpResult = std::variant<HttpReply, HttpError>;

/// Fetches documents over http and https, also after redirections; proxy variables of the
/// environment are respected, certificates checked. Holds nothing between two requests: any
/// thread may call, also while another one's request runs.
class HttpClient
{
public:
    explicit HttpClient(Clock &clock, HttpHooks hooks = {}, HttpLimits limits = {});

    /// Blocks until the document is there or the request has failed. An answer of 400 or above is
    /// an error of kind Status.
    HttpResult get(const HttpRequest &request) const;

private:
    Clock &clock_;
    HttpHooks hooks_;
    HttpLimits limits_;
};

} // namespace qovelmor
