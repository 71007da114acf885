// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace qovelmor {

/// The document kinds, by the numbers under which the feed list stores them.
namespace feedformat {
constexpr int unknown = 0;
constexpr int rss1 = 1;
constexpr int rss2 = 2;
constexpr int atom = 3;
} // namespace feedformat

/// Where a date stands and how it is written (the types of convertFeedDate).
struct DateQuery
{
    std::string_view path;
    int type;
};

/// All queries for one document kind. Dates are tried in order, those of the items first.
struct FeedFormat
{
    int format;
    std::string_view documentTitle;
    std::string_view titles;
    std::span<const DateQuery> itemDates;
    std::span<const DateQuery> channelDates;
    std::string_view items;
    std::string_view descriptions;
    std::string_view links;
};

/// The kinds in the order in which a document is tried for them: RSS 2.0, RSS 1.0, Atom.
std::span<const FeedFormat> feedFormats();

/// The elements of all kinds that hold other elements and no text of their own.
std::span<const std::string_view> feedContainers();

/// Null for a number that is no kind.
const FeedFormat *feedFormat(int format);

} // namespace qovelmor
