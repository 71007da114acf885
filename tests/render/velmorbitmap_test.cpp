// SPDX-License-Identifier: MIT
#include "render/VelmorBitmap.h"
#include "tests/support/bitmapastext.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <iostream>
#include <limits>
#include <random>
#include <set>
#include <sstream>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int lowestInt = std::numeric_limits<int>::min();
constexpr int highestInt = std::numeric_limits<int>::max();

void fillAll(VelmorBitmap &bitmap, int width)
{
    bitmap.fillRect({0, 0, static_cast<double>(width), 16});
}

} // namespace

class VelmorBitmapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newBitmap_isEmptyAnd16High();
    void setWidth_data();
    void setWidth();
    void setHeight_data();
    void setHeight();
    void widthOfTheConstructorIsNotClamped();
    void bit_looksAtTheWidthOnly();
    void setBit_outsideTheSizeDoesNothing();
    void points_areCutTowardZero();
    void wrongPointsAreHarmless();
    void appendBitmap_dropsWhatDoesNotFit();
    void appendBitmap_clearsBelowTheSourcesHeight();
    void appendBitmap_heights_data();
    void appendBitmap_heights();
    void appendBitmap_toItselfDoubles();
    void appendBitmap_withOddWidthsStaysInTheStore_data();
    void appendBitmap_withOddWidthsStaysInTheStore();
    void setBitmap_copiesSizeAndDots();
    void setBitmap_ofItselfLeavesNothing();
    void cellsBeyondTheWidthKeepTheirDots();
    void rotateLeft90_turnsCounterClockwise();
    void rotateLeft90_fourTimesIsTheSame();
    void rotateLeft90_ofAnotherSizeIsNull();
    void spaceWidth_isBlankAnd16High();
    void fillRect_clearsLeftAndAbove();
    void lineRect_isAFrame();
    void lineRect_drawsTheSidesAboveTheTopToo();
    void rectanglesThatAreNoNumbersAreHarmless();
    void dispBitmap_writesTheOtherBitmap();
    void randomOperationsAgreeWithAPlainModel();
};

void VelmorBitmapTest::newBitmap_isEmptyAnd16High()
{
    const VelmorBitmap bitmap;
    QCOMPARE(bitmap.width(), 0);
    QCOMPARE(bitmap.height(), 16);
    for (const QPointF point : {QPointF(0, 0), QPointF(9999, 15), QPointF(-1, -1)})
        QCOMPARE(int(bitmap.bit(point)), 0);
}

void VelmorBitmapTest::setWidth_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("stored");
    QTest::newRow("ordinary") << 128 << 128;
    QTest::newRow("the last below the limit") << 9999 << 9999;
    QTest::newRow("the limit") << 10000 << 10000;
    QTest::newRow("beyond") << 12000 << 10000;
    QTest::newRow("no lower bound") << -3 << -3;
}

void VelmorBitmapTest::setWidth()
{
    QFETCH(int, given);
    VelmorBitmap bitmap;
    bitmap.setWidth(given);
    QTEST(bitmap.width(), "stored");
}

void VelmorBitmapTest::setHeight_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("stored");
    QTest::newRow("ordinary") << 8 << 8;
    QTest::newRow("the last below the limit") << 15 << 15;
    QTest::newRow("the limit") << 16 << 16;
    QTest::newRow("beyond") << 20 << 16;
    QTest::newRow("no lower bound") << -1 << -1;
}

void VelmorBitmapTest::setHeight()
{
    QFETCH(int, given);
    VelmorBitmap bitmap;
    bitmap.setHeight(given);
    QTEST(bitmap.height(), "stored");
}

void VelmorBitmapTest::widthOfTheConstructorIsNotClamped()
{
    VelmorBitmap bitmap(12000);
    QCOMPARE(bitmap.width(), 12000);
    // The store ends at 10,000 columns all the same.
    bitmap.setBit(QPointF(11000, 3));
    QCOMPARE(int(bitmap.bit(QPointF(11000, 3))), 0);
    QCOMPARE(VelmorBitmap(-5).width(), -5);
}

void VelmorBitmapTest::bit_looksAtTheWidthOnly()
{
    VelmorBitmap bitmap(5);
    bitmap.setBit(QPointF(4, 12));
    bitmap.setHeight(8);
    // Row 12 lies below the height, yet its cell is given.
    QCOMPARE(int(bitmap.bit(QPointF(4, 12))), 1);
    bitmap.setWidth(4);
    QCOMPARE(int(bitmap.bit(QPointF(4, 12))), 0);
}

void VelmorBitmapTest::setBit_outsideTheSizeDoesNothing()
{
    VelmorBitmap bitmap(5);
    bitmap.setBit(QPointF(5, 3));
    QCOMPARE(int(bitmap.bit(QPointF(5, 3))), 0);
    bitmap.setWidth(6);
    QCOMPARE(int(bitmap.bit(QPointF(5, 3))), 0);

    bitmap.setHeight(8);
    bitmap.setBit(QPointF(0, 8));
    QCOMPARE(int(bitmap.bit(QPointF(0, 8))), 0);
    bitmap.setHeight(9);
    bitmap.setBit(QPointF(0, 8));
    bitmap.setHeight(8);
    bitmap.resetBit(QPointF(0, 8));
    QCOMPARE(int(bitmap.bit(QPointF(0, 8))), 1);
}

void VelmorBitmapTest::points_areCutTowardZero()
{
    VelmorBitmap bitmap(5);
    bitmap.setBit(QPointF(4.9, 15.9));
    QCOMPARE(int(bitmap.bit(QPointF(4, 15))), 1);
    QCOMPARE(int(bitmap.bit(QPointF(4.99, 15.01))), 1);
    bitmap.setBit(QPointF(-0.9, -0.9));
    QCOMPARE(int(bitmap.bit(QPointF(0, 0))), 1);
    bitmap.resetBit(QPointF(0.5, 0.5));
    QCOMPARE(int(bitmap.bit(QPointF(0, 0))), 0);
}

void VelmorBitmapTest::wrongPointsAreHarmless()
{
    VelmorBitmap bitmap(10000);
    const double infinite = std::numeric_limits<double>::infinity();
    const double nothing = std::nan("");
    for (const double x : {-1.0, -1e300, 9999.0, 10000.0, 1e300, infinite, -infinite, nothing}) {
        for (const double y : {-1.0, -1e300, 16.0, 1e300, infinite, -infinite, nothing}) {
            bitmap.setBit(QPointF(x, y));
            bitmap.resetBit(QPointF(x, y));
            QCOMPARE(int(bitmap.bit(QPointF(x, y))), 0);
        }
    }
    bitmap.setBit(highestInt, lowestInt);
    QCOMPARE(int(bitmap.bit(lowestInt, highestInt)), 0);
}

void VelmorBitmapTest::appendBitmap_dropsWhatDoesNotFit()
{
    VelmorBitmap bitmap(9950);
    VelmorBitmap added;
    fillAll(added, 100);
    added.resetBit(49, 0);
    bitmap.appendBitmap(added);
    QCOMPARE(bitmap.width(), 10000);
    QCOMPARE(int(bitmap.bit(9949, 0)), 0);
    QCOMPARE(int(bitmap.bit(9950, 0)), 1);
    QCOMPARE(int(bitmap.bit(9999, 0)), 0);
    QCOMPARE(int(bitmap.bit(9999, 15)), 1);

    bitmap.appendBitmap(added);
    QCOMPARE(bitmap.width(), 10000);
}

void VelmorBitmapTest::appendBitmap_clearsBelowTheSourcesHeight()
{
    VelmorBitmap bitmap;
    fillAll(bitmap, 4);
    bitmap.setWidth(2); // columns 2 and 3 keep their dots
    VelmorBitmap low(2);
    low.setHeight(2);
    low.setBit(0, 0);
    low.setBit(1, 1);
    bitmap.appendBitmap(low);
    const QStringList rows = asText(bitmap);
    QCOMPARE(rows.size(), 16);
    QCOMPARE(rows.mid(0, 3), QStringList({u"###."_s, u"##.#"_s, u"##.."_s}));
    QCOMPARE(rows.last(), u"##.."_s);
}

void VelmorBitmapTest::appendBitmap_heights_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("added");
    QTest::addColumn<int>("after");
    QTest::newRow("a lower one leaves it") << 16 << 8 << 16;
    QTest::newRow("a higher one raises it") << 8 << 12 << 12;
    QTest::newRow("from nothing") << 0 << 8 << 8;
    QTest::newRow("a negative one counts less") << 0 << -4 << 0;
}

void VelmorBitmapTest::appendBitmap_heights()
{
    QFETCH(int, before);
    QFETCH(int, added);
    VelmorBitmap bitmap;
    bitmap.setHeight(before);
    VelmorBitmap other(1);
    other.setHeight(added);
    bitmap.appendBitmap(other);
    QTEST(bitmap.height(), "after");
}

void VelmorBitmapTest::appendBitmap_toItselfDoubles()
{
    VelmorBitmap bitmap;
    drawText(bitmap, {u"#.."_s, u".#."_s});
    bitmap.appendBitmap(bitmap);
    QCOMPARE(asText(bitmap), QStringList({u"#..#.."_s, u".#..#."_s}));
}

void VelmorBitmapTest::appendBitmap_withOddWidthsStaysInTheStore_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("added");
    QTest::addColumn<int>("after");
    QTest::newRow("onto a negative width") << -3 << 5 << 2;
    QTest::newRow("a negative width") << 5 << -3 << 2;
    QTest::newRow("both lowest") << lowestInt << lowestInt << lowestInt;
    QTest::newRow("both highest") << highestInt << highestInt << 10000;
    QTest::newRow("lowest and highest") << lowestInt << highestInt << -1;
    QTest::newRow("beyond the store") << 12000 << 12000 << 10000;
}

void VelmorBitmapTest::appendBitmap_withOddWidthsStaysInTheStore()
{
    QFETCH(int, before);
    QFETCH(int, added);
    VelmorBitmap bitmap(before);
    bitmap.appendBitmap(VelmorBitmap(added));
    QTEST(bitmap.width(), "after");
}

void VelmorBitmapTest::setBitmap_copiesSizeAndDots()
{
    VelmorBitmap source;
    drawText(source, {u"#.#"_s, u".#."_s});
    VelmorBitmap bitmap;
    fillAll(bitmap, 50);
    bitmap.setBitmap(source);
    QCOMPARE(bitmap.height(), 2);
    QCOMPARE(asText(bitmap), asText(source));
    bitmap.resetBit(0, 0);
    QCOMPARE(int(source.bit(0, 0)), 1);
}

void VelmorBitmapTest::setBitmap_ofItselfLeavesNothing()
{
    VelmorBitmap bitmap;
    fillAll(bitmap, 5);
    bitmap.setBitmap(bitmap);
    QCOMPARE(bitmap.width(), 0);
    QCOMPARE(bitmap.height(), 0);
}

void VelmorBitmapTest::cellsBeyondTheWidthKeepTheirDots()
{
    VelmorBitmap bitmap;
    fillAll(bitmap, 5);
    bitmap.setWidth(2);
    bitmap.setWidth(5);
    QCOMPARE(asText(bitmap).first(), u"#####"_s);
}

void VelmorBitmapTest::rotateLeft90_turnsCounterClockwise()
{
    VelmorBitmap bitmap(16);
    bitmap.setBit(15, 0);
    const auto corner = bitmap.rotateLeft90();
    QVERIFY(corner);
    VelmorBitmap expected(16);
    expected.setBit(0, 0);
    QCOMPARE(asText(*corner), asText(expected));

    // The right-hand column becomes the top row, read from the top down.
    bitmap.setBit(15, 3);
    QCOMPARE(asText(*bitmap.rotateLeft90()).first(), u"#..#............"_s);
}

void VelmorBitmapTest::rotateLeft90_fourTimesIsTheSame()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo() << "seed" << seed;
    std::mt19937 random(seed);
    auto bitmap = std::make_shared<VelmorBitmap>(16);
    for (int x = 0; x < 16; ++x) {
        for (int y = 0; y < 16; ++y) {
            if (random() % 2)
                bitmap->setBit(x, y);
        }
    }
    const auto turned = bitmap->rotateLeft90()->rotateLeft90()->rotateLeft90()->rotateLeft90();
    QCOMPARE(asText(*turned), asText(*bitmap));
}

void VelmorBitmapTest::rotateLeft90_ofAnotherSizeIsNull()
{
    QVERIFY(!VelmorBitmap(8).rotateLeft90());
    VelmorBitmap low(16);
    low.setHeight(15);
    QVERIFY(!low.rotateLeft90());
}

void VelmorBitmapTest::spaceWidth_isBlankAnd16High()
{
    VelmorBitmap bitmap;
    fillAll(bitmap, 20);
    bitmap.setHeight(3);
    bitmap.spaceWidth(12);
    QCOMPARE(bitmap.width(), 12);
    QCOMPARE(asText(bitmap), QStringList(16, u"............"_s));
    // Only its own columns are cleared.
    bitmap.setWidth(13);
    QCOMPARE(asText(bitmap).first(), u"............#"_s);
    bitmap.spaceWidth(20000);
    QCOMPARE(bitmap.width(), 10000);
    bitmap.spaceWidth(-4);
    QCOMPARE(bitmap.width(), -4);
}

void VelmorBitmapTest::fillRect_clearsLeftAndAbove()
{
    VelmorBitmap bitmap;
    bitmap.fillRect({2, 0, 3, 16});
    QCOMPARE(asText(bitmap), QStringList(16, u"..###"_s));
    bitmap.fillRect({1, 1, 2, 2});
    QCOMPARE(asText(bitmap), QStringList({u"..."_s, u".##"_s, u".##"_s}));
}

void VelmorBitmapTest::lineRect_isAFrame()
{
    VelmorBitmap bitmap;
    fillAll(bitmap, 10);
    bitmap.lineRect({0, 0, 10, 16});
    QStringList expected(16, u"#........#"_s);
    expected.first() = expected.last() = u"##########"_s;
    QCOMPARE(asText(bitmap), expected);
}

void VelmorBitmapTest::lineRect_drawsTheSidesAboveTheTopToo()
{
    VelmorBitmap bitmap;
    bitmap.lineRect({1, 2, 4, 3});
    const QStringList expected = {u".#..#"_s, u".#..#"_s, u".####"_s, u".#..#"_s, u".####"_s};
    QCOMPARE(asText(bitmap), expected);
}

void VelmorBitmapTest::rectanglesThatAreNoNumbersAreHarmless()
{
    VelmorBitmap bitmap;
    bitmap.fillRect({0, 0, 1e300, 1e300});
    QCOMPARE(bitmap.width(), 10000);
    QCOMPARE(bitmap.height(), 16);
    bitmap.lineRect({0, 0, std::nan(""), std::nan("")});
    QCOMPARE(bitmap.width(), 0);
    bitmap.fillRect({-5, -5, 3, 3});
    QCOMPARE(bitmap.width(), -2);
}

void VelmorBitmapTest::dispBitmap_writesTheOtherBitmap()
{
    VelmorBitmap bitmap;
    drawText(bitmap, {u"#.#"_s, u".#."_s});
    std::ostringstream out;
    VelmorBitmap::dispBitmap(bitmap, out);
    QCOMPARE(QByteArray::fromStdString(out.str()), QByteArray("o.o\n.o.\n"));

    std::ostringstream standardOutput;
    std::streambuf *before = std::cout.rdbuf(standardOutput.rdbuf());
    VelmorBitmap().dispBitmap(bitmap);
    std::cout.rdbuf(before);
    QCOMPARE(standardOutput.str(), out.str());
}

void VelmorBitmapTest::randomOperationsAgreeWithAPlainModel()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo() << "seed" << seed;
    std::mt19937 random(seed);
    // The model: a map of lit cells, size beside it.
    std::set<std::pair<int, int>> lit;
    VelmorBitmap bitmap;
    for (int step = 0; step < 20000; ++step) {
        const int x = static_cast<int>(random() % 40) - 4;
        const int y = static_cast<int>(random() % 20) - 2;
        switch (random() % 4) {
        case 0:
            bitmap.setWidth(static_cast<int>(random() % 40) - 3);
            break;
        case 1:
            bitmap.setHeight(static_cast<int>(random() % 20) - 2);
            break;
        case 2:
            bitmap.setBit(QPointF(x, y));
            if (x >= 0 && y >= 0 && x < bitmap.width() && y < bitmap.height())
                lit.insert({x, y});
            break;
        default:
            bitmap.resetBit(QPointF(x, y));
            if (x >= 0 && y >= 0 && x < bitmap.width() && y < bitmap.height())
                lit.erase({x, y});
        }
        const bool isLit = x < bitmap.width() && lit.count({x, y}) == 1;
        QCOMPARE(int(bitmap.bit(QPointF(x, y))), int(isLit));
    }
}

QTEST_APPLESS_MAIN(VelmorBitmapTest)
#include "velmorbitmap_test.moc"
