// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedDocument.h"
#include "feeds/needs/ReadLog.h"
#include "platform/HttpClient.h"

#include <QString>

#include <memory>
#include <variant>

namespace qovelmor {

struct FeedRequest
{
    QString address;
    /// Of the document whose items the asker holds; empty when it holds none.
    HttpValidators validators;
};

struct LoadedFeed
{
    std::shared_ptr<const FeedDocument> document;
    HttpValidators validators;
};

/// The document is still the one that the validators of the request belong to.
struct UnchangedFeed
{};

/// The server asked to be left alone for a while, which is not over.
struct PostponedFeed
{
    ReadError error; ///< what to say when there is nothing to show instead
};

using FeedLoad = std::variant<LoadedFeed, UnchangedFeed, PostponedFeed, ReadError>;

/// Turns an address into a document. May be called on any thread, and blocks it.
class FeedLoader
{
public:
    virtual ~FeedLoader() = default;

    virtual FeedLoad load(const FeedRequest &request) = 0;
};

} // namespace qovelmor
