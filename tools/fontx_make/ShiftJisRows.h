// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace qovelmor::fontx {

/// The Shift_JIS code of a JIS X 0208 cell, whose two bytes are in 0x21..0x7E each.
std::uint16_t shiftJisOfJis(std::uint16_t jis);

/// The Unicode character of a double-byte code of code page 932; nothing when it has none.
std::optional<char32_t> unicodeOfShiftJis(std::uint16_t code);

} // namespace qovelmor::fontx
