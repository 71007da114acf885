// SPDX-License-Identifier: MIT
#include "feeds/RSSList.h"

#include "feeds/DisplayRest.h"
#include "feeds/FailureSentence.h"
#include "feeds/FeedEntry.h"
#include "platform/RowMove.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto addressesKey = u"RSSSiteAddresses"_s;

FeedEntry entryOf(const RSSReader &reader)
{
    return {reader.validate(), reader.address(), reader.name().value_or(u""_s), reader.format()};
}

bool isInside(int row, const RSSList::ReaderList &list)
{
    return row >= 0 && row < static_cast<int>(list.size());
}

} // namespace

RSSList::RSSList(FeedListServices services)
    : services_(services), view_(services.defaults), changes_(services.mainThread)
{
    PropertyDictionary factory = FeedViewSettings::factoryDefaults();
    factory.set(addressesKey, factoryFeedEntries());
    services_.defaults.registerDefaults(factory);
}

RSSList::~RSSList() = default;

void RSSList::awakeFromNibx()
{
    createReaders();
    renewControls();
    renewTableView();
}

// The feeds. ----------------------------------------------------------------------------------

RSSList::ReaderList RSSList::tableReaders() const
{
    const std::lock_guard lock(mutex_);
    return readerList_;
}

RSSList::ReaderList RSSList::readerList() const
{
    ReaderList temp;
    {
        const std::lock_guard lock(mutex_);
        if (tempReader_.empty())
            return readerList_;
        temp = tempReader_;
    }
    systemLog(logFeeds(), u"readerList: List is tempReader"_s);
    return temp;
}

std::vector<std::shared_ptr<Feed>> RSSList::feeds() const
{
    const ReaderList readers = readerList();
    return {readers.begin(), readers.end()};
}

int RSSList::validSiteCount() const
{
    const std::lock_guard lock(mutex_);
    const ReaderList &readers = tempReader_.empty() ? readerList_ : tempReader_;
    return static_cast<int>(
        std::ranges::count_if(readers, [](const Reader &reader) { return reader->validate(); }));
}

int RSSList::readerCount() const
{
    return static_cast<int>(tableReaders().size());
}

RSSList::Reader RSSList::readerAt(int row) const
{
    const ReaderList readers = tableReaders();
    return isInside(row, readers) ? readers[static_cast<std::size_t>(row)] : nullptr;
}

int RSSList::rowOf(const std::weak_ptr<RSSReader> &reader) const
{
    const Reader wanted = reader.lock();
    const ReaderList readers = tableReaders();
    const auto place = std::ranges::find(readers, wanted);
    return wanted && place != readers.end() ? static_cast<int>(place - readers.begin()) : -1;
}

void RSSList::setTempReader(const QString &address)
{
    Reader reader = makeReader(address);
    const std::lock_guard lock(mutex_);
    tempReader_ = {std::move(reader)};
}

void RSSList::delTempReader()
{
    const std::lock_guard lock(mutex_);
    tempReader_.clear();
}

void RSSList::replaceList(ReaderList list)
{
    const std::lock_guard lock(mutex_);
    readerList_ = std::move(list);
}

// Changes. ------------------------------------------------------------------------------------

RSSList::Reader RSSList::makeReader(const QString &address)
{
    window_->showAddressBeingFetched(address);
    auto reader = std::make_shared<RSSReader>(services_.reading, address);
    window_->showAddressBeingFetched(u""_s);
    reader->setMessageList(msgList_);
    // A feed that cannot be read is a reader without a name: there is always one to put in.
    const QString failure = failureSentence(*reader);
    if (!failure.isEmpty())
        window_->showStatus(failure);
    return reader;
}

void RSSList::createReaders()
{
    replaceList({});
    ReaderList readers;
    bool isReaderChanged = false;
    const PropertyArray entries =
        services_.defaults.arrayForKey(addressesKey).value_or(PropertyArray());
    int number = 0;
    for (const PropertyValue &stored : entries) {
        window_->showFetchProgress(++number, static_cast<int>(entries.size()));
        const std::optional<FeedEntry> entry = feedEntryFrom(stored);
        if (!entry)
            continue;
        window_->showAddressBeingFetched(entry->address);
        readers.push_back(std::make_shared<RSSReader>(services_.reading, entry->address,
                                                      entry->validate, entry->name, entry->format));
        readers.back()->setMessageList(msgList_);
        isReaderChanged = isReaderChanged || !entry->isComplete();
    }
    window_->showAddressBeingFetched(u""_s);
    replaceList(std::move(readers));
    // A program that is ending has broken off the fetches: what it has not got is no news.
    if (isReaderChanged && !services_.reading.clock.sleepsEnded())
        saveSiteAddresses();
}

void RSSList::createReaderWithAddress(const QString &address, int index, AddressMode mode)
{
    const DisplayRest rest(*control_);
    Reader reader = makeReader(address);
    ReaderList readers = tableReaders();
    const bool isRow = isInside(index, readers);
    if (mode == AddressMode::Add)
        readers.insert(isRow ? readers.begin() + index : readers.end(), std::move(reader));
    else if (isRow)
        readers[static_cast<std::size_t>(index)] = std::move(reader);
    replaceList(std::move(readers));
}

void RSSList::removeReader(int row)
{
    const DisplayRest rest(*control_);
    ReaderList readers = tableReaders();
    if (!isInside(row, readers))
        return;
    readers.erase(readers.begin() + row);
    replaceList(std::move(readers));
    renewRSSList();
}

RSSList::Appended RSSList::appendAddresses(const QStringList &addresses)
{
    const DisplayRest rest(*control_);
    const int total = static_cast<int>(addresses.size());
    isImportCancelled_ = false;
    window_->importStarts(total);
    ReaderList added;
    added.reserve(static_cast<std::size_t>(total));
    for (const QString &address : addresses) {
        window_->showFetchProgress(static_cast<int>(added.size()) + 1, total);
        added.push_back(makeReader(address));
        if (isImportCancelled_)
            break;
    }
    window_->importEnds();
    if (isImportCancelled_.exchange(false))
        return {0, 0, true}; // all or nothing: half a list would double when it is repeated

    ReaderList readers = tableReaders();
    readers.insert(readers.end(), added.begin(), added.end());
    replaceList(std::move(readers));
    renewRSSList();
    const auto unread =
        std::ranges::count_if(added, [](const Reader &reader) { return !reader->name(); });
    return {total, static_cast<int>(unread), false};
}

int RSSList::failedSiteCount() const
{
    return static_cast<int>(std::ranges::count_if(tableReaders(), [](const Reader &reader) {
        return reader->validate() && reader->offersNothing();
    }));
}

void RSSList::moveRSSReaderFromIndex(int from, int target)
{
    const DisplayRest rest(*control_);
    ReaderList readers = tableReaders();
    if (moveRow(readers, from, target))
        replaceList(std::move(readers));
}

bool RSSList::shouldEditTableColumn(int row)
{
    const Reader reader = readerAt(row);
    if (!reader) {
        systemLog(logFeeds(), u"RSSList:index error4"_s);
        return false;
    }
    reader->setValidate(!reader->validate());
    renewRSSList();
    return true;
}

void RSSList::invertValidates()
{
    for (const Reader &reader : tableReaders())
        reader->setValidate(!reader->validate());
    renewRSSList();
}

void RSSList::saveSiteAddresses()
{
    // Through readerList(), on purpose: a one-feed list would be saved in the list's place.
    PropertyArray entries;
    for (const Reader &reader : readerList())
        entries.emplace_back(toDictionary(entryOf(*reader)));
    services_.defaults.setArray(std::move(entries), addressesKey);
    services_.defaults.synchronize();
}

void RSSList::renewRSSList()
{
    renewTableView();
    saveSiteAddresses();
}

void RSSList::renewControls()
{
    window_->renewControls(window_->selectedRow() >= 0);
}

} // namespace qovelmor
