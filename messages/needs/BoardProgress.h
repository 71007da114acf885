// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

/// The progress bar that a board shows while the feeds are read. Each step holds its caller back
/// until the board has shown it. Calls come from the thread that reads.
class BoardProgress
{
public:
    virtual ~BoardProgress() = default;

    /// Makes the bar (its title) ready; called once before the first start.
    virtual void create() = 0;
    /// Clears the board and shows an empty bar.
    virtual void start(int maxValue) = 0;
    virtual void move(int value) = 0;
    /// Clears the board.
    virtual void stop() = 0;
};

} // namespace qovelmor
