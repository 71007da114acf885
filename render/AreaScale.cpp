// SPDX-License-Identifier: MIT
#include "render/AreaScale.h"

#include <algorithm>
#include <cmath>

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

/// Averages of each column over the source rows from `from` to `to`, fractions included.
void averageRows(const QImage &image, double from, double to, std::vector<double> &columns)
{
    std::fill(columns.begin(), columns.end(), 0.0);
    const int last = std::min(static_cast<int>(std::ceil(to)), image.height());
    for (int y = std::max(static_cast<int>(from), 0); y < last; ++y) {
        const double weight = (std::min(to, y + 1.0) - std::max(from, static_cast<double>(y)));
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (std::size_t x = 0; x < columns.size(); ++x)
            columns[x] += weight * qAlpha(pixels[x]);
    }
    for (double &value : columns)
        value /= to - from;
}

} // namespace

std::vector<std::uint8_t> areaAverageAlpha(const QImage &image, const ImageBand &band, int width,
                                           int height)
{
    std::vector<std::uint8_t> result(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height));
    const int sourceWidth = std::min(static_cast<int>(std::ceil(band.width)), image.width());
    std::vector<double> columns(static_cast<std::size_t>(std::max(sourceWidth, 0)));
    RunningSum sum(columns.size());
    const double stepX = band.width / width;
    const double stepY = static_cast<double>(band.rows) / height;
    auto pixel = result.begin();
    for (int y = 0; y < height; ++y) {
        averageRows(image, band.top + y * stepY, band.top + (y + 1) * stepY, columns);
        sum.assign(columns);
        double before = 0.0;
        for (int x = 0; x < width; ++x) {
            const double after = sum.upTo((x + 1) * stepX);
            *pixel++ = static_cast<std::uint8_t>(std::lround((after - before) / stepX));
            before = after;
        }
    }
    return result;
}

} // namespace qovelmor
