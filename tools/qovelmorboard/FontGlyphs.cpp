// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/FontGlyphs.h"

#include "render/VelmorFontx.h"

namespace qovelmor::simboard {

namespace {

/// Turns rows, each of so many bytes with the leftmost dot in the highest bit, into columns.
void appendGlyph(std::vector<ColumnWord> &columns, const QByteArray &rows, int bytesPerRow)
{
    for (int x = 0; x < 8 * bytesPerRow; ++x) {
        unsigned column = 0;
        for (int y = 0; y < DotPanel::rows; ++y) {
            const auto byte = static_cast<unsigned char>(rows.at(y * bytesPerRow + x / 8));
            column = (column << 1U) | ((static_cast<unsigned>(byte) >> (7 - x % 8)) & 1U);
        }
        columns.push_back(static_cast<ColumnWord>(column));
    }
}

} // namespace

std::vector<ColumnWord> fontColumns(const FontxFile &singleByte, const FontxFile &doubleByte,
                                    std::string_view text)
{
    std::vector<ColumnWord> columns;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int code = static_cast<unsigned char>(text[i]);
        if (isShiftJisLead(text[i]) && i + 1 < text.size()) {
            const int second = static_cast<unsigned char>(text[++i]);
            appendGlyph(columns, doubleByte.wordGlyph(code * 256 + second), 2);
        } else {
            appendGlyph(columns, singleByte.byteGlyph(code), 1);
        }
    }
    return columns;
}

GlyphSource fontGlyphs()
{
    const auto singleByte =
        FontxFile::load(FontxFile::Kind::SingleByte, VelmorFontx::defaultByteFontPath());
    const auto doubleByte =
        FontxFile::load(FontxFile::Kind::DoubleByte, VelmorFontx::defaultWordFontPath());
    if (!singleByte->isLoaded() || !doubleByte->isLoaded())
        return boxGlyphs;
    return [singleByte, doubleByte](std::string_view text) {
        return fontColumns(*singleByte, *doubleByte, text);
    };
}

} // namespace qovelmor::simboard
