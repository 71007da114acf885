// SPDX-License-Identifier: MIT
#include "platform/XmlDocument.h"
#include "platform/XmlLimits.h"
#include "platform/XmlTagScan.h"
#include "platform/XmlTreeBuilder.h"

#include <QtTest>

#include <sys/resource.h>
#include <time.h>

#include <array>
#include <optional>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

QStringList values(const QByteArray &xml, const char *query, const QByteArray &charset = {})
{
    const XmlParseResult result = XmlDocument::parse(xml, charset);
    if (!result.document)
        return {u"line %1: %2"_s.arg(result.failure.line).arg(result.failure.cause)};
    QStringList list;
    for (const XmlNode &node : result.document->nodesForXPath(query).nodes)
        list.append(node.stringValue());
    return list;
}

double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

long peakMebibytes()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

bool isSanitized()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#else
    return false;
#endif
}

} // namespace

class XmlDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data();
    void names()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QByteArray, query);
        QFETCH(QStringList, expected);
        QCOMPARE(values(xml, query.constData()), expected);
    }

    /// A path of names is answered without XPath; with a harmless predicate it is not.
    void names_withAndWithoutXPath_areTheSame_data() { names_data(); }
    void names_withAndWithoutXPath_areTheSame()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QByteArray, query);
        QFETCH(QStringList, expected);
        QCOMPARE(values(xml, (query + "[true()]").constData()), expected);
    }

    void stringValue_data();
    void stringValue()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QString, expected);
        QCOMPARE(values(xml, "/a"), QStringList{expected});
    }

    void encodings_data();
    void encodings()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QByteArray, charset);
        QFETCH(QString, expected);
        QCOMPARE(values(xml, "/a", charset), QStringList{expected});
    }

    void illFormed_isAnErrorWithItsLine_data();
    void illFormed_isAnErrorWithItsLine()
    {
        QFETCH(QByteArray, xml);
        QFETCH(int, line);
        const XmlParseResult result = XmlDocument::parse(xml);
        QVERIFY(!result.document);
        QCOMPARE(result.failure.line, line);
        QVERIFY(!result.failure.cause.isEmpty());
    }

    void aDocumentCutAnywhere_isAnError()
    {
        const QByteArray whole =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE a [<!ENTITY b "
            "'c'>]><a x=\"1\"><!-- d --><b>語&b;</b><![CDATA[e]]></a>";
        QVERIFY(XmlDocument::parse(whole).document);
        for (qsizetype size = 0; size < whole.size(); ++size)
            QVERIFY2(!XmlDocument::parse(whole.left(size)).document, whole.left(size).constData());
    }

    void hostile_endsInBoundedTimeAndMemory_data();
    void hostile_endsInBoundedTimeAndMemory()
    {
        QFETCH(QByteArray, xml);
        QFETCH(std::optional<bool>, isReadable);
        const double start = threadSeconds();
        const long before = peakMebibytes();
        const XmlParseResult result = XmlDocument::parse(xml);
        if (isSanitized())
            return; // its checks cost time and memory of their own
        if (isReadable)
            QCOMPARE(result.document != nullptr, *isReadable);
        QVERIFY2(threadSeconds() - start < 2.0,
                 qPrintable(QString::number(threadSeconds() - start)));
        QVERIFY2(peakMebibytes() - before < 512,
                 qPrintable(QString::number(peakMebibytes() - before)));
    }

    void textThatGrowsTooLong_isSaidAsSuch()
    {
        const XmlParseResult result =
            XmlDocument::parse("<a>" + QByteArray(11'000'000, 'x') + "</a>");
        QVERIFY(!result.document);
        QCOMPARE(result.failure.cause, u"文書の構造が大きすぎます。"_s);
    }

    void treeThatTakesTooLong_isGivenUp()
    {
        const QByteArray xml = "<a>" + QByteArray("<b>x</b>").repeated(1000) + "</a>";
        const XmlTree tree = buildXmlTree(xml.toStdString(), {}, 0ns);
        QVERIFY(!tree.document);
        QVERIFY(tree.reason == XmlBreak::TooSlow);
        QCOMPARE(tree.line, 1);
    }

    void files_areNeverRead()
    {
        QTemporaryFile secret;
        QVERIFY(secret.open());
        secret.write("secret");
        secret.flush();
        const QByteArray url = "file://" + secret.fileName().toUtf8();
        const QByteArray documents[] = {
            "<!DOCTYPE a [<!ENTITY x SYSTEM '" + url + "'>]><a>&x;</a>",
            "<!DOCTYPE a [<!ENTITY % x SYSTEM '" + url + "'>%x;]><a>1</a>",
            "<!DOCTYPE a SYSTEM '" + url + "'><a>1</a>",
            "<a xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='" + url +
                "' parse='text'/></a>"};
        for (const QByteArray &xml : documents)
            QVERIFY(!values(xml, "/a").join(u""_s).contains(u"secret"_s));
    }

    void aBrokenQuery_isAnError()
    {
        const XmlParseResult result = XmlDocument::parse("<a/>");
        QVERIFY(result.document->nodesForXPath("/a[").errorCode != 0);
        QVERIFY(result.document->nodesForXPath("1 + 1").errorCode != 0);
        QCOMPARE(result.document->nodesForXPath("/b").errorCode, 0);
    }

    void layout_isLeftOutOfContainersOnly()
    {
        constexpr std::array<std::string_view, 2> containers{"rss", "item"};
        const auto result = XmlDocument::parse(
            "<rss>\n <item>\n  <title> <b>a</b> <i>b</i>\n</title>\tkept\n</item> </rss>", {},
            containers);
        const auto value = [&](const char *query) {
            return result.document->nodesForXPath(query).nodes.front().stringValue();
        };
        QCOMPARE(value("/rss/item/title"), u" a b\n"_s);
        QCOMPARE(value("/rss/item"), u" a b\n\tkept\n"_s);
        QCOMPARE(value("/rss"), u" a b\n\tkept\n"_s);
    }

    // Answers are remembered from question to question.
    void manyQueries_onOneDocument()
    {
        QByteArray xml = "<r><q/><p><a>1</a><x:a>2</x:a><b c='3'/></p><q/><p><a>4</a></p>";
        for (int i = 0; i < 100'000; ++i)
            xml += "<n" + QByteArray::number(i) + "/>";
        const auto result = XmlDocument::parse(xml + "</r>");
        const auto all = [&](const char *query) {
            QStringList list;
            for (const XmlNode &node : result.document->nodesForXPath(query).nodes)
                list.append(node.stringValue());
            return list;
        };
        const double start = threadSeconds();
        for (int round = 0; round < 2; ++round) {
            QCOMPARE(all("/r/p/a"), QStringList({u"1"_s, u"4"_s}));
            QCOMPARE(all("r/p/x:a"), QStringList(u"2"_s));
            QCOMPARE(all("/r/p/b/@c"), QStringList(u"3"_s));
            QCOMPARE(all("/r/p/none"), QStringList());
            QCOMPARE(all("/r/none/a"), QStringList());
            QCOMPARE(all("/r/p").size(), 2);
            QCOMPARE(all("/r/n99999").size(), 1);
        }
        QVERIFY(threadSeconds() - start < 1.0); // not with the square of the names
    }

    void hasChildElement()
    {
        const XmlParseResult result =
            XmlDocument::parse("<a xmlns='u' xmlns:p='v'><b/><p:c/><d><e/></d></a>");
        const XmlNode root = result.document->nodesForXPath("/a").nodes.front();
        QVERIFY(root.hasChildElement("b"));
        QVERIFY(!root.hasChildElement("c"));
        QVERIFY(!root.hasChildElement("e"));
    }

    void crowdedTag_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<bool>("expected");
        QTest::newRow("as many as allowed") << QByteArray("<a b='' c=''/>") << false;
        QTest::newRow("one more") << QByteArray("<a b='' c='' d=\"\"/>") << true;
        QTest::newRow("spread over two tags") << QByteArray("<a b='' c=''><d e=''/></a>") << false;
        QTest::newRow("a later tag") << QByteArray("<a/>''''''<b c='>' d=\"<\" e=''/>") << true;
        QTest::newRow("quotes in text") << QByteArray("<a>''''''</a>") << false;
        QTest::newRow("a comment") << QByteArray("<!-- a='' b='' c='' --><a/>") << false;
        QTest::newRow("behind a comment") << QByteArray("<!-- ' --><a b='' c='' d=''/>") << true;
        QTest::newRow("CDATA") << QByteArray("<![CDATA[<a b='' c='' d=''/>]]>") << false;
        QTest::newRow("an instruction") << QByteArray("<?a b='' c='' d='' ?>") << false;
        QTest::newRow("never closed") << QByteArray("<!-- <a b='' c='' d=''/>") << false;
    }
    void crowdedTag()
    {
        QFETCH(QByteArray, xml);
        QFETCH(bool, expected);
        QCOMPARE(findCrowdedTag(xml.toStdString(), 2) != std::string_view::npos, expected);
    }
};

void XmlDocumentTest::names_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const char *xml, const char *query,
                        const QStringList &expected) {
        QTest::newRow(name) << QByteArray(xml) << QByteArray(query) << expected;
    };
    row("a default namespace does not count", "<a xmlns='u'><b>1</b></a>", "/a/b", {u"1"_s});
    row("a prefix as written", "<a xmlns:p='u'><p:b>1</p:b><b>2</b></a>", "/a/p:b", {u"1"_s});
    row("without a prefix only those without", "<a xmlns:p='u'><p:b>1</p:b><b>2</b></a>", "/a/b",
        {u"2"_s});
    row("an undeclared prefix", "<a><p:b>1</p:b></a>", "/a/p:b", {u"1"_s});
    row("a prefix that the document lacks", "<a><b>1</b></a>", "/a/p:b", {});
    row("two prefixes for one namespace", "<a xmlns:p='u' xmlns:q='u'><p:b>1</p:b><q:b>2</q:b></a>",
        "/a/p:b", {u"1"_s});
    row("one prefix for two namespaces", "<a><p:b xmlns:p='u'>1</p:b><p:b xmlns:p='v'>2</p:b></a>",
        "/a/p:b", {u"1"_s, u"2"_s});
    row("from the document without a slash", "<r:R xmlns:r='u'><b>1</b></r:R>", "r:R/b", {u"1"_s});
    row("attributes", "<a b='1' p:b='2' xml:lang='ja'/>", "/a/@b", {u"1"_s});
    row("attributes with a prefix", "<a b='1' xmlns:p='u' p:b='2'/>", "/a/@p:b", {u"2"_s});
    row("the prefix xml", "<a xml:lang='ja'/>", "/a/@xml:lang", {u"ja"_s});
    row("document order", "<a><b>1</b><c><b>2</b></c><b>3</b></a>", "//b",
        {u"1"_s, u"2"_s, u"3"_s});
}

void XmlDocumentTest::stringValue_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *xml, const char *expected) {
        QTest::newRow(name) << QByteArray(xml) << QString::fromUtf8(expected);
    };
    row("empty", "<a/>", "");
    row("mixed", "<a>1<b>2<c>3</c></b>4</a>", "1234");
    row("comments and instructions are no text", "<a>1<!-- 2 -->3<?x 5?>6</a>", "136");
    row("CDATA is text", "<a>1<![CDATA[<b>&amp;]]>2</a>", "1<b>&amp;2");
    row("character references", "<a>&#12354;&#x1F600;</a>", "あ😀");
    row("line ends", "<a>1\r\n2</a>", "1\n2");
    row("HTML's entities", "<a>&nbsp;&eacute;&copy;&amp;&lt;</a>", "\u00a0é©&<");
    row("HTML's entities beside a DTD elsewhere",
        "<!DOCTYPE a PUBLIC 'p' 'http://127.0.0.1:1/x.dtd'><a>1&eacute;2</a>", "1é2");
    row("an entity of the document's own goes before HTML's",
        "<!DOCTYPE a [<!ENTITY copy '(c)'>]><a>&copy;&copy;</a>", "(c)(c)");
    row("blanks before the declaration", "\n \t<?xml version='1.0'?><a>1</a>", "1");
    row("a DTD fetched from elsewhere is left out",
        "<!DOCTYPE a [<!ENTITY % x PUBLIC 'p' 'x.ent'> %x;]><a>1&eacute;</a>", "1é");
}

void XmlDocumentTest::encodings_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("charset");
    QTest::addColumn<QString>("expected");
    const auto declared = [](const char *encoding, const QByteArray &text) {
        return "<?xml version=\"1.0\" encoding=\"" + QByteArray(encoding) + "\"?><a>" + text +
               "</a>";
    };
    const QString sample = u"日本①㈱髙~\\ｱ"_s;
    const QByteArray utf8 = sample.toUtf8();
    const QByteArray shiftJis = QByteArray::fromHex("93fa967b8740878afbfc7e5cb1");
    const QByteArray eucJp = QByteArray::fromHex("c6fccbdcada1adeafce27e5c8eb1");
    const QByteArray eucJpIbm = QByteArray::fromHex("c6fccbdcada1adea8ff4fb7e5c8eb1");
    const QByteArray iso2022Jp =
        QByteArray::fromHex("1b2442467c4b5c2d212d6a7c621b284a7e5c1b2849311b2842");

    QTest::newRow("UTF-8, undeclared") << "<a>" + utf8 + "</a>" << QByteArray() << sample;
    QTest::newRow("UTF-8, declared") << declared("utf-8", utf8) << QByteArray() << sample;
    QTest::newRow("UTF-8 with a mark")
        << "\xef\xbb\xbf" + declared("UTF-8", utf8) << QByteArray() << sample;
    for (const char *name : {"Shift_JIS", "shift-jis", "SJIS", "x-sjis", "Windows-31J", "CP932"})
        QTest::addRow("%s", name) << declared(name, shiftJis) << QByteArray() << sample;
    for (const char *name : {"EUC-JP", "x-euc-jp"}) {
        QTest::addRow("%s, rows of NEC", name) << declared(name, eucJp) << QByteArray() << sample;
        QTest::addRow("%s, IBM in three bytes", name)
            << declared(name, eucJpIbm) << QByteArray() << sample;
    }
    QTest::newRow("ISO-2022-JP") << declared("ISO-2022-JP", iso2022Jp) << QByteArray() << sample;
    const QString wide = u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>"_s + sample + u"</a>"_s;
    QByteArray little;
    QByteArray big;
    for (const QChar c : wide) {
        little.append(char(c.unicode() & 0xff)).append(char(c.unicode() >> 8));
        big.append(char(c.unicode() >> 8)).append(char(c.unicode() & 0xff));
    }
    QTest::newRow("UTF-16LE with a mark") << "\xff\xfe" + little << QByteArray() << sample;
    QTest::newRow("UTF-16BE with a mark") << "\xfe\xff" + big << QByteArray() << sample;
    QTest::newRow("UTF-16LE without") << little << QByteArray() << sample;
    QTest::newRow("UTF-16BE without") << big << QByteArray() << sample;
    QTest::newRow("UTF-16 by the transport, little") << little << QByteArray("UTF-16") << sample;
    QTest::newRow("the transport counts over the declaration")
        << declared("UTF-8", shiftJis) << QByteArray("Shift_JIS") << sample;
    QTest::newRow("a mark counts over the transport")
        << "\xef\xbb\xbf" + declared("EUC-JP", utf8) << QByteArray("Shift_JIS") << sample;
    QTest::newRow("an unknown charset of the transport does not count")
        << declared("EUC-JP", eucJp) << QByteArray("x-nonsense//IGNORE") << sample;
    QTest::newRow("blanks before a declaration of another encoding")
        << "\r\n " + declared("EUC-JP", eucJp) << QByteArray() << sample;
    QTest::newRow("a mark behind blanks")
        << " \xef\xbb\xbf" + declared("UTF-8", utf8) << QByteArray() << sample;
    QTest::newRow("declared as UTF-16, written in bytes, as the transport says")
        << declared("UTF-16", utf8) << QByteArray("UTF-8") << sample;
    QTest::newRow("Latin 1") << declared("ISO-8859-1", "\xe9") << QByteArray() << u"é"_s;
}

void XmlDocumentTest::illFormed_isAnErrorWithItsLine_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("line");
    const auto row = [](const char *name, const QByteArray &xml, int line) {
        QTest::newRow(name) << xml << line;
    };
    const auto declared = [](const char *encoding, const QByteArray &text) {
        return "<?xml version='1.0' encoding='" + QByteArray(encoding) + "'?>\n<a>\n" + text +
               "</a>";
    };
    row("nothing", "", 1);
    row("only blanks", "\n\n", 3);
    row("no XML", "hello", 1);
    row("bad nesting", "<a>\n<b>\n</a></b>", 3);
    row("blanks before count", "\n\n<a>\n<b></a>", 4);
    row("a declaration taken away counts",
        "\n<?xml version='1.0'\nencoding='Shift_JIS'?>\n<a>\n</b>", 5);
    row("two roots", "<a/>\n<b/>", 2);
    row("an entity that nobody knows", "<a>\n&nosuch;</a>", 2);
    row("a zero byte inside", QByteArray("<a>\n\0</a>", 9), 2);
    row("a zero byte behind the root", QByteArray("<a/>\0<b>", 8), 1);
    row("bytes that are no UTF-8", "<a>\n\x80</a>", 2);
    row("bytes that are no Shift_JIS", declared("Shift_JIS", "\xff\xff"), 3);
    row("bytes behind the root that are no Shift_JIS", declared("Shift_JIS", "") + "\n\xff\xff", 4);
    row("bytes that are no EUC-JP", declared("EUC-JP", "\xff\xff"), 3);
    row("bytes that are no ISO-2022-JP", declared("ISO-2022-JP", "\x80"), 3);
    row("a character cut in two", declared("UTF-8", "\xe3\x81"), 3);
    row("an unknown encoding", declared("x-nonsense", ""), 1);
    row("declared as UTF-16, written in bytes", declared("UTF-16", ""), 1);
    row("an encoding with a converter's option", declared("UTF-8//IGNORE", ""), 1);
    row("an entity with mark-up inside", "<!DOCTYPE a [\n<!ENTITY x '<b/>'>]><a>&x;</a>", 2);
    row("an attribute for all elements", "<!DOCTYPE a [\n<!ATTLIST a b CDATA 'c'>]><a/>", 2);
}

void XmlDocumentTest::hostile_endsInBoundedTimeAndMemory_data()
{
    QTest::addColumn<QByteArray>("xml");
    // Nothing: it depends on how fast the machine is.
    QTest::addColumn<std::optional<bool>>("isReadable");
    // A sanitizer looks for wrong accesses, not at limits, and takes minutes for the whole size.
    const qsizetype full = (isSanitized() ? 1 : 32) * 1024 * 1024;
    const auto filled = [full](const QByteArray &piece) {
        return piece.repeated(full / piece.size());
    };
    const auto row = [](const char *name, const QByteArray &xml, std::optional<bool> isReadable) {
        QTest::newRow(name) << xml << isReadable;
    };
    QByteArray attributes;
    for (int i = 0; i < 200'000; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    row("200,000 attributes", "<a" + attributes + "/>", false);
    QByteArray crowd = "<a";
    for (std::size_t i = 0; i < xmllimits::attributesPerElement; ++i)
        crowd += " a" + QByteArray::number(int(i)) + "=''";
    row("full of elements with as many attributes as allowed",
        "<a>" + filled(crowd + "/>") + "</a>", false);
    row("as many attributes as allowed", crowd + "/>", true);
    row("a million levels", QByteArray("<a>").repeated(1'000'000), false);
    row("a name of 60 kB", "<" + QByteArray(60'000, 'a') + "/>", false);
    row("full of empty elements", "<a>" + filled("<a/>") + "</a>", false);
    row("full of comments", "<a>" + filled("<!---->") + "</a>", std::nullopt);
    row("full of instructions", "<a>" + filled("<?a?>") + "</a>", std::nullopt);
    row("full of text", "<a>" + QByteArray(full, 'x') + "</a>", isSanitized());
    row("a text of 9 MB", "<a>" + QByteArray(9'000'000, 'x') + "</a>", true);
    row("full of elements and texts", "<a>" + filled("<a>x</a>x") + "</a>", false);
    row("300,000 items",
        "<rss><channel>" +
            QByteArray("<item><title>t</title><link>l</link></item>\n").repeated(300'000) +
            "</channel></rss>",
        true);
    row("many of HTML's entities", "<a>" + QByteArray("&nbsp;").repeated(500'000) + "</a>", true);
    QByteArray laughs = "<!DOCTYPE a [<!ENTITY l0 'ha'>";
    for (int i = 1; i < 12; ++i)
        laughs += "<!ENTITY l" + QByteArray::number(i) + " '" +
                  ("&l" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    row("entities inside entities", laughs + "]><a>&l11;</a>", false);
    row("one long entity, often",
        "<!DOCTYPE a [<!ENTITY x '" + QByteArray(100'000, 'x') + "'>]><a>" +
            QByteArray("&x;").repeated(100'000) + "</a>",
        false);
    row("one short entity, very often",
        "<!DOCTYPE a [<!ENTITY x 'x'>]><a>" + filled("&x;") + "</a>", false);
    QByteArray namespaces = "<a>";
    for (int level = 0; level < 200; ++level) {
        namespaces += "<a";
        for (int i = 0; i < 100; ++i)
            namespaces += " xmlns:p" + QByteArray::number(level * 100 + i) + "='u'";
        namespaces += ">";
    }
    row("20,000 namespaces in scope", namespaces + filled("<p0:b/>"), false);
    row("default attributes for many elements",
        "<!DOCTYPE a [<!ATTLIST b " + QByteArray("c CDATA 'd' ") + ">]><a>" + filled("<b/>") +
            "</a>",
        false);
    QByteArray prefixes = "<a>";
    for (int i = 0; i < 100'000; ++i)
        prefixes += "<p" + QByteArray::number(i) + ":b/>";
    row("100,000 prefixes", prefixes + "</a>", true);
}

QTEST_GUILESS_MAIN(XmlDocumentTest)
#include "xmldocument_test.moc"
