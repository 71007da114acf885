// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/BoardStores.h"
#include "tools/qovelmorboard/BoardVariables.h"
#include "tools/qovelmorboard/DotPanel.h"
#include "tools/qovelmorboard/SignDisplay.h"

#include <chrono>
#include <functional>
#include <string_view>

namespace qovelmor::simboard {

/// Turns Shift_JIS text into columns, for the commands that write text.
using GlyphSource = std::function<std::vector<ColumnWord>(std::string_view text)>;

/// Whether this byte begins a character of two bytes.
bool isShiftJisLead(char byte);

/// Boxes as wide as the characters: what a board without a font shows.
std::vector<ColumnWord> boxGlyphs(std::string_view text);

/// Everything that the commands work on.
struct BoardState
{
    BoardState(std::size_t bufferColumns, const BoardRom &savedRom, DisplayWatcher *watcher);
    BoardState(const BoardState &) = delete;
    BoardState &operator=(const BoardState &) = delete;

    void setModules(int modules);
    /// 0 to 10, the steps that people choose from; false for any other level.
    bool setBright(int level);
    BoardPicture picture() const;

    BoardVariables variables;
    DotPanel panel;
    ColumnBuffer buffer;
    SignDisplay display;
    BoardMemory memory;
    BoardRom rom;
    InfraredStore infrared;
    GlyphSource glyphs = boxGlyphs;
    bool echo = true;
    int textColumn = 0; ///< where the next text goes on
    std::chrono::milliseconds uptime{0};
    bool refusesColumns = false; ///< a fault that tests and demonstrations switch on
    bool neverEnds = false;      ///< the same

private:
    std::size_t bufferColumns_;
};

} // namespace qovelmor::simboard
