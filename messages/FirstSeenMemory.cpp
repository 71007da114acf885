// SPDX-License-Identifier: MIT
#include "messages/FirstSeenMemory.h"

#include "messages/CalendarText.h"
#include "platform/PropertyListWriter.h"
#include "platform/UserDefaults.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto storeKey = u"NoDateMessages"_s;
const auto headlineKey = u"PastMessage"_s;
const auto dateKey = u"PastDate"_s;

} // namespace

FirstSeenMemory::FirstSeenMemory(Clock &clock, UserDefaults &defaults)
    : clock_(clock), defaults_(defaults)
{
    resetIndex();
}

void FirstSeenMemory::load()
{
    const auto stored = defaults_.arrayForKey(storeKey);
    if (!stored)
        return;
    const auto now = clock_.calendarNow();
    const std::lock_guard lock(mutex_);
    noDateMessages_.clear();
    resetIndex();
    for (const PropertyValue &value : *stored) {
        if (const auto *dictionary = value.get<PropertyDictionary>()) {
            append(dictionary->string(headlineKey).value_or(QString()),
                   dictionary->string(dateKey).value_or(QString()), now);
        }
    }
    hasChanged_ = false;
}

QString FirstSeenMemory::dateStringWithMessage(const QString &headline)
{
    const auto now = clock_.calendarNow();
    const std::lock_guard lock(mutex_);
    const auto known = firstPlaces_.constFind(headline);
    const bool isKnown = known != firstPlaces_.cend();
    const QString date = isKnown ? noDateMessages_[*known].date : dateText(now);
    if (isForgettingDue(now))
        forgetTooOld(now);
    if (!isKnown)
        append(headline, date, now);
    return date;
}

bool FirstSeenMemory::storeChanges()
{
    const std::lock_guard storeLock(storeMutex_);
    PropertyArray stored;
    {
        const std::lock_guard lock(mutex_);
        if (!hasChanged_)
            return false;
        const std::size_t first = firstStored();
        stored.reserve(noDateMessages_.size() - first);
        for (std::size_t place = first; place < noDateMessages_.size(); ++place) {
            const Entry &entry = noDateMessages_[place];
            stored.emplace_back(
                PropertyDictionary{{headlineKey, entry.headline}, {dateKey, entry.date}});
        }
        hasChanged_ = false;
    }
    defaults_.setArray(std::move(stored), storeKey);
    return true;
}

std::vector<FirstSeenMemory::Entry> FirstSeenMemory::noDateMessages() const
{
    const std::lock_guard lock(mutex_);
    return noDateMessages_;
}

void FirstSeenMemory::append(const QString &headline, const QString &date, Clock::CalendarTime now)
{
    noDateMessages_.push_back({headline, date});
    addToIndex(noDateMessages_.size() - 1, now);
    hasChanged_ = true;
}

std::size_t FirstSeenMemory::firstStored() const
{
    constexpr qint64 bytesBesideTexts = 200; // tags, keys and indentation of one entry
    qint64 bytes = 0;
    std::size_t place = noDateMessages_.size();
    for (; place > 0; --place) {
        const Entry &entry = noDateMessages_[place - 1];
        bytes += bytesBesideTexts + PropertyListWriter::mostBytesOf(entry.headline) +
                 PropertyListWriter::mostBytesOf(entry.date);
        if (bytes > firstSeenBytes)
            break;
    }
    return place;
}

// A clock that was set back counts too: a first-seen time that lies ahead is taken for last year's.
bool FirstSeenMemory::isForgettingDue(Clock::CalendarTime now) const
{
    return now > firstTooOld_ || now < latestMoment_;
}

void FirstSeenMemory::forgetTooOld(Clock::CalendarTime now)
{
    const auto isTooOld = [now](const Entry &entry) { return isTooOldDate(entry.date, now); };
    if (std::erase_if(noDateMessages_, isTooOld) > 0)
        hasChanged_ = true;
    resetIndex();
    for (std::size_t place = 0; place < noDateMessages_.size(); ++place)
        addToIndex(place, now);
}

void FirstSeenMemory::resetIndex()
{
    firstPlaces_.clear();
    latestMoment_ = Clock::CalendarTime::min();
    firstTooOld_ = Clock::CalendarTime::max();
}

void FirstSeenMemory::addToIndex(std::size_t place, Clock::CalendarTime now)
{
    const Entry &entry = noDateMessages_[place];
    if (!firstPlaces_.contains(entry.headline))
        firstPlaces_.insert(entry.headline, place);
    if (const auto moment = dateWithString(entry.date, now)) {
        latestMoment_ = std::max(latestMoment_, *moment);
        firstTooOld_ = std::min(firstTooOld_, *moment + tooOldAge);
    }
}

} // namespace qovelmor
