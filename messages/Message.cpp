// SPDX-License-Identifier: MIT
#include "messages/Message.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

// The words of the stored form.
const auto headlineKey = u"HeadlineString"_s;
const auto dateKey = u"DateString"_s;
const auto descriptionKey = u"DescriptionString"_s;
const auto linkKey = u"LinkString"_s;
const auto siteNameKey = u"RSSNameString"_s;
const auto newMessageKey = u"NewRSSMessage"_s;

void addIfPresent(std::vector<PropertyEntry> &entries, const QString &key,
                  const std::optional<QString> &text)
{
    if (text)
        entries.push_back({key, *text});
}

} // namespace

PropertyDictionary toDictionary(const Message &message)
{
    std::vector<PropertyEntry> entries;
    entries.reserve(6);
    entries.push_back({headlineKey, message.headline});
    addIfPresent(entries, dateKey, message.date);
    addIfPresent(entries, descriptionKey, message.description);
    addIfPresent(entries, siteNameKey, message.siteName);
    addIfPresent(entries, linkKey, message.link);
    entries.push_back({newMessageKey, message.isNew});
    return PropertyDictionary::fromUniqueEntries(std::move(entries));
}

Message messageFrom(const PropertyDictionary &dictionary)
{
    Message message;
    message.headline = dictionary.string(headlineKey).value_or(QString());
    message.date = dictionary.string(dateKey);
    message.description = dictionary.string(descriptionKey);
    message.link = dictionary.string(linkKey);
    message.siteName = dictionary.string(siteNameKey);
    message.isNew = dictionary.boolean(newMessageKey);
    return message;
}

PropertyArray toArray(const MessageVector &messages)
{
    PropertyArray array;
    array.reserve(messages.size());
    for (const Message &message : messages)
        array.emplace_back(toDictionary(message));
    return array;
}

MessageVector messagesFrom(const PropertyArray &array)
{
    MessageVector messages;
    messages.reserve(array.size());
    for (const PropertyValue &stored : array) {
        if (const auto *dictionary = stored.get<PropertyDictionary>())
            messages.push_back(messageFrom(*dictionary));
    }
    return messages;
}

} // namespace qovelmor
