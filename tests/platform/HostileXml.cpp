// SPDX-License-Identifier: MIT
#include "HostileXml.h"

#include "platform/XmlLimits.h"

#include <iconv.h>

#include <array>

namespace qovelmor {

namespace {

using Documents = std::vector<HostileXml>;

QByteArray number(qsizetype value)
{
    return QByteArray::number(value);
}

QByteArray attributes(qsizetype count)
{
    QByteArray text;
    for (qsizetype i = 0; i < count; ++i)
        text += " a" + number(i) + "=''";
    return text;
}

QByteArray laughs(int levels, int width)
{
    QByteArray text = "<!DOCTYPE a [<!ENTITY l0 'ha'>";
    for (int i = 1; i <= levels; ++i)
        text +=
            "<!ENTITY l" + number(i) + " '" + ("&l" + number(i - 1) + ";").repeated(width) + "'>";
    return text + "]><a>&l" + number(levels) + ";</a>";
}

QByteArray longEntity(qsizetype size, qsizetype count)
{
    return "<!DOCTYPE a [<!ENTITY x '" + QByteArray(size, 'x') + "'>]><a>" +
           QByteArray("&x;").repeated(count) + "</a>";
}

QByteArray namespaces(int levels, int each)
{
    QByteArray text = "<a>";
    for (int level = 0; level < levels; ++level) {
        text += "<a";
        for (int i = 0; i < each; ++i)
            text += " xmlns:p" + number(level * each + i) + "='u'";
        text += ">";
    }
    return text + QByteArray("<p0:b/>").repeated(1000) + QByteArray("</a>").repeated(levels) +
           "</a>";
}

void addGrowing(Documents &documents)
{
    const auto add = [&documents](const char *what, qsizetype size, const QByteArray &xml,
                                  XmlOutcome outcome) {
        documents.push_back({what + (' ' + number(size)), xml, outcome});
    };
    const auto errorAbove = [](qsizetype size, qsizetype limit) {
        return size > limit ? XmlOutcome::Error : XmlOutcome::Result;
    };
    for (const qsizetype size : {1, 100, 250, 300, 1000, 10'000, 100'000, 1'000'000}) {
        const QByteArray open = QByteArray("<a>").repeated(size);
        add("levels", size, open + QByteArray("</a>").repeated(size), errorAbove(size, 256));
        add("levels without an end", size, open, XmlOutcome::Error);
    }
    constexpr auto mostAttributes = static_cast<qsizetype>(xmllimits::attributesPerElement);
    for (const qsizetype size : {1, 127, 128, 129, 1000, 10'000, 200'000})
        add("attributes", size, "<a" + attributes(size) + "/>", errorAbove(size, mostAttributes));
    for (const qsizetype size : {1, 1000, 40'000, 60'000, 1'000'000}) {
        const QByteArray name(size, 'n');
        add("a name of", size, "<" + name + "/>", errorAbove(size, 50'000));
        add("an attribute's name of", size, "<a " + name + "=''/>", errorAbove(size, 50'000));
        add("an entity's name of", size, "<a>&" + name + ";</a>", XmlOutcome::Error);
        add("a prefix of", size, "<a><" + name + ":b/></a>", errorAbove(size, 50'000));
        add("an instruction's name of", size, "<a><?" + name + "?></a>", errorAbove(size, 50'000));
    }
    for (const int levels : {1, 2, 5, 10, 20, 30, 40, 100, 1000}) {
        // Mark-up and entities in an entity are refused, however harmless.
        add("entities inside entities", levels, laughs(levels, 2), XmlOutcome::Error);
        add("ten entities inside entities", levels, laughs(levels, 10), XmlOutcome::Error);
    }
    for (const qsizetype size : {1, 100, 10'000, 100'000})
        add("an often used entity of", size, longEntity(size, 10'000), XmlOutcome::Either);
    for (const int levels : {1, 2, 3, 50, 200})
        add("namespaces in levels", levels, namespaces(levels, 100),
            levels <= 2 ? XmlOutcome::Result : XmlOutcome::Error);
    add("an entity in a circle", 2, "<!DOCTYPE a [<!ENTITY x '&y;'><!ENTITY y '&x;'>]><a>&x;</a>",
        XmlOutcome::Error);
    add("an entity in an attribute's circle", 1, "<!DOCTYPE a [<!ENTITY x '&x;'>]><a b='&x;'/>",
        XmlOutcome::Error);
}

// One string for each character that a document may be built around.
QByteArray itemFeed(qsizetype items)
{
    return "<rss><channel>" +
           QByteArray("<item><title>t</title><link>l</link></item>\n").repeated(items) +
           "</channel></rss>";
}

QByteArray converted(const char *encoding, const QByteArray &utf8)
{
    const iconv_t converter = ::iconv_open(encoding, "UTF-8");
    QByteArray from = utf8;
    QByteArray to(utf8.size() * 8 + 64, '\0');
    char *source = from.data();
    char *target = to.data();
    auto sourceLeft = static_cast<std::size_t>(from.size());
    auto targetLeft = static_cast<std::size_t>(to.size());
    ::iconv(converter, &source, &sourceLeft, &target, &targetLeft);
    ::iconv(converter, nullptr, nullptr, &target, &targetLeft); // back to the first state
    ::iconv_close(converter);
    return to.first(to.size() - static_cast<qsizetype>(targetLeft));
}

} // namespace

Documents greedyDocuments(qsizetype full)
{
    Documents documents;
    addGrowing(documents);
    for (const char *piece : {"<a/>", "<!---->", "<?a?>", "x", "<a>x</a>x", "&nbsp;", "&#12354;",
                              "<![CDATA[x]]>", "<a b='c'/>", "<p:a/>", "<a xmlns='u'/>", "<a>",
                              "]]", "\n", "<a/", "&", "<!--", "\xe3\x81\x82"}) {
        const QByteArray text(piece);
        const QByteArray filling = text.repeated(full / text.size());
        documents.push_back({"full of " + text.toPercentEncoding(), "<a>" + filling + "</a>", {}});
        documents.push_back(
            {"full of " + text.toPercentEncoding() + ", cut", "<a>" + filling, XmlOutcome::Error});
    }
    documents.push_back({"double hyphens in a comment of 3 MiB",
                         "<a><!--" + QByteArray(3 * 1024 * 1024, '-') + "--></a>",
                         XmlOutcome::Error});
    documents.push_back({"300,000 items", itemFeed(300'000), XmlOutcome::Result});
    documents.push_back({"300,000 items, cut", itemFeed(300'000).chopped(20), XmlOutcome::Error});
    documents.push_back({"one attribute, full", "<a b='" + QByteArray(full, 'x') + "'/>", {}});
    documents.push_back(
        {"quotes in a tag, full", "<a " + QByteArray(full, '\'') + "/>", XmlOutcome::Error});
    return documents;
}

Documents damagedDocuments()
{
    const QByteArray whole = "<?xml version='1.0'?><rss a='b'><!-- c --><item><title>t</title>"
                             "<![CDATA[d]]></item></rss>";
    Documents documents;
    for (qsizetype at = 0; at <= whole.size(); ++at) {
        QByteArray zero = whole;
        zero.insert(at, '\0');
        documents.push_back({"a zero byte at " + number(at), zero, XmlOutcome::Error});
        QByteArray control = whole;
        control.insert(at, '\x01');
        documents.push_back({"a control character at " + number(at), control, XmlOutcome::Error});
        QByteArray tag = whole;
        tag.insert(at, "<b>");
        documents.push_back({"an open tag at " + number(at), tag, XmlOutcome::Either});
    }
    // Large enough to be read piece by piece: what comes behind the damage is well-formed again.
    const QByteArray items = QByteArray("<item><title>t</title></item>").repeated(10'000);
    documents.push_back({"a double hyphen in a comment before 10,000 items",
                         "<rss><!-- a -- b -->" + items + "</rss>", XmlOutcome::Error});
    return documents;
}

Documents lyingDocuments()
{
    constexpr std::array encodings = {
        "UTF-8", "UTF-16",    "UTF-16LE",       "UTF-16BE",
        "CP932", "EUC-JP-MS", "ISO-2022-JP-MS", "ISO-8859-1//TRANSLIT",
        "UTF-32"};
    constexpr std::array declared = {"UTF-8",      "UTF-16", "Shift_JIS", "EUC-JP", "ISO-2022-JP",
                                     "ISO-8859-1", "UTF-32", "US-ASCII",  "UTF-7",  "x-unknown"};
    Documents documents;
    for (const char *real : encodings) {
        for (const char *said : declared) {
            const QByteArray text = "<?xml version='1.0' encoding='" + QByteArray(said) +
                                    "'?><rss><title>日本①</title></rss>";
            documents.push_back(
                {QByteArray(real) + " that says " + said, converted(real, text), {}});
        }
    }
    return documents;
}

Documents reachingDocuments(const QByteArray &file, const QByteArray &web)
{
    Documents documents;
    for (const QByteArray &target :
         {file, web, QByteArray("/etc/hostname"), QByteArray("//127.0.0.1/x")}) {
        const auto add = [&](const char *how, const QByteArray &xml) {
            documents.push_back({how + (' ' + target), xml, XmlOutcome::Either});
        };
        add("a system entity", "<!DOCTYPE a [<!ENTITY x SYSTEM '" + target + "'>]><a>&x;</a>");
        add("a public entity", "<!DOCTYPE a [<!ENTITY x PUBLIC 'p' '" + target + "'>]><a>&x;</a>");
        add("a system entity in an attribute",
            "<!DOCTYPE a [<!ENTITY x SYSTEM '" + target + "'>]><a b='&x;'/>");
        add("a parameter entity",
            "<!DOCTYPE a [<!ENTITY % x SYSTEM '" + target + "'>%x;]><a>1</a>");
        add("a parameter entity that declares", "<!DOCTYPE a [<!ENTITY % x SYSTEM '" + target +
                                                    "'><!ENTITY % y '<!ENTITY z SYSTEM \"" +
                                                    target + "\">'>%y;]><a>&z;</a>");
        add("an external subset", "<!DOCTYPE a SYSTEM '" + target + "'><a>&x;</a>");
        add("a public external subset", "<!DOCTYPE a PUBLIC 'p' '" + target + "'><a>&nbsp;</a>");
        add("an unparsed entity", "<!DOCTYPE a [<!NOTATION n SYSTEM '" + target +
                                      "'><!ENTITY x SYSTEM '" + target + "' NDATA n>]><a>1</a>");
        add("an inclusion", "<a xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='" +
                                target + "' parse='text'/></a>");
        add("a stylesheet", "<?xml-stylesheet type='text/xsl' href='" + target + "'?><a>1</a>");
        add("a schema", "<a xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
                        "x:schemaLocation='u " +
                            target + "' x:noNamespaceSchemaLocation='" + target + "'>1</a>");
        add("a base", "<a xml:base='" + target + "'>1</a>");
    }
    return documents;
}

} // namespace qovelmor
