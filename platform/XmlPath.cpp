// SPDX-License-Identifier: MIT
#include "platform/XmlPath.h"

#include <libxml/tree.h>

#include <algorithm>

namespace qovelmor {

namespace {

bool isNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
}

bool isName(std::string_view text)
{
    const bool startsWell = !text.empty() && text[0] != '-' && !(text[0] >= '0' && text[0] <= '9');
    return startsWell && std::all_of(text.begin(), text.end(), isNameCharacter);
}

bool equals(const xmlChar *text, std::string_view expected)
{
    return text && expected == reinterpret_cast<const char *>(text);
}

} // namespace

std::optional<XmlPath::Step> XmlPath::stepFrom(std::string_view text)
{
    Step step;
    if (text.starts_with('@')) {
        step.isAttribute = true;
        text.remove_prefix(1);
    }
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos) {
        step.prefix = text.substr(0, colon);
        if (!isName(step.prefix))
            return std::nullopt;
        text.remove_prefix(colon + 1);
    }
    step.name = text;
    if (!isName(step.name))
        return std::nullopt;
    return step;
}

std::optional<XmlPath> XmlPath::from(std::string_view query)
{
    XmlPath path;
    if (query.starts_with('/'))
        query.remove_prefix(1);
    for (bool isLast = false; !isLast;) {
        const std::size_t slash = query.find('/');
        isLast = slash == std::string_view::npos;
        const auto step = stepFrom(query.substr(0, slash));
        if (!step || (step->isAttribute && !isLast))
            return std::nullopt;
        path.steps_.push_back(*step);
        if (!isLast)
            query.remove_prefix(slash + 1);
    }
    return path;
}

bool XmlPath::matches(const _xmlNode &node, const Step &step)
{
    if (!equals(node.name, step.name))
        return false;
    // Attributes and elements have all fields up to "doc" in common; the namespace comes behind.
    const xmlNs *space = step.isAttribute ? reinterpret_cast<const xmlAttr &>(node).ns : node.ns;
    return step.prefix.empty() ? !space : space && equals(space->prefix, step.prefix);
}

} // namespace qovelmor
