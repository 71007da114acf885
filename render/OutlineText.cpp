// SPDX-License-Identifier: MIT
#include "render/OutlineText.h"

#include "platform/SystemLog.h"
#include "render/AreaScale.h"
#include "render/FontFace.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace qovelmor {

namespace {

constexpr int dotRows = VelmorBitmap::maxHeight;
constexpr int maxColumns = VelmorBitmap::maxWidth;
/// Finer sampling than this cannot be seen on 16 dots, and an image must stay small.
constexpr float largestSize = 128.0F;
/// Beyond a factor of 20 either way a line is no text any more.
constexpr float largestExpansion = 3.0F;
/// Text is measured in prefixes of this length and its doubles until the board is full.
constexpr qsizetype firstPrefix = 1024;

float boundedOr(float value, float limit, float ifNoNumber)
{
    return std::isnan(value) ? ifNoNumber : std::clamp(value, -limit, limit);
}

/// A line laid out but not yet drawn. All lengths in pixels.
class TextLine
{
public:
    TextLine(const QString &text, const FontSettings &settings)
        : size_(std::max(boundedOr(settings.size, largestSize, 16.0F), 1.0F))
        , stroke_(boundedOr(settings.bold, 100.0F, 0.0F) / 100.0F * size_)
        , italic_(boundedOr(settings.italic, 10.0F, 0.0F))
        , stretch_(std::exp(boundedOr(settings.expansion, largestExpansion, 0.0F)))
        , font_(fontFor(settings.fontName, static_cast<int>(std::lround(size_))))
    {
        font_.setStyleStrategy(QFont::NoAntialias);
        // Hinting thickens the strokes of kanji at this size until they run together.
        font_.setHintingPreference(QFont::PreferNoHinting);
        const QFontMetricsF metrics(font_);
        ascent_ = std::ceil(metrics.ascent());
        height_ = static_cast<int>(ascent_ + std::ceil(metrics.descent()));
        measure(text, metrics);
    }

    double width() const { return width_; }

    /// Black on nothing: but for colour glyphs all colour bytes are 0 and alpha says how much ink a
    /// pixel has.
    QImage draw() const
    {
        const int columns = static_cast<int>(std::ceil(std::min(width_, widthThatFits())));
        if (columns <= 0 || height_ <= 0)
            return {};
        QImage image(columns, height_, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing, false);
        painter.setTransform(QTransform(stretch_, 0.0, -italic_, 1.0, 0.0, ascent_));
        painter.setFont(font_);
        // Drawn once: without anti-aliasing a second time at the same place changes no pixel.
        if (stroke_ == 0.0F)
            painter.drawText(QPointF(0.0, 0.0), text_);
        else
            drawStroked(painter);
        return image;
    }

private:
    /// No band is higher than the image, so nothing behind this can reach a column that is kept.
    double widthThatFits() const { return (maxColumns + 1.0) * height_ / dotRows + 1.0; }

    void measure(const QString &text, const QFontMetricsF &metrics)
    {
        for (qsizetype length = firstPrefix;; length *= 2) {
            text_ = text.left(length);
            width_ = metrics.horizontalAdvance(text_) * stretch_;
            if (length >= text.size() || width_ > widthThatFits())
                return;
        }
    }

    void drawStroked(QPainter &painter) const
    {
        QPainterPath outline;
        outline.addText(0.0, 0.0, font_, text_);
        painter.setPen(QPen(Qt::black, std::abs(stroke_)));
        painter.setBrush(stroke_ < 0.0F ? QBrush(Qt::black) : QBrush(Qt::NoBrush));
        painter.drawPath(outline);
    }

    float size_;
    float stroke_;
    float italic_;
    float stretch_;
    QFont font_;
    QString text_;
    double ascent_ = 0.0;
    double width_ = 0.0;
    int height_ = 0;
};

bool isInked(const QRgb *pixels, int count, int boarder)
{
    return std::any_of(pixels, pixels + count, [boarder](QRgb pixel) {
        return (qAlpha(pixel) | qRed(pixel) | qGreen(pixel) | qBlue(pixel)) > boarder;
    });
}

/// The band of the rows that have ink in the first `columns` columns of a 32 bits deep image.
HeightRange bandOfInk(const QImage &image, int columns, int boarder)
{
    int first = -1;
    int last = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (!isInked(pixels, columns, boarder))
            continue;
        if (first < 0)
            first = y;
        last = y;
    }
    return {std::max(image.height() - last, 0), last - first};
}

} // namespace

HeightRange inkedHeightRange(const QImage &image, int boarder)
{
    constexpr int pixelBits = 32;
    if (image.depth() == pixelBits)
        return bandOfInk(image, image.width(), boarder);
    const QImage converted = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    return bandOfInk(converted, converted.width(), boarder);
}

std::shared_ptr<const VelmorBitmap> dotsOfImage(const QImage &image, double width, int boarder)
{
    // The last column counts for the band only if the line covers all of it.
    const int wholeColumns = static_cast<int>(std::min<double>(width, image.width()));
    const HeightRange range = bandOfInk(image, wholeColumns, boarder);
    ImageBand band{width, image.height() - range.location - range.length, range.length};
    // A line of dashes alone inks one row, which the band rule leaves out. A band of no rows would
    // have no finite width: that row is the band, and the dots are 16 times as wide as the line.
    band.rows = std::max(band.rows, 1);

    double columns = std::trunc(dotRows * width / band.rows);
    if (columns > maxColumns) {
        systemLog(logRender(), u"Width of bitimage is over limit."_s);
        band.width = maxColumns / columns * width;
        columns = maxColumns;
    }
    auto bitmap = std::make_shared<VelmorBitmap>(static_cast<int>(columns));
    const auto ink = areaAverageInk(image, band, bitmap->width(), dotRows);
    auto value = ink.begin();
    for (int y = 0; y < dotRows; ++y) {
        for (int x = 0; x < bitmap->width(); ++x)
            bitmap->putBit(x, y, *value++ > boarder);
    }
    return bitmap;
}

std::shared_ptr<const VelmorBitmap> renderOutlineText(const QString &text,
                                                      const FontSettings &settings)
{
    const TextLine line(text, settings);
    return dotsOfImage(line.draw(), line.width(), settings.boarder);
}

} // namespace qovelmor
