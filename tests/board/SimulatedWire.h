// SPDX-License-Identifier: MIT
#pragma once

#include "board/CharacterQue.h"
#include "board/SerialWire.h"

#include <QList>

#include <algorithm>
#include <deque>

namespace qovelmor {

/// A line of 19200 baud with a board at its far end that exists in simulated time only: whoever
/// waits for bytes moves the clock to the moment when the next ones arrive. Not locked.
class SimulatedWire final : public SerialWire
{
public:
    /// Some bytes, sent so long after the ones before.
    struct Piece
    {
        QByteArray bytes;
        std::chrono::milliseconds after{0};
    };
    /// What the board sends for a command line, which comes without its carriage return.
    using Script = std::function<QList<Piece>(const QByteArray &line)>;

    SimulatedWire(Clock &clock, CharacterQue &que, Script script)
        : clock_(clock), que_(que), script_(std::move(script))
    {}

    /// When the last byte of what has been answered will have arrived.
    Clock::SteadyTime quietAt() const { return farFreeAt_; }

    std::optional<OpenFailure> open(const QByteArray &, LineSettings &settings) override
    {
        settings.makeRaw19200();
        discardUnread();
        que_.clear();
        return std::nullopt;
    }
    void close() override { pending_.clear(); }
    void drainAndRestore(const LineSettings &, Clock::SteadyTime) override {}

    bool write(const QByteArray &bytes, Clock::SteadyTime) override
    {
        farFreeAt_ = std::max(farFreeAt_, clock_.steadyNow());
        pending_ += bytes;
        for (qsizetype end = pending_.indexOf('\r'); end >= 0; end = pending_.indexOf('\r')) {
            farFreeAt_ += lineTime(end + 1);
            for (Piece &piece : script_(pending_.first(end))) {
                farFreeAt_ += piece.after + lineTime(piece.bytes.size());
                arrivals_.push_back({farFreeAt_, std::move(piece.bytes)});
            }
            pending_.remove(0, end + 1);
        }
        return true;
    }
    int unsentBytes() const override { return 0; }
    void discardUnread() override
    {
        while (!arrivals_.empty() && arrivals_.front().at <= clock_.steadyNow())
            arrivals_.pop_front();
    }
    void spaceMade() override { deliver(); }

    void waitForBytes(Clock::SteadyTime deadline,
                      const std::function<bool(int count)> &done) override
    {
        for (;;) {
            deliver();
            const auto now = clock_.steadyNow();
            if (done(que_.count()) || now >= deadline)
                return;
            const bool isMoreToCome = !arrivals_.empty() && arrivals_.front().at > now;
            clock_.sleepUntil(isMoreToCome ? std::min(deadline, arrivals_.front().at) : deadline);
        }
    }

private:
    struct Arrival
    {
        Clock::SteadyTime at;
        QByteArray bytes;
    };

    static Clock::Duration lineTime(qsizetype bytes)
    {
        return std::chrono::nanoseconds(bytes * 10 * 1'000'000'000 / 19'200);
    }

    /// Moves what has arrived by now into the queue, as far as there is room.
    void deliver()
    {
        while (!arrivals_.empty() && arrivals_.front().at <= clock_.steadyNow()) {
            QByteArray &bytes = arrivals_.front().bytes;
            bytes.remove(0, que_.put(bytes.constData(), static_cast<int>(bytes.size())));
            if (!bytes.isEmpty())
                return;
            arrivals_.pop_front();
        }
    }

    Clock &clock_;
    CharacterQue &que_;
    Script script_;
    QByteArray pending_;
    Clock::SteadyTime farFreeAt_{};
    std::deque<Arrival> arrivals_;
};

} // namespace qovelmor
