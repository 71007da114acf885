// SPDX-License-Identifier: MIT
#include "render/VelmorFontx.h"

#include "platform/ResourceFolder.h"
#include "platform/SystemLog.h"
#include "render/KanjiTurn.h"
#include "render/SjisCode.h"

using namespace Qt::Literals::StringLiterals;

namespace qovelmor {

namespace {

// One-byte codes that sjisCode() has moved into the high byte.
constexpr int firstShiftedCode = 0xA000;
constexpr int lastShiftedCode = 0xDF00;

enum class Turn { Upright, Left };

/// Adds the glyph's columns on the right. A turned glyph's dot (x, y) goes to (y, 15 - x), as
/// VelmorBitmap::rotateLeft90() has it; drawing it there saves a bitmap for each character.
void appendGlyph(VelmorBitmap &line, const QByteArray &data, Turn turn)
{
    constexpr int side = VelmorBitmap::maxHeight;
    const bool isHalfWidth = data.size() == FontxFile::byteGlyphSize;
    const int width = isHalfWidth ? side / 2 : side;
    const int start = line.width();
    line.setWidth(start + width);
    const auto *bytes = reinterpret_cast<const unsigned char *>(data.constData());
    for (int y = 0; y < side; ++y) {
        auto row = static_cast<unsigned>(isHalfWidth ? bytes[y] << 8
                                                     : bytes[2 * y] << 8 | bytes[2 * y + 1]);
        for (int x = 0; x < width; ++x, row <<= 1) {
            const bool isLit = (row & 0x8000) != 0;
            if (turn == Turn::Left)
                line.putBit(start + y, side - 1 - x, isLit);
            else
                line.putBit(start + x, y, isLit);
        }
    }
}

/// Said once for each font, when it is first missed.
void reportMissing(const FontxFile &font, const QString &what)
{
    if (!font.isLoaded() && font.claimMissingReport())
        systemLog(logRender(), u"VelmorFontx: no "_s + what + u" font, its characters are blank"_s);
}

} // namespace

VelmorFontx::VelmorFontx() : VelmorFontx(QString(), QString()) {}

VelmorFontx::VelmorFontx(const QString &byteFontPath, const QString &wordFontPath)
{
    loadByteFontWithPath(byteFontPath.isNull() ? defaultByteFontPath() : byteFontPath);
    loadWordFontWithPath(wordFontPath.isNull() ? defaultWordFontPath() : wordFontPath);
}

QString VelmorFontx::defaultByteFontPath()
{
    return resourcePath(u"SHNHN16.FNT"_s);
}

QString VelmorFontx::defaultWordFontPath()
{
    return resourcePath(u"shnmk16.fnt"_s);
}

void VelmorFontx::loadByteFontWithPath(const QString &path)
{
    byteFont_ = FontxFile::load(FontxFile::Kind::SingleByte, path);
}

void VelmorFontx::loadWordFontWithPath(const QString &path)
{
    wordFont_ = FontxFile::load(FontxFile::Kind::DoubleByte, path);
}

QString VelmorFontx::fontName() const
{
    return wordFont_->isLoaded() ? wordFont_->name() : byteFont_->name();
}

QSizeF VelmorFontx::fontSize() const
{
    const QSizeF size = wordFont_->size();
    return size.width() != 0.0 && size.height() != 0.0 ? size : byteFont_->size();
}

bool VelmorFontx::isKanji(char16_t character) const
{
    return isTurnedKanji(character);
}

std::uint16_t VelmorFontx::sjisWithUnichar(char16_t unit) const
{
    return sjisCode(unit);
}

int VelmorFontx::fontAreaWithCode(int code) const
{
    return wordFont_->blockOfCode(code);
}

int VelmorFontx::startCodeWithArea(int fontArea) const
{
    if (fontArea >= blockCount())
        systemLog(logRender(), u"startCodeWithArea:fontArea error"_s);
    const bool exists = fontArea >= 0 && fontArea < blockCount();
    return exists ? wordFont_->blocks()[static_cast<std::size_t>(fontArea)].startCode : 0;
}

std::int64_t VelmorFontx::offsetWithArea(int fontArea) const
{
    if (fontArea >= blockCount())
        systemLog(logRender(), u"offsetWithArea:fontArea error"_s);
    const bool exists = fontArea >= 0 && fontArea < blockCount();
    return exists ? wordFont_->blocks()[static_cast<std::size_t>(fontArea)].offsetNumber : 0;
}

QByteArray VelmorFontx::fontDataWithSJIS(int code) const
{
    if (code >= firstShiftedCode && code <= lastShiftedCode)
        code /= 256;
    if (code > 255)
        return wordFontData(code);
    reportMissing(*byteFont_, u"single-byte"_s);
    return byteFont_->byteGlyph(code);
}

QByteArray VelmorFontx::wordFontData(int code) const
{
    reportMissing(*wordFont_, u"double-byte"_s);
    if (wordFont_->isLoaded() && fontAreaWithCode(code) < 0) {
        systemLog(logRender(), u"%1 is unknown charactor"_s.arg(code, 4, 16, QChar(u'0')));
        code = replacementCode;
    }
    return wordFont_->wordGlyph(code);
}

VelmorFontx::FontData VelmorFontx::fontDataOf(char16_t unit) const
{
    return {fontDataWithSJIS(sjisWithUnichar(unit)), isKanji(unit)};
}

std::vector<VelmorFontx::FontData> VelmorFontx::fontDatasWithString(const QString &text) const
{
    std::vector<FontData> datas;
    datas.reserve(static_cast<std::size_t>(text.size()));
    for (const QChar character : text)
        datas.push_back(fontDataOf(character.unicode()));
    return datas;
}

std::shared_ptr<const VelmorBitmap> VelmorFontx::bitmapWithString(const QString &text) const
{
    const bool isRotated = rotation();
    auto line = std::make_shared<VelmorBitmap>();
    for (const QChar character : text) {
        // The rest would be dropped; a description may be a megabyte long. Its unknown characters
        // are not logged either: nobody sees them.
        if (line->width() == VelmorBitmap::maxWidth)
            break;
        const FontData font = fontDataOf(character.unicode());
        // A glyph of 8 dots cannot be turned and stays as it is.
        const bool isTurned =
            isRotated && font.kanji && font.data.size() == FontxFile::wordGlyphSize;
        appendGlyph(*line, font.data, isTurned ? Turn::Left : Turn::Upright);
    }
    return line;
}

} // namespace qovelmor
