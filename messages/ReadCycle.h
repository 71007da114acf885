// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"
#include "messages/MessageSwitches.h"
#include "messages/RandomInsertion.h"
#include "messages/needs/FeedSource.h"

#include <functional>

namespace qovelmor {

class Clock;
class FirstSeenMemory;
class LogBook;
class MessageSettings;

/// What a read of all feeds has brought.
struct ReadOutcome
{
    MessageVector messages; ///< in order, without duplicates, new ones marked
    int takenCount = 0;     ///< headlines taken, before duplicates were removed
    bool isWhole = false;   ///< false: the program quits, and nothing of this may be kept
};

/// One read of all feeds: what each site offers, filtered, ordered, cut, and merged into one list.
/// Lives for one read, on the thread that reads.
class ReadCycle
{
public:
    struct Parts
    {
        Clock &clock;
        const MessageSettings &settings;
        FirstSeenMemory &firstSeen;
        LogBook &logBook;
        const RandomSource &random;
        std::function<void(const QString &address)> siteStarts;
        std::function<void(int sitesRead)> siteIsRead;
    };

    ReadCycle(Parts parts, std::shared_ptr<const DisplaySwitches> switches);

    /// `previous` is the list of the read before: what it does not hold is new.
    ReadOutcome run(const FeedSource &source, const MessageVector &previous);

private:
    void readSite(Feed &feed);
    void takeInSiteOrder(const Feed &feed);
    void takeAtRandom(const Feed &feed);
    bool passesFilters(const Feed &feed, int index, const Message &message) const;
    void removeDuplicateHeadlines();

    Parts parts_;
    std::shared_ptr<const DisplaySwitches> switches_;
    const int cap_;
    RandomInsertion randomList_;
    ReadOutcome outcome_;
};

} // namespace qovelmor
