// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedExtraction.h"
#include "feeds/FeedLoader.h"
#include "feeds/needs/ReadLog.h"
#include "messages/needs/FeedSource.h"
#include "platform/Clock.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace qovelmor {

/// What every reader works with; all of it outlives the readers.
struct FeedServices
{
    FeedLoader &loader;
    Clock &clock;
};

/// One subscribed feed: fetches its document when told to, and holds the items of the last read
/// that succeeded. It schedules nothing, keeps no history and merges nothing.
///
/// One thread reads at a time; any thread may ask meanwhile for name, state, date or items and sees
/// the items of the last read until the new ones are whole.
class RSSReader final : public Feed
{
public:
    /// A name that is not empty and a format that is known are taken as they are. Otherwise both
    /// are fetched from the web at once, on the calling thread.
    RSSReader(FeedServices services, const QString &address, bool validate,
              const std::optional<QString> &name, int format);
    RSSReader(FeedServices services, const QString &address, bool validate);
    RSSReader(FeedServices services, const QString &address);

    QString address() const override;
    bool validate() const override { return validate_; }
    std::optional<QString> name() const; ///< nothing: it could not be had
    int format() const;                  ///< 0 unknown, 1 RSS 1.0, 2 RSS 2.0, 3 Atom
    int status() const;                  ///< 0 never read, 1 read, -1 failed or being read
    QString statusString() const;        ///< the state as the feed table shows it
    /// Local time of the last successful read, "MM/DD hh:mm"; nothing before the first.
    std::optional<QString> date() const;
    bool isReaderChanged() const { return isReaderChanged_; }
    /// Why the last attempt to fetch gave nothing, as a sentence for the user; empty when it did.
    QString lastErrorCause() const;
    /// Whether the last read offered nothing, not even the items of the one before (result 1).
    bool offersNothing() const;

    void setAddress(const QString &address);
    void setValidate(bool validate) { validate_ = validate; }
    void setName(const std::optional<QString> &name);
    /// Where failures are reported from now on, may be null. A failure that happened while there
    /// was no log is reported now.
    void setMessageList(ReadLog *log);

    /// Fetches the document, finds out its format and gives its title; nothing when that fails.
    std::optional<QString> readName();
    void setNameOnWeb();

    /// 0 success, and also a document without titles (the items of the read before stay on offer);
    /// 1 the document could not be had; 3, 4, 5 the dates, descriptions or links could not be
    /// asked for; 6 the reader is disabled and did nothing.
    int readHeadlines() override;

    int count() const override; ///< of titles

    /// One entry each; past the end a null string and a line in the system log.
    QString titleAtIndex(int index) const override;
    QString dateAtIndex(int index) const;
    QString descriptionAtIndex(int index) const;
    QString linkAtIndex(int index) const;

    /// The record made of all four lists; what a list lacks is empty (and logged).
    ItemRecord headlineAtIndex(int index) const override;
    std::vector<ItemRecord> headlines() const;

    /// See convertFeedDate().
    QString dateFormatChange(const QString &text, int type) const;
    /// A description without mark-up and outer blanks; nothing when the clean-up took more than a
    /// second, which is written to the log book, or when the program quits.
    std::optional<QString> pulloutTextString(const QString &text) const;
    std::optional<QString> removeHeadSpace(const QString &text) const;
    std::optional<QString> removeTailSpace(const QString &text) const;
    bool isExistSummary(const XmlNode &element) const;

    void stopLoopWatch() { watchLoop_ = false; }
    bool watchBreak() { return watchBreak_.exchange(false); } ///< answers once for each request

private:
    /// The items of a read, never changed, with the document that they came from.
    struct Results
    {
        FeedItems items;
        QString address;
        int format = 0;
        HttpValidators validators;
    };
    using ResultsSnapshot = std::shared_ptr<const Results>;

    /// What a read came to.
    struct Outcome
    {
        int code = 0;
        bool isSuccess = false;
        ReadError error = {}; ///< why it is none
    };
    /// The outcome of the loader's last answer, and what it is about: it holds for some time.
    struct LastAnswer
    {
        Clock::SteadyTime time;
        QString address;
        int format = 0;
        Outcome outcome;
    };

    ResultsSnapshot results() const;
    ItemRecord record(const Results &read, int index) const;
    bool holdsCurrentItems() const;
    FeedRequest itemsRequest() const;
    Outcome take(const FeedLoad &load);
    Outcome takeDocument(const LoadedFeed &feed);
    int takePostponed(const PostponedFeed &feed, int statusBefore);
    Outcome lastOutcome() const;
    void remember(const FeedRequest &request, Clock::SteadyTime answered, const Outcome &outcome);
    /// Shows what the read came to in the reader's state, and gives its result.
    int conclude(const Outcome &outcome);
    std::optional<QString> nameIn(const FeedDocument &document);
    void reportNameError(const ReadError &error);
    void setFormat(int format);
    void setLastErrorCause(const QString &cause);
    QString readTime() const;
    std::optional<QString> cleaned(const QString &text, Clock::SteadyTime latest) const;
    std::optional<QString> headless(const QString &text, Clock::SteadyTime latest) const;
    std::optional<QString> tailless(const QString &text, Clock::SteadyTime latest) const;
    void logWatchBreak(const QString &place) const;

    FeedServices services_;
    std::atomic<bool> validate_;
    std::atomic<bool> watchLoop_{false};
    std::atomic<bool> watchBreak_{false};
    const bool isReaderChanged_ = false;
    mutable std::atomic<int> breakCount_{0}; ///< watch breaks since the last read began
    mutable std::atomic<int> indexErrors_{0};

    mutable std::mutex mutex_; // leaf: guards what follows, never held while calling out
    ReadLog *msgList_ = nullptr;
    std::optional<ReadError> unreported_;
    QString address_;
    std::optional<QString> name_;
    int format_ = 0;
    int status_ = 0;
    std::optional<QString> date_;
    QString lastErrorCause_;
    bool offersNothing_ = false;
    std::optional<LastAnswer> lastAnswer_;
    ResultsSnapshot results_ = std::make_shared<const Results>();
};

} // namespace qovelmor
