// SPDX-License-Identifier: MIT
#include "feeds/FeedEntry.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto validateKey = u"RSSValidate"_s;
const auto addressKey = u"RSSAddressString"_s;
const auto nameKey = u"RSSNameString"_s;
const auto formatKey = u"RSSFormat"_s;

} // namespace

PropertyDictionary toDictionary(const FeedEntry &entry)
{
    return {{validateKey, entry.validate},
            {addressKey, entry.address},
            {nameKey, entry.name},
            {formatKey, entry.format}};
}

std::optional<FeedEntry> feedEntryFrom(const PropertyValue &value)
{
    const auto *dictionary = value.get<PropertyDictionary>();
    if (!dictionary)
        return std::nullopt;
    const std::optional<QString> address = dictionary->string(addressKey);
    if (!address)
        return std::nullopt;
    FeedEntry entry;
    entry.validate = dictionary->boolean(validateKey);
    entry.address = *address;
    entry.name = dictionary->string(nameKey).value_or(u""_s);
    // Every number outside the known formats means the same.
    entry.format =
        static_cast<std::int32_t>(std::clamp<qint64>(dictionary->integer(formatKey), 0, 4));
    return entry;
}

PropertyArray factoryFeedEntries()
{
    PropertyArray entries;
    for (const auto &address : {u"https://www.nhk.or.jp/rss/news/cat0.xml"_s,
                                u"https://www.asahi.com/rss/asahi/newsheadlines.rdf"_s,
                                u"https://news.yahoo.co.jp/rss/topics/top-picks.xml"_s,
                                u"https://rss.itmedia.co.jp/rss/2.0/news_bursts.xml"_s}) {
        entries.emplace_back(
            PropertyDictionary{{validateKey, true}, {addressKey, address}, {nameKey, u""_s}});
    }
    return entries;
}

} // namespace qovelmor
