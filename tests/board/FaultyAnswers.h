// SPDX-License-Identifier: MIT
#pragma once

#include "tests/board/SimulatedWire.h"

#include <QByteArray>
#include <QList>

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <utility>

namespace qovelmor {

/// What a board answers to each command, and now and then a broken one, as its seed decides. A
/// question "ask N" is answered with N.
class FaultyAnswers
{
public:
    enum class Fault {
        None,
        Silent,        ///< no answer
        NoOk,          ///< an answer without its end mark
        Late,          ///< an answer after the time-out
        Twice,         ///< two answers
        SingleBytes,   ///< the answer byte by byte
        Pause,         ///< the answer after a short pause, in time
        OtherQuestion, ///< the answer to another question
        Error,         ///< a refusal
        Noise,         ///< random bytes before and between the right ones
        Flood,         ///< more bytes than the receive queue holds, and then the answer
        PowerCut,      ///< half the answer, then the greeting of a board that starts
        Count
    };
    static constexpr auto faultCount = static_cast<std::size_t>(Fault::Count);

    using Piece = SimulatedWire::Piece;

    /// `faultsIn10000` commands of 10,000 meet a fault; a late answer comes after `tooLate`.
    FaultyAnswers(unsigned seed, unsigned faultsIn10000, std::chrono::milliseconds tooLate)
        : random_(seed), faultsIn10000_(faultsIn10000), tooLate_(tooLate)
    {}

    /// The answer to a command line, without its carriage return. One thread.
    QList<Piece> answer(const QByteArray &line)
    {
        const Fault fault = choose();
        {
            const std::lock_guard lock(mutex_);
            lines_.append(line);
            ++faults_[static_cast<std::size_t>(fault)];
        }
        lastFault_ = fault;
        const QByteArray echo = line + "\r\n";
        const QByteArray whole = echo + tagged(line) + "Ok.\r\n";
        QList<Piece> pieces;
        switch (fault) {
        case Fault::None:
        case Fault::Count:
            return {{whole}};
        case Fault::Silent:
            return {};
        case Fault::NoOk:
            return {{echo + tagged(line)}};
        case Fault::Late:
            return {{whole, tooLate_}};
        case Fault::Twice:
            return {{whole + whole}};
        case Fault::SingleBytes:
            pieces.reserve(whole.size());
            for (const char byte : whole)
                pieces.append({QByteArray(1, byte)});
            return pieces;
        case Fault::Pause:
            return {{whole, std::chrono::milliseconds(10)}};
        case Fault::OtherQuestion:
            return {{"D cmodule 4\r\nOk.\r\n"}};
        case Fault::Error:
            return {{echo + "E -4 unknown\r\nOk.\r\n"}};
        case Fault::Noise:
            return {{noisy(whole)}};
        case Fault::Flood:
            pieces.reserve(floodPieces + 1);
            for (int piece = 0; piece < floodPieces; ++piece)
                pieces.append({QByteArray(1000, '~')});
            pieces.append({whole});
            return pieces;
        case Fault::PowerCut:
            return {{whole.first(whole.size() / 2)}, {"\r\nV board starts\r\n"}};
        }
        return {};
    }

    /// The fault that the last command met.
    Fault lastFault() const { return lastFault_; }
    /// How often each fault has happened.
    std::array<int, faultCount> faults() const
    {
        const std::lock_guard lock(mutex_);
        return faults_;
    }
    QList<QByteArray> takeLines()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(lines_, {});
    }

    /// Whether the host must get the right answer although this happened.
    static bool isHarmless(Fault fault)
    {
        return fault == Fault::None || fault == Fault::SingleBytes || fault == Fault::Pause;
    }

private:
    static constexpr int floodPieces = 20;

    Fault choose()
    {
        if (random_() % 10000 >= faultsIn10000_)
            return Fault::None;
        return static_cast<Fault>(1 + random_() % (faultCount - 1));
    }

    static QByteArray tagged(const QByteArray &line)
    {
        if (line.startsWith("ask "))
            return "D " + line.sliced(4) + "\r\n";
        if (line == "sc_mode")
            return "D 1\r\n";
        if (line.startsWith("sc_data"))
            return "D 256\r\n";
        return {};
    }

    QByteArray noisy(const QByteArray &bytes)
    {
        QByteArray result;
        for (const char byte : bytes) {
            for (auto count = random_() % 3; count > 0; --count)
                result += static_cast<char>(random_());
            result += byte;
        }
        return result;
    }

    std::mt19937 random_;
    const unsigned faultsIn10000_;
    const std::chrono::milliseconds tooLate_;
    std::atomic<Fault> lastFault_ = Fault::None;
    mutable std::mutex mutex_;
    std::array<int, faultCount> faults_{};
    QList<QByteArray> lines_;
};

} // namespace qovelmor
