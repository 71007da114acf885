// SPDX-License-Identifier: MIT
#include "feeds/HttpFeedLoader.h"

#include "feeds/FeedFormat.h"
#include "platform/SystemLog.h"

#include <algorithm>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::seconds longestHold = std::chrono::hours(1);
constexpr qsizetype memoryBudget = 8 * 1024 * 1024;

// The domains under which the log book prints an error's code.
const QString httpDomain = u"HTTP"_s;
const QString transferDomain = u"Transfer"_s;
const QString limitDomain = u"Transfer limit"_s;
const QString xmlDomain = u"XML"_s;

QString domainOf(HttpError::Kind kind)
{
    switch (kind) {
    case HttpError::Kind::Status:
        return httpDomain;
    case HttpError::Kind::Limit:
        return limitDomain;
    case HttpError::Kind::Address:
    case HttpError::Kind::Transfer:
    case HttpError::Kind::Aborted:
        break;
    }
    return transferDomain;
}

FeedLoad parsed(const FeedBytes &bytes)
{
    XmlParseResult result = XmlDocument::parse(bytes.body, bytes.charset, feedContainers());
    if (!result.document)
        return ReadError{result.failure.line, xmlDomain,
                         u"%1行目: %2"_s.arg(result.failure.line).arg(result.failure.cause)};
    return LoadedFeed{std::make_shared<const XmlFeedDocument>(std::move(result.document)),
                      bytes.validators};
}

} // namespace

HttpFeedLoader::HttpFeedLoader(const HttpClient &client, Clock &clock)
    : client_(client), clock_(clock), memory_(memoryBudget)
{}

void HttpFeedLoader::setReuseAge(std::chrono::seconds age)
{
    const std::lock_guard lock(mutex_);
    reuseAge_ = age;
}

FeedLoad HttpFeedLoader::load(const FeedRequest &request)
{
    if (auto known = remembered(request))
        return *std::move(known);
    const HttpResult result = client_.get({request.address, request.validators});
    if (const auto *reply = std::get_if<HttpReply>(&result))
        return take(request, *reply);
    return fail(request, std::get<HttpError>(result));
}

FeedLoad HttpFeedLoader::take(const FeedRequest &request, const HttpReply &reply)
{
    const bool isUnchanged = reply.status == 304;
    FeedBytes bytes{reply.body, reply.charset, reply.validators};
    {
        const std::lock_guard lock(mutex_);
        FeedAnswer answer = bytes;
        if (isUnchanged)
            answer = FeedNotModified{request.validators};
        memory_.keep(request.address, std::move(answer), clock_.steadyNow());
    }
    if (isUnchanged)
        return UnchangedFeed{};
    return parsed(bytes);
}

FeedLoad HttpFeedLoader::fail(const FeedRequest &request, const HttpError &error)
{
    const ReadError readError{error.code, domainOf(error.kind), error.cause};
    if (error.kind == HttpError::Kind::Limit)
        systemLog(logFeeds(), u"Feed limit.(%1) %2"_s.arg(request.address, error.cause));
    if (error.kind == HttpError::Kind::Aborted)
        return readError;
    const std::lock_guard lock(mutex_);
    const Clock::SteadyTime now = clock_.steadyNow();
    if (error.retryAfter) {
        holds_[request.address] = {now + std::min(*error.retryAfter, longestHold), readError};
        return PostponedFeed{readError};
    }
    memory_.keep(request.address, readError, now);
    return readError;
}

std::optional<FeedLoad> HttpFeedLoader::remembered(const FeedRequest &request)
{
    std::optional<FeedAnswer> answer;
    {
        const std::lock_guard lock(mutex_);
        const Clock::SteadyTime now = clock_.steadyNow();
        std::erase_if(holds_, [now](const auto &hold) { return hold.second.until <= now; });
        if (const auto hold = holds_.find(request.address); hold != holds_.end())
            return PostponedFeed{hold->second.error};
        if (reuseAge_ > std::chrono::seconds(0))
            answer = memory_.answerSince(request.address, now - reuseAge_);
    }
    if (!answer)
        return std::nullopt;
    if (const auto *bytes = std::get_if<FeedBytes>(&*answer))
        return parsed(*bytes);
    if (const auto *error = std::get_if<ReadError>(&*answer))
        return *error;
    const auto &unchanged = std::get<FeedNotModified>(*answer);
    if (request.validators.isEmpty() || unchanged.validators != request.validators)
        return std::nullopt;
    return UnchangedFeed{};
}

} // namespace qovelmor
