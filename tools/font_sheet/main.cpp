// SPDX-License-Identifier: MIT
#include "render/VelmorFont.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace qovelmor;

constexpr int dotSize = 4;
constexpr int margin = 12;
constexpr int captionHeight = 18;

struct Sample
{
    QString caption;
    std::shared_ptr<const VelmorBitmap> line;
};

Sample bitmapFontSample(const QString &text)
{
    VelmorFont font;
    return {u"dot fonts"_s, font.bitmapWithString(text)};
}

Sample outlineSample(const QString &text, const QString &fontName, int boarder)
{
    VelmorFont font(fontName, 0.0F, 0.0F, 0.0F, false);
    font.setBoarder(boarder);
    return {u"%1, threshold %2"_s.arg(fontName).arg(boarder), font.bitmapWithString(text)};
}

void drawSample(QPainter &painter, const Sample &sample, int top)
{
    painter.setPen(Qt::lightGray);
    painter.drawText(margin, top + captionHeight - 6, sample.caption);
    for (int x = 0; x < sample.line->width(); ++x) {
        for (int y = 0; y < VelmorBitmap::maxHeight; ++y) {
            const QColor color = sample.line->bit(x, y) ? QColor(255, 140, 0) : QColor(36, 32, 30);
            painter.setBrush(color);
            painter.setPen(Qt::NoPen);
            painter.drawEllipse(margin + x * dotSize, top + captionHeight + y * dotSize,
                                dotSize - 1, dotSize - 1);
        }
    }
}

QImage drawSheet(const std::vector<Sample> &samples)
{
    constexpr int sampleHeight = captionHeight + VelmorBitmap::maxHeight * dotSize + margin;
    int columns = 0;
    for (const Sample &sample : samples)
        columns = std::max(columns, sample.line->width());
    QImage sheet(columns * dotSize + 2 * margin,
                 static_cast<int>(samples.size()) * sampleHeight + margin, QImage::Format_RGB32);
    sheet.fill(Qt::black);
    QPainter painter(&sheet);
    QFont captionFont;
    captionFont.setPixelSize(13);
    painter.setFont(captionFont);
    int top = margin / 2;
    for (const Sample &sample : samples) {
        drawSample(painter, sample, top);
        top += sampleHeight;
    }
    return sheet;
}

} // namespace

/// Draws one line as the board would show it, with several fonts and thresholds, into one picture.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    const QCommandLineOption text(u"text"_s, u"the line to draw"_s, u"text"_s,
                                  u"株価が急騰、緊急地震速報 12:34"_s);
    const QCommandLineOption thresholds(u"thresholds"_s, u"separated by commas"_s, u"list"_s,
                                        u"24,72,144"_s);
    options.addOptions({text, thresholds});
    options.addPositionalArgument(u"picture"_s, u"the PNG file to write"_s);
    options.addPositionalArgument(u"fonts"_s, u"names of outline fonts"_s, u"[fonts...]"_s);
    options.process(application);
    const QStringList arguments = options.positionalArguments();
    if (arguments.isEmpty())
        options.showHelp(2);

    const QString line = options.value(text);
    const QStringList levels = options.value(thresholds).split(u',');
    std::vector<Sample> samples{bitmapFontSample(line)};
    for (const QString &font : arguments.mid(1)) {
        for (const QString &level : levels)
            samples.push_back(outlineSample(line, font, level.toInt()));
    }
    if (drawSheet(samples).save(arguments.first(), "PNG"))
        return 0;
    std::fprintf(stderr, "font_sheet: cannot write %s\n", qPrintable(arguments.first()));
    return 1;
}
