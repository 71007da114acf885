// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

/// Whether a character is turned when the board stands on its side: every character from U+0100 on
/// but brackets, arrows, dashes and a few marks, which read the same way on a turned board.
bool isTurnedKanji(char16_t character);

} // namespace qovelmor
