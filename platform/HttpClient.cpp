// SPDX-License-Identifier: MIT
#include "platform/HttpClient.h"

#include "platform/HttpFailure.h"

#include <QUrl>

#include <curl/curl.h>
#include <sys/socket.h>

#include <memory>
#include <mutex>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds longestPause{40};
/// A validator longer than this is not worth sending back.
constexpr qsizetype longestValidator = 1024;

template <auto Function>
struct Release
{
    template <typename Handle>
    void operator()(Handle *handle) const
    {
        Function(handle);
    }
};
using Transfer = std::unique_ptr<CURL, Release<::curl_easy_cleanup>>;
using Multi = std::unique_ptr<CURLM, Release<::curl_multi_cleanup>>;
using HeaderList = std::unique_ptr<curl_slist, Release<::curl_slist_free_all>>;

void prepareLibrary()
{
    static std::once_flag done;
    std::call_once(done, [] { ::curl_global_init(CURL_GLOBAL_DEFAULT); });
}

/// The state of one transfer that libcurl's callbacks write to.
struct Reception
{
    const HttpLimits &limits;
    Clock &clock;
    Clock::SteadyTime lastByte;
    QByteArray body;
    qsizetype headerBytes = 0;
    HttpBreak ended = HttpBreak::None;
};

size_t takeBody(char *data, size_t, size_t size, void *state)
{
    auto &reception = *static_cast<Reception *>(state);
    reception.lastByte = reception.clock.steadyNow();
    const auto bytes = static_cast<qsizetype>(size);
    if (bytes > reception.limits.bodyBytes - reception.body.size()) {
        reception.ended = HttpBreak::BodyTooLarge;
        return 0;
    }
    reception.body.append(data, bytes);
    return size;
}

size_t takeHeader(char *, size_t, size_t size, void *state)
{
    auto &reception = *static_cast<Reception *>(state);
    reception.lastByte = reception.clock.steadyNow();
    reception.headerBytes += static_cast<qsizetype>(size);
    if (reception.headerBytes > reception.limits.headerBytes) {
        reception.ended = HttpBreak::HeadersTooLarge;
        return 0;
    }
    return size;
}

curl_socket_t openSocket(void *, curlsocktype, curl_sockaddr *address)
{
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

/// The address in the form that goes over the wire; empty when it is none of ours.
QByteArray wireAddress(const QString &address)
{
    const QUrl url(address.trimmed(), QUrl::TolerantMode);
    const bool isWeb = url.scheme() == u"http"_s || url.scheme() == u"https"_s;
    if (!url.isValid() || !isWeb || url.host().isEmpty())
        return {};
    return url.toEncoded(QUrl::FullyEncoded | QUrl::RemoveFragment);
}

HeaderList requestHeaders(const HttpValidators &validators)
{
    curl_slist *list = ::curl_slist_append(
        nullptr, "Accept: application/rss+xml, application/rdf+xml, application/atom+xml, "
                 "application/xml;q=0.9, text/xml;q=0.9, */*;q=0.1");
    if (!validators.entityTag.isEmpty())
        list = ::curl_slist_append(list, "If-None-Match: " + validators.entityTag);
    if (!validators.lastModified.isEmpty())
        list = ::curl_slist_append(list, "If-Modified-Since: " + validators.lastModified);
    return HeaderList(list);
}

void setLimits(CURL *transfer, const HttpLimits &limits)
{
    const auto option = [transfer](CURLoption name, auto value) {
        ::curl_easy_setopt(transfer, name, value);
    };
    option(CURLOPT_PROTOCOLS_STR, "http,https");
    option(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    option(CURLOPT_FOLLOWLOCATION, 1L);
    option(CURLOPT_MAXREDIRS, static_cast<long>(limits.redirections));
    option(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits.connect.count()));
    option(CURLOPT_TIMEOUT_MS, static_cast<long>(limits.total.count()));
    option(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits.bodyBytes));
    // A look-up that hangs must not hold us up when the time is over.
    option(CURLOPT_QUICK_EXIT, 1L);
    option(CURLOPT_NOSIGNAL, 1L);
}

void setRequest(CURL *transfer, const QByteArray &url, curl_slist *headers, Reception &reception)
{
    const auto option = [transfer](CURLoption name, auto value) {
        ::curl_easy_setopt(transfer, name, value);
    };
    option(CURLOPT_URL, url.constData());
    option(CURLOPT_HTTPHEADER, headers);
    option(CURLOPT_USERAGENT, "QoVelmorRSS/" QOVELMOR_VERSION);
    option(CURLOPT_ACCEPT_ENCODING, "gzip, br");
    option(CURLOPT_FAILONERROR, 1L); // the page that comes with a 404 is of no use
    option(CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    option(CURLOPT_WRITEFUNCTION, &takeBody);
    option(CURLOPT_WRITEDATA, &reception);
    option(CURLOPT_HEADERFUNCTION, &takeHeader);
    option(CURLOPT_HEADERDATA, &reception);
}

/// Runs the transfer to its end, calling the hooks meanwhile.
CURLcode run(CURLM *multi, Reception &reception, const HttpHooks &hooks)
{
    Clock::SteadyTime lastIdle = reception.clock.steadyNow();
    for (;;) {
        int running = 0;
        if (::curl_multi_perform(multi, &running) != CURLM_OK)
            return CURLE_OUT_OF_MEMORY;
        int left = 0;
        if (const CURLMsg *message = ::curl_multi_info_read(multi, &left))
            return message->data.result;
        if (hooks.isAborted && hooks.isAborted()) {
            reception.ended = HttpBreak::Aborted;
            return CURLE_ABORTED_BY_CALLBACK;
        }
        const Clock::SteadyTime now = reception.clock.steadyNow();
        if (now - reception.lastByte > reception.limits.idle) {
            reception.ended = HttpBreak::Idle;
            return CURLE_OPERATION_TIMEDOUT;
        }
        if (hooks.idle && now - lastIdle >= longestPause / 2) {
            hooks.idle();
            lastIdle = reception.clock.steadyNow();
        }
        ::curl_multi_poll(multi, nullptr, 0, static_cast<int>(longestPause.count()), nullptr);
    }
}

QByteArray header(CURL *transfer, const char *name)
{
    curl_header *found = nullptr;
    if (::curl_easy_header(transfer, name, 0, CURLH_HEADER, -1, &found) != CURLHE_OK)
        return {};
    return QByteArray(found->value);
}

QByteArray validator(CURL *transfer, const char *name)
{
    const QByteArray value = header(transfer, name);
    return value.size() <= longestValidator ? value : QByteArray();
}

/// The parameter "charset" of a Content-Type header, without quotes.
QByteArray charsetOf(const QByteArray &contentType)
{
    const QList<QByteArray> parts = contentType.split(';');
    for (qsizetype i = 1; i < parts.size(); ++i) {
        const QByteArray part = parts[i].trimmed();
        if (!part.toLower().startsWith("charset="))
            continue;
        QByteArray value = part.mid(8).trimmed();
        value.replace('"', "").replace('\'', "");
        return value;
    }
    return {};
}

int statusOf(CURL *transfer)
{
    long status = 0;
    ::curl_easy_getinfo(transfer, CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

HttpReply replyFrom(CURL *transfer, QByteArray body)
{
    HttpReply reply;
    reply.status = statusOf(transfer);
    reply.body = std::move(body);
    reply.charset = charsetOf(header(transfer, "Content-Type"));
    reply.validators = {validator(transfer, "ETag"), validator(transfer, "Last-Modified")};
    return reply;
}

} // namespace

HttpClient::HttpClient(Clock &clock, HttpHooks hooks, HttpLimits limits)
    : clock_(clock), hooks_(std::move(hooks)), limits_(limits)
{
    prepareLibrary();
}

HttpResult HttpClient::get(const HttpRequest &request) const
{
    const QByteArray url = wireAddress(request.address);
    if (url.isEmpty())
        return HttpError{HttpError::Kind::Address, CURLE_UNSUPPORTED_PROTOCOL,
                         u"http か https で始まるアドレスではありません。"_s, std::nullopt};
    const HeaderList headers = requestHeaders(request.validators);
    const Multi multi(::curl_multi_init());
    const Transfer transfer(::curl_easy_init());
    Reception reception{limits_, clock_, clock_.steadyNow(), {}, 0, HttpBreak::None};
    setLimits(transfer.get(), limits_);
    setRequest(transfer.get(), url, headers.get(), reception);

    ::curl_multi_add_handle(multi.get(), transfer.get());
    const CURLcode code = run(multi.get(), reception, hooks_);
    const int status = statusOf(transfer.get());
    const bool isUnaskedFor = status == 304 && request.validators.isEmpty();
    HttpResult result;
    if (code == CURLE_HTTP_RETURNED_ERROR || (code == CURLE_OK && isUnaskedFor))
        result = httpStatusFailure(transfer.get(), status);
    else if (code != CURLE_OK)
        result = httpFailure(transfer.get(), code, reception.ended, limits_);
    else
        result = replyFrom(transfer.get(), std::move(reception.body));
    ::curl_multi_remove_handle(multi.get(), transfer.get());
    return result;
}

} // namespace qovelmor
