// SPDX-License-Identifier: MIT
#include "platform/TextEncoding.h"
#include "render/SjisCode.h"
#include "render/VelmorFontx.h"
#include "tests/support/bitmapastext.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

/// The picture of a glyph's bytes, drawn the plain way.
QStringList picture(const QByteArray &glyph)
{
    const int rowBytes = static_cast<int>(glyph.size()) / 16;
    QStringList rows;
    for (int y = 0; y < 16; ++y) {
        QString row;
        for (int x = 0; x < rowBytes * 8; ++x) {
            const int byte = static_cast<unsigned char>(glyph[y * rowBytes + x / 8]);
            row += byte >> (7 - x % 8) & 1 ? u'#' : u'.';
        }
        rows << row;
    }
    return rows;
}

QStringList columnsOf(const QStringList &rows, int first, int count)
{
    QStringList part;
    for (const QString &row : rows)
        part << row.mid(first, count);
    return part;
}

const QRegularExpression anyWarning(u".*"_s);

} // namespace

class VelmorFontxTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theProgramsFontsAreFound();
    void letterA_hasEightColumns();
    void halfWidthKatakana_hasEightColumns();
    void kanji_hasSixteenColumns();
    void charactersFollowWithoutSpacing();
    void emptyText_isEmptyAnd16High();
    void sjisWithUnichar_data();
    void sjisWithUnichar();
    void everyCharacterHasTheCodeOfTheConverter();
    void vendorCharacters_haveGlyphs();
    void textOf700Kanji_stopsAt625Glyphs();
    void whatDoesNotFit_isNotLookedAt();
    void unknownCode_isLoggedAndDrawnAsTheReplacement();
    void charactersThatCannotBeEncoded_areDrawnSilentlyAsTheReplacement();
    void latin1_selectsTheSingleByteGlyphOfThatNumber();
    void rotation_turnsFullWidthGlyphs();
    void rotation_leavesMarksAndHalfWidth_data();
    void rotation_leavesMarksAndHalfWidth();
    void isKanji_keepsExactly75Marks();
    void areas();
    void fontName_prefersTheDoubleByteFont();
    void missingFonts_drawBlanksAndSaySoOnce();
    void nullPaths_meanTheProgramsFiles();
    void fontDatas_haveOneEntryForEachUnit();
    void renderingWhileRotationChanges_isWholeLines();
};

void VelmorFontxTest::theProgramsFontsAreFound()
{
    const VelmorFontx fonts;
    QCOMPARE(fonts.fontName(), u"SHNMK16 "_s);
    QCOMPARE(fonts.fontSize(), QSizeF(16, 16));
    QVERIFY(fonts.blockCount() > 50);
}

void VelmorFontxTest::letterA_hasEightColumns()
{
    const VelmorFontx fonts;
    const QStringList expected = {u"........"_s, u"...#...."_s, u"...#...."_s, u"..#.#..."_s,
                                  u"..#.#..."_s, u"..#.#..."_s, u".#...#.."_s, u".#...#.."_s,
                                  u".#...#.."_s, u".#####.."_s, u"#.....#."_s, u"#.....#."_s,
                                  u"#.....#."_s, u"#.....#."_s, u"........"_s, u"........"_s};
    QCOMPARE(asText(*fonts.bitmapWithString(u"A"_s)), expected);
    QCOMPARE(picture(fonts.fontDataWithSJIS(0x41)), expected);
}

void VelmorFontxTest::halfWidthKatakana_hasEightColumns()
{
    const VelmorFontx fonts;
    QCOMPARE(int(fonts.sjisWithUnichar(0xFF71)), 0xB100);
    const auto line = fonts.bitmapWithString(u"ｱ"_s);
    QCOMPARE(asText(*line), picture(fonts.fontDataWithSJIS(0xB1)));
    QCOMPARE(asText(*line)[2], u"#######."_s);
    QCOMPARE(fonts.fontDataWithSJIS(0xA000), fonts.fontDataWithSJIS(0xA0));
    QCOMPARE(fonts.fontDataWithSJIS(0xDF00), fonts.fontDataWithSJIS(0xDF));
}

void VelmorFontxTest::kanji_hasSixteenColumns()
{
    const VelmorFontx fonts;
    const QStringList expected = {
        u"...#....#...#..."_s, u"....#...#...#..."_s, u"....############"_s, u"........#...#..."_s,
        u".#.............."_s, u"..#...#########."_s, u"..#...#...#...#."_s, u"......#...#...#."_s,
        u"....#.#########."_s, u"....#.....#....."_s, u"...#..########.."_s, u"...#......#....."_s,
        u"..#..###########"_s, u"..#......#.#...."_s, u".#.....##...##.."_s, u".#...##.......##"_s};
    QCOMPARE(asText(*fonts.bitmapWithString(u"漢"_s)), expected);
}

void VelmorFontxTest::charactersFollowWithoutSpacing()
{
    const VelmorFontx fonts;
    const auto line = fonts.bitmapWithString(u"A漢ｱ"_s);
    QCOMPARE(line->width(), 8 + 16 + 8);
    const QStringList rows = asText(*line);
    QCOMPARE(columnsOf(rows, 0, 8), asText(*fonts.bitmapWithString(u"A"_s)));
    QCOMPARE(columnsOf(rows, 8, 16), asText(*fonts.bitmapWithString(u"漢"_s)));
    QCOMPARE(columnsOf(rows, 24, 8), asText(*fonts.bitmapWithString(u"ｱ"_s)));
}

void VelmorFontxTest::emptyText_isEmptyAnd16High()
{
    const auto line = VelmorFontx().bitmapWithString(QString());
    QCOMPARE(line->width(), 0);
    QCOMPARE(line->height(), 16);
}

void VelmorFontxTest::sjisWithUnichar_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<int>("code");
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("ASCII") << 0x7E << 0x7E;
    QTest::newRow("the last that is not converted") << 0xFF << 0xFF;
    QTest::newRow("the first that is") << 0x100 << replacementCode;
    QTest::newRow("hiragana") << 0x3042 << 0x82A0;
    QTest::newRow("the replacement itself") << 0x25A1 << 0x81A0;
    QTest::newRow("half-width katakana") << 0xFF71 << 0xB100;
    QTest::newRow("wave dash") << 0x301C << 0x8160;
    QTest::newRow("half of a pair") << 0xD83D << replacementCode;
    QTest::newRow("the other half") << 0xDE00 << replacementCode;
    QTest::newRow("no character") << 0xFFFF << replacementCode;
}

void VelmorFontxTest::sjisWithUnichar()
{
    QFETCH(int, unit);
    // Asked twice: the second answer comes from memory.
    QTEST(int(VelmorFontx().sjisWithUnichar(static_cast<char16_t>(unit))), "code");
    QTEST(int(VelmorFontx().sjisWithUnichar(static_cast<char16_t>(unit))), "code");
}

void VelmorFontxTest::everyCharacterHasTheCodeOfTheConverter()
{
    for (int unit = 0x100; unit <= 0xFFFF; ++unit) {
        const QChar character(static_cast<char16_t>(unit));
        const auto bytes =
            character.isSurrogate() ? std::nullopt : encodeShiftJis(QString(character));
        const QByteArray expected = bytes.value_or(QByteArray("\x81\xA0")).leftJustified(2, '\0');
        const int code = sjisCode(character.unicode());
        QCOMPARE(code >> 8, int(static_cast<unsigned char>(expected[0])));
        QCOMPARE(code & 0xFF, int(static_cast<unsigned char>(expected[1])));
    }
}

void VelmorFontxTest::vendorCharacters_haveGlyphs()
{
    const VelmorFontx fonts;
    // A rendering that missed one would say so.
    QTest::failOnWarning(anyWarning);
    const auto replacement = asText(*fonts.bitmapWithString(u"□"_s));
    for (const QChar character : u"①⑳Ⅷ㈱㍻№℡髙﨑ⅲ"_s) {
        const auto line = fonts.bitmapWithString(QString(character));
        QCOMPARE(line->width(), 16);
        QVERIFY(asText(*line) != replacement);
    }
}

void VelmorFontxTest::textOf700Kanji_stopsAt625Glyphs()
{
    const VelmorFontx fonts;
    const auto line = fonts.bitmapWithString(QString(700, u'漢'));
    QCOMPARE(line->width(), 10000);
    const QStringList last = columnsOf(asText(*line), 624 * 16, 16);
    QCOMPARE(last, asText(*fonts.bitmapWithString(u"漢"_s)));
    // One column too few for a last whole glyph: it is cut, not left out.
    const auto odd = fonts.bitmapWithString(u"A"_s + QString(700, u'漢'));
    QCOMPARE(odd->width(), 10000);
    QCOMPARE(columnsOf(asText(*odd), 9992, 8),
             columnsOf(asText(*fonts.bitmapWithString(u"漢"_s)), 0, 8));
}

// A description may be a megabyte long; each character beyond the picture would cost a look-up.
void VelmorFontxTest::whatDoesNotFit_isNotLookedAt()
{
    const VelmorFontx fonts;
    QTest::failOnWarning(QRegularExpression(u".*"_s)); // each would be an unknown character
    QCOMPARE(fonts.bitmapWithString(QString(625, u'漢') + QString(100, QChar(0xE000)))->width(),
             10000);
}

void VelmorFontxTest::unknownCode_isLoggedAndDrawnAsTheReplacement()
{
    const VelmorFontx fonts;
    QTest::ignoreMessage(QtWarningMsg, "fcfc is unknown charactor");
    QCOMPARE(fonts.fontDataWithSJIS(0xFCFC), fonts.fontDataWithSJIS(0x81A0));
    QTest::ignoreMessage(QtWarningMsg, "0100 is unknown charactor");
    QCOMPARE(fonts.fontDataWithSJIS(0x100), fonts.fontDataWithSJIS(0x81A0));
    // A character of the private use area has a code, but no font has its glyph.
    QTest::ignoreMessage(QtWarningMsg, "f040 is unknown charactor");
    QCOMPARE(asText(*fonts.bitmapWithString(QString(QChar(0xE000)))),
             asText(*fonts.bitmapWithString(u"□"_s)));
    // One byte in Shift_JIS (0x7E), and not among the codes that are brought back to one byte.
    QTest::ignoreMessage(QtWarningMsg, "7e00 is unknown charactor");
    QCOMPARE(asText(*fonts.bitmapWithString(u"‾"_s)), asText(*fonts.bitmapWithString(u"□"_s)));
}

void VelmorFontxTest::charactersThatCannotBeEncoded_areDrawnSilentlyAsTheReplacement()
{
    const VelmorFontx fonts;
    QTest::failOnWarning(anyWarning);
    const auto replacement = asText(*fonts.bitmapWithString(u"□"_s));
    QCOMPARE(asText(*fonts.bitmapWithString(u"ก"_s)), replacement);
    // A character outside the basic plane is two units.
    QCOMPARE(asText(*fonts.bitmapWithString(u"😀"_s)), asText(*fonts.bitmapWithString(u"□□"_s)));
}

void VelmorFontxTest::latin1_selectsTheSingleByteGlyphOfThatNumber()
{
    const VelmorFontx fonts;
    // U+00B1 shows the glyph at 0xB1, a half-width katakana, and not the sign ±.
    QCOMPARE(asText(*fonts.bitmapWithString(u"±"_s)), asText(*fonts.bitmapWithString(u"ｱ"_s)));
    QCOMPARE(fonts.bitmapWithString(u"é"_s)->width(), 8);
}

void VelmorFontxTest::rotation_turnsFullWidthGlyphs()
{
    VelmorFontx fonts;
    const auto upright = fonts.bitmapWithString(u"漢"_s);
    fonts.setRotation(true);
    QCOMPARE(asText(*fonts.bitmapWithString(u"漢"_s)), asText(*upright->rotateLeft90()));
    fonts.setRotation(false);
    QCOMPARE(asText(*fonts.bitmapWithString(u"漢"_s)), asText(*upright));
}

void VelmorFontxTest::rotation_leavesMarksAndHalfWidth_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("prolonged sound mark") << u"ー"_s;
    QTest::newRow("bracket") << u"「"_s;
    QTest::newRow("arrow") << u"→"_s;
    QTest::newRow("ASCII") << u"A"_s;
    QTest::newRow("half-width katakana, too narrow to turn") << u"ｱ"_s;
}

void VelmorFontxTest::rotation_leavesMarksAndHalfWidth()
{
    QFETCH(QString, text);
    VelmorFontx fonts;
    const auto upright = fonts.bitmapWithString(text);
    fonts.setRotation(true);
    QCOMPARE(asText(*fonts.bitmapWithString(text)), asText(*upright));
}

void VelmorFontxTest::isKanji_keepsExactly75Marks()
{
    const VelmorFontx fonts;
    const QString kept =
        u"()｟｠「」『』〈〉《》«»{}〔〕〘〙【】〖〗[]‘’“”〝〟'→←↑↓⇨⇦⇧⇩☞↗↖↘↙⇄↔⇒⇔▶◀▷◁⤴⤵ー〜゠-–—‐¦|‖¶†‡§&#…‥・"_s;
    QCOMPARE(kept.size(), 75);
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar character(static_cast<char16_t>(unit));
        QCOMPARE(fonts.isKanji(character.unicode()), unit >= 256 && !kept.contains(character));
    }
    // Half-width katakana counts as to be turned, although its glyph is too narrow for that.
    QVERIFY(fonts.isKanji(0xFF71));
    QVERIFY(!fonts.isKanji(0xFF));
    QVERIFY(fonts.isKanji(0x100));
}

void VelmorFontxTest::areas()
{
    const VelmorFontx fonts;
    const int area = fonts.fontAreaWithCode(0x889F);
    QVERIFY(area > 0);
    QVERIFY(fonts.startCodeWithArea(area) <= 0x889F);
    QVERIFY(fonts.offsetWithArea(area) > 0);
    QCOMPARE(fonts.offsetWithArea(0), std::int64_t{0});
    QCOMPARE(fonts.fontAreaWithCode(0xFFFF), -1);
    QTest::ignoreMessage(QtWarningMsg, "startCodeWithArea:fontArea error");
    QCOMPARE(fonts.startCodeWithArea(fonts.blockCount()), 0);
    QTest::ignoreMessage(QtWarningMsg, "offsetWithArea:fontArea error");
    QCOMPARE(fonts.offsetWithArea(fonts.blockCount()), std::int64_t{0});
    QCOMPARE(fonts.startCodeWithArea(-1), 0);
    QCOMPARE(fonts.offsetWithArea(-1), std::int64_t{0});
}

void VelmorFontxTest::fontName_prefersTheDoubleByteFont()
{
    const VelmorFontx single(QString(), u"/nonexistent.fnt"_s);
    QCOMPARE(single.fontName(), u"SHNHN16 "_s);
    QCOMPARE(single.fontSize(), QSizeF(8, 16));
    const VelmorFontx none(u"/nonexistent.fnt"_s, u"/nonexistent.fnt"_s);
    QVERIFY(none.fontName().isNull());
    QCOMPARE(none.fontSize(), QSizeF(0, 0));
}

void VelmorFontxTest::missingFonts_drawBlanksAndSaySoOnce()
{
    const QTemporaryDir folder;
    const QString nowhere = folder.filePath(u"missing.fnt"_s);
    QTest::ignoreMessage(QtWarningMsg,
                         "VelmorFontx: no single-byte font, its characters are blank");
    QTest::ignoreMessage(QtWarningMsg,
                         "VelmorFontx: no double-byte font, its characters are blank");
    QTest::failOnWarning(anyWarning);
    const VelmorFontx fonts(nowhere, nowhere);
    const auto line = fonts.bitmapWithString(u"A漢字B"_s);
    QCOMPARE(asText(*line), QStringList(16, QString(8 + 16 + 16 + 8, u'.')));
    QCOMPARE(asText(*VelmorFontx(nowhere, nowhere).bitmapWithString(u"漢"_s)),
             QStringList(16, QString(16, u'.')));
}

void VelmorFontxTest::nullPaths_meanTheProgramsFiles()
{
    const VelmorFontx fonts{QString(), QString()};
    QCOMPARE(asText(*fonts.bitmapWithString(u"A漢"_s)),
             asText(*VelmorFontx().bitmapWithString(u"A漢"_s)));
}

void VelmorFontxTest::fontDatas_haveOneEntryForEachUnit()
{
    const VelmorFontx fonts;
    const auto datas = fonts.fontDatasWithString(u"A漢ー"_s);
    QCOMPARE(datas.size(), std::size_t{3});
    QCOMPARE(datas[0].data.size(), 16);
    QVERIFY(!datas[0].kanji);
    QCOMPARE(datas[1].data.size(), 32);
    QVERIFY(datas[1].kanji);
    QCOMPARE(datas[2].data.size(), 32);
    QVERIFY(!datas[2].kanji);
}

void VelmorFontxTest::renderingWhileRotationChanges_isWholeLines()
{
    VelmorFontx fonts;
    const QString text(100, u'漢');
    const auto upright = asText(*fonts.bitmapWithString(text));
    fonts.setRotation(true);
    const auto turned = asText(*fonts.bitmapWithString(text));
    std::jthread other([&fonts](const std::stop_token &stop) {
        for (bool on = false; !stop.stop_requested(); on = !on)
            fonts.setRotation(on);
    });
    for (int i = 0; i < 200; ++i) {
        const auto line = asText(*fonts.bitmapWithString(text));
        QVERIFY(line == upright || line == turned);
    }
}

QTEST_APPLESS_MAIN(VelmorFontxTest)
#include "velmorfontx_test.moc"
