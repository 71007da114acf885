// SPDX-License-Identifier: MIT
#include "feeds/MarkCutter.h"
#include "feeds/TextCleanup.h"

#include <QtTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Far more than any of the tests' texts comes to before it is clean.
constexpr qsizetype longestText = 10'000;

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

/// Counts the passes of a loop that it never ends before the given one.
struct PassCount
{
    int last = 200;
    int passes = 0;
    bool operator()() { return ++passes > last; }
};

const QStringList &mixedPieces()
{
    static const QStringList pieces{
        u"<a"_s,   u"/a>"_s, u"</a>"_s, u"<span"_s, u"/span>"_s, u"<"_s,   u">"_s,    u"&nbsp;"_s,
        u"&lt;"_s, u"\n"_s,  u"a"_s,    u"s"_s,     u"pan"_s,    u"/"_s,   u"&nb"_s,  u"sp;"_s,
        u"x"_s,    u"　"_s,  u" "_s,    u"<sp"_s,   u"an"_s,     u"<p>"_s, u"</p>"_s, u"語"_s};
    return pieces;
}

/// Halves of marks, which cuts bring together.
const QStringList &joiningPieces()
{
    static const QStringList pieces{u"<"_s,      u"a"_s,
                                    u"/a>"_s,    u"<span"_s,
                                    u"/span>"_s, u"<span></span>"_s,
                                    u"<a>/a>"_s, u"<sp"_s,
                                    u"an"_s,     u"<spa"_s,
                                    u"n"_s,      u"span"_s,
                                    u"/"_s,      u"a>\n"_s,
                                    u"/sp"_s,    u"an>"_s,
                                    u"\n"_s,     u"x"_s,
                                    u"><"_s,     u"a/a>"_s,
                                    u"an<sp"_s,  u"<<span></span>a"_s};
    return pieces;
}

QString randomText(std::mt19937 &random, const QStringList &pieces)
{
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
        QTest::newRow("an anchor made at a joint") << u"/a><<span></span>a/a>"_s;
        QTest::newRow("where an earlier cut has been")
            << u"x<sp<<span></span>a/a>an>/span>/a><<span></span>a/a>"_s;
        QTest::newRow("spans that repeat") << u"/span>b<<span>c/a>"_s;
        QTest::newRow("spans that repeat themselves") << u"/span>n<spa<spa<span"_s;
        QTest::newRow("spans that repeat a closing anchor") << u"/span>a/a><<span>c/a>"_s;
    }
    void markup_closingBeforeOpening_isEnded()
    {
        QFETCH(QString, text);
        QVERIFY(!withoutMarkup(text, never));
        QVERIFY(!literalWithoutMarkup(text, endingAt(1000)));
    }

    void markup_ofRandomTexts_isThatOfTheWordByWordRules_data()
    {
        QTest::addColumn<QStringList>("pieces");
        QTest::newRow("of all kinds") << mixedPieces();
        QTest::newRow("that join") << joiningPieces();
    }
    void markup_ofRandomTexts_isThatOfTheWordByWordRules()
    {
        QFETCH(QStringList, pieces);
        const unsigned seed = std::random_device{}();
        qInfo("seed %u", seed);
        std::mt19937 random(seed);
        for (int i = 0; i < 20'000; ++i) {
            const QString text = randomText(random, pieces);
            PassCount literal;
            PassCount counted;
            const QString expected = shown(literalWithoutMarkup(text, std::ref(literal)));
            const auto clean = withoutMarkup(text, std::ref(counted));
            QVERIFY2(shown(clean) == expected,
                     qPrintable(u"text \"%1\" expected %2"_s.arg(text, expected)));
            QVERIFY2(!clean || counted.passes == literal.passes, qPrintable(text));
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

    void markup_ofHostileTexts_takesStepsInProportion_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isEnded");
        const auto many = [](QStringView piece) { return piece.toString().repeated(50'000); };
        QTest::newRow("spans that repeat") << u"/span>n"_s + many(u"<spa") + u"<span"_s << true;
        QTest::newRow("repeated spans that make an anchor")
            << u"/span>an<"_s + many(u"<sp") + u"<span>/a>"_s << false;
        QTest::newRow("anchors made at joints") << many(u"<<span></span>a/a>") << false;
        QTest::newRow("anchors made at joints behind text")
            << many(u"x<<span></span>a/a>") << false;
        QTest::newRow("anchors made at joints, one inside the other")
            << many(u"<") + u"<span></span>"_s + many(u"a/a>") << false;
        QTest::newRow("spans made at joints, one inside the other")
            << many(u"<sp") + u"<span></span>"_s + many(u"an></span>") << false;
        QTest::newRow("spans between anchors of joints")
            << many(u"<sp<<span></span>a/a>an>/span>") << false;
        QTest::newRow("anchors") << many(u"<a></a>") << false;
        QTest::newRow("closing marks only") << many(u"/span>/a>") + u"<b>"_s << true;
    }
    void markup_ofHostileTexts_takesStepsInProportion()
    {
        QFETCH(QString, text);
        QFETCH(bool, isEnded);
        const qsizetype size = text.size();
        PassCount count{static_cast<int>(size)};
        const CleanupWatch watch = std::ref(count);
        MarkCutter cutter(text, watch);
        QCOMPARE(cutter.cut(), !isEnded);
        QVERIFY2(cutter.effort() < 12 * size,
                 qPrintable(u"%1 of %2"_s.arg(cutter.effort()).arg(size)));
    }

    void markup_keepsNoMoreMemoryThanItNeeds_data()
    {
        QTest::addColumn<QString>("text");
        const QString much(1'000'000, u'x');
        QTest::newRow("a tag") << u"1<b "_s + much + u">2"_s;
        QTest::newRow("a tag without end") << u"12<b "_s + much;
        QTest::newRow("an escaped tag") << u"12&lt;"_s + much;
        QTest::newRow("hard blanks") << u"&nbsp;"_s.repeated(100'000) + u"&lt;"_s + much;
        QTest::newRow("nothing left") << u"<"_s + much;
    }
    void markup_keepsNoMoreMemoryThanItNeeds()
    {
        QFETCH(QString, text);
        const QString clean = withoutMarkup(text, never).value();
        QVERIFY(clean.capacity() <= 2 * clean.size() + 16);
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
    row("a joint that joins the next one", "1<<<span></span>a/a>a/a>2", "12");
    row("a joint makes an anchor without end", "1<<span></span>a>2", "1");
    row("a joint makes a span", "1<sp<span></span>an>2/span>3", "13");
    row("a joint makes a closing mark", "1/<span></span>a>2", "1/a>2");
    row("repeated spans make an anchor", "/span>a<<span>b/a>c", "/span>ac");
    row("repeated spans make an anchor later", "/span>an<<sp<sp<span>b/a>\nc", "/span>anc");
    row("repeated spans make an anchor without end", "/span>a<<span>b", "/span>a");
    row("anchors go before spans", "<span><a></span></a>1", "");
}

QTEST_GUILESS_MAIN(TextCleanupTest)
#include "textcleanup_test.moc"
