// SPDX-License-Identifier: MIT
#include "board/ColumnWords.h"

#include "render/VelmorBitmap.h"

#include <algorithm>
#include <cstring>

namespace qovelmor {

QByteArray columnWords(const VelmorBitmap &bitmap, bool swapBytes)
{
    const int width = std::clamp(bitmap.width(), 0, VelmorBitmap::maxWidth);
    const int height = std::clamp(bitmap.height(), 0, VelmorBitmap::maxHeight);
    QByteArray bytes(qsizetype(2) * width, Qt::Uninitialized);
    char *place = bytes.data();
    for (int x = 0; x < width; ++x) {
        const std::uint8_t *cells = bitmap.column(x);
        unsigned word = 0;
        for (int y = 0; y < height; ++y)
            word |= unsigned(cells[y] != 0) << (VelmorBitmap::maxHeight - 1 - y);
        if (swapBytes)
            word = (word << 8U | word >> 8U) & 0xFFFFU;
        const auto stored = static_cast<quint16>(word);
        std::memcpy(place, &stored, sizeof stored);
        place += sizeof stored;
    }
    return bytes;
}

} // namespace qovelmor
