// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace qovelmor::simboard {

/// How many bytes a serial line may carry by now, in one direction. A pseudo-terminal has no speed
/// of its own; 19200 baud with 8 data bits and one stop bit are 1,920 bytes a second.
class LinePace
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Seconds = std::chrono::duration<double>;

    static constexpr double bytesPerSecond = 1920.0;

    LinePace(bool throttled, Time now) : throttled_(throttled), last_(now) {}

    /// How many bytes may pass now. After a pause it is one, and time counts from there.
    std::size_t allowed(Time now)
    {
        if (!throttled_)
            return unlimited;
        if (!busy_)
            credit_ = 1.0;
        else
            credit_ =
                std::min(mostCatchUp, credit_ + Seconds(now - last_).count() * bytesPerSecond);
        last_ = now;
        return static_cast<std::size_t>(credit_);
    }

    void took(std::size_t bytes)
    {
        credit_ -= throttled_ ? static_cast<double>(bytes) : 0.0;
        busy_ = busy_ || bytes > 0;
    }

    /// Nothing was waiting to pass: what has not been used is lost.
    void ranEmpty() { busy_ = false; }

    /// When the next bytes may pass; waking for every single one would only heat the machine.
    Time nextTime() const
    {
        const double missing = std::max(0.0, bytesPerTurn - credit_);
        return last_ +
               std::chrono::duration_cast<Time::duration>(Seconds(missing / bytesPerSecond));
    }

private:
    static constexpr std::size_t unlimited = 65536;
    static constexpr double bytesPerTurn = 2.0;
    /// A thread that was kept from running makes up for this many bytes.
    static constexpr double mostCatchUp = 64.0;

    bool throttled_;
    bool busy_ = false;
    Time last_;
    double credit_ = 1.0;
};

} // namespace qovelmor::simboard
