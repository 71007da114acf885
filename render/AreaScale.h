// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <cstdint>
#include <vector>

namespace qovelmor {

/// A part of an image: columns 0 to `width` (a fraction of the last one counts in part) of `rows`
/// rows from `top` on.
struct ImageBand
{
    double width = 0.0;
    int top = 0;
    int rows = 0;
};

/// The ink of a band that is scaled smoothly to `width` × `height` pixels: the bitwise OR of each
/// pixel's four bytes, and each of them is the average of the area that the pixel covers in the
/// source (0..255, rounded). Row after row from the top. What lies outside the image counts 0.
/// `image` is 32 bits deep; colours of a transparent image are premultiplied.
std::vector<std::uint8_t> areaAverageInk(const QImage &image, const ImageBand &band, int width,
                                         int height);

} // namespace qovelmor
