// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PropertyValue.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace qovelmor {

/// One feed as the defaults store keeps it.
struct FeedEntry
{
    bool validate = true; ///< whether the feed is read
    QString address;
    QString name;            ///< empty: to be fetched
    std::int32_t format = 0; ///< 1 RSS 1.0, 2 RSS 2.0, 3 Atom; anything else: to be found out

    /// Whether nothing has to be fetched to show and read the feed.
    bool isComplete() const { return !name.isEmpty() && format >= 1 && format <= 3; }

    friend bool operator==(const FeedEntry &, const FeedEntry &) = default;
};

/// The stored form: a dictionary under `RSSValidate`, `RSSAddressString`, `RSSNameString` and
/// `RSSFormat`, in this order.
PropertyDictionary toDictionary(const FeedEntry &entry);
/// Nothing when the value is no dictionary or holds no address.
std::optional<FeedEntry> feedEntryFrom(const PropertyValue &value);

/// The feeds that a first run finds: well-known Japanese news sites. Names and formats are fetched.
PropertyArray factoryFeedEntries();

} // namespace qovelmor
