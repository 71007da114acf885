// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/RunRecord.h"

#include "tools/qovelmorboard/Arguments.h"

namespace qovelmor::simboard {

bool RunRecord::open(const std::string &path)
{
    file_.reset(std::fopen(path.c_str(), "we"));
    return file_ != nullptr;
}

void RunRecord::writeLine(const std::string &text, bool flush)
{
    if (!file_)
        return;
    const std::string line = text + "\n";
    std::fwrite(line.data(), 1, line.size(), file_.get());
    if (flush)
        std::fflush(file_.get());
}

void RunRecord::runStarted(bool scrolling)
{
    if (runs_.size() >= runsKept)
        runs_.pop_front();
    runs_.push_back({++count_, scrolling, false, false, {}});
    writeLine("# run " + std::to_string(count_) + (scrolling ? " scroll" : " show"), true);
}

void RunRecord::columnShown(ColumnWord column)
{
    if (runs_.back().columns.size() < columnsKept)
        runs_.back().columns.push_back(column);
    writeLine(hexText(column, 4), false);
}

void RunRecord::runEnded(DisplayMode how)
{
    ColumnRun &run = runs_.back();
    run.finished = true;
    run.wentThrough = how == DisplayMode::Ended;
    const char *end = !run.scrolling ? " shown" : run.wentThrough ? " through" : " cut";
    writeLine("# end " + std::to_string(run.number) + end, true);
}

} // namespace qovelmor::simboard
