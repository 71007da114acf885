// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace qovelmor {

class VelmorBitmap;

/// One 16-bit word for each column from left to right, row 0 as the most significant bit, rows
/// beyond the height dark. `swapBytes` swaps the bytes of each word of this machine, so that on a
/// little-endian one the high byte comes first, as the board wants it.
QByteArray columnWords(const VelmorBitmap &bitmap, bool swapBytes);

} // namespace qovelmor
