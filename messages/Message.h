// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PropertyValue.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace qovelmor {

/// One headline of the message list. What may be absent is optional: absence and emptiness mean
/// different things (an absent date is looked up in the first-seen memory, an empty one is not).
struct Message
{
    QString headline; ///< the identity of a message
    std::optional<QString> date;
    std::optional<QString> description;
    std::optional<QString> link;
    std::optional<QString> siteName;
    bool isNew = false; ///< not in the previous cycle's list

    friend bool operator==(const Message &, const Message &) = default;
};

using MessageVector = std::vector<Message>;
/// What crosses threads: a list that nobody changes any more.
using MessageSnapshot = std::shared_ptr<const MessageVector>;

/// The stored form: a dictionary under the keys `HeadlineString`, `DateString`,
/// `DescriptionString`, `RSSNameString`, `LinkString` and `NewRSSMessage`; an absent text has no
/// key.
PropertyDictionary toDictionary(const Message &message);
Message messageFrom(const PropertyDictionary &dictionary);

/// A whole list in its stored form and back; entries of another type are left out.
PropertyArray toArray(const MessageVector &messages);
MessageVector messagesFrom(const PropertyArray &array);

} // namespace qovelmor
