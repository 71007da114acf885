// SPDX-License-Identifier: MIT
// Any bytes as a dot font of both kinds, asked for the glyphs at its edges.
#include "FuzzTarget.h"
#include "render/FontxFile.h"

using namespace qovelmor;
using namespace qovelmor::fuzz;

namespace {

void askGlyphs(const FontxFile &font)
{
    const auto end = static_cast<int>(font.data().size() / FontxFile::byteGlyphSize);
    for (const int code : {-1, 0, 1, 127, 255, 256, end - 1, end, end + 1})
        promise(font.byteGlyph(code).size() == FontxFile::byteGlyphSize, "16 bytes for a glyph");
    for (const FontxBlock &block : font.blocks()) {
        for (const int code : {block.startCode - 1, block.startCode, block.startCode + 1,
                               block.endCode - 1, block.endCode, block.endCode + 1})
            promise(font.wordGlyph(code).size() == FontxFile::wordGlyphSize,
                    "32 bytes for a glyph");
    }
    for (const int code : {-1, 0, 0x8140, 0x889f, 0xffff, 0x10000})
        promise(font.wordGlyph(code).size() == FontxFile::wordGlyphSize, "32 bytes for a glyph");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    for (const auto kind : {FontxFile::Kind::SingleByte, FontxFile::Kind::DoubleByte}) {
        QString problem;
        const FontxFile font(kind, bytesOf(data, size), &problem);
        promise(font.isLoaded(), "bytes are a font, however short");
        promise(size > 17 || !problem.isEmpty(), "a file that is too short is said so");
        askGlyphs(font);
    }
    return 0;
}
