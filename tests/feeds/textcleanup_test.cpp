// SPDX-License-Identifier: MIT
#include "feeds/TextCleanup.h"

#include <QtTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Far more than any of the tests' texts comes to before it is clean.
constexpr qsizetype longestText = 5000;

bool never()
{
    return false;
}

/// The rules word by word, each pass over the whole text; nothing when the watch ended it or the
/// text keeps growing.
std::optional<QString> literalWithoutMarkup(QString text, const CleanupWatch &watch)
{
    const struct
    {
        QString opening;
        QString closing;
    } marks[] = {{u"<a"_s, u"/a>"_s}, {u"<span"_s, u"/span>"_s}, {u"<"_s, u">"_s}};
    for (;;) {
        if (watch() || text.size() > longestText)
            return std::nullopt;
        bool isCut = false;
        for (const auto &mark : marks) {
            const qsizetype opening = text.indexOf(mark.opening);
            if (opening < 0)
                continue;
            const QString head = text.left(opening);
            const qsizetype closing = text.indexOf(mark.closing);
            if (closing < 0) {
                text = head;
                continue;
            }
            qsizetype end = closing + mark.closing.size();
            if (end < text.size() && text[end] == u'\n')
                ++end;
            text = head + text.mid(end);
            isCut = true;
            break;
        }
        if (isCut)
            continue;
        const qsizetype hardBlank = text.indexOf(u"&nbsp;"_s);
        if (hardBlank < 0)
            break;
        text.replace(hardBlank, 6, u" "_s);
    }
    const qsizetype escaped = text.indexOf(u"&lt;"_s);
    if (escaped >= 0)
        text.truncate(escaped);
    for (QChar &c : text) {
        if (c < u' ')
            c = u' ';
    }
    return text;
}

/// Ends a loop at the given pass.
CleanupWatch endingAt(int pass)
{
    return [pass, seen = 0]() mutable { return ++seen > pass; };
}

QString shown(const std::optional<QString> &text)
{
    return text ? u"\"%1\""_s.arg(*text) : u"ended by the watch"_s;
}

QString randomText(std::mt19937 &random)
{
    static const QStringList pieces{
        u"<a"_s,   u"/a>"_s, u"</a>"_s, u"<span"_s, u"/span>"_s, u"<"_s,   u">"_s,    u"&nbsp;"_s,
        u"&lt;"_s, u"\n"_s,  u"a"_s,    u"s"_s,     u"pan"_s,    u"/"_s,   u"&nb"_s,  u"sp;"_s,
        u"x"_s,    u"　"_s,  u" "_s,    u"<sp"_s,   u"an"_s,     u"<p>"_s, u"</p>"_s, u"語"_s};
    std::uniform_int_distribution<qsizetype> piece(0, pieces.size() - 1);
    QString text;
    const int count = std::uniform_int_distribution<int>(0, 24)(random);
    for (int i = 0; i < count; ++i)
        text += pieces[piece(random)];
    return text;
}

} // namespace

class TextCleanupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void markup_data();
    void markup()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(withoutMarkup(text, never).value(), expected);
        QCOMPARE(literalWithoutMarkup(text, endingAt(1000)).value(), expected);
    }

    void markup_closingBeforeOpening_isEnded_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("tag") << u"1 > 0 <b>"_s;
        QTest::newRow("tag, side by side") << u"><b>"_s;
        QTest::newRow("anchor") << u"x/a>y<a href='z'>w</a>"_s;
        QTest::newRow("span") << u"/span>y<span>w</span>"_s;
        QTest::newRow("only after other cuts") << u"<b>c</b> > <i>d</i>"_s;
    }
    void markup_closingBeforeOpening_isEnded()
    {
        QFETCH(QString, text);
        QVERIFY(!withoutMarkup(text, never));
        QVERIFY(!literalWithoutMarkup(text, endingAt(1000)));
    }

    void markup_ofRandomTexts_isThatOfTheWordByWordRules()
    {
        const unsigned seed = std::random_device{}();
        qInfo("seed %u", seed);
        std::mt19937 random(seed);
        for (int i = 0; i < 20'000; ++i) {
            const QString text = randomText(random);
            const QString expected = shown(literalWithoutMarkup(text, endingAt(200)));
            QVERIFY2(shown(withoutMarkup(text, endingAt(2000))) == expected,
                     qPrintable(u"text \"%1\" expected %2"_s.arg(text, expected)));
        }
    }

    void markup_theWatch_isAskedBeforeEachPass()
    {
        const QString text = u"<b>1</b><i>2</i>&nbsp;3"_s; // five cuts and a last look
        for (int pass = 0; pass < 8; ++pass)
            QCOMPARE(shown(withoutMarkup(text, endingAt(pass))),
                     shown(literalWithoutMarkup(text, endingAt(pass))));
        QVERIFY(!withoutMarkup(text, endingAt(5)));
        QVERIFY(withoutMarkup(text, endingAt(6)));
    }

    void markup_ofAMegabyteWithManyTags_takesMilliseconds_data()
    {
        QTest::addColumn<QString>("piece");
        QTest::addColumn<int>("count");
        QTest::newRow("tags") << u"<b>12345"_s << 100'000;
        QTest::newRow("anchors") << u"<a href=x>y</a>"_s << 70'000;
        QTest::newRow("spans") << u"<span x>y</span>z"_s << 60'000;
        QTest::newRow("hard blanks") << u"&nbsp;1234"_s << 100'000;
        QTest::newRow("opening marks only") << u"<a"_s << 500'000;
        QTest::newRow("nearly marks") << u"<sp&nbs"_s << 150'000;
    }
    void markup_ofAMegabyteWithManyTags_takesMilliseconds()
    {
        QFETCH(QString, piece);
        QFETCH(int, count);
        const QString text = piece.repeated(count);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(withoutMarkup(text, never).has_value());
        QVERIFY2(timer.elapsed() < 500, qPrintable(QString::number(timer.elapsed())));
    }

    void headSpace_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("mixed") << u"　 　　  x　 "_s << u"x　 "_s;
        QTest::newRow("only blanks") << u" 　 "_s << u""_s;
        QTest::newRow("a tab is none") << u"\tx"_s << u"\tx"_s;
    }
    void headSpace()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(withoutHeadSpace(text, never).value(), expected);
        QVERIFY(text.isEmpty() || !withoutHeadSpace(text, endingAt(0)));
    }

    void tailSpace_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("blanks and control characters") << u" x \t\n "_s << u" x"_s;
        QTest::newRow("an ideographic blank stays") << u"x　 "_s << u"x　"_s;
        QTest::newRow("only blanks") << u"   "_s << u""_s;
    }
    void tailSpace()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(withoutTailSpace(text, never).value(), expected);
        QVERIFY(text.isEmpty() || !withoutTailSpace(text, endingAt(0)));
    }
};

void TextCleanupTest::markup_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *text, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(expected);
    };
    row("plain", "本文", "本文");
    row("empty", "", "");
    row("all steps", "W<a href=\"x\">text</a>\nX&nbsp;Y&lt;Z", "WX Y");
    row("an anchor goes with its text", "1<a>2</a>3", "13");
    row("one line feed behind it goes too", "1<a>2</a>\n\n3", "1 3");
    row("an anchor without end takes the rest", "1<a>2<b>3", "1");
    row("<abbr> counts as an anchor", "1<abbr>2</abbr>3", "1");
    row("a span goes with its text", "1<span c>2</span>\n3", "13");
    row("a span without end takes the rest", "1<b>2</b><span>3", "12");
    row("a tag goes, its text stays", "1<b>2</b>3", "123");
    row("a tag without end takes the rest", "1<b>2</b 3", "12");
    row("a line feed behind a tag goes", "1<br/>\n2", "12");
    row("upper case is a plain tag", "1<A>2</A>3", "123");
    row("hard blanks", "&nbsp;1&nbsp;&nbsp;2", " 1  2");
    row("hard blanks do not join", "&nb&nbsp;sp;", "&nb sp;");
    row("a cut may join one", "&nb<b>sp;", " ");
    row("an escaped tag ends the text", "1&lt;b&gt;2", "1");
    row("a cut may join the escaped tag", "1&l<b>t;2", "1");
    row("control characters become blanks", "1\t2\n3\r4", "1 2 3 4");
    row("a cut joins an anchor", "1<<a>x</a>a>2</a>3", "13");
    row("a cut of a span joins an anchor", "1<<span>x</span>a>2/a>3", "13");
    row("anchors go before spans", "<span><a></span></a>1", "");
}

QTEST_GUILESS_MAIN(TextCleanupTest)
#include "textcleanup_test.moc"
