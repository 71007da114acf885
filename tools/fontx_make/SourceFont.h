// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace qovelmor::fontx {

/// A glyph on 16 rows, row 0 at the top; the highest bit of a row is its leftmost dot.
using DotRows = std::array<std::uint16_t, 16>;

/// A font that glyphs of 16 dots are taken from: a bitmap font with that size, or an outline font
/// that is drawn at that size without grey.
class SourceFont
{
public:
    /// Nothing when FreeType cannot read the file or the font has no size of 16 dots.
    static std::optional<SourceFont> open(const std::string &path);

    /// The glyph of a character, in its place on a cell whose baseline is 14 rows below the top;
    /// nothing when the font lacks it. A bitmap font is asked by its own encoding (JIS X 0208 for a
    /// kanji font), an outline font by Unicode.
    std::optional<DotRows> glyph(unsigned long character) const;

    ~SourceFont();
    SourceFont(SourceFont &&) noexcept;
    SourceFont &operator=(SourceFont &&) noexcept;

private:
    struct Face;
    explicit SourceFont(std::unique_ptr<Face> face);

    std::unique_ptr<Face> face_;
};

} // namespace qovelmor::fontx
