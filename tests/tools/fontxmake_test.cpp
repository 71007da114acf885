// SPDX-License-Identifier: MIT
#include "platform/TextEncoding.h"
#include "render/SjisCode.h"
#include "render/VelmorFontx.h"
#include "tests/support/bitmapastext.h"
#include "tools/fontx_make/FontxWriter.h"
#include "tools/fontx_make/ShiftJisRows.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <ft2build.h>
#include FT_FREETYPE_H

using namespace qovelmor;
using namespace qovelmor::fontx;
using namespace Qt::Literals::StringLiterals;

namespace {

/// A glyph as FreeType gives it, in rows of "#" and ".": the test reads the source fonts by itself
/// and does not trust the code that made the files.
class ReferenceFont
{
public:
    explicit ReferenceFont(const char *path)
    {
        if (FT_Init_FreeType(&library_) != 0 || FT_New_Face(library_, path, 0, &face_) != 0)
            qFatal("cannot open %s", path);
        if (FT_IS_SCALABLE(face_))
            FT_Set_Pixel_Sizes(face_, 16, 16);
        else
            FT_Select_Size(face_, 0);
        if (!face_->charmap)
            FT_Set_Charmap(face_, face_->charmaps[0]);
    }
    ~ReferenceFont()
    {
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }
    ReferenceFont(const ReferenceFont &) = delete;
    ReferenceFont &operator=(const ReferenceFont &) = delete;

    bool has(unsigned long character) const { return FT_Get_Char_Index(face_, character) != 0; }

    QStringList rows(unsigned long character, int width) const
    {
        FT_Load_Glyph(face_, FT_Get_Char_Index(face_, character), FT_LOAD_TARGET_MONO);
        FT_Render_Glyph(face_->glyph, FT_RENDER_MODE_MONO);
        const FT_GlyphSlot slot = face_->glyph;
        QStringList rows(16, QString(width, u'.'));
        for (unsigned y = 0; y < slot->bitmap.rows; ++y) {
            const unsigned char *line =
                slot->bitmap.buffer + static_cast<int>(y) * slot->bitmap.pitch;
            for (unsigned x = 0; x < slot->bitmap.width; ++x) {
                const int column = slot->bitmap_left + static_cast<int>(x);
                const int row = 14 - slot->bitmap_top + static_cast<int>(y);
                if ((line[x / 8] & (0x80U >> x % 8)) != 0)
                    rows[row][column] = u'#';
            }
        }
        return rows;
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

QByteArray bytesOf(int code)
{
    return QByteArray(1, static_cast<char>(code >> 8)) + static_cast<char>(code & 0xFF);
}

QStringList rendered(char16_t character)
{
    static const VelmorFontx fonts;
    return asText(*fonts.bitmapWithString(QString(QChar(character))));
}

/// What the dot font holds under a code, whether or not a character leads there.
QStringList stored(int code)
{
    static const VelmorFontx fonts;
    const QByteArray data = fonts.fontDataWithSJIS(code);
    const int rowBytes = static_cast<int>(data.size()) / 16;
    QStringList rows;
    for (int y = 0; y < 16; ++y) {
        QString row;
        for (int x = 0; x < rowBytes * 8; ++x)
            row += static_cast<unsigned char>(data[y * rowBytes + x / 8]) << x % 8 & 0x80 ? u'#'
                                                                                          : u'.';
        rows << row;
    }
    return rows;
}

DotRows patterned(int code)
{
    DotRows rows{};
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] = static_cast<std::uint16_t>(code * 31 + static_cast<int>(y));
    return rows;
}

} // namespace

class FontxMakeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyJisCharacter_isDrawnAsInTheSourceFont();
    void everyVendorCharacter_isDrawnAsInTheSourceFont();
    void everySingleByteCharacter_isDrawnAsInTheSourceFont();
    void everyCharacterOfTheCodePage_isDrawnWithoutComplaint();
    void shiftJisOfJis_data();
    void shiftJisOfJis();
    void unicodeOfShiftJis_knowsVendorCharacters();
    void wordFontFile_startsANewBlockAtEachHole();
    void wordFontFile_refusesTooManyBlocks();
    void names_haveEightBytes();
    void sourceFont_refusesWhatIsNoFont();
};

void FontxMakeTest::everyJisCharacter_isDrawnAsInTheSourceFont()
{
    const ReferenceFont source(QOVELMOR_KANJI_FONT);
    int compared = 0;
    int throughText = 0;
    for (int high = 0x21; high <= 0x7E; ++high) {
        for (int low = 0x21; low <= 0x7E; ++low) {
            const int jis = high << 8 | low;
            if (!source.has(static_cast<unsigned long>(jis)))
                continue;
            const int code = fontx::shiftJisOfJis(static_cast<std::uint16_t>(jis));
            const QStringList expected = source.rows(static_cast<unsigned long>(jis), 16);
            QCOMPARE(stored(code), expected);
            ++compared;
            const QString character = decodeShiftJis(bytesOf(code));
            QCOMPARE(character.size(), 1);
            // A character below U+0100, such as ×, selects a single-byte glyph instead.
            if (character[0].unicode() < 0x100)
                continue;
            QCOMPARE(rendered(character[0].unicode()), expected);
            ++throughText;
        }
    }
    QCOMPARE(compared, 6879);
    QVERIFY2(throughText >= 6870, qPrintable(QString::number(throughText)));
}

void FontxMakeTest::everyVendorCharacter_isDrawnAsInTheSourceFont()
{
    if (QByteArray(QOVELMOR_FURTHER_FONT).isEmpty()) {
        QCOMPARE(rendered(u'①'), rendered(u'□'));
        return;
    }
    const ReferenceFont source(QOVELMOR_FURTHER_FONT);
    int compared = 0;
    for (const auto &[first, last] : {std::pair(0x8740, 0x879C), std::pair(0xFA40, 0xFC4B)}) {
        for (int code = first; code <= last; ++code) {
            const QString character = decodeShiftJis(bytesOf(code));
            if (character.size() != 1 || character[0] == QChar::ReplacementCharacter)
                continue;
            const char16_t unit = character[0].unicode();
            const QStringList expected = source.rows(unit, 16);
            QCOMPARE(stored(code), expected);
            // Some have a second place among the JIS X 0208 characters, which encoders prefer.
            if (sjisCode(unit) >= 0x8740 && (sjisCode(unit) < 0x879D || sjisCode(unit) > 0xED3F))
                QCOMPARE(rendered(unit), expected);
            ++compared;
        }
    }
    QCOMPARE(compared, 83 + 388);
}

void FontxMakeTest::everySingleByteCharacter_isDrawnAsInTheSourceFont()
{
    const ReferenceFont latin(QOVELMOR_LATIN_FONT);
    const ReferenceFont katakana(QOVELMOR_KATAKANA_FONT);
    for (char16_t unit = 0x20; unit <= 0x7E; ++unit)
        QCOMPARE(rendered(unit), latin.rows(unit, 8));
    for (char16_t unit = 0xE0; unit <= 0xFF; ++unit)
        QCOMPARE(rendered(unit), latin.rows(unit, 8));
    for (int code = 0xA1; code <= 0xDF; ++code)
        QCOMPARE(rendered(static_cast<char16_t>(code - 0xA1 + 0xFF61)),
                 katakana.rows(static_cast<unsigned long>(code), 8));
    for (const int code : {0x00, 0x1F, 0x7F, 0x80, 0xA0})
        QCOMPARE(stored(code), QStringList(16, QString(8, u'.')));
    // No yen sign and no overline in their places.
    QVERIFY(stored('\\') != katakana.rows('\\', 8));
    QVERIFY(stored('~') != katakana.rows('~', 8));
}

void FontxMakeTest::everyCharacterOfTheCodePage_isDrawnWithoutComplaint()
{
    QVERIFY2(!QByteArray(QOVELMOR_FURTHER_FONT).isEmpty(),
             "vendor characters need the package fonts-unifont");
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    int drawn = 0;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar character(static_cast<char16_t>(unit));
        // The private use area has codes but no glyphs anywhere; the overline is a single byte in
        // Shift_JIS, and of those only half-width katakana are brought back to one byte.
        const bool hasNoGlyph = character.category() == QChar::Other_PrivateUse || unit == 0x203E;
        if (hasNoGlyph || character.isSurrogate() || !encodeShiftJis(QString(character)))
            continue;
        const auto size = rendered(character.unicode()).first().size();
        QVERIFY(size == 8 || size == 16);
        ++drawn;
    }
    QVERIFY(drawn > 7300);
}

void FontxMakeTest::shiftJisOfJis_data()
{
    QTest::addColumn<int>("jis");
    QTest::addColumn<int>("code");
    QTest::newRow("first") << 0x2121 << 0x8140;
    QTest::newRow("before the gap at 7F") << 0x215F << 0x817E;
    QTest::newRow("after it") << 0x2160 << 0x8180;
    QTest::newRow("end of an odd row") << 0x217E << 0x819E;
    QTest::newRow("start of an even row") << 0x2221 << 0x819F;
    QTest::newRow("the replacement") << 0x2222 << 0x81A0;
    QTest::newRow("first kanji") << 0x3021 << 0x889F;
    QTest::newRow("last before the katakana") << 0x5E7E << 0x9FFC;
    QTest::newRow("first after them") << 0x5F21 << 0xE040;
    QTest::newRow("last kanji") << 0x7426 << 0xEAA4;
}

void FontxMakeTest::shiftJisOfJis()
{
    QFETCH(int, jis);
    QTEST(int(fontx::shiftJisOfJis(static_cast<std::uint16_t>(jis))), "code");
}

void FontxMakeTest::unicodeOfShiftJis_knowsVendorCharacters()
{
    QCOMPARE(unicodeOfShiftJis(0x8740).value_or(0), U'①');
    QCOMPARE(unicodeOfShiftJis(0xFBFC).value_or(0), U'髙');
    QCOMPARE(unicodeOfShiftJis(0x82A0).value_or(0), U'あ');
    QVERIFY(!unicodeOfShiftJis(0xFCFC));
    QVERIFY(!unicodeOfShiftJis(0x8080));
}

void FontxMakeTest::wordFontFile_startsANewBlockAtEachHole()
{
    WordGlyphs glyphs;
    for (const int code : {0x8140, 0x8141, 0x8143, 0x889F})
        glyphs[static_cast<std::uint16_t>(code)] = patterned(code);
    const auto bytes = wordFontFile("TEST", glyphs);
    QVERIFY(bytes);
    const FontxFile font(FontxFile::Kind::DoubleByte, QByteArray::fromStdString(*bytes));
    QCOMPARE(font.name(), u"TEST    "_s);
    QCOMPARE(font.size(), QSizeF(16, 16));
    QCOMPARE(font.blocks().size(), std::size_t{3});
    QCOMPARE(font.blockOfCode(0x8142), -1);
    for (const auto &[code, rows] : glyphs) {
        QByteArray expected;
        for (const std::uint16_t row : rows)
            expected += bytesOf(row);
        QCOMPARE(font.wordGlyph(code), expected);
    }
}

void FontxMakeTest::wordFontFile_refusesTooManyBlocks()
{
    WordGlyphs glyphs;
    for (int i = 0; i < 255; ++i)
        glyphs[static_cast<std::uint16_t>(0x8140 + 2 * i)] = DotRows{};
    QVERIFY(wordFontFile("TEST", glyphs));
    glyphs[0xFFFF] = DotRows{};
    QVERIFY(!wordFontFile("TEST", glyphs));
}

void FontxMakeTest::names_haveEightBytes()
{
    const auto glyphs = std::make_unique<ByteGlyphs>();
    for (const char *name : {"", "SHORT", "EXACTLY8", "MUCH TOO LONG"}) {
        const std::string bytes = byteFontFile(name, *glyphs);
        QCOMPARE(bytes.size(), std::size_t{17 + 256 * 16});
        QCOMPARE(QByteArray::fromStdString(bytes.substr(6, 8)),
                 QByteArray(name).left(8).leftJustified(8, ' '));
    }
}

void FontxMakeTest::sourceFont_refusesWhatIsNoFont()
{
    QVERIFY(!SourceFont::open("/nonexistent/font.pcf.gz"));
    QVERIFY(!SourceFont::open("/proc/self/exe"));
    QVERIFY(SourceFont::open(QOVELMOR_KANJI_FONT));
    QVERIFY(!SourceFont::open(QOVELMOR_KANJI_FONT)->glyph(0x2021));
}

QTEST_APPLESS_MAIN(FontxMakeTest)
#include "fontxmake_test.moc"
