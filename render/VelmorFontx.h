// SPDX-License-Identifier: MIT
#pragma once

#include "render/FontxFile.h"
#include "render/VelmorBitmap.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <atomic>
#include <memory>
#include <vector>

namespace qovelmor {

/// Renders text with two dot fonts from FONTX2 files: single-byte characters on 8 × 16 dots,
/// double-byte characters on 16 × 16.
///
/// Any number of objects share the font data of one file. Rendering is const and may run on several
/// threads at once; setRotation() may be called meanwhile and counts from the next line on.
class VelmorFontx
{
public:
    /// One character of a line: its glyph (16 or 32 bytes) and whether rotation turns it.
    struct FontData
    {
        QByteArray data;
        bool kanji = false;
    };

    /// The two fonts that come with the program.
    VelmorFontx();
    /// A null path means the program's own file of that role.
    VelmorFontx(const QString &byteFontPath, const QString &wordFontPath);

    static QString defaultByteFontPath();
    static QString defaultWordFontPath();

    /// A file that cannot be read leaves the font of that role empty: its characters are blank.
    /// Not while another thread renders.
    void loadByteFontWithPath(const QString &path);
    void loadWordFontWithPath(const QString &path);

    /// The double-byte font's name, else the single-byte one's; null when neither is loaded.
    QString fontName() const;
    /// The glyph size in dots as the double-byte font's header tells it, unless one side is 0
    /// there.
    QSizeF fontSize() const;

    bool rotation() const { return rotation_.load(); }
    /// On: full-width glyphs are turned counter-clockwise, for a board that stands on its side.
    void setRotation(bool rotation) { rotation_.store(rotation); }

    bool isKanji(char16_t character) const;
    std::uint16_t sjisWithUnichar(char16_t unit) const;

    int blockCount() const { return static_cast<int>(wordFont_->blocks().size()); }
    /// The block that holds a double-byte code, or -1.
    int fontAreaWithCode(int code) const;
    /// 0, and a line in the log, when there is no such block.
    int startCodeWithArea(int fontArea) const;
    std::int64_t offsetWithArea(int fontArea) const;

    /// The glyph's 16 or 32 bytes; a view into the font that holds as long as the font is loaded.
    QByteArray fontDataWithSJIS(int code) const;
    std::vector<FontData> fontDatasWithString(const QString &text) const;

    /// The line, 16 dots high, 8 or 16 columns for each UTF-16 unit, at most 10,000 columns.
    std::shared_ptr<const VelmorBitmap> bitmapWithString(const QString &text) const;

private:
    FontData fontDataOf(char16_t unit) const;
    QByteArray wordFontData(int code) const;

    std::shared_ptr<const FontxFile> byteFont_;
    std::shared_ptr<const FontxFile> wordFont_;
    std::atomic<bool> rotation_ = false;
};

} // namespace qovelmor
