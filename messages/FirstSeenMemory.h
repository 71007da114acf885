// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QHash>
#include <QString>

#include <mutex>
#include <vector>

namespace qovelmor {

class UserDefaults;

/// What first-seen times may take of the store's file: those of some 25,000 headlines.
constexpr qint64 firstSeenBytes = 8 * 1024 * 1024;

/// When headlines that came without a date were first seen.
///
/// A question is answered from memory at once, also while a table cell is drawn; what it has
/// changed reaches the disk with the next save. What is more than ten days old is forgotten by
/// whatever question comes next, which still gets the old answer if it asked for that very
/// headline. Any thread.
class FirstSeenMemory
{
public:
    struct Entry
    {
        QString headline;
        QString date; ///< "MM/DD hh:mm", local time

        friend bool operator==(const Entry &, const Entry &) = default;
    };

    FirstSeenMemory(Clock &clock, UserDefaults &defaults);

    /// Takes over what the store holds under `NoDateMessages`, when it holds something.
    void load();

    /// The date text under which the headline was first seen: now, when it was never seen.
    QString dateStringWithMessage(const QString &headline);

    /// Puts what has changed into the store, which is not yet made durable; false when nothing has.
    /// Of more than firstSeenBytes the newest headlines are stored: no feed may make the file with
    /// the user's lists too large to be saved.
    bool storeChanges();

    std::vector<Entry> noDateMessages() const;

private:
    void append(const QString &headline, const QString &date, Clock::CalendarTime now);
    std::size_t firstStored() const;
    bool isForgettingDue(Clock::CalendarTime now) const;
    void forgetTooOld(Clock::CalendarTime now);
    void resetIndex();
    void addToIndex(std::size_t place, Clock::CalendarTime now);

    Clock &clock_;
    UserDefaults &defaults_;

    std::mutex storeMutex_; ///< of two who store, the later list comes last; taken before the other
    mutable std::mutex mutex_;
    std::vector<Entry> noDateMessages_;
    QHash<QString, std::size_t> firstPlaces_; ///< headline → the lowest place of its entries
    /// No entry is too old from the latest first-seen moment on until the first one turns too old.
    Clock::CalendarTime latestMoment_;
    Clock::CalendarTime firstTooOld_;
    bool hasChanged_ = false;
};

} // namespace qovelmor
