// SPDX-License-Identifier: MIT
#include "tools/fontx_make/ShiftJisRows.h"

#include <iconv.h>

namespace qovelmor::fontx {

std::uint16_t shiftJisOfJis(std::uint16_t jis)
{
    const int row = (jis >> 8) - 0x21;
    const int cell = (jis & 0xFF) - 0x21;
    // Two rows share a lead byte; 0xA0..0xDF belong to half-width katakana and 0x7F to nothing.
    const int lead = row / 2 + (row / 2 < 0x1F ? 0x81 : 0xC1);
    const int trail = row % 2 == 0 ? cell + (cell < 0x3F ? 0x40 : 0x41) : cell + 0x9F;
    return static_cast<std::uint16_t>(lead << 8 | trail);
}

std::optional<char32_t> unicodeOfShiftJis(std::uint16_t code)
{
    const iconv_t converter = iconv_open("UCS-4LE", "CP932");
    if (converter == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    char bytes[2] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
    char *in = bytes;
    std::size_t inLeft = sizeof bytes;
    std::uint32_t character = 0;
    char *out = reinterpret_cast<char *>(&character);
    std::size_t outLeft = sizeof character;
    const std::size_t failed = iconv(converter, &in, &inLeft, &out, &outLeft);
    iconv_close(converter);
    if (failed == static_cast<std::size_t>(-1) || outLeft != 0)
        return std::nullopt;
    return static_cast<char32_t>(character);
}

} // namespace qovelmor::fontx
