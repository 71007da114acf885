// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/DotPanel.h"

#include <algorithm>

namespace qovelmor::simboard {

namespace {

ColumnWord maskOfRow(int y)
{
    return static_cast<ColumnWord>(0x8000U >> static_cast<unsigned>(y));
}

ColumnWord upsideDown(ColumnWord column)
{
    unsigned turned = 0;
    for (int row = 0; row < DotPanel::rows; ++row)
        turned |= ((static_cast<unsigned>(column) >> row) & 1U) << (DotPanel::rows - 1 - row);
    return static_cast<ColumnWord>(turned);
}

} // namespace

void DotPanel::setModules(int modules)
{
    const auto count = static_cast<std::size_t>(std::max(0, modules));
    columns_.resize(count * static_cast<std::size_t>(columnsPerModule), 0);
}

bool DotPanel::dot(int x, int y) const
{
    return contains(x, y) && (columns_[static_cast<std::size_t>(x)] & maskOfRow(y)) != 0;
}

void DotPanel::setDot(int x, int y, bool lit)
{
    if (!contains(x, y))
        return;
    ColumnWord &column = columns_[static_cast<std::size_t>(x)];
    column = static_cast<ColumnWord>(lit ? column | maskOfRow(y) : column & ~maskOfRow(y));
}

void DotPanel::setColumn(int x, ColumnWord column)
{
    if (contains(x, 0))
        columns_[static_cast<std::size_t>(x)] = column;
}

void DotPanel::clear()
{
    std::fill(columns_.begin(), columns_.end(), ColumnWord{0});
}

void DotPanel::shiftIn(ColumnWord column)
{
    if (columns_.empty())
        return;
    std::copy(columns_.begin() + 1, columns_.end(), columns_.begin());
    columns_.back() = column;
}

BoardPicture DotPanel::picture(bool turnedBy180) const
{
    BoardPicture seen{columns_, brightness_};
    if (!driven_)
        std::fill(seen.columns.begin(), seen.columns.end(), ColumnWord{0});
    if (turnedBy180) {
        std::reverse(seen.columns.begin(), seen.columns.end());
        std::transform(seen.columns.begin(), seen.columns.end(), seen.columns.begin(), upsideDown);
    }
    return seen;
}

} // namespace qovelmor::simboard
