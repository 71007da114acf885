// SPDX-License-Identifier: MIT
#pragma once

#include "render/VelmorBitmap.h"

#include <QStringList>

namespace qovelmor {

/// The rows of a bitmap, "#" for a lit dot and "." for a dark one, so that a failing comparison
/// shows both pictures.
inline QStringList asText(const VelmorBitmap &bitmap)
{
    QStringList rows;
    for (int y = 0; y < bitmap.height(); ++y) {
        QString row;
        for (int x = 0; x < bitmap.width(); ++x)
            row += bitmap.bit(x, y) ? QLatin1Char('#') : QLatin1Char('.');
        rows << row;
    }
    return rows;
}

/// Lights the "#" of a picture whose rows are given from the top; resizes to the picture.
inline void drawText(VelmorBitmap &bitmap, const QStringList &rows)
{
    bitmap.setWidth(rows.isEmpty() ? 0 : static_cast<int>(rows.first().size()));
    bitmap.setHeight(static_cast<int>(rows.size()));
    for (int y = 0; y < bitmap.height(); ++y) {
        for (int x = 0; x < bitmap.width(); ++x) {
            if (rows[y][x] == QLatin1Char('#'))
                bitmap.setBit(x, y);
            else
                bitmap.resetBit(x, y);
        }
    }
}

} // namespace qovelmor
