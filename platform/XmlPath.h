// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

struct _xmlNode;

namespace qovelmor {

/// A location path of names alone, such as "/rss/channel/item" or "feed/entry/link/@href".
///
/// Most queries are like that, and walking down the tree answers them several times faster than
/// XPath's evaluation does, with the same nodes in the same order (see XmlPathIndex).
class XmlPath
{
public:
    struct Step
    {
        std::string_view prefix; ///< empty: a name without one
        std::string_view name;
        bool isAttribute = false; ///< only in the last step

        friend bool operator==(const Step &, const Step &) = default;
    };

    /// Nothing for a query that needs more than that. Points into the query.
    static std::optional<XmlPath> from(std::string_view query);

    std::span<const Step> steps() const { return steps_; }

    /// Whether an element or attribute has the name of a step, prefix included.
    static bool matches(const _xmlNode &node, const Step &step);

private:
    static std::optional<Step> stepFrom(std::string_view text);

    std::vector<Step> steps_;
};

} // namespace qovelmor
