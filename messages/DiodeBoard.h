// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>

namespace qovelmor {

/// The measures of a board picture: dots in square cells of 4 by 4 points, 16 rows of them, 32
/// columns for each module. `cell` is the side of a dot in pixels of the picture; a whole number,
/// so that every dot looks the same at any density of the screen.
struct DiodeGeometry
{
    static constexpr int rows = 16;
    static constexpr int columnsPerModule = 32;
    static constexpr int pointsPerDot = 4;

    int columns = 0;
    int cell = pointsPerDot;

    /// The board of so many modules at (at least) so many pixels for each point. A number of
    /// modules below 0 counts 0; more than a board's 10,000 columns are cut.
    static DiodeGeometry of(int moduleCount, double pixelsPerPoint);

    int widthInPoints() const { return columns * pointsPerDot; }
    QSize pixels() const { return {columns * cell, rows * cell}; }
    double pixelsPerPoint() const { return double(cell) / pointsPerDot; }

    friend bool operator==(const DiodeGeometry &, const DiodeGeometry &) = default;
};

/// The grey of a dot that is off.
QColor diodeBoardGrey();

/// Draws the black lines between the dots over the whole picture, at half strength: along the left
/// and the lower edge of each dot. They are 0.5 points wide, but at least one pixel, so that the
/// dots stay apart on an ordinary screen.
void paintDiodeGrid(QImage &picture, int cell);

/// A board with every dot off; its device pixel ratio makes it 64 points high. Null for no columns.
QImage emptyDiodeBoard(const DiodeGeometry &geometry);

} // namespace qovelmor
