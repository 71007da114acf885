// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/SignDisplay.h"
#include "tools/qovelmorboard/TrafficLog.h"

#include <deque>
#include <string>
#include <vector>

namespace qovelmor::simboard {

/// One picture that went over the board, column by column.
struct ColumnRun
{
    int number = 0; ///< counted from 1
    bool scrolling = false;
    bool finished = false;
    bool wentThrough = false; ///< scrolled out to its end
    std::vector<ColumnWord> columns;
};

/// Keeps the last runs in memory and, when wished, all of them in a file.
///
/// The file has one column per line, four hexadecimal digits, and around each run the lines
/// "# run N scroll" (or "show") and "# end N through" (or "cut", "shown").
class RunRecord final : public DisplayWatcher
{
public:
    static constexpr std::size_t runsKept = 256;
    /// A loop that turns for weeks is kept up to here.
    static constexpr std::size_t columnsKept = 100000;

    /// False when the file cannot be made; errno says why.
    bool open(const std::string &path);
    const std::deque<ColumnRun> &runs() const { return runs_; }

    void runStarted(bool scrolling) override;
    void columnShown(ColumnWord column) override;
    void runEnded(DisplayMode how) override;

private:
    void writeLine(const std::string &text, bool flush);

    OutputFile file_;
    int count_ = 0;
    std::deque<ColumnRun> runs_;
};

} // namespace qovelmor::simboard
