// SPDX-License-Identifier: MIT
#include "platform/XmlDocument.h"

#include "platform/FreedMemory.h"
#include "platform/PlainText.h"
#include "platform/Utf8.h"
#include "platform/XmlEncoding.h"
#include "platform/XmlLimits.h"
#include "platform/XmlPath.h"
#include "platform/XmlPathIndex.h"
#include "platform/XmlTagScan.h"
#include "platform/XmlTreeBuilder.h"

#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <algorithm>
#include <limits>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

struct FreeXPath
{
    void operator()(xmlXPathContextPtr context) const { ::xmlXPathFreeContext(context); }
    void operator()(xmlXPathObjectPtr object) const { ::xmlXPathFreeObject(object); }
};

const xmlChar *xmlText(const QByteArray &text)
{
    return reinterpret_cast<const xmlChar *>(text.constData());
}

QString fromXml(const xmlChar *text)
{
    return fromCheckedUtf8(reinterpret_cast<const char *>(text));
}

/// The text of a document with what is forgiven taken away, and the lines that went with it.
struct Prepared
{
    std::string_view text;
    int linesBefore = 0;
};

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

void drop(Prepared &prepared, std::size_t bytes)
{
    const auto dropped = prepared.text.substr(0, bytes);
    prepared.linesBefore += static_cast<int>(std::count(dropped.begin(), dropped.end(), '\n'));
    prepared.text.remove_prefix(dropped.size());
}

Prepared prepare(const XmlText &text)
{
    Prepared prepared{{text.utf8.constData(), static_cast<std::size_t>(text.utf8.size())}, 0};
    const auto dropBlanks = [&prepared] {
        drop(prepared, std::min(prepared.text.find_first_not_of(blanks), prepared.text.size()));
    };
    dropBlanks();
    if (prepared.text.starts_with(byteOrderMark))
        drop(prepared, byteOrderMark.size());
    dropBlanks();
    // A declaration that names the encoding before the conversion would have the text read twice.
    const std::size_t end = prepared.text.find("?>");
    if (text.isConverted && prepared.text.starts_with("<?xml") && end != std::string_view::npos) {
        drop(prepared, end + 2);
        dropBlanks();
    }
    return prepared;
}

int lineAt(std::string_view text, std::size_t offset)
{
    const auto before = text.substr(0, offset);
    return 1 + static_cast<int>(std::count(before.begin(), before.end(), '\n'));
}

QString causeOf(const XmlTree &tree)
{
    switch (tree.reason) {
    case XmlBreak::TooLarge:
        return u"文書の構造が大きすぎます。"_s;
    case XmlBreak::TooSlow:
        return u"文書の解析に時間がかかりすぎます。"_s;
    case XmlBreak::TooManyNamespaces:
        return u"文書の名前空間の宣言が多すぎます。"_s;
    case XmlBreak::Declarations:
        return u"文書型宣言に受け付けられない内容があります。"_s;
    case XmlBreak::IllFormed:
    case XmlBreak::None:
        break;
    }
    return u"XML として正しくありません（%1）。"_s.arg(
        withoutControls(QString::fromUtf8(tree.text)));
}

/// Registers each prefix that the query uses under its made-up namespace; one that the document
/// lacks then matches nothing.
void registerPrefixes(xmlXPathContextPtr context, std::string_view query)
{
    const auto isNameCharacter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '-' || c == '_' || c == '.';
    };
    for (std::size_t colon = query.find(':'); colon != std::string_view::npos;
         colon = query.find(':', colon + 1)) {
        std::size_t start = colon;
        while (start > 0 && isNameCharacter(query[start - 1]))
            --start;
        const std::string_view prefix = query.substr(start, colon - start);
        const QByteArray name(prefix.data(), static_cast<qsizetype>(prefix.size()));
        if (!name.isEmpty())
            ::xmlXPathRegisterNs(context, xmlText(name), xmlText(xmlNamespaceOfPrefix(prefix)));
    }
}

void beSilent(void *, xmlErrorPtr) {}

} // namespace

QString XmlNode::stringValue() const
{
    const xmlNode *only = node_->children;
    if (!only)
        return u""_s;
    if (!only->next && only->type == XML_TEXT_NODE)
        return fromXml(only->content);
    xmlChar *text = ::xmlNodeGetContent(node_);
    const QString value = fromXml(text);
    ::xmlFree(text);
    return value;
}

bool XmlNode::hasChildElement(std::string_view name) const
{
    for (const xmlNode *child = node_->children; child; child = child->next) {
        if (child->type == XML_ELEMENT_NODE && !child->ns &&
            name == reinterpret_cast<const char *>(child->name))
            return true;
    }
    return false;
}

XmlDocument::XmlDocument(_xmlDoc *document, bool isLarge)
    : document_(document), isLarge_(isLarge), paths_(std::make_unique<XmlPathIndex>(*document))
{}

XmlDocument::~XmlDocument()
{
    ::xmlFreeDoc(document_);
    if (isLarge_)
        returnFreedMemory();
}

XmlParseResult XmlDocument::parse(const QByteArray &bytes, const QByteArray &charset,
                                  std::span<const std::string_view> containers)
{
    const auto failed = [](int line, const QString &cause) {
        return XmlParseResult{nullptr, {std::max(line, 1), cause}};
    };
    if (bytes.size() > std::numeric_limits<int>::max())
        return failed(1, u"文書の構造が大きすぎます。"_s);
    const XmlText text = decodeXml(bytes, charset);
    if (text.failure == XmlText::Failure::UnknownEncoding)
        return failed(1,
                      u"文字コード「%1」を読めません。"_s.arg(QString::fromLatin1(text.encoding)));
    if (text.failure == XmlText::Failure::BrokenText)
        return failed(text.line, u"文字コード「%1」として正しくない文字があります。"_s.arg(
                                     QString::fromLatin1(text.encoding)));
    const Prepared prepared = prepare(text);
    if (prepared.text.empty())
        return failed(prepared.linesBefore + 1, u"文書が空です。"_s);
    // The parser takes a zero byte behind the root element for the end of the text.
    const std::size_t zero = prepared.text.find('\0');
    if (zero != std::string_view::npos)
        return failed(prepared.linesBefore + lineAt(prepared.text, zero),
                      u"文書に使えない文字があります。"_s);
    const std::size_t crowded = findCrowdedTag(prepared.text, xmllimits::attributesPerElement);
    if (crowded != std::string_view::npos)
        return failed(prepared.linesBefore + lineAt(prepared.text, crowded),
                      u"属性の多すぎる要素があります。"_s);
    const XmlTree tree = buildXmlTree(prepared.text, containers);
    const bool isLarge = prepared.text.size() > xmllimits::largeBytes;
    if (!tree.document) {
        if (isLarge)
            returnFreedMemory();
        return failed(prepared.linesBefore + tree.line, causeOf(tree));
    }
    return {std::unique_ptr<const XmlDocument>(new XmlDocument(tree.document, isLarge)), {}};
}

XmlQueryResult XmlDocument::nodesForXPath(std::string_view query) const
{
    XmlQueryResult result;
    if (const auto path = XmlPath::from(query)) {
        const auto nodes = paths_->nodesAt(path->steps());
        result.nodes = {nodes.begin(), nodes.end()};
        return result;
    }
    const std::unique_ptr<xmlXPathContext, FreeXPath> context(::xmlXPathNewContext(document_));
    context->error = &beSilent;
    context->node = reinterpret_cast<xmlNodePtr>(document_);
    registerPrefixes(context.get(), query);
    const QByteArray text(query.data(), static_cast<qsizetype>(query.size()));
    const std::unique_ptr<xmlXPathObject, FreeXPath> object(
        ::xmlXPathEvalExpression(xmlText(text), context.get()));
    if (!object || object->type != XPATH_NODESET) {
        const int code = context->lastError.code;
        result.errorCode = code != 0 ? code : XML_XPATH_INVALID_TYPE;
        return result;
    }
    if (const xmlNodeSet *set = object->nodesetval) {
        result.nodes.reserve(static_cast<std::size_t>(set->nodeNr));
        for (int i = 0; i < set->nodeNr; ++i)
            result.nodes.emplace_back(set->nodeTab[i]);
    }
    return result;
}

} // namespace qovelmor
