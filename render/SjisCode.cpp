// SPDX-License-Identifier: MIT
#include "render/SjisCode.h"

#include "platform/TextEncoding.h"

#include <QString>

#include <array>
#include <atomic>

namespace qovelmor {

namespace {

std::uint16_t converted(char16_t unit)
{
    if (QChar::isSurrogate(unit))
        return replacementCode;
    const std::optional<QByteArray> bytes = encodeShiftJis(QString(QChar(unit)));
    if (!bytes || bytes->isEmpty())
        return replacementCode;
    const int first = static_cast<unsigned char>(bytes->at(0));
    const int second = bytes->size() > 1 ? static_cast<unsigned char>(bytes->at(1)) : 0;
    return static_cast<std::uint16_t>(first << 8 | second);
}

} // namespace

std::uint16_t sjisCode(char16_t unit)
{
    if (unit < 0x100)
        return unit;
    // Asking the converter for every character of a line would cost more than drawing it. Each
    // entry is filled on first use with a value that depends on nothing else, so a race only does
    // it twice.
    static std::array<std::atomic<std::uint16_t>, 0x10000> known{};
    std::atomic<std::uint16_t> &entry = known[unit];
    std::uint16_t code = entry.load(std::memory_order_relaxed);
    if (code == 0) {
        code = converted(unit);
        entry.store(code, std::memory_order_relaxed);
    }
    return code;
}

} // namespace qovelmor
