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

FeedLoad parsed(const HttpReply &reply)
{
    XmlParseResult result = XmlDocument::parse(reply.body, reply.charset, feedContainers());
    if (!result.document)
        return ReadError{result.failure.line, xmlDomain,
                         u"%1行目: %2"_s.arg(result.failure.line).arg(result.failure.cause)};
    return LoadedFeed{std::make_shared<const XmlFeedDocument>(std::move(result.document)),
                      reply.validators};
}

} // namespace

HttpFeedLoader::HttpFeedLoader(const HttpClient &client, Clock &clock)
    : client_(client), clock_(clock)
{}

void HttpFeedLoader::setReuseAge(std::chrono::seconds age)
{
    const std::lock_guard lock(mutex_);
    reuseAge_ = age;
}

FeedLoad HttpFeedLoader::load(const FeedRequest &request)
{
    if (auto known = answerAtOnce(request))
        return *std::move(known);
    const HttpResult result = client_.get({request.address, request.validators});
    const auto *reply = std::get_if<HttpReply>(&result);
    if (!reply)
        return fail(request, std::get<HttpError>(result));
    if (reply->status == 304)
        return UnchangedFeed{};
    return parsed(*reply);
}

FeedLoad HttpFeedLoader::fail(const FeedRequest &request, const HttpError &error)
{
    const ReadError readError{error.code, domainOf(error.kind), error.cause};
    if (error.kind == HttpError::Kind::Limit)
        systemLog(logFeeds(), u"Feed limit.(%1) %2"_s.arg(request.address, error.cause));
    if (!error.retryAfter)
        return readError;
    const std::lock_guard lock(mutex_);
    const Clock::SteadyTime now = clock_.steadyNow();
    holds_[request.address] = {now, now + std::min(*error.retryAfter, longestHold), readError};
    return PostponedFeed{readError};
}

std::optional<FeedLoad> HttpFeedLoader::answerAtOnce(const FeedRequest &request)
{
    const std::lock_guard lock(mutex_);
    const Clock::SteadyTime now = clock_.steadyNow();
    // A server that asks for one second is nevertheless not asked again each second.
    std::erase_if(holds_, [&](const auto &hold) {
        return hold.second.until <= now && !isRecent(hold.second.asked, now);
    });
    if (const auto hold = holds_.find(request.address); hold != holds_.end())
        return PostponedFeed{hold->second.error};
    if (request.answered && isRecent(*request.answered, now))
        return RecentFeed{};
    return std::nullopt;
}

bool HttpFeedLoader::isRecent(Clock::SteadyTime answered, Clock::SteadyTime now) const
{
    return now - answered < reuseAge_;
}

} // namespace qovelmor
