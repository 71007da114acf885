// SPDX-License-Identifier: MIT
#include "messages/LineStrip.h"

#include "messages/DiodeBoard.h"
#include "platform/PlainText.h"
#include "render/FontFace.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <cmath>
#include <cstring>

namespace qovelmor {

namespace {

constexpr int fontHeight = 44;
constexpr int spaceBelowText = 6;
constexpr int boardHeight = DiodeGeometry::rows * DiodeGeometry::pointsPerDot;
constexpr int tileColumns = DiodeGeometry::columnsPerModule;
constexpr int tileWidth = tileColumns * DiodeGeometry::pointsPerDot;

// Long enough for a whole headline, which is then shaped in one piece.
constexpr qsizetype segmentLength = 128;

// How far a glyph may reach over the edges of its own advance.
constexpr double overhang = fontHeight;

// The end of the piece that starts at `from`: where a line could be broken if possible, because
// nothing is joined or kerned across such a place, else between two whole characters.
qsizetype segmentEnd(const QString &text, qsizetype from)
{
    if (text.size() - from <= segmentLength)
        return text.size();
    const auto piece = QStringView(text).mid(from, 2 * segmentLength);
    for (const auto kind : {QTextBoundaryFinder::Line, QTextBoundaryFinder::Grapheme}) {
        QTextBoundaryFinder finder(kind, piece);
        finder.setPosition(segmentLength);
        const qsizetype end = finder.isAtBoundary() ? segmentLength : finder.toPreviousBoundary();
        if (end > 0)
            return from + end;
    }
    return from + segmentLength;
}

} // namespace

QFont screenBoardFont(const QString &name)
{
    QFont font = fontFor(name, fontHeight);
    font.setHintingPreference(QFont::PreferNoHinting); // the same shapes at every density
    return font;
}

LineStrip::LineStrip(const QString &text, const LineStyle &style, int cell)
    : text_(forWindow(text))
    , style_(style)
    , cell_(cell)
    , stretch_(std::exp(double(style.expansion)))
    , baseline_(boardHeight - spaceBelowText - QFontMetricsF(style.font).descent())
{}

LineStrip::~LineStrip() = default;

bool LineStrip::isWiderThan(int points)
{
    layOutTo(points + 1);
    return std::floor(width_) > points;
}

void LineStrip::layOutTo(double points)
{
    while (laidOut_ < text_.size() && width_ < points)
        layOutSegment();
}

void LineStrip::layOutSegment()
{
    const qsizetype end = segmentEnd(text_, laidOut_);
    auto layout = std::make_unique<QTextLayout>(text_.mid(laidOut_, end - laidOut_), style_.font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    option.setUseDesignMetrics(true);
    layout->setTextOption(option);
    layout->beginLayout();
    const QTextLine line = layout->createLine();
    layout->endLayout();

    const double width = line.naturalTextWidth() * stretch_;
    segments_.push_back({width_, width, std::move(layout)});
    width_ += width;
    laidOut_ = end;
}

void LineStrip::copyTo(QImage &board, int column)
{
    const int boardColumns = board.width() / cell_;
    const int first = std::max(0, -column) / tileColumns;
    forgetBefore(first);
    for (int index = first; column + index * tileColumns < boardColumns; ++index) {
        if (!isWiderThan(index * tileWidth))
            break;
        const QImage &picture = tile(index);
        const int left = column + index * tileColumns;
        const int skipped = std::max(0, -left);
        const int copied = std::min(tileColumns, boardColumns - left) - skipped;
        const auto pixel = qsizetype(sizeof(QRgb));
        for (int y = 0; y < board.height(); ++y)
            std::memcpy(board.scanLine(y) + (left + skipped) * cell_ * pixel,
                        picture.constScanLine(y) + skipped * cell_ * pixel,
                        std::size_t(copied * cell_ * pixel));
    }
}

const QImage &LineStrip::tile(int index)
{
    for (const Tile &known : tiles_) {
        if (known.index == index)
            return known.picture;
    }
    tiles_.push_back({index, drawTile(index)});
    return tiles_.back().picture;
}

QImage LineStrip::drawTile(int index)
{
    const double left = double(index) * tileWidth;
    layOutTo(left + tileWidth + overhang);

    QImage picture(tileColumns * cell_, DiodeGeometry::rows * cell_, QImage::Format_RGB32);
    picture.fill(diodeBoardGrey());
    const double scale = double(cell_) / DiodeGeometry::pointsPerDot;
    {
        QPainter painter(&picture);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        painter.setPen(style_.color);
        painter.scale(scale, scale);
        for (const Segment &segment : segments_) {
            if (segment.left > left + tileWidth + overhang ||
                segment.left + segment.width < left - overhang)
                continue;
            painter.save();
            painter.translate(segment.left - left, 0);
            painter.scale(stretch_, 1);
            segment.layout->draw(&painter, {0, baseline_ - segment.layout->lineAt(0).ascent()});
            painter.restore();
        }
    }
    paintDiodeGrid(picture, cell_);
    return picture;
}

void LineStrip::forgetBefore(int tileIndex)
{
    while (!tiles_.empty() && tiles_.front().index < tileIndex)
        tiles_.pop_front();
    const double left = double(tileIndex) * tileWidth - overhang;
    while (!segments_.empty() && segments_.front().left + segments_.front().width < left)
        segments_.pop_front();
}

} // namespace qovelmor
