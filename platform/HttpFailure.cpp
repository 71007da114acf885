// SPDX-License-Identifier: MIT
#include "platform/HttpFailure.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype kibibyte = 1024;
constexpr qsizetype mebibyte = kibibyte * kibibyte;

qint64 seconds(std::chrono::milliseconds duration)
{
    return std::chrono::ceil<std::chrono::seconds>(duration).count();
}

QString sizeText(qsizetype bytes)
{
    if (bytes >= mebibyte)
        return u"%1 MiB"_s.arg(bytes / mebibyte);
    if (bytes >= kibibyte)
        return u"%1 KiB"_s.arg(bytes / kibibyte);
    return u"%1 B"_s.arg(bytes);
}

/// libcurl says the same "timed out" of all its limits: before the connection stood it was the
/// limit on connecting.
bool isConnected(CURL *transfer)
{
    curl_off_t microseconds = 0;
    ::curl_easy_getinfo(transfer, CURLINFO_PRETRANSFER_TIME_T, &microseconds);
    return microseconds > 0;
}

QString timeoutCause(CURL *transfer, const HttpLimits &limits)
{
    if (isConnected(transfer))
        return u"%1秒以内に受信が終わりませんでした。"_s.arg(seconds(limits.total));
    return u"%1秒以内にサーバーへ接続できませんでした。"_s.arg(seconds(limits.connect));
}

QString transferCause(CURLcode code, const HttpLimits &limits)
{
    switch (code) {
    case CURLE_URL_MALFORMAT:
        return u"アドレスの形が正しくありません。"_s;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL: // also said of an answer that does not begin like HTTP
        return u"サーバーの応答が HTTP として正しくありません。"_s;
    case CURLE_COULDNT_RESOLVE_PROXY:
        return u"プロキシサーバーが見つかりません。"_s;
    case CURLE_COULDNT_RESOLVE_HOST:
        return u"サーバーが見つかりません。"_s;
    case CURLE_COULDNT_CONNECT:
        return u"サーバーに接続できません。"_s;
    case CURLE_TOO_MANY_REDIRECTS:
        return u"リダイレクトが%1回を超えました。"_s.arg(limits.redirections);
    case CURLE_PEER_FAILED_VERIFICATION:
        return u"サーバーの証明書を確認できません。"_s;
    case CURLE_SSL_CONNECT_ERROR:
        return u"サーバーと暗号化通信ができません。"_s;
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
        return u"受信が途中で切れました。"_s;
    case CURLE_GOT_NOTHING:
        return u"サーバーが何も返しませんでした。"_s;
    case CURLE_SSL_CACERT_BADFILE:
        return u"証明書を確かめるための一覧がこのコンピューターにありません。"_s;
    case CURLE_BAD_CONTENT_ENCODING:
        return u"圧縮された本文を展開できません。"_s;
    default:
        return u"読み込みに失敗しました（%1）。"_s.arg(
            QString::fromUtf8(::curl_easy_strerror(code)));
    }
}

/// Whether a redirection leads away from the web; what the user typed has been looked at before.
bool leavesTheWeb(CURL *transfer, CURLcode code)
{
    long status = 0;
    ::curl_easy_getinfo(transfer, CURLINFO_RESPONSE_CODE, &status);
    return code == CURLE_UNSUPPORTED_PROTOCOL && status >= 300 && status < 400;
}

HttpError limitFailure(CURLcode code, const QString &cause)
{
    return {HttpError::Kind::Limit, code, cause, std::nullopt};
}

HttpError headerFailure(const HttpLimits &limits)
{
    return limitFailure(CURLE_FILESIZE_EXCEEDED, u"応答のヘッダーが大きすぎます（上限 %1）。"_s.arg(
                                                     sizeText(limits.headerBytes)));
}

QString statusText(int status)
{
    switch (status) {
    case 401:
    case 403:
        return u"（閲覧が許可されていません）"_s;
    case 404:
    case 410:
        return u"（文書がありません）"_s;
    case 429:
        return u"（読み込みが多すぎます）"_s;
    case 503:
        return u"（サーバーが混み合っています）"_s;
    default:
        return {};
    }
}

} // namespace

HttpError httpFailure(CURL *transfer, CURLcode code, HttpBreak ended, const HttpLimits &limits)
{
    switch (ended) {
    case HttpBreak::Aborted:
        return {HttpError::Kind::Aborted, CURLE_ABORTED_BY_CALLBACK,
                u"終了のため読み込みを中止しました。"_s, std::nullopt};
    case HttpBreak::Idle:
        return limitFailure(CURLE_OPERATION_TIMEDOUT,
                            u"%1秒間何も届きませんでした。"_s.arg(seconds(limits.idle)));
    case HttpBreak::HeadersTooLarge:
        return headerFailure(limits);
    case HttpBreak::BodyTooLarge:
        code = CURLE_FILESIZE_EXCEEDED;
        break;
    case HttpBreak::None:
        break;
    }
    if (code == CURLE_FILESIZE_EXCEEDED)
        return limitFailure(code,
                            u"文書が大きすぎます（上限 %1）。"_s.arg(sizeText(limits.bodyBytes)));
    if (code == CURLE_OUT_OF_MEMORY) // libcurl's word for a single header line of over 100 KiB
        return headerFailure(limits);
    if (code == CURLE_OPERATION_TIMEDOUT)
        return limitFailure(code, timeoutCause(transfer, limits));
    if (leavesTheWeb(transfer, code))
        return {HttpError::Kind::Address, code, u"http と https 以外のアドレスは読み込みません。"_s,
                std::nullopt};
    const bool isAddress = code == CURLE_URL_MALFORMAT;
    return {isAddress ? HttpError::Kind::Address : HttpError::Kind::Transfer, code,
            transferCause(code, limits), std::nullopt};
}

HttpError httpStatusFailure(CURL *transfer, int status)
{
    HttpError error{HttpError::Kind::Status, status,
                    u"サーバーが HTTP %1 を返しました%2。"_s.arg(status).arg(statusText(status)),
                    std::nullopt};
    curl_off_t wait = 0;
    ::curl_easy_getinfo(transfer, CURLINFO_RETRY_AFTER, &wait);
    if (wait > 0 && (status == 429 || status == 503))
        error.retryAfter = std::chrono::seconds(wait);
    return error;
}

} // namespace qovelmor
