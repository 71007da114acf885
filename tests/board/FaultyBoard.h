// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/PseudoTerminal.h"

#include <QList>

#include <array>
#include <atomic>
#include <mutex>
#include <random>
#include <thread>

namespace qovelmor {

/// The far end of a line that answers every command like a board, and now and then like a broken
/// one, as its seed decides. A question "ask N" is answered with N.
class FaultyBoard
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

    /// `faultsIn10000` commands of 10,000 meet a fault; a late answer comes after `tooLate`.
    FaultyBoard(unsigned seed, unsigned faultsIn10000, std::chrono::milliseconds tooLate)
        : random_(seed)
        , faultsIn10000_(faultsIn10000)
        , tooLate_(tooLate)
        , thread_([this] { run(); })
    {}
    ~FaultyBoard()
    {
        stop_ = true;
        thread_.join();
    }
    FaultyBoard(const FaultyBoard &) = delete;
    FaultyBoard &operator=(const FaultyBoard &) = delete;

    const QByteArray &path() const { return line_.path(); }
    /// Commands that have been answered for good: nothing of theirs is still to come.
    int answered() const { return answered_; }
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
    void run()
    {
        QByteArray pending;
        while (!stop_) {
            pending += line_.read(std::chrono::milliseconds(5));
            for (qsizetype end = pending.indexOf('\r'); end >= 0; end = pending.indexOf('\r')) {
                answer(pending.first(end));
                pending.remove(0, end + 1);
                ++answered_;
            }
        }
    }

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

    void answer(const QByteArray &line)
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
        switch (fault) {
        case Fault::None:
        case Fault::Count:
            return send(whole);
        case Fault::Silent:
            return;
        case Fault::NoOk:
            return send(echo + tagged(line));
        case Fault::Late:
            pause(tooLate_);
            return send(whole);
        case Fault::Twice:
            return send(whole + whole);
        case Fault::SingleBytes:
            for (const char byte : whole) {
                send(QByteArray(1, byte));
                std::this_thread::yield();
            }
            return;
        case Fault::Pause:
            pause(std::chrono::milliseconds(10));
            return send(whole);
        case Fault::OtherQuestion:
            return send("D cmodule 4\r\nOk.\r\n");
        case Fault::Error:
            return send(echo + "E -4 unknown\r\nOk.\r\n");
        case Fault::Noise:
            return send(noisy(whole));
        case Fault::Flood:
            for (int piece = 0; piece < 20; ++piece)
                send(QByteArray(1000, '~'));
            return send(whole);
        case Fault::PowerCut:
            send(whole.first(whole.size() / 2));
            return send("\r\nV board starts\r\n");
        }
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

    void send(const QByteArray &bytes) const { line_.write(bytes); }

    void pause(std::chrono::milliseconds length) const
    {
        const auto end = std::chrono::steady_clock::now() + length;
        while (!stop_ && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    PseudoTerminal line_;
    std::mt19937 random_;
    const unsigned faultsIn10000_;
    const std::chrono::milliseconds tooLate_;
    std::atomic<int> answered_ = 0;
    std::atomic<Fault> lastFault_ = Fault::None;
    mutable std::mutex mutex_;
    std::array<int, faultCount> faults_{};
    QList<QByteArray> lines_;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

} // namespace qovelmor
