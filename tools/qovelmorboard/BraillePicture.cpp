// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BraillePicture.h"

#include <array>

namespace qovelmor::simboard {

namespace {

constexpr std::size_t rows = 16;
constexpr std::size_t rowsPerCharacter = 4;

bool isLit(ColumnWord column, std::size_t row)
{
    return ((static_cast<unsigned>(column) >> (rows - 1 - row)) & 1U) != 0;
}

/// The bits of one column of a braille character from top to bottom: its fourth row was added to
/// the six-dot alphabet later, so the numbers are out of step.
unsigned brailleBits(ColumnWord column, std::size_t firstRow, bool right)
{
    constexpr std::array<unsigned, rowsPerCharacter> left{0x01, 0x02, 0x04, 0x40};
    constexpr std::array<unsigned, rowsPerCharacter> rightSide{0x08, 0x10, 0x20, 0x80};
    unsigned bits = 0;
    for (std::size_t row = 0; row < rowsPerCharacter; ++row) {
        if (isLit(column, firstRow + row))
            bits |= right ? rightSide[row] : left[row];
    }
    return bits;
}

/// U+2800 plus the dots; always three bytes.
void appendBraille(std::string &line, unsigned bits)
{
    line.push_back(static_cast<char>(0xE2));
    line.push_back(static_cast<char>(0xA0U | (bits >> 6U)));
    line.push_back(static_cast<char>(0x80U | (bits & 0x3FU)));
}

} // namespace

std::vector<std::string> brailleLines(std::span<const ColumnWord> columns)
{
    std::vector<std::string> lines(rows / rowsPerCharacter);
    for (std::size_t line = 0; line < lines.size(); ++line) {
        for (std::size_t x = 0; x < columns.size(); x += 2) {
            unsigned bits = brailleBits(columns[x], line * rowsPerCharacter, false);
            if (x + 1 < columns.size())
                bits |= brailleBits(columns[x + 1], line * rowsPerCharacter, true);
            appendBraille(lines[line], bits);
        }
    }
    return lines;
}

std::vector<std::string> dotLines(std::span<const ColumnWord> columns)
{
    std::vector<std::string> lines(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        for (const ColumnWord column : columns)
            lines[row].push_back(isLit(column, row) ? '#' : '.');
    }
    return lines;
}

std::vector<ColumnWord> columnsOfDotLines(std::span<const std::string> lines)
{
    std::vector<ColumnWord> columns(lines.empty() ? 0 : lines.front().size());
    for (std::size_t x = 0; x < columns.size(); ++x) {
        unsigned column = 0;
        for (std::size_t row = 0; row < rows; ++row) {
            const bool lit = row < lines.size() && x < lines[row].size() && lines[row][x] == '#';
            column = (column << 1U) | (lit ? 1U : 0U);
        }
        columns[x] = static_cast<ColumnWord>(column);
    }
    return columns;
}

} // namespace qovelmor::simboard
