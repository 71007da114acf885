// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedDocument.h"
#include "feeds/needs/ReadLog.h"
#include "platform/Clock.h"
#include "platform/HttpClient.h"

#include <QString>

#include <memory>
#include <optional>
#include <variant>

namespace qovelmor {

struct FeedRequest
{
    QString address;
    /// Of the document whose items the asker holds; empty when it holds none.
    HttpValidators validators;
    /// When the asker got its last answer for this address, while it can still say what became of
    /// it; nothing when it wants the document itself.
    std::optional<Clock::SteadyTime> answered = std::nullopt;
};

struct LoadedFeed
{
    std::shared_ptr<const FeedDocument> document;
    HttpValidators validators;
};

/// The document is still the one that the validators of the request belong to.
struct UnchangedFeed
{};

/// The asker's last answer is so young that the server is not asked again: what became of it holds.
struct RecentFeed
{};

/// The server asked to be left alone for a while, which is not over.
struct PostponedFeed
{
    ReadError error; ///< what to say when there is nothing to show instead
};

using FeedLoad = std::variant<LoadedFeed, UnchangedFeed, RecentFeed, PostponedFeed, ReadError>;

/// Turns an address into a document. May be called on any thread, and blocks it.
class FeedLoader
{
public:
    virtual ~FeedLoader() = default;

    virtual FeedLoad load(const FeedRequest &request) = 0;
};

} // namespace qovelmor
