// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>

#include <deque>
#include <memory>

class QTextLayout;

namespace qovelmor {

/// How a line on the on-screen board looks; taken once, when the line starts.
struct LineStyle
{
    QFont font;
    QColor color;
    float expansion = 0; ///< the text is e to this power times as wide
};

/// The face of on-screen lines, 44 points high; fontFamilyFor() says what stands for a name that
/// the system does not know (for the default name a mincho face).
QFont screenBoardFont(const QString &name);

/// One line of text as a band of dots, of whatever length. Only what a board shows at a time is
/// laid out and drawn, in tiles of one module; a tile that has left the board is forgotten. So the
/// band must be looked at from its beginning to its end, and costs the same for a headline and for
/// a book.
class LineStrip
{
public:
    /// `cell` is the side of a dot in pixels. Control characters and line separators are drawn as
    /// blanks: a sign has one line.
    LineStrip(const QString &text, const LineStyle &style, int cell);
    ~LineStrip();
    LineStrip(const LineStrip &) = delete;
    LineStrip &operator=(const LineStrip &) = delete;

    /// Whether the width, as a whole number of points, is greater than `points`.
    bool isWiderThan(int points);

    /// Copies onto `board` what it shows while the band's first column of dots stands at its column
    /// `column`. Later calls may only move the band to the left.
    void copyTo(QImage &board, int column);

private:
    struct Segment
    {
        double left; ///< in points from the band's beginning
        double width;
        std::unique_ptr<QTextLayout> layout;
    };
    struct Tile
    {
        int index; ///< counted in tiles from the band's beginning
        QImage picture;
    };

    void layOutTo(double points);
    void layOutSegment();
    const QImage &tile(int index);
    QImage drawTile(int index);
    void forgetBefore(int tileIndex);

    const QString text_;
    const LineStyle style_;
    const int cell_;
    const double stretch_;
    const double baseline_; ///< in points from the upper edge
    qsizetype laidOut_ = 0; ///< characters that have been laid out
    double width_ = 0;      ///< points that have been laid out
    std::deque<Segment> segments_;
    std::deque<Tile> tiles_;
};

} // namespace qovelmor
