// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/SimulatedBoard.h"

#include <string>
#include <vector>

namespace qovelmor::simboard {

/// The board in a terminal: a frame, the dots in braille and a line that says how the board does.
/// A board that is wider than the terminal is shown in several strips, one above the other.
std::vector<std::string> terminalLines(const BoardView &view, std::size_t terminalColumns);

/// Draws the lines over and over at the same place.
class TerminalPicture
{
public:
    /// What to write to the terminal to show `lines`; empty when that is what it shows already.
    std::string update(const std::vector<std::string> &lines);
    /// What to write at the end: the cursor is shown again, below the picture.
    std::string finish() const { return shown_.empty() ? std::string() : "\x1b[?25h"; }

private:
    std::vector<std::string> shown_;
};

} // namespace qovelmor::simboard
