// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace qovelmor {

/// The glyph that stands for what a font or Shift_JIS cannot show: "□".
inline constexpr int replacementCode = 0x81A0;

/// The code under which the dot fonts hold a UTF-16 unit.
///
/// Below U+0100 it is the unit itself, not converted. Otherwise it is the first Shift_JIS byte
/// times 256 plus the second; a character of one byte (half-width katakana) so gives that byte
/// times 256. What has no place in Shift_JIS, a half of a surrogate pair included, gives the code
/// of "□".
std::uint16_t sjisCode(char16_t unit);

} // namespace qovelmor
