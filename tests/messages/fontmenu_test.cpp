// SPDX-License-Identifier: MIT
#include "messages/FontMenu.h"

#include <QFontDatabase>
#include <QRawFont>
#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class FontMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void menuHoldsTheFamiliesThatDrawKanji()
    {
        QStringList expected;
        for (const QString &family : QFontDatabase::families()) {
            if (QRawFont::fromFont(QFont(family)).supportsCharacter(QChar(u'漢')))
                expected.append(family);
        }
        QStringList offered;
        for (const FontItem &item : createFontMenu(QString())) {
            offered.append(item.fontName);
            QVERIFY(!item.title.isEmpty());
            QVERIFY(!item.isChecked);
        }
        QCOMPARE(offered, expected);
        QVERIFY2(!offered.isEmpty(), "no installed font draws kanji");
    }

    void storedFontCarriesTheMark()
    {
        const auto items = createFontMenu(QString());
        QVERIFY(!items.empty());
        const QString last = items.back().fontName;
        for (const FontItem &item : createFontMenu(last))
            QCOMPARE(item.isChecked, item.fontName == last);
    }
};

QTEST_MAIN(FontMenuTest)
#include "fontmenu_test.moc"
