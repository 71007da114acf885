// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardStores.h"

#include <algorithm>
#include <numeric>

namespace qovelmor::simboard {

void BoardRom::format(std::size_t words)
{
    size_ = std::min(words, maximumWords);
    words_.clear();
    open_ = false;
}

bool BoardRom::write(const std::vector<unsigned> &words)
{
    if (!open_)
        words_.clear();
    open_ = true;
    if (words.size() > size_ - words_.size())
        return false;
    std::transform(words.begin(), words.end(), std::back_inserter(words_),
                   [](unsigned word) { return static_cast<std::uint16_t>(word); });
    return true;
}

unsigned BoardRom::checkSum() const
{
    return std::accumulate(words_.begin(), words_.end(), 0U) & 0xFFFFU;
}

bool InfraredStore::hear(std::string_view message)
{
    if (!listening_ || messages_.size() >= maximumMessages)
        return false;
    messages_.emplace_back(message);
    return true;
}

std::string_view InfraredStore::oldest() const
{
    return messages_.empty() ? std::string_view() : std::string_view(messages_.front());
}

void InfraredStore::freeOldest()
{
    if (!messages_.empty())
        messages_.erase(messages_.begin());
}

} // namespace qovelmor::simboard
