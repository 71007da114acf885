// SPDX-License-Identifier: MIT
#include "platform/XmlTreeBuilder.h"

#include <libxml/HTMLparser.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace qovelmor {

namespace {

// What libxml2 allocates for one node, with the allocator's own overhead.
constexpr std::size_t elementCost = sizeof(xmlNode) + 16;
constexpr std::size_t textCost = sizeof(xmlNode) + 48;
constexpr std::size_t attributeCost = sizeof(xmlAttr) + 16 + textCost;
/// The clock is asked once in so many events.
constexpr unsigned eventsPerLook = 256;
/// One attribute in libxml2's SAX interface: name, prefix, namespace, value, end of the value.
constexpr int attributeFields = 5;

std::chrono::nanoseconds threadTime()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// What one parse adds to libxml2's own state; the parser context points to it.
class Builder
{
public:
    Builder(xmlParserCtxtPtr parser, std::span<const std::string_view> containers,
            std::chrono::nanoseconds mostTime)
        : parser_(parser), mostTime_(mostTime)
    {
        containers_.reserve(containers.size());
        for (const std::string_view name : containers)
            containers_.push_back(::xmlDictLookup(parser->dict,
                                                  reinterpret_cast<const xmlChar *>(name.data()),
                                                  static_cast<int>(name.size())));
    }

    XmlBreak reason() const { return reason_; }

    void note(XmlBreak reason)
    {
        if (reason_ == XmlBreak::None)
            reason_ = reason;
    }

    void stop(xmlParserCtxtPtr parser, XmlBreak reason)
    {
        note(reason);
        ::xmlStopParser(parser);
        if (parser != parser_)
            ::xmlStopParser(parser_); // an entity's text is read by a parser of its own
    }

    /// False when that was too much: the parser is stopped and its text is gone, so that nothing
    /// that points into it may be touched any more.
    bool spend(xmlParserCtxtPtr parser, std::size_t bytes)
    {
        treeBytes_ += bytes;
        if (treeBytes_ > xmllimits::treeBytes)
            stop(parser, XmlBreak::TooLarge);
        if (++events_ % eventsPerLook == 0 && threadTime() - start_ > mostTime_)
            stop(parser, XmlBreak::TooSlow);
        return reason_ == XmlBreak::None;
    }

    bool spendEntity(xmlParserCtxtPtr parser, const xmlEntity &entity)
    {
        entityBytes_ += static_cast<std::size_t>(entity.length) + 1;
        if (entityBytes_ > xmllimits::entityBytes)
            stop(parser, XmlBreak::TooLarge);
        return spend(parser, static_cast<std::size_t>(entity.length));
    }

    /// White space between the parts of a container is layout. A third of all nodes of a feed
    /// would be such text, and each query would walk past it.
    bool isLayout(const xmlNode *parent, std::string_view text) const
    {
        return parent &&
               std::find(containers_.begin(), containers_.end(), parent->name) !=
                   containers_.end() &&
               text.find_first_not_of(" \t\r\n") == std::string_view::npos;
    }

    /// The namespace that stands for a prefix; `prefix` comes from the parser's dictionary, so its
    /// address identifies it. Owned by the document.
    xmlNsPtr namespaceOf(xmlParserCtxtPtr parser, const xmlChar *prefix)
    {
        xmlNsPtr &found = namespaces_[prefix];
        if (!found) {
            const QByteArray uri = xmlNamespaceOfPrefix(reinterpret_cast<const char *>(prefix));
            found =
                ::xmlNewNs(nullptr, reinterpret_cast<const xmlChar *>(uri.constData()), nullptr);
            found->prefix = ::xmlStrdup(prefix); // not above: "xml" would be refused there
            found->next = parser->myDoc->oldNs;
            parser->myDoc->oldNs = found;
        }
        return found;
    }

    /// HTML's entity of this name in the form that the place needs: in text it is taken as a
    /// character, in an attribute's value as an entity with that content.
    xmlEntityPtr htmlEntity(const xmlChar *name, bool isInText)
    {
        auto &entities = htmlEntities_[isInText ? 0 : 1];
        const std::string_view text(reinterpret_cast<const char *>(name));
        if (const auto found = entities.find(text); found != entities.end())
            return &found->second.entity;
        const htmlEntityDesc *known = ::htmlEntityLookup(name);
        if (!known)
            return nullptr;
        HtmlEntity &made = entities[known->name];
        const int length =
            ::xmlCopyCharMultiByte(made.content.data(), static_cast<int>(known->value));
        made.entity.type = XML_ENTITY_DECL;
        made.entity.name = reinterpret_cast<const xmlChar *>(known->name);
        made.entity.content = made.content.data();
        made.entity.orig = made.content.data();
        made.entity.length = length;
        made.entity.etype = isInText ? XML_INTERNAL_PREDEFINED_ENTITY : XML_INTERNAL_GENERAL_ENTITY;
        return &made.entity;
    }

private:
    struct HtmlEntity
    {
        xmlEntity entity{};
        std::array<xmlChar, 8> content{};
    };

    xmlParserCtxtPtr parser_;
    std::chrono::nanoseconds mostTime_;
    std::vector<const xmlChar *> containers_; ///< names of the parser's dictionary
    XmlBreak reason_ = XmlBreak::None;
    std::size_t treeBytes_ = 0;
    std::size_t entityBytes_ = 0;
    unsigned events_ = 0;
    std::chrono::nanoseconds start_ = threadTime();
    std::unordered_map<const xmlChar *, xmlNsPtr> namespaces_;
    /// For text and for attributes, by HTML's names.
    std::array<std::unordered_map<std::string_view, HtmlEntity>, 2> htmlEntities_;
};

xmlParserCtxtPtr parserOf(void *context)
{
    return static_cast<xmlParserCtxtPtr>(context);
}

Builder &builderOf(xmlParserCtxtPtr parser)
{
    return *static_cast<Builder *>(parser->_private);
}

/// Takes the prefixes out of the attributes (the tree would look them up among declarations) and
/// returns how many had one.
int takePrefixes(const xmlChar **attributes, int count,
                 std::array<const xmlChar *, xmllimits::attributesPerElement> &prefixes)
{
    int prefixed = 0;
    for (int i = 0; i < count; ++i) {
        const xmlChar *&prefix = attributes[i * attributeFields + 1];
        prefixes[static_cast<std::size_t>(i)] = prefix;
        if (prefix) {
            prefix = nullptr;
            ++prefixed;
        }
    }
    return prefixed;
}

void startElement(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *, int,
                  const xmlChar **, int attributeCount, int defaulted, const xmlChar **attributes)
{
    const xmlParserCtxtPtr parser = parserOf(context);
    Builder &builder = builderOf(parser);
    const auto count = static_cast<std::size_t>(attributeCount);
    if (count > xmllimits::attributesPerElement)
        return builder.stop(parser, XmlBreak::TooLarge);
    if (parser->nsNr / 2 > xmllimits::namespacesInScope)
        return builder.stop(parser, XmlBreak::TooManyNamespaces);
    if (!builder.spend(parser, elementCost + count * attributeCost))
        return;

    std::array<const xmlChar *, xmllimits::attributesPerElement> prefixes;
    const int prefixed = takePrefixes(attributes, attributeCount, prefixes);
    ::xmlSAX2StartElementNs(context, name, nullptr, nullptr, 0, nullptr, attributeCount, defaulted,
                            attributes);
    const xmlNodePtr element = parser->node;
    if (!element)
        return;
    if (prefix)
        element->ns = builder.namespaceOf(parser, prefix);
    std::size_t index = 0;
    for (xmlAttrPtr attribute = prefixed ? element->properties : nullptr;
         attribute && index < count; attribute = attribute->next, ++index) {
        if (prefixes[index])
            attribute->ns = builder.namespaceOf(parser, prefixes[index]);
    }
}

/// Comments and instructions are no part of the tree, but reading them takes time as well.
void leaveOut(void *context, const xmlChar *)
{
    const xmlParserCtxtPtr parser = parserOf(context);
    builderOf(parser).spend(parser, 0);
}

void characters(void *context, const xmlChar *text, int length)
{
    const xmlParserCtxtPtr parser = parserOf(context);
    Builder &builder = builderOf(parser);
    if (builder.isLayout(parser->node,
                         {reinterpret_cast<const char *>(text), static_cast<std::size_t>(length)}))
        return leaveOut(context, text);
    const bool isNew =
        parser->node && (!parser->node->last || parser->node->last->type != XML_TEXT_NODE);
    const std::size_t cost = (isNew ? textCost : 0) + static_cast<std::size_t>(length);
    if (builder.spend(parser, cost))
        ::xmlSAX2Characters(context, text, length);
}

void leaveOutInstruction(void *context, const xmlChar *target, const xmlChar *)
{
    leaveOut(context, target);
}

xmlEntityPtr getEntity(void *context, const xmlChar *name)
{
    const xmlParserCtxtPtr parser = parserOf(context);
    Builder &builder = builderOf(parser);
    if (const xmlEntityPtr declared = ::xmlSAX2GetEntity(context, name)) {
        if (declared->etype != XML_INTERNAL_PREDEFINED_ENTITY &&
            !builder.spendEntity(parser, *declared))
            return nullptr;
        return declared;
    }
    return builder.htmlEntity(name, parser->instate == XML_PARSER_CONTENT);
}

/// Entities of the document's own are taken as plain text only: mark-up or further entities inside
/// could grow without end, and no feed has them.
void declareEntity(void *context, const xmlChar *name, int type, const xmlChar *publicId,
                   const xmlChar *systemId, xmlChar *content)
{
    const xmlParserCtxtPtr parser = parserOf(context);
    const bool isGeneral = type == XML_INTERNAL_GENERAL_ENTITY;
    if (isGeneral && content && !::xmlGetPredefinedEntity(name) &&
        std::strpbrk(reinterpret_cast<const char *>(content), "<&"))
        return builderOf(parser).stop(parser, XmlBreak::Declarations);
    ::xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
}

/// An attribute with a default value would be added to each element of its name.
void declareAttribute(void *context, const xmlChar *element, const xmlChar *name, int type,
                      int mode, const xmlChar *value, xmlEnumerationPtr choices)
{
    const xmlParserCtxtPtr parser = parserOf(context);
    if (value) {
        builderOf(parser).stop(parser, XmlBreak::Declarations);
        ::xmlFreeEnumeration(choices);
        return;
    }
    ::xmlSAX2AttributeDecl(context, element, name, type, mode, value, choices);
}

xmlParserInputPtr openNothing(const char *, const char *, xmlParserCtxtPtr)
{
    return nullptr;
}

void prepareLibrary()
{
    static std::once_flag done;
    std::call_once(done, [] {
        ::xmlInitParser();
        // NOENT below reads file:// entities in spite of NONET; with this nothing can.
        ::xmlSetExternalEntityLoader(&openNothing);
    });
}

/// The text, given to the parser piece by piece: after an error it gets no more. Left alone, the
/// parser goes through all the rest, and may find a million further errors there.
struct Portions
{
    std::string_view left;
    xmlParserCtxtPtr parser;
    int errorLine = 0;
    QByteArray errorText;

    static int next(void *state, char *buffer, int size)
    {
        auto &portions = *static_cast<Portions *>(state);
        if (portions.parser->wellFormed == 0) {
            if (portions.errorLine == 0) {
                portions.errorLine = portions.parser->lastError.line;
                portions.errorText = QByteArray(portions.parser->lastError.message).trimmed();
            }
            return 0;
        }
        const std::size_t count =
            portions.left.copy(buffer, static_cast<std::size_t>(std::max(size, 0)));
        portions.left.remove_prefix(count);
        return static_cast<int>(count);
    }
};

/// Without this, errors of some kinds would be printed.
void noteError(void *context, xmlErrorPtr error)
{
    if (error->code == XML_ERR_NO_MEMORY) // also said of a text that has grown too long
        builderOf(parserOf(context)).note(XmlBreak::TooLarge);
}

void setHandlers(xmlSAXHandler &handler)
{
    handler.serror = &noteError;
    handler.startElementNs = &startElement;
    handler.characters = &characters;
    handler.ignorableWhitespace = &characters;
    handler.getEntity = &getEntity;
    handler.entityDecl = &declareEntity;
    handler.attributeDecl = &declareAttribute;
    handler.comment = &leaveOut;
    handler.processingInstruction = &leaveOutInstruction;
}

} // namespace

QByteArray xmlNamespaceOfPrefix(std::string_view prefix)
{
    if (prefix == "xml") // XPath knows this one by itself
        return reinterpret_cast<const char *>(XML_XML_NAMESPACE);
    return QByteArray("prefix:").append(prefix.data(), static_cast<qsizetype>(prefix.size()));
}

XmlTree buildXmlTree(std::string_view utf8, std::span<const std::string_view> containers,
                     std::chrono::nanoseconds mostTime)
{
    prepareLibrary();
    struct Free
    {
        void operator()(xmlParserCtxtPtr parser) const { ::xmlFreeParserCtxt(parser); }
    };
    const std::unique_ptr<xmlParserCtxt, Free> parser(::xmlNewParserCtxt());
    XmlTree tree;
    Builder builder(parser.get(), containers, mostTime);
    parser->_private = &builder;
    setHandlers(*parser->sax);
    // Entities replaced, CDATA as text, no network. Never HUGE (entities grow without bound),
    // RECOVER (damaged documents look whole) or anything that loads a DTD.
    const int options = XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOCDATA | XML_PARSE_NOERROR |
                        XML_PARSE_NOWARNING;
    Portions portions{utf8, parser.get(), 0, {}};
    const xmlDocPtr document =
        utf8.size() > xmllimits::wholeBytes
            ? ::xmlCtxtReadIO(parser.get(), &Portions::next, nullptr, &portions, nullptr, nullptr,
                              options)
            : ::xmlCtxtReadMemory(parser.get(), utf8.data(), static_cast<int>(utf8.size()), nullptr,
                                  nullptr, options);
    if (document && builder.reason() == XmlBreak::None) {
        tree.document = document;
        return tree;
    }
    if (document)
        ::xmlFreeDoc(document);
    tree.reason = builder.reason() == XmlBreak::None ? XmlBreak::IllFormed : builder.reason();
    const xmlError &error = parser->lastError;
    tree.line = error.line;
    if (tree.reason != XmlBreak::IllFormed && parser->input)
        tree.line = parser->input->line;
    tree.text = QByteArray(error.message).trimmed();
    if (tree.reason == XmlBreak::IllFormed && portions.errorLine > 0) {
        tree.line = portions.errorLine;
        tree.text = portions.errorText;
    }
    return tree;
}

} // namespace qovelmor
