// SPDX-License-Identifier: MIT
#include "messages/FontMenu.h"

#include <QFile>
#include <QFontDatabase>
#include <QRawFont>
#include <QtTest>

#include <algorithm>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

QSet<QByteArray> openFontFiles()
{
    QFile mappings(u"/proc/self/maps"_s);
    if (!mappings.open(QIODevice::ReadOnly))
        qFatal("no list of mappings");
    QSet<QByteArray> files;
    for (const QByteArray &line : mappings.readAll().split('\n')) {
        const QByteArray file = line.mid(std::max<qsizetype>(line.indexOf('/'), 0));
        if (file.contains("/fonts/"))
            files.insert(file);
    }
    return files;
}

} // namespace

class FontMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The toolkit keeps every font that was once opened: a megabyte for each large Japanese one.
    // (First, before the other tests open them.)
    void makingTheMenuOpensNoFont()
    {
        const QSet<QByteArray> before = openFontFiles();
        QVERIFY(!createFontMenu(QString()).empty());
        QCOMPARE(openFontFiles(), before);
        QVERIFY(QRawFont::fromFont(QFont(u"IPAexMincho"_s)).isValid());
        QVERIFY2(openFontFiles() != before, "an open font is not seen");
    }

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
