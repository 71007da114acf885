// SPDX-License-Identifier: MIT
#pragma once

#include "render/FontSettings.h"
#include "render/VelmorBitmap.h"

#include <QImage>
#include <QString>

#include <memory>

namespace qovelmor {

/// A vertical stretch of an image, counted upward from its lower edge.
struct HeightRange
{
    int location = 0;
    int length = 0;
    friend bool operator==(const HeightRange &, const HeightRange &) = default;
};

/// The band of inked rows: a pixel is ink when the bitwise OR of its four bytes is greater than
/// `boarder`. The lowest inked row is left out, so a single inked row has length 0. Without ink the
/// band lies above the image and has length 1. An image that is not 32 bits deep is converted, and
/// is all ink when it knows no transparency.
HeightRange inkedHeightRange(const QImage &image, int boarder);

/// The inked band of a drawn line, `width` pixels long, brought to 16 rows, the width in
/// proportion. At most 10,000 columns, the rest is cut off on the right ("Width of bitimage is over
/// limit." in the log). `image` is 32 bits deep and may end before the line does.
std::shared_ptr<const VelmorBitmap> dotsOfImage(const QImage &image, double width, int boarder);

/// Draws a line with an outline font and gives its dots (see dotsOfImage()).
///
/// What would come to lie behind 10,000 columns is not drawn, so its ink does not count for the
/// band. Callable from any thread; needs a QGuiApplication.
std::shared_ptr<const VelmorBitmap> renderOutlineText(const QString &text,
                                                      const FontSettings &settings);

} // namespace qovelmor
