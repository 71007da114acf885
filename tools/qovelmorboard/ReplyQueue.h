// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace qovelmor::simboard {

class Misbehaviour;

/// The bytes on their way to the host, each with the moment it may leave; noise, delay and single
/// bytes are put in here.
class ReplyQueue
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// `seed` makes the noise repeatable.
    explicit ReplyQueue(unsigned seed) : random_(seed) {}

    void add(std::string_view bytes, Time now, const Misbehaviour &misbehaviour);
    /// Everything that may leave by `now`.
    std::string take(Time now);
    /// When the next byte may leave.
    std::optional<Time> nextTime() const;
    void clear() { pieces_.clear(); }

private:
    struct Piece
    {
        Time due;
        std::string bytes;
    };

    void addPiece(Time due, std::string bytes);
    std::string withNoise(std::string_view bytes, int percent);

    std::deque<Piece> pieces_;
    std::mt19937 random_;
};

} // namespace qovelmor::simboard
