// SPDX-License-Identifier: MIT
#include "tools/fontx_make/FontxWriter.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <span>

namespace {

using namespace qovelmor::fontx;

constexpr const char *usage =
    "usage: fontx_make byte OUT LATIN KATAKANA\n"
    "       fontx_make word OUT KANJI [FURTHER]\n"
    "Writes a FONTX2 dot font of 8x16 (byte) or 16x16 dots (word) from the given fonts.\n"
    "FURTHER gives the vendor characters that JIS X 0208 lacks.\n";

std::optional<SourceFont> openFont(const std::string &path)
{
    auto font = SourceFont::open(path);
    if (!font)
        std::cerr << "fontx_make: " << path << ": no font with glyphs of 16 dots\n";
    return font;
}

/// Written under another name first: an interrupted build must not leave half a font.
bool writeWhole(const std::string &path, const std::string &bytes)
{
    const std::string temporary = path + ".new";
    std::ofstream out(temporary, std::ios::binary);
    out << bytes;
    out.close();
    if (!out || std::rename(temporary.c_str(), path.c_str()) != 0) {
        std::cerr << "fontx_make: cannot write " << path << '\n';
        return false;
    }
    return true;
}

bool makeByteFont(std::span<const std::string> arguments)
{
    const auto latin = openFont(arguments[1]);
    const auto katakana = openFont(arguments[2]);
    if (!latin || !katakana)
        return false;
    return writeWhole(arguments[0], byteFontFile("SHNHN16", collectByteGlyphs(*latin, *katakana)));
}

bool makeWordFont(std::span<const std::string> arguments)
{
    const auto kanji = openFont(arguments[1]);
    if (!kanji)
        return false;
    std::optional<SourceFont> further;
    if (arguments.size() > 2 && !(further = openFont(arguments[2])))
        return false;
    const WordGlyphs glyphs = collectWordGlyphs(*kanji, further ? &*further : nullptr);
    const auto bytes = wordFontFile("SHNMK16", glyphs);
    if (!bytes) {
        std::cerr << "fontx_make: the characters need too many blocks\n";
        return false;
    }
    return writeWhole(arguments[0], *bytes);
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<std::string> all(argv + 1, argv + argc);
    if (all.size() == 4 && all[0] == "byte")
        return makeByteFont(std::span(all).subspan(1)) ? 0 : 1;
    if ((all.size() == 3 || all.size() == 4) && all[0] == "word")
        return makeWordFont(std::span(all).subspan(1)) ? 0 : 1;
    std::cerr << usage;
    return 2;
}
