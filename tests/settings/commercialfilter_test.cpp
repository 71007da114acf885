// SPDX-License-Identifier: MIT
#include "settings/CommercialFilter.h"

#include <QTest>

using namespace qovelmor;

class CommercialFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keywordMarksText_data();
    void keywordMarksText();
};

void CommercialFilterTest::keywordMarksText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<bool>("isMarked");

    const auto row = [](const char *name, const char16_t *text, const char16_t *keyword,
                        bool isMarked) {
        QTest::newRow(name) << QString::fromUtf16(text) << QString::fromUtf16(keyword) << isMarked;
    };
    row("a colon follows", u"PR: NEW SHOP", u"PR", true);
    row("a letter follows", u"PRESS", u"PR", false);
    row("what stands before does not count", u"APR.", u"PR", true);
    row("the very end does not count", u"NEWS PR", u"PR", false);
    row("the text is the keyword", u"PR", u"PR", false);
    row("a letter of the keyword's end follows", u"ADD", u"AD", false);
    row("a digit follows", u"AD2", u"AD", true);
    row("a blank follows", u"AD X", u"AD", true);
    row("only the first occurrence counts", u"PRESS PR:", u"PR", false);
    row("a kanji is a letter", u"PR広告", u"PR", false);
    row("a katakana is a letter", u"PRアド", u"PR", false);
    row("the long vowel mark is a letter", u"PRー", u"PR", false);
    row("a full-width bracket is none", u"PR】新発売", u"PR", true);
    row("an accented letter is a letter", u"PRÉ", u"PR", false);
    row("a full-width letter is a letter", u"PRＡ", u"PR", false);
    row("half of a pair is no letter", u"PR\U00020BB7", u"PR", true);
    row("an empty keyword never occurs", u"PR:", u"", false);
    row("an empty text", u"", u"PR", false);
    row("a keyword longer than the text", u"P", u"PR", false);
    row("lower case in the keyword never matches", u"PR:", u"pr", false);
    row("a Japanese keyword", u"【広告】お知らせ", u"広告", true);
}

void CommercialFilterTest::keywordMarksText()
{
    QFETCH(QString, text);
    QFETCH(QString, keyword);
    QTEST(isCommercialMessage(text, keyword), "isMarked");
}

QTEST_APPLESS_MAIN(CommercialFilterTest)
#include "commercialfilter_test.moc"
