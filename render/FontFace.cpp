// SPDX-License-Identifier: MIT
#include "render/FontFace.h"

#include "render/FontSettings.h"

#include <QFontDatabase>
#include <QStringList>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace qovelmor {

namespace {

QString installedMincho()
{
    static constexpr std::array known = {"IPAexMincho", "IPAMincho", "Noto Serif CJK JP"};
    for (const char *family : known) {
        const QString name = QString::fromLatin1(family);
        if (QFontDatabase::hasFamily(name))
            return name;
    }
    const QStringList japanese = QFontDatabase::families(QFontDatabase::Japanese);
    for (const QString &name : japanese) {
        if (name.contains(u"mincho"_s, Qt::CaseInsensitive) || name.contains(u"明朝"_s))
            return name;
    }
    return {};
}

} // namespace

QString fontFamilyFor(const QString &fontName)
{
    if (!fontName.isEmpty() && QFontDatabase::hasFamily(fontName))
        return fontName;
    const QString mincho = fontName == defaultFontName() ? installedMincho() : QString();
    return mincho.isEmpty() ? QFont().family() : mincho;
}

QFont fontFor(const QString &fontName, int pixelSize)
{
    QFont font(fontFamilyFor(fontName));
    font.setPixelSize(pixelSize);
    return font;
}

} // namespace qovelmor
