// SPDX-License-Identifier: MIT
#include "render/AreaScale.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <random>

using namespace qovelmor;

namespace {

QImage blankImage(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void setInk(QImage &image, int x, int y)
{
    image.setPixel(x, y, 0xFF000000U);
}

/// The overlap of two stretches of a line.
double overlap(double from, double to, double pixel)
{
    return std::max(0.0, std::min(to, pixel + 1.0) - std::max(from, pixel));
}

/// The average taken the plain way: every source pixel weighted by the area that it shares.
double plainAverage(const QImage &image, double left, double right, double top, double bottom)
{
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += overlap(left, right, x) * overlap(top, bottom, y) * qAlpha(image.pixel(x, y));
    }
    return sum / ((right - left) * (bottom - top));
}

} // namespace

class AreaScaleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameSize_changesNothing();
    void halfSize_averagesFourPixels();
    void doubleSize_repeatsPixels();
    void bandOutsideTheImage_isEmpty();
    void noColumns_giveNothing();
    void randomImages_agreeWithPlainAverages();
};

void AreaScaleTest::sameSize_changesNothing()
{
    QImage image = blankImage(3, 2);
    setInk(image, 1, 0);
    setInk(image, 2, 1);
    const std::vector<std::uint8_t> expected = {0, 255, 0, 0, 0, 255};
    QCOMPARE(areaAverageAlpha(image, {3.0, 0, 2}, 3, 2), expected);
}

void AreaScaleTest::halfSize_averagesFourPixels()
{
    QImage image = blankImage(4, 2);
    setInk(image, 0, 0);
    setInk(image, 2, 0);
    setInk(image, 3, 0);
    setInk(image, 3, 1);
    const std::vector<std::uint8_t> expected = {64, 191};
    QCOMPARE(areaAverageAlpha(image, {4.0, 0, 2}, 2, 1), expected);
}

void AreaScaleTest::doubleSize_repeatsPixels()
{
    QImage image = blankImage(2, 1);
    setInk(image, 0, 0);
    const std::vector<std::uint8_t> expected = {255, 255, 0, 0, 255, 255, 0, 0};
    QCOMPARE(areaAverageAlpha(image, {2.0, 0, 1}, 4, 2), expected);
}

void AreaScaleTest::bandOutsideTheImage_isEmpty()
{
    QImage image = blankImage(2, 2);
    image.fill(Qt::black);
    const std::vector<std::uint8_t> blank = {0, 0};
    QCOMPARE(areaAverageAlpha(image, {2.0, -1, 1}, 2, 1), blank);
    QCOMPARE(areaAverageAlpha(image, {2.0, 2, 1}, 2, 1), blank);
    // Half of the columns lie to the right of the image.
    const std::vector<std::uint8_t> half = {255, 0};
    QCOMPARE(areaAverageAlpha(image, {4.0, 0, 2}, 2, 1), half);
}

void AreaScaleTest::noColumns_giveNothing()
{
    QVERIFY(areaAverageAlpha(QImage(), {0.0, -1, 1}, 0, 16).empty());
    const std::vector<std::uint8_t> blank(48, 0);
    QCOMPARE(areaAverageAlpha(QImage(), {3.0, -1, 1}, 3, 16), blank);
}

void AreaScaleTest::randomImages_agreeWithPlainAverages()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo() << "seed" << seed;
    std::mt19937 random(seed);
    for (int round = 0; round < 50; ++round) {
        QImage image =
            blankImage(1 + static_cast<int>(random() % 30), 1 + static_cast<int>(random() % 30));
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (random() % 2)
                    setInk(image, x, y);
            }
        }
        const int top = static_cast<int>(random() % static_cast<unsigned>(image.height()));
        const ImageBand band{image.width() - 0.25 * static_cast<double>(random() % 4), top,
                             image.height() - top};
        const int width = 1 + static_cast<int>(random() % 40);
        const auto scaled = areaAverageAlpha(image, band, width, 16);
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < width; ++x) {
                const double expected =
                    plainAverage(image, x * band.width / width, (x + 1) * band.width / width,
                                 top + y * band.rows / 16.0, top + (y + 1) * band.rows / 16.0);
                const int found = scaled[static_cast<std::size_t>(y * width + x)];
                QVERIFY2(std::abs(found - expected) < 0.51, qPrintable(QString::number(expected)));
            }
        }
    }
}

QTEST_APPLESS_MAIN(AreaScaleTest)
#include "areascale_test.moc"
