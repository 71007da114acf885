// SPDX-License-Identifier: MIT
#include "tools/fontx_make/SourceFont.h"

#include <ft2build.h>
#include FT_FREETYPE_H

namespace qovelmor::fontx {

namespace {

constexpr int cellSize = 16;
constexpr int baselineRow = 14;

bool selectCellSize(FT_Face face)
{
    if (FT_IS_SCALABLE(face))
        return FT_Set_Pixel_Sizes(face, 0, cellSize) == 0;
    for (int i = 0; i < face->num_fixed_sizes; ++i) {
        if (face->available_sizes[i].height == cellSize)
            return FT_Select_Size(face, i) == 0;
    }
    return false;
}

bool isDotSet(const FT_Bitmap &bitmap, int x, int y)
{
    const unsigned char byte = bitmap.buffer[y * bitmap.pitch + x / 8];
    return byte >> (7 - x % 8) & 1;
}

} // namespace

struct SourceFont::Face
{
    FT_Library library = nullptr;
    FT_Face face = nullptr;

    ~Face()
    {
        if (face)
            FT_Done_Face(face);
        if (library)
            FT_Done_FreeType(library);
    }
};

SourceFont::SourceFont(std::unique_ptr<Face> face) : face_(std::move(face)) {}

SourceFont::~SourceFont() = default;
SourceFont::SourceFont(SourceFont &&) noexcept = default;
SourceFont &SourceFont::operator=(SourceFont &&) noexcept = default;

std::optional<SourceFont> SourceFont::open(const std::string &path)
{
    auto opened = std::make_unique<Face>();
    if (FT_Init_FreeType(&opened->library) != 0 ||
        FT_New_Face(opened->library, path.c_str(), 0, &opened->face) != 0)
        return std::nullopt;
    FT_Face face = opened->face;
    if (!selectCellSize(face) || face->num_charmaps == 0)
        return std::nullopt;
    // FreeType chooses a Unicode map by itself. It knows none for the kanji and katakana fonts,
    // which are then asked by the one map they have.
    if (!face->charmap && FT_Set_Charmap(face, face->charmaps[0]) != 0)
        return std::nullopt;
    return SourceFont(std::move(opened));
}

std::optional<DotRows> SourceFont::glyph(unsigned long character) const
{
    FT_Face face = face_->face;
    const FT_UInt index = FT_Get_Char_Index(face, character);
    constexpr FT_Int32 flags = FT_LOAD_RENDER | FT_LOAD_MONOCHROME | FT_LOAD_TARGET_MONO;
    if (index == 0 || FT_Load_Glyph(face, index, flags) != 0)
        return std::nullopt;
    const FT_GlyphSlot slot = face->glyph;
    const FT_Bitmap &bitmap = slot->bitmap;
    DotRows rows{};
    for (int y = 0; y < static_cast<int>(bitmap.rows); ++y) {
        for (int x = 0; x < static_cast<int>(bitmap.width); ++x) {
            const int row = baselineRow - slot->bitmap_top + y;
            const int column = slot->bitmap_left + x;
            const bool isInCell = row >= 0 && row < cellSize && column >= 0 && column < cellSize;
            if (isInCell && isDotSet(bitmap, x, y))
                rows[static_cast<std::size_t>(row)] |= static_cast<std::uint16_t>(0x8000 >> column);
        }
    }
    return rows;
}

} // namespace qovelmor::fontx
