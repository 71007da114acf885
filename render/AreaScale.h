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

/// The alpha values of a band that is scaled smoothly to `width` × `height` pixels: each pixel is
/// the average of the area that it covers in the source (0..255, rounded). Row after row from the
/// top. What lies outside the image counts 0. `image` is 32 bits deep with alpha.
std::vector<std::uint8_t> areaAverageAlpha(const QImage &image, const ImageBand &band, int width,
                                           int height);

} // namespace qovelmor
