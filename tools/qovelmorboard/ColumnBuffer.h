// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qovelmor::simboard {

/// One column of 16 dots; the most significant bit is the top row.
using ColumnWord = std::uint16_t;

/// The columns that have arrived and are not shown yet: first in, first out, limited.
class ColumnBuffer
{
public:
    explicit ColumnBuffer(std::size_t capacity) : capacity_(capacity) {}

    std::size_t capacity() const { return capacity_; }
    std::size_t count() const { return columns_.size() - taken_; }
    bool isEmpty() const { return count() == 0; }
    /// Free room in columns.
    std::size_t room() const { return capacity_ > count() ? capacity_ - count() : 0; }

    /// A lower capacity than what is held loses nothing; there is just no room until it has
    /// drained.
    void setCapacity(std::size_t capacity) { capacity_ = capacity; }
    /// Takes all columns or, when there is not room for all, none and returns false.
    bool append(std::span<const ColumnWord> columns);
    /// Takes as many as there is room for; returns how many.
    std::size_t appendWhatFits(std::span<const ColumnWord> columns);
    /// The oldest column; 0 when empty.
    ColumnWord take();
    /// A column by its place in the queue; 0 is the oldest.
    ColumnWord at(std::size_t index) const { return columns_[taken_ + index]; }
    void clear();

private:
    std::size_t capacity_;
    std::vector<ColumnWord> columns_;
    std::size_t taken_ = 0;
};

} // namespace qovelmor::simboard
