// SPDX-License-Identifier: MIT
#include "render/AreaScale.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace qovelmor {

namespace {

/// Sums of a row of values up to each index: the sum over any stretch, fractions included, is the
/// difference of two looks.
class RunningSum
{
public:
    explicit RunningSum(std::size_t count) : sums_(count + 1, 0.0) {}

    void assign(const std::vector<double> &values)
    {
        for (std::size_t i = 0; i + 1 < sums_.size(); ++i)
            sums_[i + 1] = sums_[i] + values[i];
    }

    double upTo(double position) const
    {
        const double inside = std::clamp(position, 0.0, static_cast<double>(sums_.size() - 1));
        const auto whole = static_cast<std::size_t>(inside);
        if (whole + 1 >= sums_.size())
            return sums_.back();
        return sums_[whole] + (inside - std::floor(inside)) * (sums_[whole + 1] - sums_[whole]);
    }

private:
    std::vector<double> sums_;
};

/// A pixel's byte above `shift` bits.
int byteOf(QRgb pixel, int shift)
{
    return static_cast<int>(pixel >> shift & 0xFFU);
}

/// The OR of all pixels.
QRgb bitsInUse(const QImage &image)
{
    QRgb bits = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        bits = std::accumulate(pixels, pixels + image.width(), bits, std::bit_or<>());
    }
    return bits;
}

/// Averages of each column over the source rows from `from` to `to`, fractions included.
void averageRows(const QImage &image, int shift, double from, double to,
                 std::vector<double> &columns)
{
    std::fill(columns.begin(), columns.end(), 0.0);
    const int last = std::min(static_cast<int>(std::ceil(to)), image.height());
    for (int y = std::max(static_cast<int>(from), 0); y < last; ++y) {
        const double weight = (std::min(to, y + 1.0) - std::max(from, static_cast<double>(y)));
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (std::size_t x = 0; x < columns.size(); ++x)
            columns[x] += weight * byteOf(pixels[x], shift);
    }
    for (double &value : columns)
        value /= to - from;
}

/// Adds the bits of one byte's averages to `ink`.
void addAverages(const QImage &image, const ImageBand &band, int shift, QSize size,
                 std::vector<std::uint8_t> &ink)
{
    const int sourceWidth = std::min(static_cast<int>(std::ceil(band.width)), image.width());
    std::vector<double> columns(static_cast<std::size_t>(std::max(sourceWidth, 0)));
    RunningSum sum(columns.size());
    const double stepX = band.width / size.width();
    const double stepY = static_cast<double>(band.rows) / size.height();
    auto pixel = ink.begin();
    for (int y = 0; y < size.height(); ++y) {
        averageRows(image, shift, band.top + y * stepY, band.top + (y + 1) * stepY, columns);
        sum.assign(columns);
        double before = 0.0;
        for (int x = 0; x < size.width(); ++x) {
            const double after = sum.upTo((x + 1) * stepX);
            *pixel++ |= static_cast<std::uint8_t>(std::lround((after - before) / stepX));
            before = after;
        }
    }
}

} // namespace

std::vector<std::uint8_t> areaAverageInk(const QImage &image, const ImageBand &band, int width,
                                         int height)
{
    std::vector<std::uint8_t> ink(static_cast<std::size_t>(width) *
                                  static_cast<std::size_t>(height));
    // Text is drawn in black and has alpha alone, but for the colour glyphs of a few fonts: the
    // averages of the other three bytes are seldom needed.
    const QRgb bits = bitsInUse(image);
    for (const int shift : {0, 8, 16, 24}) {
        if (byteOf(bits, shift) != 0)
            addAverages(image, band, shift, {width, height}, ink);
    }
    return ink;
}

} // namespace qovelmor
