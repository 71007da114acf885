// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace qovelmor {

/// One code block of a double-byte font: the codes from `startCode` to `endCode`, both included.
struct FontxBlock
{
    int startCode = 0;
    int endCode = 0;
    std::int64_t offsetNumber = 0; ///< glyphs in all earlier blocks
};

/// The contents of one dot font file in the FONTX2 layout; never changes after loading.
///
///     0   6  signature, not looked at
///     6   8  font name, Shift_JIS
///    14   1  glyph width in dots       15  1  glyph height in dots
///    16   1  code type, not looked at: the caller says which kind it wants
///    17      single-byte font: 256 glyphs of 16 bytes
///    17   1  double-byte font: number of code blocks n
///    18  4n  per block start and end code, each 2 bytes, low byte first
///  18+4n     double-byte font: glyphs of 32 bytes, block after block
///
/// A glyph's rows run from top to bottom, 1 or 2 bytes each; the highest bit is the leftmost dot
/// and a 1 is lit. Drawing takes 8 × 16 and 16 × 16 dots whatever the header's sizes say.
class FontxFile
{
public:
    enum class Kind { SingleByte, DoubleByte };

    static constexpr int byteGlyphSize = 16;
    static constexpr int wordGlyphSize = 32;
    /// Nothing that a code could reach lies behind this in a font that a person made.
    static constexpr qint64 maxFileSize = 16 * 1024 * 1024;

    /// The font in `path`, read from the disk once per process as long as the file stays the same.
    /// Never null: a file that cannot be opened gives an empty font, silently. What is wrong with a
    /// file that was read (cut short, no header, blocks that lie) is said once in the system log.
    static std::shared_ptr<const FontxFile> load(Kind kind, const QString &path);

    /// The font in these bytes. Cut-short bytes give what is there; `problem` (when given) receives
    /// what is wrong with them, empty when all is well.
    FontxFile(Kind kind, const QByteArray &bytes, QString *problem = nullptr);
    /// The font of a file that could not be opened.
    FontxFile() = default;

    bool isLoaded() const { return isLoaded_; }
    /// The eight bytes of the header with their trailing blanks; null when not loaded.
    const QString &name() const { return name_; }
    QSizeF size() const { return size_; }
    /// Everything behind header and block table; null when not loaded.
    const QByteArray &data() const { return data_; }
    const std::vector<FontxBlock> &blocks() const { return blocks_; }

    /// The index of the first block that holds the code, or -1.
    int blockOfCode(int code) const;

    /// The 16 bytes of a single-byte glyph; blank where the file has none. The bytes are a view
    /// that holds as long as this font does.
    QByteArray byteGlyph(int code) const;
    /// The 32 bytes of a double-byte glyph; blank where the file has none or no block holds the
    /// code.
    QByteArray wordGlyph(int code) const;

    /// True for the first caller only: a missing font is worth one line in the log, not one for
    /// each character.
    bool claimMissingReport() const { return !isMissingReported_.exchange(true); }

private:
    QString readBlocks(const QByteArray &bytes);
    QByteArray glyphAt(std::int64_t offset, int length) const;

    bool isLoaded_ = false;
    QString name_;
    QSizeF size_{0.0, 0.0};
    QByteArray data_;
    std::vector<FontxBlock> blocks_;
    mutable std::atomic<bool> isMissingReported_ = false;
};

} // namespace qovelmor
