// SPDX-License-Identifier: MIT
#include "platform/FontCoverage.h"

#include <QtTest>

#include <fontconfig/fontconfig.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class FontCoverageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The font library loses a pattern while it reads its configuration; the leak is not ours.
    void initTestCase()
    {
#ifdef __SANITIZE_ADDRESS__
        const __lsan::ScopedDisabler notOurs;
#endif
        QVERIFY(FcInit());
    }

    void fontsAreFoundByTheirCharacters()
    {
        const QSet<QString> kanji = fontFamiliesCovering(U'漢');
        QVERIFY(kanji.contains(u"IPAexMincho"_s));
        QVERIFY(kanji.contains(u"Noto Sans CJK JP"_s));
        const QSet<QString> latin = fontFamiliesCovering(U'A');
        QVERIFY(latin.contains(u"IPAexMincho"_s));
        QVERIFY2(latin.size() > kanji.size(),
                 "every font here draws kanji: the test shows nothing");
    }

    void aFontIsKnownByEachOfItsNames()
    {
        QVERIFY(fontFamiliesCovering(U'漢').contains(u"IPAex明朝"_s));
    }

    void nobodyHasAGlyphForWhatIsNoCharacter()
    {
        QVERIFY(fontFamiliesCovering(char32_t{0x10FFFF}).isEmpty());
    }
};

QTEST_GUILESS_MAIN(FontCoverageTest)
#include "fontcoverage_test.moc"
