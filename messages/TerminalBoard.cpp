// SPDX-License-Identifier: MIT
#include "messages/TerminalBoard.h"

#include "messages/DiodeBoard.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace qovelmor {

namespace {

constexpr int columnsPerPlace = 2;
constexpr int rowsPerPlace = 4;
constexpr char16_t emptyBraille = 0x2800;

// A dot is lit from this share of the brightest one on …
constexpr double litShare = 0.4;
// … and from this one where it is the ridge of a thin stroke: the horizontal strokes of a mincho
// face are a third of a dot high.
constexpr double thinShare = 0.12;
// Below this difference (of 255) nothing on the board is lit at all.
constexpr double faintest = 12;

// How strongly each dot differs from one that is off, row by row.
class Dots
{
public:
    Dots(const QImage &picture, const DiodeGeometry &geometry, int perCell)
        : columns_(geometry.columns * perCell)
        , rows_(DiodeGeometry::rows * perCell)
        , strengths_(std::size_t(columns_) * std::size_t(rows_))
    {
        const QImage empty = emptyDiodeBoard(geometry);
        for (int y = 0; y < picture.height(); ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
            const auto *off = reinterpret_cast<const QRgb *>(empty.constScanLine(y));
            const int row = y * rows_ / picture.height();
            for (int x = 0; x < picture.width(); ++x)
                at(x * columns_ / picture.width(), row) += difference(line[x], off[x]);
        }
        const double area = double(geometry.cell) * geometry.cell / (perCell * perCell);
        const double brightest = *std::max_element(strengths_.begin(), strengths_.end());
        lit_ = std::max(brightest * litShare, faintest * area);
        thin_ = std::max(brightest * thinShare, faintest * area);
    }

    bool isLit(int column, int row) const
    {
        if (column >= columns_ || row >= rows_)
            return false;
        const double own = strength(column, row);
        return own >= lit_ ||
               (own >= thin_ &&
                (isRidge(strength(column, row - 1), own, strength(column, row + 1)) ||
                 isRidge(strength(column - 1, row), own, strength(column + 1, row))));
    }
    int columns() const { return columns_; }
    int rows() const { return rows_; }

private:
    static double difference(QRgb a, QRgb b)
    {
        return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                         std::abs(qBlue(a) - qBlue(b))});
    }
    // A stroke may lie across two dots: the stronger one counts. Beside a thick stroke there is a
    // stronger dot or one that is about the same on both sides.
    static bool isRidge(double before, double own, double after)
    {
        return own >= before && own > after && std::min(before, after) < own / 2;
    }
    double strength(int column, int row) const
    {
        const bool inside = column >= 0 && column < columns_ && row >= 0 && row < rows_;
        return inside ? strengths_[index(column, row)] : 0;
    }
    std::size_t index(int column, int row) const
    {
        return std::size_t(row) * std::size_t(columns_) + std::size_t(column);
    }
    double &at(int column, int row) { return strengths_[index(column, row)]; }

    int columns_;
    int rows_;
    std::vector<double> strengths_;
    double lit_ = 0;
    double thin_ = 0;
};

// The fourth row of braille was added to the six-dot alphabet later, so its bits are out of step.
QChar braille(const Dots &dots, int left, int top)
{
    constexpr std::array<std::array<unsigned, rowsPerPlace>, columnsPerPlace> bits{
        {{0x01, 0x02, 0x04, 0x40}, {0x08, 0x10, 0x20, 0x80}}};
    unsigned lit = 0;
    for (std::size_t x = 0; x < bits.size(); ++x) {
        for (std::size_t y = 0; y < bits[x].size(); ++y) {
            if (dots.isLit(left + int(x), top + int(y)))
                lit |= bits[x][y];
        }
    }
    return QChar(char16_t(emptyBraille | lit));
}

} // namespace

QStringList terminalBoard(const QImage &picture, int places)
{
    if (picture.isNull())
        return {};
    const int columns =
        int(std::lround(picture.deviceIndependentSize().width() / DiodeGeometry::pointsPerDot));
    const DiodeGeometry geometry{columns, picture.width() / columns};
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
    const bool fine = columns <= places && geometry.cell >= 2;
    const Dots dots(rgb, geometry, fine ? 2 : 1);

    QStringList lines;
    for (int top = 0; top < dots.rows(); top += rowsPerPlace) {
        QString line;
        const int shown = std::min(dots.columns(), places * columnsPerPlace);
        for (int left = 0; left < shown; left += columnsPerPlace)
            line += braille(dots, left, top);
        lines += line;
    }
    return lines;
}

} // namespace qovelmor
