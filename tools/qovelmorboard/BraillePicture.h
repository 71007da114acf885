// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/ColumnBuffer.h"

#include <span>
#include <string>
#include <vector>

namespace qovelmor::simboard {

/// The dots as four lines of braille characters in UTF-8, two columns by four rows each: 128
/// columns fit into 64 places of a terminal. An odd last column stands alone in its character.
std::vector<std::string> brailleLines(std::span<const ColumnWord> columns);

/// The dots as 16 lines of '#' and '.', for tests and people who read them.
std::vector<std::string> dotLines(std::span<const ColumnWord> columns);

/// The columns of a picture written by dotLines().
std::vector<ColumnWord> columnsOfDotLines(std::span<const std::string> lines);

} // namespace qovelmor::simboard
