// SPDX-License-Identifier: MIT
#include "render/VelmorBitmap.h"

#include <algorithm>
#include <iostream>
#include <limits>

namespace qovelmor {

namespace {

/// Cut toward zero; what no integer can hold becomes the nearest one, and what is no number 0.
int truncated(double value)
{
    if (value != value)
        return 0;
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

} // namespace

VelmorBitmap::VelmorBitmap() : cells_(std::make_unique<Cells>()) {}

VelmorBitmap::VelmorBitmap(int width) : VelmorBitmap()
{
    width_ = width;
}

VelmorBitmap::~VelmorBitmap() = default;

void VelmorBitmap::setWidth(int width)
{
    width_ = std::min(width, maxWidth);
}

void VelmorBitmap::setHeight(int height)
{
    height_ = std::min(height, maxHeight);
}

std::uint8_t VelmorBitmap::bit(QPointF point) const
{
    // Compared before it is cut: -0.5 lies inside, and what is no number lies outside.
    return width_ > point.x() ? bit(truncated(point.x()), truncated(point.y())) : 0;
}

std::uint8_t VelmorBitmap::bit(int x, int y) const
{
    return width_ > x && isInStore(x, y) ? (*cells_)[cellIndex(x, y)] : 0;
}

void VelmorBitmap::setBit(QPointF point)
{
    if (width_ > point.x() && height_ > point.y())
        putBit(truncated(point.x()), truncated(point.y()), true);
}

void VelmorBitmap::setBit(int x, int y)
{
    putBit(x, y, true);
}

void VelmorBitmap::resetBit(QPointF point)
{
    if (width_ > point.x() && height_ > point.y())
        putBit(truncated(point.x()), truncated(point.y()), false);
}

void VelmorBitmap::resetBit(int x, int y)
{
    putBit(x, y, false);
}

void VelmorBitmap::setBitmap(const VelmorBitmap &bitmap)
{
    width_ = 0;
    height_ = 0;
    appendBitmap(bitmap);
}

void VelmorBitmap::appendBitmap(const VelmorBitmap &bitmap)
{
    const std::int64_t start = width_;
    const std::int64_t count = bitmap.width_;
    const int rows = bitmap.height_;
    // Columns of the source that land inside the store; a negative width puts some before it.
    const std::int64_t first = std::max<std::int64_t>(0, -start);
    const std::int64_t end = std::min(count, maxWidth - start);
    for (std::int64_t c = first; c < end; ++c) {
        std::uint8_t *target = cells_->data() + cellIndex(static_cast<int>(start + c), 0);
        for (int r = 0; r < maxHeight; ++r)
            target[r] = r < rows ? bitmap.bit(static_cast<int>(c), r) : std::uint8_t{0};
    }
    constexpr std::int64_t lowest = std::numeric_limits<int>::min();
    width_ = static_cast<int>(std::clamp<std::int64_t>(start + count, lowest, maxWidth));
    height_ = std::min(std::max(height_, rows), maxHeight);
}

std::shared_ptr<VelmorBitmap> VelmorBitmap::rotateLeft90() const
{
    if (width_ != maxHeight || height_ != maxHeight)
        return nullptr;
    auto turned = std::make_shared<VelmorBitmap>(height_);
    turned->setHeight(width_);
    for (int x = 0; x < width_; ++x) {
        for (int y = 0; y < height_; ++y)
            turned->putBit(y, width_ - 1 - x, bit(x, y) != 0);
    }
    return turned;
}

void VelmorBitmap::spaceWidth(int width)
{
    setWidth(width);
    setHeight(maxHeight);
    const auto end = static_cast<std::ptrdiff_t>(std::max(width_, 0)) * maxHeight;
    std::fill(cells_->begin(), cells_->begin() + end, std::uint8_t{0});
}

void VelmorBitmap::resizeToCorner(const QRectF &rectangle)
{
    setWidth(truncated(rectangle.x() + rectangle.width()));
    setHeight(truncated(rectangle.y() + rectangle.height()));
}

void VelmorBitmap::fillRect(const QRectF &rectangle)
{
    resizeToCorner(rectangle);
    for (int x = 0; x < width_; ++x) {
        for (int y = 0; y < height_; ++y)
            putBit(x, y, x >= rectangle.x() && y >= rectangle.y());
    }
}

void VelmorBitmap::lineRect(const QRectF &rectangle)
{
    resizeToCorner(rectangle);
    for (int x = 0; x < width_; ++x) {
        for (int y = 0; y < height_; ++y) {
            const bool isSide = x == rectangle.x() || x == width_ - 1;
            const bool isTopOrBottom = y == rectangle.y() || y == height_ - 1;
            putBit(x, y, isSide || (x >= rectangle.x() && isTopOrBottom));
        }
    }
}

void VelmorBitmap::dispBitmap(const VelmorBitmap &bitmap) const
{
    dispBitmap(bitmap, std::cout);
}

void VelmorBitmap::dispBitmap(const VelmorBitmap &bitmap, std::ostream &out)
{
    const int columns = std::min(bitmap.width(), maxWidth);
    for (int y = 0; y < bitmap.height(); ++y) {
        for (int x = 0; x < columns; ++x)
            out << (bitmap.bit(x, y) ? 'o' : '.');
        out << '\n';
    }
    out.flush();
}

} // namespace qovelmor
