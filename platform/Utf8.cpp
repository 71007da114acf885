// SPDX-License-Identifier: MIT
#include "platform/Utf8.h"

#include <cstdint>
#include <limits>

namespace qovelmor {

namespace {

bool isLead(char byte)
{
    return static_cast<signed char>(byte) >= -0x40; // 10xxxxxx continues
}

/// One for each character, two for those beyond the basic plane. Counted in 32 bits, which the
/// compiler counts several bytes at a time.
qsizetype unitsOf(std::string_view utf8)
{
    std::uint32_t units = 0;
    for (const char byte : utf8)
        units += std::uint32_t{isLead(byte)} + (static_cast<unsigned char>(byte) >= 0xF0 ? 1U : 0U);
    return units;
}

bool isOfThree(unsigned char lead)
{
    return (lead & 0xF0) == 0xE0;
}

char32_t rest(unsigned char byte)
{
    return byte & 0x3FU;
}

/// Writes at most unitsOf(utf8) units and gives the end; null where the text is not as promised.
char16_t *decode(std::string_view utf8, char16_t *out)
{
    const auto *in = reinterpret_cast<const unsigned char *>(utf8.data());
    const unsigned char *const end = in + utf8.size();
    while (in < end) {
        // Two loops for what most text is made of, Japanese and ASCII.
        for (; end - in >= 3 && isOfThree(*in); in += 3)
            *out++ = static_cast<char16_t>((*in & 0x0FU) << 12 | rest(in[1]) << 6 | rest(in[2]));
        for (; in < end && *in < 0x80; ++in)
            *out++ = *in;
        if (in == end || (isOfThree(*in) && end - in >= 3))
            continue;
        if (*in >= 0xC0 && *in < 0xE0 && end - in >= 2) {
            *out++ = static_cast<char16_t>((*in & 0x1FU) << 6 | rest(in[1]));
            in += 2;
        } else if (*in >= 0xF0 && end - in >= 4) {
            const char32_t character =
                (*in & 0x07U) << 18 | rest(in[1]) << 12 | rest(in[2]) << 6 | rest(in[3]);
            *out++ = QChar::highSurrogate(character);
            *out++ = QChar::lowSurrogate(character);
            in += 4;
        } else {
            return nullptr;
        }
    }
    return out;
}

} // namespace

QString fromCheckedUtf8(std::string_view utf8)
{
    if (utf8.size() > std::numeric_limits<std::uint32_t>::max() / 2)
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    QString text(unitsOf(utf8), Qt::Uninitialized);
    auto *const begin = reinterpret_cast<char16_t *>(text.data());
    const char16_t *const end = decode(utf8, begin);
    if (!end || end - begin != text.size())
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    return text;
}

} // namespace qovelmor
