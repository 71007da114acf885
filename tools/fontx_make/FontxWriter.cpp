// SPDX-License-Identifier: MIT
#include "tools/fontx_make/FontxWriter.h"

#include "tools/fontx_make/ShiftJisRows.h"

namespace qovelmor::fontx {

namespace {

constexpr int firstJisByte = 0x21;
constexpr int lastJisByte = 0x7E;
constexpr std::size_t maxBlocks = 255;

struct CodeRange
{
    int first;
    int last;
};
/// Where code page 932 keeps what JIS X 0208 lacks. The second and the third hold mostly the same
/// characters, and encoders differ in which of the two they write.
constexpr std::array vendorRanges = {CodeRange{0x8740, 0x879C}, CodeRange{0xED40, 0xEEFC},
                                     CodeRange{0xFA40, 0xFC4B}};

void takeGlyphs(const SourceFont &font, CodeRange range, ByteGlyphs &glyphs)
{
    for (int code = range.first; code <= range.last; ++code) {
        if (const auto rows = font.glyph(static_cast<unsigned long>(code)))
            glyphs[static_cast<std::size_t>(code)] = *rows;
    }
}

std::string header(const std::string &name, int width, int codeType)
{
    std::string bytes = "FONTX2" + name;
    bytes.resize(14, ' ');
    bytes += static_cast<char>(width);
    bytes += static_cast<char>(16);
    bytes += static_cast<char>(codeType);
    return bytes;
}

void appendLowByteFirst(std::string &bytes, int value)
{
    bytes += static_cast<char>(value & 0xFF);
    bytes += static_cast<char>(value >> 8);
}

/// Stretches of codes without a hole: a hole inside a block would be drawn as a blank, a code
/// outside every block is drawn as the replacement glyph.
std::vector<CodeRange> codeBlocks(const WordGlyphs &glyphs)
{
    std::vector<CodeRange> blocks;
    for (const auto &[code, rows] : glyphs) {
        if (!blocks.empty() && blocks.back().last + 1 == code)
            blocks.back().last = code;
        else
            blocks.push_back({code, code});
    }
    return blocks;
}

} // namespace

ByteGlyphs collectByteGlyphs(const SourceFont &latin, const SourceFont &katakana)
{
    ByteGlyphs glyphs{};
    takeGlyphs(latin, {0x20, 0x7E}, glyphs);
    takeGlyphs(katakana, {0xA1, 0xDF}, glyphs);
    takeGlyphs(latin, {0xE0, 0xFF}, glyphs);
    return glyphs;
}

WordGlyphs collectWordGlyphs(const SourceFont &kanji, const SourceFont *further)
{
    WordGlyphs glyphs;
    for (int high = firstJisByte; high <= lastJisByte; ++high) {
        for (int low = firstJisByte; low <= lastJisByte; ++low) {
            const auto jis = static_cast<std::uint16_t>(high << 8 | low);
            if (const auto rows = kanji.glyph(jis))
                glyphs.emplace(shiftJisOfJis(jis), *rows);
        }
    }
    if (!further)
        return glyphs;
    for (const CodeRange range : vendorRanges) {
        for (int code = range.first; code <= range.last; ++code) {
            const auto character = unicodeOfShiftJis(static_cast<std::uint16_t>(code));
            const auto rows = character ? further->glyph(*character) : std::nullopt;
            if (rows)
                glyphs.emplace(static_cast<std::uint16_t>(code), *rows);
        }
    }
    return glyphs;
}

std::string byteFontFile(const std::string &name, const ByteGlyphs &glyphs)
{
    std::string bytes = header(name, 8, 0);
    for (const DotRows &glyph : glyphs) {
        for (const std::uint16_t row : glyph)
            bytes += static_cast<char>(row >> 8);
    }
    return bytes;
}

std::optional<std::string> wordFontFile(const std::string &name, const WordGlyphs &glyphs)
{
    const std::vector<CodeRange> blocks = codeBlocks(glyphs);
    if (blocks.size() > maxBlocks)
        return std::nullopt;
    std::string bytes = header(name, 16, 1);
    bytes += static_cast<char>(blocks.size());
    for (const CodeRange block : blocks) {
        appendLowByteFirst(bytes, block.first);
        appendLowByteFirst(bytes, block.last);
    }
    for (const auto &[code, glyph] : glyphs) {
        for (const std::uint16_t row : glyph) {
            bytes += static_cast<char>(row >> 8);
            bytes += static_cast<char>(row & 0xFF);
        }
    }
    return bytes;
}

} // namespace qovelmor::fontx
