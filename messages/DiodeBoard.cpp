// SPDX-License-Identifier: MIT
#include "messages/DiodeBoard.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace qovelmor {

namespace {
constexpr int maxModules = 10000 / DiodeGeometry::columnsPerModule;
constexpr int maxCell = 32;
constexpr double lineWidthInPoints = 0.5;
constexpr double lineStrength = 0.5;
} // namespace

DiodeGeometry DiodeGeometry::of(int moduleCount, double pixelsPerPoint)
{
    DiodeGeometry geometry;
    geometry.columns = std::clamp(moduleCount, 0, maxModules) * columnsPerModule;
    const double side = std::ceil(pointsPerDot * pixelsPerPoint - 1e-6);
    geometry.cell = int(std::clamp(side, 1.0, double(maxCell)));
    return geometry;
}

QColor diodeBoardGrey()
{
    return QColor::fromRgbF(0.2f, 0.2f, 0.2f);
}

void paintDiodeGrid(QImage &picture, int cell)
{
    const double pixelsPerPoint = double(cell) / DiodeGeometry::pointsPerDot;
    const int width = std::max(1, int(std::lround(lineWidthInPoints * pixelsPerPoint)));
    // Where a point is less than a pixel, the lines pale instead of swallowing the dots.
    const double strength = lineStrength * std::min(1.0, pixelsPerPoint);
    const QColor black = QColor::fromRgbF(0, 0, 0, float(strength));
    QPainter painter(&picture);
    for (int x = 0; x < picture.width(); x += cell)
        painter.fillRect(x, 0, width, picture.height(), black);
    for (int y = cell - width; y < picture.height(); y += cell)
        painter.fillRect(0, y, picture.width(), width, black);
}

QImage emptyDiodeBoard(const DiodeGeometry &geometry)
{
    if (geometry.columns == 0)
        return {};
    QImage board(geometry.pixels(), QImage::Format_RGB32);
    board.fill(diodeBoardGrey());
    paintDiodeGrid(board, geometry.cell);
    board.setDevicePixelRatio(geometry.pixelsPerPoint());
    return board;
}

} // namespace qovelmor
