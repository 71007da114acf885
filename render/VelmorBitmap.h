// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>

namespace qovelmor {

/// A strip of dots as one line of the sign shows it: 16 dots high, at most 10,000 columns wide.
///
/// The origin is the top left dot, x runs to the right and y downward. Points are given in dots and
/// cut toward zero. Cells beyond the width keep whatever was written there last.
///
/// The dots stand in one fixed store of 160,000 bytes on the heap, so that objects may stand on a
/// stack. Copies are made by setBitmap() only; a finished picture is handed over as
/// `std::shared_ptr<const VelmorBitmap>`. No call, however wrong its values are, reads or writes
/// outside the store. Not locked: one thread fills it, then any number may read it.
class VelmorBitmap
{
public:
    static constexpr int maxWidth = 10000;
    static constexpr int maxHeight = 16;
    static constexpr int dotsPerModule = 32;

    /// Width 0, height 16, every cell dark.
    VelmorBitmap();
    /// As above with this width, which is taken as it is, without the clamp of setWidth().
    explicit VelmorBitmap(int width);
    virtual ~VelmorBitmap();
    VelmorBitmap(const VelmorBitmap &) = delete;
    VelmorBitmap &operator=(const VelmorBitmap &) = delete;

    int width() const { return width_; }
    int height() const { return height_; }
    /// A value above 9999 becomes 10000; there is no lower bound.
    void setWidth(int width);
    /// A value above 15 becomes 16; there is no lower bound.
    void setHeight(int height);

    /// 1 for a lit dot. Only x is compared with the size: below the height the stored cell counts.
    std::uint8_t bit(QPointF point) const;
    std::uint8_t bit(int x, int y) const;
    /// Nothing happens outside width and height.
    void setBit(QPointF point);
    void setBit(int x, int y);
    void resetBit(QPointF point);
    void resetBit(int x, int y);
    /// setBit() or resetBit(), for whoever draws many dots.
    void putBit(int x, int y, bool isLit)
    {
        if (width_ > x && height_ > y && isInStore(x, y))
            (*cells_)[cellIndex(x, y)] = isLit ? 1 : 0;
    }

    /// The 16 cells of one column, row 0 first. `x` must be in 0..9999.
    const std::uint8_t *column(int x) const { return cells_->data() + cellIndex(x, 0); }

    /// Takes the size and dots of `bitmap`; with the receiver itself nothing is left.
    void setBitmap(const VelmorBitmap &bitmap);
    /// Adds the columns of `bitmap` on the right; what does not fit into 10,000 columns is dropped.
    void appendBitmap(const VelmorBitmap &bitmap);

    /// A quarter turn counter-clockwise; null unless the bitmap is 16 × 16.
    std::shared_ptr<VelmorBitmap> rotateLeft90() const;

    /// Becomes a blank gap of this width.
    void spaceWidth(int width);
    /// Resizes to the far corner of the rectangle and fills it; what lies left and above is dark.
    void fillRect(const QRectF &rectangle);
    /// Resizes to the far corner and draws the outline. Both side edges run through every row, also
    /// above the rectangle's top.
    void lineRect(const QRectF &rectangle);

    /// Writes `bitmap` (not the receiver) as rows of "o" and "." to the standard output.
    void dispBitmap(const VelmorBitmap &bitmap) const;
    static void dispBitmap(const VelmorBitmap &bitmap, std::ostream &out);

private:
    using Cells = std::array<std::uint8_t, static_cast<std::size_t>(maxWidth) * maxHeight>;

    static std::size_t cellIndex(int x, int y)
    {
        return static_cast<std::size_t>(x) * maxHeight + static_cast<std::size_t>(y);
    }
    static bool isInStore(int x, int y)
    {
        return x >= 0 && x < maxWidth && y >= 0 && y < maxHeight;
    }
    void resizeToCorner(const QRectF &rectangle);

    std::unique_ptr<Cells> cells_;
    int width_ = 0;
    int height_ = maxHeight;
};

} // namespace qovelmor
