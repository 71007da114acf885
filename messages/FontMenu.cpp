// SPDX-License-Identifier: MIT
#include "messages/FontMenu.h"

#include "platform/FontCoverage.h"

#include <QFontDatabase>

namespace qovelmor {

namespace {

// Where two makers have a family of one name, the toolkit tells them apart as "family [maker]".
QString withoutMaker(const QString &family)
{
    const qsizetype maker = family.endsWith(u']') ? family.lastIndexOf(u" [") : -1;
    return maker > 0 ? family.left(maker) : family;
}

} // namespace

std::vector<FontItem> createFontMenu(const QString &checkedFontName)
{
    const QSet<QString> drawKanji = fontFamiliesCovering(U'漢');
    std::vector<FontItem> items;
    for (const QString &family : QFontDatabase::families()) {
        if (drawKanji.contains(withoutMaker(family)))
            items.push_back({family, family, family == checkedFontName});
    }
    return items;
}

} // namespace qovelmor
