// SPDX-License-Identifier: MIT
#include "feeds/FeedFormat.h"

#include "feeds/DateConversion.h"

#include <algorithm>
#include <array>

namespace qovelmor {

namespace {

constexpr std::array rss1ItemDates{DateQuery{"/rdf:RDF/item/dc:date", datetype::w3c}};
constexpr std::array rss1ChannelDates{DateQuery{"/rdf:RDF/channel/dc:date", datetype::w3c}};

constexpr std::array rss2ItemDates{DateQuery{"/rss/channel/item/pubDate", datetype::rfc822},
                                   DateQuery{"/rss/channel/item/dc:date", datetype::w3c}};
// The channel's pubDate is read in the form of dc:date: it usually comes out as 00/00 00:00.
constexpr std::array rss2ChannelDates{DateQuery{"/rss/channel/lastBuildDate", datetype::rfc822},
                                      DateQuery{"/rss/channel/pubDate", datetype::w3c}};

constexpr std::array atomItemDates{DateQuery{"/feed/entry/published", datetype::atomUtc}};
constexpr std::array atomChannelDates{DateQuery{"/feed/updated", datetype::atomUtc}};

constexpr std::array formats{
    FeedFormat{feedformat::rss2, "/rss/channel/title", "/rss/channel/item/title", rss2ItemDates,
               rss2ChannelDates, "/rss/channel/item", "/rss/channel/item/description",
               "/rss/channel/item/link"},
    FeedFormat{feedformat::rss1, "/rdf:RDF/channel/title", "/rdf:RDF/item/title", rss1ItemDates,
               rss1ChannelDates, "rdf:RDF/item", "/rdf:RDF/item/description", "/rdf:RDF/item/link"},
    FeedFormat{feedformat::atom, "/feed/title", "/feed/entry/title", atomItemDates,
               atomChannelDates, "feed/entry", "feed/entry/summary", "/feed/entry/link/@href"},
};

} // namespace

std::span<const FeedFormat> feedFormats()
{
    return formats;
}

std::span<const std::string_view> feedContainers()
{
    using namespace std::string_view_literals;
    static constexpr std::array names{"rss"sv, "RDF"sv, "feed"sv, "channel"sv, "item"sv, "entry"sv};
    return names;
}

const FeedFormat *feedFormat(int format)
{
    const auto found =
        std::find_if(formats.begin(), formats.end(),
                     [format](const FeedFormat &one) { return one.format == format; });
    return found == formats.end() ? nullptr : &*found;
}

} // namespace qovelmor
