// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>
#include <vector>

struct _xmlDoc;
struct _xmlNode;

namespace qovelmor {

/// A location path of names alone, such as "/rss/channel/item" or "feed/entry/link/@href".
///
/// Most queries are like that, and walking down the tree answers them several times faster than
/// XPath's evaluation does, with the same nodes in the same order.
class XmlPath
{
public:
    /// Nothing for a query that needs more than that.
    static std::optional<XmlPath> from(std::string_view query);

    /// The nodes of a tree that buildXmlTree() made, in document order.
    std::vector<const _xmlNode *> nodesIn(const _xmlDoc &document) const;

private:
    struct Step
    {
        std::string_view prefix; ///< empty: a name without one
        std::string_view name;
        bool isAttribute = false; ///< only in the last step
    };

    static std::optional<Step> stepFrom(std::string_view text);
    static bool matches(const _xmlNode &node, const Step &step);
    void collect(const _xmlNode *first, std::size_t depth,
                 std::vector<const _xmlNode *> &nodes) const;

    std::vector<Step> steps_; // point into the query
};

} // namespace qovelmor
