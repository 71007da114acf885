// SPDX-License-Identifier: MIT
#pragma once

#include "render/FontxFile.h"
#include "tools/qovelmorboard/BoardState.h"

#include <memory>

namespace qovelmor::simboard {

/// Shift_JIS text as columns in these two fonts: 8 columns for each single-byte character, 16 for
/// each double-byte one.
std::vector<ColumnWord> fontColumns(const FontxFile &singleByte, const FontxFile &doubleByte,
                                    std::string_view text);

/// The dot fonts that come with the program, as the board's own; boxes when they are not there.
GlyphSource fontGlyphs();

} // namespace qovelmor::simboard
