// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace qovelmor {

// Two encodings of JIS X 0208 rewritten as code page 932, which also has the rows that NEC and IBM
// added and which neither of the system's converters for the two encodings knows in full.

/// Nothing for bytes that are no EUC-JP or that have no place in the code page (the three-byte
/// characters of JIS X 0212).
std::optional<QByteArray> eucJpToCp932(const QByteArray &bytes);

/// ISO-2022-JP with the escape sequences of ASCII, JIS X 0201 (Roman and Katakana) and JIS X 0208.
/// The Roman set is taken as ASCII: "~" and "\" stay themselves.
std::optional<QByteArray> iso2022JpToCp932(const QByteArray &bytes);

} // namespace qovelmor
