// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/ColumnBuffer.h"

#include <algorithm>

namespace qovelmor::simboard {

bool ColumnBuffer::append(std::span<const ColumnWord> columns)
{
    if (columns.size() > room())
        return false;
    columns_.insert(columns_.end(), columns.begin(), columns.end());
    return true;
}

std::size_t ColumnBuffer::appendWhatFits(std::span<const ColumnWord> columns)
{
    const std::size_t taken = std::min(columns.size(), room());
    columns_.insert(columns_.end(), columns.begin(),
                    columns.begin() + static_cast<std::ptrdiff_t>(taken));
    return taken;
}

ColumnWord ColumnBuffer::take()
{
    if (isEmpty())
        return 0;
    const ColumnWord column = columns_[taken_++];
    if (taken_ >= capacity_ || isEmpty()) {
        columns_.erase(columns_.begin(), columns_.begin() + static_cast<std::ptrdiff_t>(taken_));
        taken_ = 0;
    }
    return column;
}

void ColumnBuffer::clear()
{
    columns_.clear();
    taken_ = 0;
}

} // namespace qovelmor::simboard
