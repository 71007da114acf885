// SPDX-License-Identifier: MIT
#pragma once

#include "tools/fontx_make/SourceFont.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qovelmor::fontx {

/// 256 glyphs of 8 × 16 dots; of each row the upper eight bits count.
using ByteGlyphs = std::array<DotRows, 256>;
/// Glyphs of 16 × 16 dots by their Shift_JIS code.
using WordGlyphs = std::map<std::uint16_t, DotRows>;

/// Single-byte characters: ASCII and the letters of ISO 8859-1 from 0xE0 on out of `latin`,
/// half-width katakana (0xA1..0xDF) out of `katakana`, blank elsewhere.
ByteGlyphs collectByteGlyphs(const SourceFont &latin, const SourceFont &katakana);

/// Every JIS X 0208 character out of `kanji`; the vendor characters of code page 932 (row 13 such
/// as ①, and 髙 and its kin from 0xFA40 on) out of `further`, when there is such a font.
WordGlyphs collectWordGlyphs(const SourceFont &kanji, const SourceFont *further);

/// The bytes of a FONTX2 file; `name` is filled with blanks or cut to eight bytes.
std::string byteFontFile(const std::string &name, const ByteGlyphs &glyphs);
/// Nothing when the codes need more blocks than the 255 that the format can count.
std::optional<std::string> wordFontFile(const std::string &name, const WordGlyphs &glyphs);

} // namespace qovelmor::fontx
