// SPDX-License-Identifier: MIT
#include "platform/JapaneseBytes.h"

#include <array>

namespace qovelmor {

namespace {

constexpr int firstCell = 0x21;
constexpr int lastCell = 0x7e;
constexpr int lastKatakana = 0x5f;
constexpr int highBit = 0x80;
constexpr int katakanaShift = 0x8e; // EUC: one half-width katakana follows
constexpr int escape = 0x1b;

bool isCell(int byte)
{
    return byte >= firstCell && byte <= lastCell;
}

int byteAt(const QByteArray &bytes, qsizetype index)
{
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : -1;
}

/// Appends the character of a JIS X 0208 row and cell (0x21 to 0x7E each): two rows share one lead
/// byte, the odd one takes the trail bytes from 0x40 (without 0x7F), the even one from 0x9F.
void appendJis(QByteArray &out, int row, int cell)
{
    int lead = (row - firstCell) / 2 + 0x81;
    if (lead > 0x9f)
        lead += 0x40;
    int trail = cell + 0x7e;
    if (row % 2 == 1) {
        trail = cell + 0x1f;
        if (trail >= 0x7f)
            ++trail;
    }
    out.append(static_cast<char>(lead));
    out.append(static_cast<char>(trail));
}

enum class CharacterSet { Ascii, Katakana, Kanji };

struct EscapeSequence
{
    const char *bytes; // after ESC
    CharacterSet set;
};

constexpr std::array escapeSequences{
    EscapeSequence{"(B", CharacterSet::Ascii},    EscapeSequence{"(J", CharacterSet::Ascii},
    EscapeSequence{"(I", CharacterSet::Katakana}, EscapeSequence{"$@", CharacterSet::Kanji},
    EscapeSequence{"$B", CharacterSet::Kanji},
};

std::optional<CharacterSet> escapedSet(const QByteArray &bytes, qsizetype at)
{
    for (const EscapeSequence &sequence : escapeSequences) {
        if (byteAt(bytes, at) == sequence.bytes[0] && byteAt(bytes, at + 1) == sequence.bytes[1])
            return sequence.set;
    }
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> eucJpToCp932(const QByteArray &bytes)
{
    QByteArray out;
    out.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const int first = byteAt(bytes, i);
        if (first < highBit) {
            out.append(static_cast<char>(first));
            continue;
        }
        const int second = byteAt(bytes, ++i);
        if (second < highBit || !isCell(second - highBit))
            return std::nullopt;
        if (first == katakanaShift && second - highBit <= lastKatakana)
            out.append(static_cast<char>(second));
        else if (isCell(first - highBit))
            appendJis(out, first - highBit, second - highBit);
        else
            return std::nullopt;
    }
    return out;
}

std::optional<QByteArray> iso2022JpToCp932(const QByteArray &bytes)
{
    QByteArray out;
    out.reserve(bytes.size());
    CharacterSet set = CharacterSet::Ascii;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const int byte = byteAt(bytes, i);
        if (byte == escape) {
            const auto chosen = escapedSet(bytes, i + 1);
            if (!chosen)
                return std::nullopt;
            set = *chosen;
            i += 2;
        } else if (byte >= highBit) {
            return std::nullopt;
        } else if (set == CharacterSet::Ascii || !isCell(byte)) {
            out.append(static_cast<char>(byte)); // line ends stand in any set
        } else if (set == CharacterSet::Katakana) {
            if (byte > lastKatakana)
                return std::nullopt;
            out.append(static_cast<char>(byte + highBit));
        } else {
            const int cell = byteAt(bytes, ++i);
            if (!isCell(cell))
                return std::nullopt;
            appendJis(out, byte, cell);
        }
    }
    return out;
}

} // namespace qovelmor
