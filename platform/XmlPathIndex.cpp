// SPDX-License-Identifier: MIT
#include "platform/XmlPathIndex.h"

#include <libxml/tree.h>

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <utility>

namespace qovelmor {

namespace {

using Steps = std::span<const XmlPath::Step>;

std::string textOf(Steps path)
{
    std::string text;
    for (const XmlPath::Step &step : path)
        text.append("/").append(step.prefix).append(":").append(step.name);
    return text;
}

} // namespace

/// All elements directly below the nodes of one path, by name.
struct XmlPathIndex::Children
{
    /// The parser keeps each name once and the tree one namespace for each prefix, so two pointers
    /// tell names apart.
    using Name = std::pair<const xmlChar *, const xmlNs *>;

    struct HashName
    {
        std::size_t operator()(const Name &name) const
        {
            return std::hash<const void *>()(name.first) * 31 +
                   std::hash<const void *>()(name.second);
        }
    };

    std::string path;
    std::unordered_map<Name, Nodes, HashName> named;

    void add(const xmlNode *first)
    {
        for (const xmlNode *node = first; node; node = node->next) {
            if (node->type == XML_ELEMENT_NODE)
                named[{node->name, node->ns}].push_back(node);
        }
    }
};

XmlPathIndex::XmlPathIndex(const _xmlDoc &document) : document_(document) {}

XmlPathIndex::~XmlPathIndex() = default;

XmlPathIndex::Nodes XmlPathIndex::nodesAt(Steps path)
{
    if (!path.back().isAttribute)
        return elementsAt(path);
    Nodes attributes;
    if (path.size() == 1) // a document has no attributes of its own
        return attributes;
    for (const xmlNode *element : elementsAt(path.first(path.size() - 1))) {
        for (const xmlAttr *attribute = element->properties; attribute;
             attribute = attribute->next) {
            // Attributes and elements have all fields up to "doc" in common.
            const auto *node = reinterpret_cast<const xmlNode *>(attribute);
            if (XmlPath::matches(*node, path.back()))
                attributes.push_back(node);
        }
    }
    return attributes;
}

XmlPathIndex::Nodes XmlPathIndex::elementsAt(Steps path)
{
    for (const auto &[name, nodes] : childrenOf(path.first(path.size() - 1)).named) {
        if (XmlPath::matches(*nodes.front(), path.back()))
            return nodes;
    }
    return {};
}

const XmlPathIndex::Children &XmlPathIndex::childrenOf(Steps path)
{
    std::string text = textOf(path);
    const auto found = std::find_if(known_.begin(), known_.end(),
                                    [&](const auto &one) { return one->path == text; });
    if (found != known_.end())
        return **found;
    auto children = std::make_unique<Children>();
    children->path = std::move(text);
    if (path.empty())
        children->add(document_.children);
    else
        for (const xmlNode *parent : elementsAt(path))
            children->add(parent->children);
    return *known_.emplace_back(std::move(children));
}

} // namespace qovelmor
