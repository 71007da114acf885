// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedLoader.h"
#include "feeds/needs/ReadLog.h"
#include "platform/Clock.h"
#include "platform/HttpClient.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>

namespace qovelmor {

/// Loads documents from the web and is polite to servers: one that answers 429 or 503 with a
/// Retry-After is left alone for that time (an hour at most).
class HttpFeedLoader final : public FeedLoader
{
public:
    HttpFeedLoader(const HttpClient &client, Clock &clock);

    FeedLoad load(const FeedRequest &request) override;

    /// 0 (as at the beginning): each load asks the server. Else an asker whose last answer is
    /// younger than `age` is told to keep to it. Nothing is stored for that here: what the asker
    /// made of the answer is all that is needed, and documents of any number and size cost nothing.
    void setReuseAge(std::chrono::seconds age);

private:
    struct Hold
    {
        Clock::SteadyTime asked;
        Clock::SteadyTime until;
        ReadError error;
    };

    FeedLoad fail(const FeedRequest &request, const HttpError &error);
    /// The answer that needs no server.
    std::optional<FeedLoad> answerAtOnce(const FeedRequest &request);
    /// Whether it is too early to ask a server again that answered at that time.
    bool isRecent(Clock::SteadyTime answered, Clock::SteadyTime now) const;

    const HttpClient &client_;
    Clock &clock_;
    std::mutex mutex_; // leaf: never held while a document is fetched or parsed
    std::chrono::seconds reuseAge_{0};
    std::map<QString, Hold> holds_;
};

} // namespace qovelmor
