// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/ColumnBuffer.h"

#include <vector>

namespace qovelmor::simboard {

/// What a person in front of the board sees: one word per column from left to right, and how
/// bright.
struct BoardPicture
{
    std::vector<ColumnWord> columns;
    int brightness = 255; ///< 0 to 255

    bool operator==(const BoardPicture &) const = default;
};

/// The 16 rows of dots of the board and how they are driven.
class DotPanel
{
public:
    static constexpr int rows = 16;
    static constexpr int columnsPerModule = 32;

    explicit DotPanel(int modules) { setModules(modules); }

    int width() const { return static_cast<int>(columns_.size()); }
    /// New columns at the right are dark; columns that fall away are forgotten.
    void setModules(int modules);

    /// Dots are counted from the upper left; places outside the panel are never lit and take no
    /// change.
    bool contains(int x, int y) const { return x >= 0 && x < width() && y >= 0 && y < rows; }
    bool dot(int x, int y) const;
    void setDot(int x, int y, bool lit);
    void setColumn(int x, ColumnWord column);

    void clear();
    /// Moves all dots one column to the left; `column` comes in at the right edge.
    void shiftIn(ColumnWord column);

    void setDriven(bool driven) { driven_ = driven; } ///< false: dark, but the dots are kept
    void setBrightness(int level0To255) { brightness_ = level0To255; }
    int brightness() const { return brightness_; }

    BoardPicture picture(bool turnedBy180) const;

private:
    std::vector<ColumnWord> columns_;
    int brightness_ = 255;
    bool driven_ = true;
};

} // namespace qovelmor::simboard
