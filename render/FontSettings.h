// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The mincho face that board text is drawn with unless the user chooses another one.
inline const QString &defaultFontName()
{
    static const QString name = QStringLiteral("HiraMinPro-W3");
    return name;
}

/// How text becomes dots. A rendering works on a copy taken at its start, so that a setting that
/// changes meanwhile counts from the next line on.
struct FontSettings
{
    QString fontName = defaultFontName();
    float size = 16.0F; ///< pixels to the em
    /// Stroke width in percent of the size: 0 fills the glyphs, above 0 draws their outline only,
    /// below 0 fills and outlines them.
    float bold = 0.0F;
    float italic = 0.0F;    ///< slant: columns to the right for each row upward
    float expansion = 0.0F; ///< glyphs are this much wider, as a natural logarithm
    int boarder = 72;       ///< a pixel is a dot when its value (0..255) is greater
    bool useFontx = true;   ///< dot fonts instead of `fontName`
    bool rotation = false;  ///< full-width glyphs of the dot fonts are turned counter-clockwise

    friend bool operator==(const FontSettings &, const FontSettings &) = default;
};

} // namespace qovelmor
