// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/needs/ReadLog.h"
#include "platform/Clock.h"
#include "platform/HttpClient.h"

#include <QString>

#include <map>
#include <optional>
#include <variant>

namespace qovelmor {

/// What a server answered, before it is parsed.
struct FeedBytes
{
    QByteArray body;
    QByteArray charset;
    HttpValidators validators;
};

/// "Not modified", with the validators that it was said about.
struct FeedNotModified
{
    HttpValidators validators;
};

using FeedAnswer = std::variant<FeedBytes, FeedNotModified, ReadError>;

/// The last answer for each address, kept within a budget of bytes. Not thread-safe.
class LoadMemory
{
public:
    explicit LoadMemory(qsizetype budget) : budget_(budget) {}

    /// Replaces the last answer for the address. Older answers make room; one that is larger than
    /// the budget is not kept.
    void keep(const QString &address, FeedAnswer answer, Clock::SteadyTime now);

    /// The answer for the address, when it was kept after `oldest`.
    std::optional<FeedAnswer> answerSince(const QString &address, Clock::SteadyTime oldest) const;

    qsizetype bytes() const { return bytes_; }

private:
    struct Entry
    {
        FeedAnswer answer;
        Clock::SteadyTime kept;
    };
    using Entries = std::map<QString, Entry>;

    void drop(Entries::iterator entry);

    qsizetype budget_;
    qsizetype bytes_ = 0;
    Entries entries_;
};

} // namespace qovelmor
