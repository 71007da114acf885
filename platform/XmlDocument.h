// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <span>
#include <string_view>
#include <vector>

struct _xmlDoc;
struct _xmlNode;

namespace qovelmor {

class XmlPathIndex;

/// One element or attribute of an XmlDocument, valid as long as the document lives.
class XmlNode
{
public:
    explicit XmlNode(const _xmlNode *node) : node_(node) {}

    /// The whole text inside, as XPath's string() gives it.
    QString stringValue() const;

    /// Whether an element of this name, written without a prefix, stands directly inside.
    bool hasChildElement(std::string_view name) const;

private:
    const _xmlNode *node_;
};

/// The answer to a query: its nodes in document order, or an error.
struct XmlQueryResult
{
    std::vector<XmlNode> nodes;
    int errorCode = 0; ///< 0, or libxml2's number of what is wrong with the query
};

/// Why a document could not be read.
struct XmlFailure
{
    int line = 0;  ///< from 1
    QString cause; ///< a sentence for the user
};

class XmlDocument;

/// Exactly one of the two is set.
struct XmlParseResult
{
    std::unique_ptr<const XmlDocument> document;
    XmlFailure failure;
};

/// An XML document as a tree that is queried with XPath 1.0 (libxml2).
///
/// Names in a query match as they are written in the document: "title" is an element without a
/// prefix, whatever default namespace is declared; "dc:date" is one with the prefix "dc", declared
/// or not; a prefix that the document lacks matches nothing.
///
/// Forgiven are blanks before the XML declaration and HTML's named entities without a declaration.
/// Anything else that is not well-formed is a failure: a part of a document is never shown as the
/// whole. Documents are hostile until read: nothing outside is ever opened, and reading is bounded
/// (see XmlLimits.h).
class XmlDocument
{
public:
    /// `charset` is that of the transport and may be empty; decodeXml() tells which encoding
    /// counts. White space directly inside elements that are named in `containers` is layout and
    /// no part of the tree.
    static XmlParseResult parse(const QByteArray &bytes, const QByteArray &charset = {},
                                std::span<const std::string_view> containers = {});

    ~XmlDocument();
    XmlDocument(const XmlDocument &) = delete;
    XmlDocument &operator=(const XmlDocument &) = delete;

    /// Evaluated from the document, so that "feed/entry" and "/feed/entry" mean the same. For one
    /// thread at a time: answers are remembered.
    XmlQueryResult nodesForXPath(std::string_view query) const;

private:
    XmlDocument(_xmlDoc *document, bool isLarge);

    _xmlDoc *document_;
    bool isLarge_; ///< what it is made of is worth giving back
    const std::unique_ptr<XmlPathIndex> paths_;
};

} // namespace qovelmor
