// SPDX-License-Identifier: MIT
#include "messages/FontMenu.h"

#include <QFontDatabase>
#include <QRawFont>

namespace qovelmor {

namespace {

// The raw font of a family is the file itself, without the fonts that stand in for missing glyphs.
bool drawsKanji(const QString &family)
{
    const QRawFont font = QRawFont::fromFont(QFont(family));
    return font.isValid() && font.supportsCharacter(QChar(u'漢'));
}

} // namespace

std::vector<FontItem> createFontMenu(const QString &checkedFontName)
{
    std::vector<FontItem> items;
    for (const QString &family : QFontDatabase::families()) {
        if (drawsKanji(family))
            items.push_back({family, family, family == checkedFontName});
    }
    return items;
}

} // namespace qovelmor
