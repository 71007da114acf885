// SPDX-License-Identifier: MIT
#include "messages/ReadCycle.h"

#include "messages/CalendarText.h"
#include "messages/FirstSeenMemory.h"
#include "messages/LogBook.h"
#include "messages/MergeRules.h"
#include "messages/needs/MessageSettings.h"
#include "platform/FreedMemory.h"
#include "platform/SystemLog.h"

#include <iterator>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int nothingToTake = 1; // the one result of a feed's read that offers no headlines

Message messageFrom(const ItemRecord &item)
{
    Message message;
    message.headline = item.headline;
    message.date = item.date;
    message.description = item.description;
    message.link = item.link;
    message.siteName = item.siteName;
    return message;
}

} // namespace

ReadCycle::ReadCycle(Parts parts, std::shared_ptr<const DisplaySwitches> switches)
    : parts_(std::move(parts))
    , switches_(std::move(switches))
    , cap_(perSiteCap(switches_->useMaxMsg, switches_->maxMessages))
    , randomList_(parts_.random)
{}

ReadOutcome ReadCycle::run(const FeedSource &source, const MessageVector &previous)
{
    int sitesRead = 0;
    for (const auto &feed : source.feeds()) {
        if (!feed->validate())
            continue;
        readSite(*feed);
        if (parts_.clock.sleepsEnded())
            return {};
        parts_.siteIsRead(++sitesRead);
    }
    returnFreedMemory(); // one feed may have sent a document of any size

    const MessageOrder order = switches_->order();
    if (order == MessageOrder::Random)
        outcome_.messages = randomList_.take();
    removeDuplicateHeadlines();
    if (!switches_->dispEachRSS && order == MessageOrder::OldestFirst)
        sortOldestFirst(outcome_.messages);
    if (!switches_->dispEachRSS && order == MessageOrder::NewestFirst)
        sortNewestFirst(outcome_.messages);
    markNew(outcome_.messages, previous);
    outcome_.isWhole = true;
    return std::move(outcome_);
}

// What was read while the program quits is neither logged nor taken.
void ReadCycle::readSite(Feed &feed)
{
    const QString address = feed.address();
    parts_.siteStarts(address);
    const int result = feed.readHeadlines();
    if (parts_.clock.sleepsEnded())
        return;
    parts_.logBook.writeReadRSSLog(address, result);
    if (result == nothingToTake)
        return;
    if (switches_->order() == MessageOrder::Random)
        takeAtRandom(feed);
    else
        takeInSiteOrder(feed);
}

void ReadCycle::takeInSiteOrder(const Feed &feed)
{
    MessageVector site;
    for (int i = 0; i < feed.count(); ++i) {
        Message message = messageFrom(feed.headlineAtIndex(i));
        if (!passesFilters(feed, i, message))
            continue;
        site.push_back(std::move(message));
        ++outcome_.takenCount;
    }
    arrangeSite(site, cap_, switches_->order());
    std::move(site.begin(), site.end(), std::back_inserter(outcome_.messages));
}

// The cap is looked at after the insertion and counts filtered headlines too, so up to cap + 1
// messages of one site get in; the one that ends the site is not counted as taken.
void ReadCycle::takeAtRandom(const Feed &feed)
{
    for (int i = 0; i < feed.count(); ++i) {
        Message message = messageFrom(feed.headlineAtIndex(i));
        if (!passesFilters(feed, i, message))
            continue;
        randomList_.add(std::move(message));
        if (i >= cap_)
            return;
        ++outcome_.takenCount;
    }
}

bool ReadCycle::passesFilters(const Feed &feed, int index, const Message &message) const
{
    const QString date =
        message.date ? *message.date : parts_.firstSeen.dateStringWithMessage(message.headline);
    if (parts_.settings.isCommercialMessage(feed.titleAtIndex(index)))
        return false;
    return !parts_.settings.dontShowOlder() ||
           !parts_.settings.isOlderThan(dateWithString(date, parts_.clock.calendarNow()));
}

void ReadCycle::removeDuplicateHeadlines()
{
    for (const int place : removeDuplicates(outcome_.messages))
        systemLog(logMessages(), u"Remove message at %1 dueto duplicated"_s.arg(place));
}

} // namespace qovelmor
