// SPDX-License-Identifier: MIT
#include "platform/PropertyListGuard.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <cstring>
#include <limits>
#include <memory>

namespace qovelmor {

namespace {

// The parser compares each attribute of an element with all others; no tag of a property list
// comes near this length.
bool hasLongTag(const QByteArray &bytes)
{
    constexpr std::ptrdiff_t longest = 1024;
    const char *const end = bytes.cend();
    for (const char *at = bytes.cbegin(); at < end;) {
        const auto *open =
            static_cast<const char *>(std::memchr(at, '<', static_cast<std::size_t>(end - at)));
        if (open == nullptr)
            return false;
        const auto *close =
            static_cast<const char *>(std::memchr(open, '>', static_cast<std::size_t>(end - open)));
        const bool isComment = end - open > 1 && open[1] == '!';
        if (!isComment && (close == nullptr ? end : close) - open > longest)
            return true;
        at = open + 1;
    }
    return false;
}

struct Walk
{
    xmlParserCtxtPtr parser;
    int depthLeft;
    int elementsLeft;
    bool isRefused = false;

    void refuse()
    {
        isRefused = true;
        xmlStopParser(parser);
    }
};

void onStart(void *context, const xmlChar *, const xmlChar **)
{
    auto &walk = *static_cast<Walk *>(context);
    if (--walk.depthLeft < 0 || --walk.elementsLeft < 0)
        walk.refuse();
}

void onEnd(void *context, const xmlChar *)
{
    ++static_cast<Walk *>(context)->depthLeft;
}

void onEntityDeclaration(void *context, const xmlChar *, int, const xmlChar *, const xmlChar *,
                         xmlChar *)
{
    static_cast<Walk *>(context)->refuse();
}

void ignoreMessage(void *, const char *, ...) {}

xmlSAXHandler countingHandler()
{
    xmlSAXHandler handler = {};
    handler.startElement = onStart;
    handler.endElement = onEnd;
    handler.entityDecl = onEntityDeclaration;
    handler.warning = ignoreMessage;
    handler.error = ignoreMessage;
    handler.fatalError = ignoreMessage;
    return handler;
}

// Other encodings would be read as UTF-8 by the library.
bool isUtf8(const xmlParserCtxt &parser)
{
    const xmlChar *encoding = parser.input == nullptr ? nullptr : parser.input->encoding;
    const auto *declared = reinterpret_cast<const char *>(encoding);
    return declared == nullptr || qstricmp(declared, "UTF-8") == 0 ||
           qstricmp(declared, "US-ASCII") == 0;
}

} // namespace

bool isSafePropertyList(const QByteArray &bytes, const PropertyListLimits &limits)
{
    // Both readers would take a zero byte for the end.
    if (bytes.isEmpty() || bytes.contains('\0') || bytes.size() > limits.bytes ||
        bytes.size() > std::numeric_limits<int>::max() || hasLongTag(bytes))
        return false;

    xmlInitParser();
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
        xmlCreateMemoryParserCtxt(bytes.constData(), static_cast<int>(bytes.size())),
        &xmlFreeParserCtxt);
    if (!parser)
        return false;
    Walk walk{parser.get(), limits.depth, limits.elements};
    *parser->sax = countingHandler();
    parser->userData = &walk;
    xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET);
    const int result = xmlParseDocument(parser.get());
    // An entity declaration makes the parser begin a document, although nothing is built here.
    xmlFreeDoc(parser->myDoc);
    parser->myDoc = nullptr;
    return result == 0 && parser->wellFormed == 1 && !walk.isRefused && isUtf8(*parser);
}

} // namespace qovelmor
