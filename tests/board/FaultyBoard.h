// SPDX-License-Identifier: MIT
#pragma once

#include "tests/board/FaultyAnswers.h"
#include "tests/support/PseudoTerminal.h"

#include <thread>

namespace qovelmor {

/// The far end of a pseudo-terminal that gives faulty answers, in real time.
class FaultyBoard
{
public:
    FaultyBoard(unsigned seed, unsigned faultsIn10000, std::chrono::milliseconds tooLate)
        : answers_(seed, faultsIn10000, tooLate), thread_([this] { run(); })
    {}
    ~FaultyBoard()
    {
        stop_ = true;
        thread_.join();
    }
    FaultyBoard(const FaultyBoard &) = delete;
    FaultyBoard &operator=(const FaultyBoard &) = delete;

    FaultyAnswers &answers() { return answers_; }
    const QByteArray &path() const { return line_.path(); }
    /// Commands that have been answered for good: nothing of theirs is still to come.
    int answered() const { return answered_; }

private:
    void run()
    {
        QByteArray pending;
        while (!stop_) {
            pending += line_.read(std::chrono::milliseconds(5));
            for (qsizetype end = pending.indexOf('\r'); end >= 0; end = pending.indexOf('\r')) {
                for (const FaultyAnswers::Piece &piece : answers_.answer(pending.first(end))) {
                    pause(piece.after);
                    line_.write(piece.bytes);
                    std::this_thread::yield();
                }
                pending.remove(0, end + 1);
                ++answered_;
            }
        }
    }

    void pause(std::chrono::milliseconds length) const
    {
        const auto end = std::chrono::steady_clock::now() + length;
        while (!stop_ && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    PseudoTerminal line_;
    FaultyAnswers answers_;
    std::atomic<int> answered_ = 0;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

} // namespace qovelmor
