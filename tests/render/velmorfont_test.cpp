// SPDX-License-Identifier: MIT
#include "render/FontFace.h"
#include "render/VelmorFont.h"
#include "tests/support/bitmapastext.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>

#include <sys/resource.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString mincho = u"IPAexMincho"_s;
const QRegularExpression anyWarning(u".*"_s);

QImage blankImage(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void inkRow(QImage &image, int row)
{
    for (int x = 0; x < image.width(); ++x)
        image.setPixel(x, row, 0xFF000000U);
}

int litDots(const VelmorBitmap &bitmap)
{
    return static_cast<int>(asText(bitmap).join(QString()).count(u'#'));
}

std::shared_ptr<const VelmorBitmap> outline(const QString &text, const FontSettings &settings)
{
    return renderOutlineText(text, settings);
}

FontSettings minchoSettings()
{
    FontSettings settings;
    settings.fontName = mincho;
    settings.useFontx = false;
    return settings;
}

} // namespace

class VelmorFontTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newFont_hasTheInitialSettings();
    void constructor_takesNameAndStyle();
    void settersStoreTheirValue();
    void dotFonts_leaveTheReceiverAlone();
    void outlineFont_writesTheReceiver();
    void result_staysWhenTheReceiverGoesOn();
    void rotation_reachesTheDotFonts();
    void heightRange_data();
    void heightRange();
    void heightRange_asksAllSampleBytes();
    void heightRange_takesImagesOfAnyDepth_data();
    void heightRange_takesImagesOfAnyDepth();
    void twelveInkedRows_areABandOfEleven();
    void colouredInk_countsWithAllItsBytes();
    void widthFollowsTheBand();
    void lastColumnThatIsNotWhole_hasNoSayInTheBand();
    void blankText_isBlankAnd16TimesAsWide_data();
    void blankText_isBlankAnd16TimesAsWide();
    void veryLongBlankText_isBlankAndCut();
    void emptyText_hasNoColumns();
    void singleInkedRow_fillsTheHeight();
    void boarder_limits();
    void boarder_menuHasAnEffect();
    void veryLongText_isCutWithOneLine();
    void veryLongText_keepsTheScale();
    void veryLongText_takesLittleMemory();
    void size_isFinerSamplingOnly();
    void expansion_isALogarithm_data();
    void expansion_isALogarithm();
    void italic_slantsToTheRight();
    void bold_strokes();
    void valuesThatAreNoNumbers_areHarmless();
    void defaultName_isAMinchoFace();
    void unknownName_drawsWithTheDefaultFont();
    void worksOnSeveralThreads();
    void settingsMayChangeWhileRendering();
};

void VelmorFontTest::newFont_hasTheInitialSettings()
{
    const VelmorFont font;
    QCOMPARE(font.fontName(), u"HiraMinPro-W3"_s);
    QCOMPARE(font.size(), 16.0F);
    QCOMPARE(font.bold(), 0.0F);
    QCOMPARE(font.italic(), 0.0F);
    QCOMPARE(font.expansion(), 0.0F);
    QCOMPARE(font.boarder(), 72);
    QVERIFY(font.useFontx());
    QVERIFY(!font.rotation());
    QCOMPARE(font.width(), 0);
    QCOMPARE(font.height(), 16);
}

void VelmorFontTest::constructor_takesNameAndStyle()
{
    const VelmorFont font(mincho, 1.0F, 0.25F, -0.2F, false);
    FontSettings expected;
    expected.fontName = mincho;
    expected.bold = 1.0F;
    expected.italic = 0.25F;
    expected.expansion = -0.2F;
    expected.useFontx = false;
    QVERIFY(font.settings() == expected);
}

void VelmorFontTest::settersStoreTheirValue()
{
    VelmorFont font;
    font.setFontName(u"no such font"_s);
    font.setSize(24.0F);
    font.setBold(-3.0F);
    font.setItalic(0.5F);
    font.setExpansion(0.3F);
    font.setBoarder(1000);
    font.setUseFontx(false);
    font.setRotation(true);
    const FontSettings expected{u"no such font"_s, 24.0F, -3.0F, 0.5F, 0.3F, 1000, false, true};
    QVERIFY(font.settings() == expected);
}

void VelmorFontTest::dotFonts_leaveTheReceiverAlone()
{
    VelmorFont font;
    font.fillRect({0, 0, 5, 16});
    const auto picture = font.bitmapWithString(u"A漢"_s);
    QCOMPARE(asText(*picture), asText(*VelmorFontx().bitmapWithString(u"A漢"_s)));
    QCOMPARE(asText(font), QStringList(16, u"#####"_s));
}

void VelmorFontTest::outlineFont_writesTheReceiver()
{
    VelmorFont font(mincho, 0.0F, 0.0F, 0.0F, false);
    font.fillRect({0, 0, 400, 5});
    const auto picture = font.bitmapWithString(u"漢字"_s);
    QVERIFY(litDots(*picture) > 50);
    QCOMPARE(font.height(), 16);
    QCOMPARE(asText(font), asText(*picture));
}

void VelmorFontTest::result_staysWhenTheReceiverGoesOn()
{
    VelmorFont font(mincho, 0.0F, 0.0F, 0.0F, false);
    const auto first = font.bitmapWithString(u"一番"_s);
    const QStringList rows = asText(*first);
    font.bitmapWithString(u"二番"_s);
    QCOMPARE(asText(*first), rows);
}

void VelmorFontTest::rotation_reachesTheDotFonts()
{
    VelmorFont font;
    const auto upright = font.bitmapWithString(u"漢"_s);
    font.setRotation(true);
    QCOMPARE(asText(*font.bitmapWithString(u"漢"_s)), asText(*upright->rotateLeft90()));
}

void VelmorFontTest::heightRange_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<int>("boarder");
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("length");
    // The image has 20 rows; the lowest inked one is left out of the band.
    QTest::newRow("rows 4 to 15") << QList<int>{4, 9, 15} << 72 << 5 << 11;
    QTest::newRow("every row") << QList<int>{0, 19} << 72 << 1 << 19;
    QTest::newRow("one row") << QList<int>{7} << 72 << 13 << 0;
    QTest::newRow("no ink") << QList<int>{} << 72 << 20 << 1;
    QTest::newRow("nothing is ink") << QList<int>{4, 15} << 255 << 20 << 1;
    QTest::newRow("full ink just counts") << QList<int>{4, 15} << 254 << 5 << 11;
    QTest::newRow("everything is ink") << QList<int>{4} << -1 << 1 << 19;
}

void VelmorFontTest::heightRange()
{
    QFETCH(QList<int>, rows);
    QFETCH(int, boarder);
    QFETCH(int, location);
    QFETCH(int, length);
    QImage image = blankImage(10, 20);
    for (const int row : rows)
        inkRow(image, row);
    VelmorFont font;
    font.setBoarder(boarder);
    const HeightRange found = font.heightRangeWithImage(image);
    QCOMPARE(found.location, location);
    QCOMPARE(found.length, length);
}

void VelmorFontTest::heightRange_asksAllSampleBytes()
{
    // No single byte is above 72, but their OR (0x48 | 0x01) is.
    QImage image = blankImage(1, 4);
    image.setPixel(0, 1, 0x48000000U);
    image.setPixel(0, 2, 0x48000001U);
    QCOMPARE(inkedHeightRange(image, 0x48).location, 2);
    QCOMPARE(inkedHeightRange(image, 0x48).length, 0);
    QCOMPARE(inkedHeightRange(image, 0x47).length, 1);
}

void VelmorFontTest::heightRange_takesImagesOfAnyDepth_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<HeightRange>("expected");
    const HeightRange inkedRows{5, 11};
    const HeightRange everyRow{1, 19}; // an image that is nowhere transparent is all ink
    QTest::newRow("8 bits, alpha") << QImage::Format_Alpha8 << inkedRows;
    QTest::newRow("16 bits") << QImage::Format_ARGB4444_Premultiplied << inkedRows;
    QTest::newRow("32 bits") << QImage::Format_RGBA8888_Premultiplied << inkedRows;
    QTest::newRow("64 bits") << QImage::Format_RGBA64_Premultiplied << inkedRows;
    QTest::newRow("1 bit, opaque") << QImage::Format_Mono << everyRow;
    QTest::newRow("8 bits, opaque") << QImage::Format_Grayscale8 << everyRow;
    QTest::newRow("24 bits, opaque") << QImage::Format_RGB888 << everyRow;
}

// 10 columns of 8 bits are 12 bytes a row: read as 32 bits, the last rows lie outside the image.
void VelmorFontTest::heightRange_takesImagesOfAnyDepth()
{
    QFETCH(QImage::Format, format);
    QFETCH(HeightRange, expected);
    QImage image = blankImage(10, 20);
    for (int row = 4; row <= 15; ++row)
        inkRow(image, row);
    image.convertTo(format);
    QCOMPARE(image.format(), format);
    const HeightRange found = VelmorFont().heightRangeWithImage(image);
    QCOMPARE(found.location, expected.location);
    QCOMPARE(found.length, expected.length);
}

void VelmorFontTest::twelveInkedRows_areABandOfEleven()
{
    QImage image = blankImage(60, 20);
    for (int row = 4; row <= 15; ++row)
        inkRow(image, row);
    const auto dots = dotsOfImage(image, 60.0, 72);
    QCOMPARE(dots->width(), 87); // 16 * 60 / 11
    QCOMPARE(dots->height(), 16);
    QCOMPARE(asText(*dots), QStringList(16, QString(87, u'#')));
}

// A colour glyph's ink has colour bytes too: half of a reddish orange, no byte above 72.
void VelmorFontTest::colouredInk_countsWithAllItsBytes()
{
    QImage image = blankImage(4, 9);
    image.fill(0x48402010U);
    QCOMPARE(litDots(*dotsOfImage(image, 4.0, 0x78)), 0);
    const auto dots = dotsOfImage(image, 4.0, 0x77);
    QCOMPARE(asText(*dots), QStringList(16, QString(8, u'#')));
}

void VelmorFontTest::widthFollowsTheBand()
{
    // Measured here in a plain way: draw, find the inked rows, compute.
    const QString text = u"漢字とABC"_s;
    QFont face = fontFor(mincho, 16);
    face.setStyleStrategy(QFont::NoAntialias);
    face.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(face);
    const double width = metrics.horizontalAdvance(text);
    QImage image = blankImage(static_cast<int>(std::ceil(width)), 40);
    QPainter painter(&image);
    painter.setFont(face);
    painter.drawText(QPointF(0, 24), text);
    painter.end();
    const int length = inkedHeightRange(image, 72).length;
    QVERIFY(length > 10);
    const auto line = outline(text, minchoSettings());
    QCOMPARE(line->width(), static_cast<int>(16 * width / length));
    QCOMPARE(line->height(), 16);
}

void VelmorFontTest::lastColumnThatIsNotWhole_hasNoSayInTheBand()
{
    QImage image = blankImage(60, 20);
    for (int row = 4; row <= 15; ++row)
        inkRow(image, row);
    for (int row = 0; row < 20; ++row)
        image.setPixel(59, row, 0xFF000000U);
    QCOMPARE(dotsOfImage(image, 59.75, 72)->width(), 86); // 16 * 59.75 / 11
    QCOMPARE(dotsOfImage(image, 60.0, 72)->width(), 50);  // 16 * 60 / 19
}

void VelmorFontTest::blankText_isBlankAnd16TimesAsWide_data()
{
    QTest::addColumn<QString>("blanks");
    // A narrow blank is no whole number of pixels wide.
    QTest::newRow("one narrow blank") << u" "_s;
    QTest::newRow("five narrow blanks") << u"     "_s;
    QTest::newRow("three wide blanks") << u"　　　"_s;
}

void VelmorFontTest::blankText_isBlankAnd16TimesAsWide()
{
    QFETCH(QString, blanks);
    QFont face = fontFor(mincho, 16);
    face.setHintingPreference(QFont::PreferNoHinting);
    face.setStyleStrategy(QFont::NoAntialias);
    const auto line = outline(blanks, minchoSettings());
    QCOMPARE(line->width(), static_cast<int>(16 * QFontMetricsF(face).horizontalAdvance(blanks)));
    QCOMPARE(litDots(*line), 0);
}

void VelmorFontTest::veryLongBlankText_isBlankAndCut()
{
    QTest::ignoreMessage(QtWarningMsg, "Width of bitimage is over limit.");
    const auto wide = outline(QString(100, u'　'), minchoSettings());
    QCOMPARE(wide->width(), 10000);
    QCOMPARE(litDots(*wide), 0);
}

void VelmorFontTest::emptyText_hasNoColumns()
{
    VelmorFont font(mincho, 0.0F, 0.0F, 0.0F, false);
    const auto line = font.bitmapWithString(QString());
    QCOMPARE(line->width(), 0);
    QCOMPARE(line->height(), 16);
}

void VelmorFontTest::singleInkedRow_fillsTheHeight()
{
    QTest::failOnWarning(anyWarning);
    // A lone dash has one inked row at this size; its band of no rows must not divide by zero.
    const auto line = outline(u"─"_s, minchoSettings());
    QVERIFY(line->width() > 0);
    QVERIFY(line->width() <= 10000);
    QVERIFY(litDots(*line) > 0);
}

void VelmorFontTest::boarder_limits()
{
    FontSettings settings = minchoSettings();
    settings.boarder = -1;
    const auto all = outline(u"漢字"_s, settings);
    QVERIFY(all->width() > 0);
    QCOMPARE(litDots(*all), all->width() * 16);
    settings.boarder = 255;
    const auto none = outline(u"漢字"_s, settings);
    QCOMPARE(litDots(*none), 0);
    settings.boarder = 254;
    QVERIFY(litDots(*outline(u"漢字"_s, settings)) > 0);
}

void VelmorFontTest::boarder_menuHasAnEffect()
{
    FontSettings settings = minchoSettings();
    int before = std::numeric_limits<int>::max();
    int steps = 0;
    for (settings.boarder = 8; settings.boarder <= 248; settings.boarder += 8) {
        const int dots = litDots(*outline(u"緊急地震速報が発表されました"_s, settings));
        QVERIFY(dots <= before);
        QVERIFY(dots > 0);
        steps += dots < before ? 1 : 0;
        before = dots;
    }
    QVERIFY2(steps > 8, qPrintable(QString::number(steps)));
}

void VelmorFontTest::veryLongText_isCutWithOneLine()
{
    QTest::ignoreMessage(QtWarningMsg, "Width of bitimage is over limit.");
    QTest::failOnWarning(anyWarning);
    VelmorFont font(mincho, 0.0F, 0.0F, 0.0F, false);
    const auto line = font.bitmapWithString(QString(5000, u'漢'));
    QCOMPARE(line->width(), 10000);
    QCOMPARE(font.width(), 10000);
    // Ink up to the end: what was cut lies on the right.
    QVERIFY(asText(*line)[8].right(40).contains(u'#'));
}

void VelmorFontTest::veryLongText_keepsTheScale()
{
    QTest::ignoreMessage(QtWarningMsg, "Width of bitimage is over limit.");
    const auto cut = outline(QString(5000, u'漢'), minchoSettings());
    const auto whole = outline(QString(100, u'漢'), minchoSettings());
    // Whole columns make the two scales differ by less than one column in the whole length.
    constexpr int columns = 200;
    int different = 0;
    for (int x = 0; x < columns; ++x) {
        for (int y = 0; y < 16; ++y)
            different += cut->bit(x, y) != whole->bit(x, y) ? 1 : 0;
    }
    QVERIFY2(different * 50 < columns * 16, qPrintable(QString::number(different)));
}

void VelmorFontTest::veryLongText_takesLittleMemory()
{
    QTest::ignoreMessage(QtWarningMsg, "Width of bitimage is over limit.");
    rusage before{};
    QCOMPARE(getrusage(RUSAGE_SELF, &before), 0);
    QCOMPARE(outline(QString(1000000, u'漢'), minchoSettings())->width(), 10000);
    rusage after{};
    QCOMPARE(getrusage(RUSAGE_SELF, &after), 0);
    const long grownKilobytes = after.ru_maxrss - before.ru_maxrss;
    QVERIFY2(grownKilobytes < 64 * 1024, qPrintable(QString::number(grownKilobytes)));
}

void VelmorFontTest::size_isFinerSamplingOnly()
{
    FontSettings settings = minchoSettings();
    const auto small = outline(u"漢字"_s, settings);
    settings.size = 24.0F;
    const auto large = outline(u"漢字"_s, settings);
    QCOMPARE(large->height(), 16);
    QVERIFY(std::abs(large->width() - small->width()) <= 4);
    QVERIFY(asText(*large) != asText(*small));
}

void VelmorFontTest::expansion_isALogarithm_data()
{
    QTest::addColumn<float>("expansion");
    QTest::newRow("the narrow font") << -0.2F;
    QTest::newRow("next to none") << 0.001F;
    QTest::newRow("wide") << 0.5F;
}

void VelmorFontTest::expansion_isALogarithm()
{
    QFETCH(float, expansion);
    FontSettings settings = minchoSettings();
    const QString text(40, u'漢');
    // Transformed glyphs may ink a row more or less: compare with transformed ones.
    settings.expansion = 0.0001F;
    const int plain = outline(text, settings)->width();
    settings.expansion = expansion;
    const auto line = outline(text, settings);
    const double expected = plain * std::exp(static_cast<double>(expansion));
    QVERIFY2(std::abs(line->width() - expected) < 4.0, qPrintable(QString::number(expected)));
    // The glyphs follow the width: there is ink in the last one's place.
    QVERIFY(asText(*line)[8].right(12).contains(u'#'));
}

void VelmorFontTest::italic_slantsToTheRight()
{
    FontSettings settings = minchoSettings();
    const auto firstLit = [](const QString &row) { return row.indexOf(u'#'); };
    const QStringList upright = asText(*outline(u"　I　"_s, settings));
    settings.italic = 0.4F;
    const QStringList slanted = asText(*outline(u"　I　"_s, settings));
    QVERIFY(std::abs(firstLit(upright[1]) - firstLit(upright[14])) <= 1);
    QVERIFY(firstLit(slanted[1]) > firstLit(slanted[14]) + 2);
}

void VelmorFontTest::bold_strokes()
{
    FontSettings settings = minchoSettings();
    settings.size = 64.0F;
    const QString text = u"■"_s;
    const int filled = litDots(*outline(text, settings));
    settings.bold = 4.0F; // the outline alone: the inside of a filled square is dark
    const int hollow = litDots(*outline(text, settings));
    QVERIFY(hollow > 0);
    QVERIFY(hollow < filled);
    settings.bold = -4.0F; // filled and outlined
    QVERIFY(litDots(*outline(text, settings)) > hollow);
}

void VelmorFontTest::valuesThatAreNoNumbers_areHarmless()
{
    const float nothing = std::nanf("");
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float value : {nothing, infinite, -infinite, -1.0F, 0.0F, 1e30F}) {
        FontSettings settings = minchoSettings();
        settings.size = settings.bold = settings.italic = settings.expansion = value;
        const auto line = outline(u"漢A"_s, settings);
        QVERIFY(line->width() >= 0);
        QVERIFY(line->width() <= 10000);
    }
}

void VelmorFontTest::defaultName_isAMinchoFace()
{
    QVERIFY(!QFontDatabase::hasFamily(u"HiraMinPro-W3"_s));
    QCOMPARE(fontFamilyFor(u"HiraMinPro-W3"_s), u"IPAexMincho"_s);
    FontSettings settings;
    QCOMPARE(asText(*outline(u"漢字"_s, settings)), asText(*outline(u"漢字"_s, minchoSettings())));
}

void VelmorFontTest::unknownName_drawsWithTheDefaultFont()
{
    FontSettings settings;
    settings.fontName = u"no such font"_s;
    QCOMPARE(fontFamilyFor(settings.fontName), QFont().family());
    QVERIFY(litDots(*outline(u"ABC"_s, settings)) > 20);
    QCOMPARE(fontFamilyFor(QString()), QFont().family());
}

void VelmorFontTest::worksOnSeveralThreads()
{
    const QStringList expected = asText(*outline(u"緊急地震速報"_s, minchoSettings()));
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int n = 0; n < 20; ++n) {
                    if (asText(*outline(u"緊急地震速報"_s, minchoSettings())) != expected)
                        ++wrong;
                }
            });
        }
    }
    QCOMPARE(wrong.load(), 0);
}

void VelmorFontTest::settingsMayChangeWhileRendering()
{
    VelmorFont font(mincho, 0.0F, 0.0F, 0.0F, false);
    std::jthread other([&font](const std::stop_token &stop) {
        for (int n = 0; !stop.stop_requested(); ++n) {
            font.setFontName(n % 2 ? mincho : u"Noto Sans CJK JP"_s);
            font.setUseFontx(n % 3 == 0);
            font.setExpansion(n % 2 ? 0.0F : -0.2F);
            font.setRotation(n % 5 == 0);
        }
    });
    for (int i = 0; i < 100; ++i)
        QVERIFY(font.bitmapWithString(u"漢字ABC"_s)->width() > 40);
}

QTEST_MAIN(VelmorFontTest)
#include "velmorfont_test.moc"
