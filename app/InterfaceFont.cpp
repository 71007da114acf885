// SPDX-License-Identifier: MIT
#include "app/InterfaceFont.h"

#include <QApplication>
#include <QFontDatabase>
#include <QRawFont>

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

bool drawsJapanese(const QFont &font)
{
    const QRawFont face = QRawFont::fromFont(font);
    return face.isValid() && face.supportsCharacter(QChar(u'漢')) &&
           face.supportsCharacter(QChar(u'の'));
}

} // namespace

void chooseInterfaceFont()
{
    QFont font = QApplication::font();
    if (drawsJapanese(font))
        return;
    const QStringList installed = QFontDatabase::families();
    for (const QString &family : {u"Noto Sans CJK JP"_s, u"Noto Sans JP"_s, u"IPAexGothic"_s,
                                  u"IPAGothic"_s, u"VL Gothic"_s, u"TakaoGothic"_s}) {
        if (!installed.contains(family))
            continue;
        font.setFamilies({font.family(), family});
        QApplication::setFont(font);
        return;
    }
}

} // namespace qovelmor
