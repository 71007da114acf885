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

void setInk(QImage &image, int x, int y, QRgb ink = 0xFF000000U)
{
    image.setPixel(x, y, ink);
}

/// A pixel's only byte that is not 0.
int byteOf(QRgb pixel)
{
    return qAlpha(pixel) + qRed(pixel) + qGreen(pixel) + qBlue(pixel);
}

/// The overlap of two stretches of a line.
double overlap(double from, double to, double pixel)
{
    return std::max(0.0, std::min(to, pixel + 1.0) - std::max(from, pixel));
}

/// The average taken the plain way: every source pixel weighted by the area that it shares. No ink
/// of the image has more than one byte.
double plainAverage(const QImage &image, double left, double right, double top, double bottom)
{
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            sum += overlap(left, right, x) * overlap(top, bottom, y) * byteOf(pixels[x]);
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
    void eachByteIsAveragedForItself_data();
    void eachByteIsAveragedForItself();
    void bandOutsideTheImage_isEmpty();
    void noColumns_giveNothing();
    void randomImages_agreeWithPlainAverages_data();
    void randomImages_agreeWithPlainAverages();
};

void AreaScaleTest::sameSize_changesNothing()
{
    QImage image = blankImage(3, 2);
    setInk(image, 1, 0);
    setInk(image, 2, 1);
    const std::vector<std::uint8_t> expected = {0, 255, 0, 0, 0, 255};
    QCOMPARE(areaAverageInk(image, {3.0, 0, 2}, 3, 2), expected);
}

void AreaScaleTest::halfSize_averagesFourPixels()
{
    QImage image = blankImage(4, 2);
    setInk(image, 0, 0);
    setInk(image, 2, 0);
    setInk(image, 3, 0);
    setInk(image, 3, 1);
    const std::vector<std::uint8_t> expected = {64, 191};
    QCOMPARE(areaAverageInk(image, {4.0, 0, 2}, 2, 1), expected);
}

void AreaScaleTest::doubleSize_repeatsPixels()
{
    QImage image = blankImage(2, 1);
    setInk(image, 0, 0);
    const std::vector<std::uint8_t> expected = {255, 255, 0, 0, 255, 255, 0, 0};
    QCOMPARE(areaAverageInk(image, {2.0, 0, 1}, 4, 2), expected);
}

void AreaScaleTest::eachByteIsAveragedForItself_data()
{
    QTest::addColumn<QRgb>("left");
    QTest::addColumn<QRgb>("right");
    QTest::addColumn<int>("ink");
    QTest::newRow("black") << 0x80000000U << 0x80000000U << 0x80;
    QTest::newRow("colours add their bits") << 0x40010204U << 0x40010204U << 0x47;
    QTest::newRow("bits that all have count once") << 0x66666666U << 0x66666666U << 0x66;
    // The average of the ORs would be 0x60 in both.
    QTest::newRow("unlike bytes side by side") << 0x80000000U << 0x00400000U << 0x60;
    QTest::newRow("unlike bytes, averages alike") << 0x60000000U << 0x00600000U << 0x30;
}

void AreaScaleTest::eachByteIsAveragedForItself()
{
    QFETCH(QRgb, left);
    QFETCH(QRgb, right);
    QFETCH(int, ink);
    QImage image = blankImage(2, 1);
    setInk(image, 0, 0, left);
    setInk(image, 1, 0, right);
    QCOMPARE(int(areaAverageInk(image, {2.0, 0, 1}, 1, 1).front()), ink);
}

void AreaScaleTest::bandOutsideTheImage_isEmpty()
{
    QImage image = blankImage(2, 2);
    image.fill(Qt::black);
    const std::vector<std::uint8_t> blank = {0, 0};
    QCOMPARE(areaAverageInk(image, {2.0, -1, 1}, 2, 1), blank);
    QCOMPARE(areaAverageInk(image, {2.0, 2, 1}, 2, 1), blank);
    // Half of the columns lie to the right of the image.
    const std::vector<std::uint8_t> half = {255, 0};
    QCOMPARE(areaAverageInk(image, {4.0, 0, 2}, 2, 1), half);
}

void AreaScaleTest::noColumns_giveNothing()
{
    QVERIFY(areaAverageInk(QImage(), {0.0, -1, 1}, 0, 16).empty());
    const std::vector<std::uint8_t> blank(48, 0);
    QCOMPARE(areaAverageInk(QImage(), {3.0, -1, 1}, 3, 16), blank);
}

void AreaScaleTest::randomImages_agreeWithPlainAverages_data()
{
    QTest::addColumn<QRgb>("ink");
    QTest::newRow("alpha") << 0xFF000000U;
    QTest::newRow("red") << 0x00FF0000U;
    QTest::newRow("green") << 0x0000FF00U;
    QTest::newRow("blue") << 0x000000FFU;
    QTest::newRow("half blue") << 0x00000080U;
}

void AreaScaleTest::randomImages_agreeWithPlainAverages()
{
    QFETCH(QRgb, ink);
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo() << "seed" << seed;
    std::mt19937 random(seed);
    for (int round = 0; round < 50; ++round) {
        QImage image =
            blankImage(1 + static_cast<int>(random() % 30), 1 + static_cast<int>(random() % 30));
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (random() % 2)
                    setInk(image, x, y, ink);
            }
        }
        const int top = static_cast<int>(random() % static_cast<unsigned>(image.height()));
        const ImageBand band{image.width() - 0.25 * static_cast<double>(random() % 4), top,
                             image.height() - top};
        const int width = 1 + static_cast<int>(random() % 40);
        const auto scaled = areaAverageInk(image, band, width, 16);
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
