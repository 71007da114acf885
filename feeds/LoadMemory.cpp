// SPDX-License-Identifier: MIT
#include "feeds/LoadMemory.h"

#include <algorithm>
#include <utility>

namespace qovelmor {

namespace {

/// What an entry takes beside its document, roughly.
constexpr qsizetype entrySize = 512;

qsizetype sizeOf(const FeedAnswer &answer)
{
    const auto *bytes = std::get_if<FeedBytes>(&answer);
    // A byte array that grew while it was received holds room that it does not use.
    return entrySize + (bytes ? bytes->body.capacity() : 0);
}

} // namespace

void LoadMemory::keep(const QString &address, FeedAnswer answer, Clock::SteadyTime now)
{
    if (const auto old = entries_.find(address); old != entries_.end())
        drop(old);
    const qsizetype size = sizeOf(answer);
    if (size > budget_)
        return;
    while (bytes_ + size > budget_)
        drop(std::min_element(entries_.begin(), entries_.end(), [](const auto &a, const auto &b) {
            return a.second.kept < b.second.kept;
        }));
    bytes_ += size;
    entries_.emplace(address, Entry{std::move(answer), now});
}

std::optional<FeedAnswer> LoadMemory::answerSince(const QString &address,
                                                  Clock::SteadyTime oldest) const
{
    const auto found = entries_.find(address);
    if (found == entries_.end() || found->second.kept <= oldest)
        return std::nullopt;
    return found->second.answer;
}

void LoadMemory::drop(Entries::iterator entry)
{
    bytes_ -= sizeOf(entry->second.answer);
    entries_.erase(entry);
}

} // namespace qovelmor
