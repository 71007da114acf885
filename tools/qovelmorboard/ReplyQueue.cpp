// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/ReplyQueue.h"

#include "tools/qovelmorboard/Misbehaviour.h"

#include <algorithm>

namespace qovelmor::simboard {

using std::chrono::milliseconds;

void ReplyQueue::add(std::string_view bytes, Time now, const Misbehaviour &misbehaviour)
{
    std::string sent(bytes);
    if (const auto percent = misbehaviour.active(Fault::Noise))
        sent = withNoise(bytes, *percent);
    if (const auto delay = misbehaviour.active(Fault::Late))
        now += milliseconds(*delay);

    const auto gap = misbehaviour.active(Fault::Bytewise);
    if (!gap) {
        addPiece(now, std::move(sent));
        return;
    }
    Time due = now;
    if (!pieces_.empty())
        due = std::max(now, pieces_.back().due + milliseconds(*gap));
    for (const char byte : sent) {
        addPiece(due, std::string(1, byte));
        due += milliseconds(*gap);
    }
}

void ReplyQueue::addPiece(Time due, std::string bytes)
{
    // The order of bytes is kept whatever delays come and go.
    if (!pieces_.empty())
        due = std::max(due, pieces_.back().due);
    if (!bytes.empty())
        pieces_.push_back({due, std::move(bytes)});
}

std::string ReplyQueue::withNoise(std::string_view bytes, int percent)
{
    std::uniform_int_distribution<int> chance(0, 99);
    std::uniform_int_distribution<int> anyByte(0, 255);
    std::string noisy;
    for (const char byte : bytes) {
        if (chance(random_) < percent)
            noisy.push_back(static_cast<char>(anyByte(random_)));
        noisy.push_back(byte);
    }
    return noisy;
}

std::string ReplyQueue::take(Time now)
{
    std::string bytes;
    while (!pieces_.empty() && pieces_.front().due <= now) {
        bytes += pieces_.front().bytes;
        pieces_.pop_front();
    }
    return bytes;
}

std::optional<ReplyQueue::Time> ReplyQueue::nextTime() const
{
    if (pieces_.empty())
        return std::nullopt;
    return pieces_.front().due;
}

} // namespace qovelmor::simboard
