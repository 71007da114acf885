// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedLoader.h"
#include "feeds/LoadMemory.h"
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

    /// 0 (as at the beginning): each load asks the server. Else a load whose address was asked for
    /// less than `age` ago gets the answer of that time again.
    void setReuseAge(std::chrono::seconds age);

private:
    struct Hold
    {
        Clock::SteadyTime until;
        ReadError error;
    };

    FeedLoad take(const FeedRequest &request, const HttpReply &reply);
    FeedLoad fail(const FeedRequest &request, const HttpError &error);
    std::optional<FeedLoad> remembered(const FeedRequest &request);

    const HttpClient &client_;
    Clock &clock_;
    std::mutex mutex_; // leaf: never held while a document is fetched or parsed
    std::chrono::seconds reuseAge_{0};
    LoadMemory memory_;
    std::map<QString, Hold> holds_;
};

} // namespace qovelmor
