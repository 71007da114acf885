// SPDX-License-Identifier: MIT
#pragma once

#include "platform/XmlPath.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

struct _xmlDoc;
struct _xmlNode;

namespace qovelmor {

/// Answers paths of names on one document.
///
/// A feed is asked five questions about each item. A tree of some megabytes fits no cache, so
/// walking it costs more than comparing names: the children of a path's nodes are sorted by name
/// once, and every further question about them is a look-up. For one thread at a time.
class XmlPathIndex
{
public:
    explicit XmlPathIndex(const _xmlDoc &document);
    ~XmlPathIndex();

    /// In document order; of a tree that buildXmlTree() made.
    std::vector<const _xmlNode *> nodesAt(std::span<const XmlPath::Step> path);

private:
    struct Children;
    using Nodes = std::vector<const _xmlNode *>;

    const Children &childrenOf(std::span<const XmlPath::Step> path);
    Nodes elementsAt(std::span<const XmlPath::Step> path);

    const _xmlDoc &document_;
    std::vector<std::unique_ptr<const Children>> known_;
};

} // namespace qovelmor
