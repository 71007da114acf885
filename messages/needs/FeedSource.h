// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace qovelmor {

/// One item as its feed offers it. Every string is present; what the feed lacks is empty.
struct ItemRecord
{
    QString headline;
    QString date; ///< "MM/DD hh:mm" in Japan time, or empty
    QString description;
    QString siteName;
    QString link;

    friend bool operator==(const ItemRecord &, const ItemRecord &) = default;
};

/// One subscribed feed, as the read cycle sees it.
class Feed
{
public:
    virtual ~Feed() = default;

    virtual bool validate() const = 0; ///< whether the feed is to be read
    virtual QString address() const = 0;
    /// Fetches and parses on the calling thread; 0 is success, 1 means that nothing is to be taken.
    virtual int readHeadlines() = 0;
    virtual int count() const = 0;
    virtual ItemRecord headlineAtIndex(int index) const = 0;
    virtual QString titleAtIndex(int index) const = 0;
};

/// The feeds of a read cycle, in reading order; the feed list answers.
class FeedSource
{
public:
    virtual ~FeedSource() = default;

    virtual std::vector<std::shared_ptr<Feed>> feeds() const = 0;
    virtual int validSiteCount() const = 0;
};

} // namespace qovelmor
