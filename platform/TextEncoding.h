// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace qovelmor {

/// Shift_JIS as Japanese desktops write it (code page 932), in both directions.
///
/// Characters that Unicode has twice (wave dash and full-width tilde, minus and full-width minus …)
/// are mapped to the one that the code page holds.

/// Nothing when a character has no place in the code page.
std::optional<QByteArray> encodeShiftJis(const QString &text);

/// Like encodeShiftJis, but what cannot be encoded becomes "□", one for each code point: a line is
/// never lost.
QByteArray encodeShiftJisLossy(const QString &text);

/// Bytes that are no Shift_JIS become U+FFFD.
QString decodeShiftJis(const QByteArray &bytes);

} // namespace qovelmor
