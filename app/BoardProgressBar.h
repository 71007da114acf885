// SPDX-License-Identifier: MIT
#pragma once

#include "messages/needs/BoardProgress.h"
#include "render/VelmorProgress.h"

#include <functional>
#include <utility>

namespace qovelmor {

/// The progress of a read on the board: the message list's wish, drawn by VelmorProgress.
class BoardProgressBar final : public BoardProgress
{
public:
    /// `board` gives the board of this run; null when none answered at the start.
    BoardProgressBar(Clock &clock, std::function<ProgressBoard *()> board)
        : progress_(clock), board_(std::move(board))
    {}

    void create() override;
    void start(int maxValue) override;
    void move(int value) override;
    void stop() override;

private:
    VelmorProgress progress_;
    std::function<ProgressBoard *()> board_;
};

} // namespace qovelmor
