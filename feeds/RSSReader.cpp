// SPDX-License-Identifier: MIT
#include "feeds/RSSReader.h"

#include "feeds/DateConversion.h"
#include "feeds/FeedFormat.h"
#include "feeds/TextCleanup.h"
#include "platform/CalendarTime.h"
#include "platform/SystemLog.h"

#include <algorithm>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int neverRead = 0;
constexpr int readSucceeded = 1;
constexpr int readFailed = -1;

constexpr int nothingOffered = 1; // the result of a read whose document could not be had

constexpr std::chrono::seconds cleanupLimit{1};
/// All descriptions of a document together. With the limit of the parser two seconds in all; one
/// description that takes its whole second still leaves time for the others.
constexpr std::chrono::milliseconds documentCleanupLimit{1200};
const QString pulloutPlace = u"watchBreak:RSSReader:pulloutTextString"_s;
const QString headPlace = u"watchBreak:RSSReader:removeHeadSpace"_s;
const QString noFeed = u"RSS でも Atom でもない文書です。"_s;

/// A document may have 300,000 items of which the same has to be said: the first say enough.
constexpr int mostLinesOfARead = 20;

/// The parser's own words may repeat a name of any length.
constexpr qsizetype longestLoggedCause = 500;

int resultCode(Extraction result)
{
    switch (result) {
    case Extraction::DateError:
        return 3;
    case Extraction::DescriptionError:
        return 4;
    case Extraction::LinkError:
        return 5;
    case Extraction::Success:
    case Extraction::NoTitles: // deliberate: the caller goes on with the items of the read before
        break;
    }
    return 0;
}

/// Why a document gave no items, as a sentence for the user.
QString causeOf(Extraction result, int format)
{
    if (result != Extraction::NoTitles)
        return u"文書から項目を取り出せませんでした。"_s;
    return feedFormat(format) ? u"文書に見出しがありません。"_s : noFeed;
}

void logReadError(const QString &address, const ReadError &error)
{
    systemLog(logFeeds(), u"RSS read error.(%1)"_s.arg(address));
    systemLog(logFeeds(),
              u"RSS read error cause: %1 %2 %3"_s.arg(error.domain, QString::number(error.code),
                                                      error.cause.left(longestLoggedCause)));
}

bool isInside(const std::vector<QString> &list, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < list.size();
}

QString entryAt(const std::vector<QString> &list, int index, QStringView operation)
{
    if (isInside(list, index))
        return list[static_cast<std::size_t>(index)];
    systemLog(logFeeds(), u"%1:index error"_s.arg(operation));
    return {};
}

/// Ends a clean-up loop one second after it began, at `latest`, and when the program quits.
CleanupWatch watchFrom(Clock &clock, Clock::SteadyTime latest)
{
    const Clock::SteadyTime end = std::min(clock.steadyNow() + cleanupLimit, latest);
    return [&clock, end] { return clock.steadyNow() > end || clock.sleepsEnded(); };
}

} // namespace

RSSReader::RSSReader(FeedServices services, const QString &address, bool validate,
                     const std::optional<QString> &name, int format)
    : services_(services), validate_(validate), address_(address)
{
    // A number below 0 names no kind of document either: no query would ever be asked with it, and
    // the feed could never be read. So it is found out like the other numbers that are unknown.
    if (name && !name->isEmpty() && feedFormat(format)) {
        name_ = name;
        format_ = format;
        return;
    }
    setNameOnWeb();
}

RSSReader::RSSReader(FeedServices services, const QString &address, bool validate)
    : RSSReader(services, address, validate, u""_s, feedformat::unknown)
{}

RSSReader::RSSReader(FeedServices services, const QString &address)
    : RSSReader(services, address, true)
{}

QString RSSReader::address() const
{
    const std::lock_guard lock(mutex_);
    return address_;
}

std::optional<QString> RSSReader::name() const
{
    const std::lock_guard lock(mutex_);
    return name_;
}

int RSSReader::format() const
{
    const std::lock_guard lock(mutex_);
    return format_;
}

int RSSReader::status() const
{
    const std::lock_guard lock(mutex_);
    return status_;
}

QString RSSReader::statusString() const
{
    switch (status()) {
    case neverRead:
        return u"未読込"_s;
    case readSucceeded:
        return u"読込済み"_s;
    default:
        return u"読込エラー"_s;
    }
}

std::optional<QString> RSSReader::date() const
{
    const std::lock_guard lock(mutex_);
    return date_;
}

QString RSSReader::lastErrorCause() const
{
    const std::lock_guard lock(mutex_);
    return lastErrorCause_;
}

bool RSSReader::offersNothing() const
{
    const std::lock_guard lock(mutex_);
    return offersNothing_;
}

void RSSReader::setLastErrorCause(const QString &cause)
{
    const std::lock_guard lock(mutex_);
    lastErrorCause_ = cause;
}

void RSSReader::setAddress(const QString &address)
{
    const std::lock_guard lock(mutex_);
    address_ = address;
}

void RSSReader::setName(const std::optional<QString> &name)
{
    const std::lock_guard lock(mutex_);
    name_ = name;
}

void RSSReader::setFormat(int format)
{
    const std::lock_guard lock(mutex_);
    format_ = format;
}

void RSSReader::setMessageList(ReadLog *log)
{
    std::optional<ReadError> unreported;
    {
        const std::lock_guard lock(mutex_);
        msgList_ = log;
        if (log)
            unreported = std::exchange(unreported_, std::nullopt);
    }
    if (unreported)
        log->writeReadRSSErrorLog(address(), *unreported);
}

std::optional<QString> RSSReader::readName()
{
    // Without validators: the name must be read even from a document that has not changed.
    const FeedLoad load = services_.loader.load({address(), {}});
    if (const auto *feed = std::get_if<LoadedFeed>(&load))
        return nameIn(*feed->document);
    if (const auto *error = std::get_if<ReadError>(&load))
        reportNameError(*error);
    else if (const auto *postponed = std::get_if<PostponedFeed>(&load))
        reportNameError(postponed->error);
    return std::nullopt;
}

std::optional<QString> RSSReader::nameIn(const FeedDocument &document)
{
    FeedQueries queries(document);
    for (const FeedFormat &format : feedFormats()) {
        const auto nodes = queries.nodes(format.documentTitle);
        setFormat(format.format);
        if (!nodes.empty()) {
            setLastErrorCause({});
            return nodes.front().stringValue();
        }
    }
    setFormat(feedformat::unknown);
    setLastErrorCause(noFeed);
    systemLog(logFeeds(), u"Title get error."_s);
    systemLog(logFeeds(), u"error code = %1"_s.arg(queries.errorCode()));
    systemLog(logFeeds(), u"nodes count = %1"_s.arg(queries.lastCount()));
    return std::nullopt;
}

void RSSReader::reportNameError(const ReadError &error)
{
    ReadLog *log = nullptr;
    {
        const std::lock_guard lock(mutex_);
        lastErrorCause_ = error.cause;
        log = msgList_;
        if (!log)
            unreported_ = error;
    }
    if (log)
        log->writeReadRSSErrorLog(address(), error);
}

void RSSReader::setNameOnWeb()
{
    setName(std::nullopt);
    setName(readName());
}

int RSSReader::readHeadlines()
{
    if (!validate())
        return 6;
    breakCount_ = 0;
    indexErrors_ = 0;
    int statusBefore = neverRead;
    {
        const std::lock_guard lock(mutex_);
        statusBefore = std::exchange(status_, readFailed);
    }
    const FeedRequest request = itemsRequest();
    const FeedLoad load = services_.loader.load(request);
    if (std::holds_alternative<RecentFeed>(load))
        return conclude(lastOutcome());
    if (const auto *postponed = std::get_if<PostponedFeed>(&load))
        return takePostponed(*postponed, statusBefore);
    const Clock::SteadyTime answered = services_.clock.steadyNow();
    const Outcome outcome = take(load);
    remember(request, answered, outcome);
    return conclude(outcome);
}

bool RSSReader::holdsCurrentItems() const
{
    const std::lock_guard lock(mutex_);
    return !results_->items.titles.empty() && results_->address == address_ &&
           results_->format == format_;
}

FeedRequest RSSReader::itemsRequest() const
{
    FeedRequest request{address(), {}};
    if (holdsCurrentItems())
        request.validators = results()->validators;
    const std::lock_guard lock(mutex_);
    if (lastAnswer_ && lastAnswer_->address == address_ && lastAnswer_->format == format_)
        request.answered = lastAnswer_->time;
    return request;
}

RSSReader::Outcome RSSReader::take(const FeedLoad &load)
{
    if (const auto *feed = std::get_if<LoadedFeed>(&load))
        return takeDocument(*feed);
    if (const auto *error = std::get_if<ReadError>(&load))
        return {nothingOffered, false, *error};
    return {0, true}; // the document is the one that the items are from
}

RSSReader::Outcome RSSReader::takeDocument(const LoadedFeed &feed)
{
    auto read = std::make_shared<Results>();
    read->address = address();
    read->format = format();
    read->validators = feed.validators;
    std::optional<Clock::SteadyTime> latest;
    const auto clean = [this, &latest](const QString &text) {
        if (!latest)
            latest = services_.clock.steadyNow() + documentCleanupLimit;
        return cleaned(text, *latest).value_or(u""_s);
    };
    const Extraction result =
        extractItems(*feed.document, feedFormat(read->format), clean, read->items);
    if (result != Extraction::Success)
        return {resultCode(result), false, {0, {}, causeOf(result, read->format)}};
    const std::lock_guard lock(mutex_);
    results_ = std::move(read);
    return {0, true};
}

/// The server wants to be left alone: the items held stay as good as they were.
int RSSReader::takePostponed(const PostponedFeed &feed, int statusBefore)
{
    if (!holdsCurrentItems())
        return conclude({nothingOffered, false, feed.error});
    const std::lock_guard lock(mutex_);
    lastErrorCause_ = feed.error.cause;
    offersNothing_ = false;
    status_ = statusBefore;
    return 0;
}

RSSReader::Outcome RSSReader::lastOutcome() const
{
    const std::lock_guard lock(mutex_);
    return lastAnswer_ ? lastAnswer_->outcome : Outcome{};
}

void RSSReader::remember(const FeedRequest &request, Clock::SteadyTime answered,
                         const Outcome &outcome)
{
    const std::lock_guard lock(mutex_);
    lastAnswer_ = {answered, request.address, format_, outcome};
}

int RSSReader::conclude(const Outcome &outcome)
{
    if (outcome.code == nothingOffered)
        logReadError(address(), outcome.error);
    const QString time = readTime();
    const std::lock_guard lock(mutex_);
    lastErrorCause_ = outcome.error.cause;
    offersNothing_ = outcome.code == nothingOffered;
    if (outcome.isSuccess) {
        status_ = readSucceeded;
        date_ = time;
    }
    return outcome.code;
}

QString RSSReader::readTime() const
{
    const LocalTime now = localTime(services_.clock.calendarNow());
    return dateText(now.month, now.day, now.hour, now.minute);
}

RSSReader::ResultsSnapshot RSSReader::results() const
{
    const std::lock_guard lock(mutex_);
    return results_;
}

int RSSReader::count() const
{
    return static_cast<int>(results()->items.titles.size());
}

QString RSSReader::titleAtIndex(int index) const
{
    return entryAt(results()->items.titles, index, u"titleAtIndex");
}

QString RSSReader::dateAtIndex(int index) const
{
    return entryAt(results()->items.dates, index, u"dateAtIndex");
}

QString RSSReader::descriptionAtIndex(int index) const
{
    return entryAt(results()->items.descriptions, index, u"descriptionAtIndex");
}

QString RSSReader::linkAtIndex(int index) const
{
    return entryAt(results()->items.links, index, u"linkAtIndex");
}

ItemRecord RSSReader::record(const Results &read, int index) const
{
    bool isComplete = true; // only the first list that is too short is logged
    int number = 0;
    const auto entry = [&](const std::vector<QString> &list) {
        ++number;
        if (isInside(list, index))
            return list[static_cast<std::size_t>(index)];
        if (std::exchange(isComplete, false) && indexErrors_++ < mostLinesOfARead)
            systemLog(logFeeds(), u"headlineAtIndex%1:index error"_s.arg(number));
        return u""_s;
    };
    ItemRecord record;
    record.headline = entry(read.items.titles);
    record.date = entry(read.items.dates);
    record.description = entry(read.items.descriptions);
    record.siteName = name().value_or(u""_s);
    record.link = entry(read.items.links);
    return record;
}

ItemRecord RSSReader::headlineAtIndex(int index) const
{
    return record(*results(), index);
}

std::vector<ItemRecord> RSSReader::headlines() const
{
    const ResultsSnapshot read = results(); // all of one read
    const int total = static_cast<int>(read->items.titles.size());
    std::vector<ItemRecord> records;
    records.reserve(static_cast<std::size_t>(total));
    for (int i = 0; i < total; ++i)
        records.push_back(record(*read, i));
    return records;
}

QString RSSReader::dateFormatChange(const QString &text, int type) const
{
    return convertFeedDate(text, type);
}

std::optional<QString> RSSReader::pulloutTextString(const QString &text) const
{
    return cleaned(text, Clock::SteadyTime::max());
}

std::optional<QString> RSSReader::removeHeadSpace(const QString &text) const
{
    return headless(text, Clock::SteadyTime::max());
}

std::optional<QString> RSSReader::removeTailSpace(const QString &text) const
{
    return tailless(text, Clock::SteadyTime::max());
}

std::optional<QString> RSSReader::cleaned(const QString &text, Clock::SteadyTime latest) const
{
    const auto plain = withoutMarkup(text, watchFrom(services_.clock, latest));
    if (!plain) {
        logWatchBreak(pulloutPlace);
        return std::nullopt;
    }
    const auto begun = headless(*plain, latest);
    return begun ? tailless(*begun, latest) : std::nullopt;
}

std::optional<QString> RSSReader::headless(const QString &text, Clock::SteadyTime latest) const
{
    auto result = withoutHeadSpace(text, watchFrom(services_.clock, latest));
    if (!result)
        logWatchBreak(headPlace);
    return result;
}

std::optional<QString> RSSReader::tailless(const QString &text, Clock::SteadyTime latest) const
{
    auto result = withoutTailSpace(text, watchFrom(services_.clock, latest));
    if (!result)
        logWatchBreak(pulloutPlace); // the log book knows this loop under the other one's name
    return result;
}

bool RSSReader::isExistSummary(const XmlNode &element) const
{
    return hasSummary(element);
}

void RSSReader::logWatchBreak(const QString &place) const
{
    if (services_.clock.sleepsEnded())
        return; // it was no time limit that ended the loop
    if (breakCount_++ >= mostLinesOfARead)
        return;
    ReadLog *log = nullptr;
    {
        const std::lock_guard lock(mutex_);
        log = msgList_;
    }
    if (log)
        log->writeWatchTimeBreakLog(place);
}

} // namespace qovelmor
