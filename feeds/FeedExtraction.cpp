// SPDX-License-Identifier: MIT
#include "feeds/FeedExtraction.h"

#include "feeds/DateConversion.h"
#include "feeds/FeedFormat.h"
#include "platform/SystemLog.h"

#include <algorithm>
#include <optional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

std::vector<QString> stringValues(const std::vector<XmlNode> &nodes)
{
    std::vector<QString> values;
    values.reserve(nodes.size());
    for (const XmlNode &node : nodes)
        values.push_back(node.stringValue());
    return values;
}

/// Dates belong to titles by position alone; titles beyond the dates take the channel's date, an
/// empty text where the feed has none. Nothing after an error.
std::optional<std::vector<QString>> extractDates(FeedQueries &queries, const FeedFormat &format,
                                                 std::size_t titleCount)
{
    std::vector<XmlNode> nodes;
    int type = 0;
    for (const DateQuery &query : format.itemDates) {
        nodes = queries.nodes(query.path);
        type = query.type;
        if (!nodes.empty())
            break;
    }
    QString channelDate = u""_s;
    if (nodes.empty()) {
        for (const DateQuery &query : format.channelDates) {
            const auto channelNodes = queries.nodes(query.path);
            if (channelNodes.empty())
                continue;
            channelDate = convertFeedDate(channelNodes.front().stringValue(), query.type);
            break;
        }
    }
    if (queries.hasFailed())
        return std::nullopt;
    std::vector<QString> dates(titleCount, channelDate);
    for (std::size_t i = 0; i < std::min(titleCount, nodes.size()); ++i)
        dates[i] = convertFeedDate(nodes[i].stringValue(), type);
    return dates;
}

/// Descriptions are found by position, shifted by the items without one so far. An item past the
/// number of description nodes repeats the description before it.
std::optional<std::vector<QString>>
extractDescriptions(FeedQueries &queries, const FeedFormat &format, const DescriptionCleaner &clean)
{
    const auto items = queries.nodes(format.items);
    std::vector<XmlNode> nodes;
    if (!queries.hasFailed())
        nodes = queries.nodes(format.descriptions);
    if (queries.hasFailed())
        return std::nullopt;
    std::vector<QString> descriptions;
    descriptions.reserve(items.size());
    QString last = u""_s;
    std::size_t without = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (!hasSummary(items[i])) {
            ++without;
            last = u""_s;
        } else if (i < nodes.size()) {
            last = clean(nodes[i - without].stringValue());
        }
        descriptions.push_back(last);
    }
    return descriptions;
}

Extraction failed(Extraction result, const QString &text)
{
    systemLog(logFeeds(), text);
    return result;
}

} // namespace

std::vector<XmlNode> FeedQueries::nodes(std::string_view path)
{
    XmlQueryResult result = document_.nodesForXPath(path);
    lastCount_ = static_cast<int>(result.nodes.size());
    if (result.errorCode != 0)
        errorCode_ = result.errorCode;
    if (hasFailed())
        return {};
    return std::move(result.nodes);
}

bool hasSummary(const XmlNode &item)
{
    return item.hasChildElement("description") || item.hasChildElement("summary");
}

Extraction extractItems(const FeedDocument &document, const FeedFormat *format,
                        const DescriptionCleaner &clean, FeedItems &items)
{
    FeedQueries queries(document);
    if (format)
        items.titles = stringValues(queries.nodes(format->titles));
    if (items.titles.empty())
        return failed(Extraction::NoTitles, u"Headline get error."_s);

    auto dates = extractDates(queries, *format, items.titles.size());
    if (!dates)
        return failed(Extraction::DateError, u"Date get error."_s);
    items.dates = *std::move(dates);

    auto descriptions = extractDescriptions(queries, *format, clean);
    if (!descriptions)
        return failed(Extraction::DescriptionError, u"Description get error."_s);
    items.descriptions = *std::move(descriptions);

    items.links = stringValues(queries.nodes(format->links));
    if (queries.hasFailed())
        return failed(Extraction::LinkError, u"Link get error %1"_s.arg(queries.errorCode()));
    return Extraction::Success;
}

} // namespace qovelmor
