// SPDX-License-Identifier: MIT
#include "platform/XmlTagScan.h"

#include <cstring>

namespace qovelmor {

namespace {

constexpr auto npos = std::string_view::npos;

/// The offset behind `end`, searched from `from`; npos when it never comes. Looking for its first
/// character alone is several times faster: hardly any text holds one.
std::size_t behind(std::string_view xml, std::string_view end, std::size_t from)
{
    while (from < xml.size()) {
        const void *found = std::memchr(xml.data() + from, end.front(), xml.size() - from);
        if (!found)
            return npos;
        from = static_cast<std::size_t>(static_cast<const char *>(found) - xml.data());
        if (xml.substr(from).starts_with(end))
            return from + end.size();
        ++from;
    }
    return npos;
}

/// Skips what is no tag; `at` is the place of its "<". Returns `at` for a tag.
std::size_t skipped(std::string_view xml, std::size_t at)
{
    const char kind = at + 1 < xml.size() ? xml[at + 1] : '\0';
    if (kind == '?')
        return behind(xml, "?>", at + 2);
    if (kind == '!' && xml.substr(at).starts_with("<!--"))
        return behind(xml, "-->", at + 4);
    if (kind == '!' && xml.substr(at).starts_with("<![CDATA["))
        return behind(xml, "]]>", at + 9);
    return at;
}

struct Tag
{
    std::size_t attributes; ///< quoted values
    std::size_t end;        ///< of what was read of it
};

/// Reads from behind "<" to ">" or to the next "<", which no tag can hold: the declarations inside
/// a document type declaration are read as tags of their own.
Tag readTag(std::string_view xml, std::size_t at, std::size_t limit)
{
    std::size_t attributes = 0;
    while (attributes <= limit) {
        while (at < xml.size() && xml[at] != '>' && xml[at] != '<' && xml[at] != '"' &&
               xml[at] != '\'')
            ++at;
        if (at >= xml.size() || xml[at] == '>' || xml[at] == '<')
            break;
        ++attributes;
        const std::size_t close = xml.find(xml[at], at + 1);
        if (close == npos)
            return {attributes, xml.size()};
        at = close + 1;
    }
    return {attributes, at};
}

} // namespace

std::size_t findCrowdedTag(std::string_view xml, std::size_t limit)
{
    std::size_t at = xml.find('<');
    while (at != npos) {
        const std::size_t next = skipped(xml, at);
        if (next == npos)
            return npos;
        if (next == at) {
            const Tag tag = readTag(xml, at + 1, limit);
            if (tag.attributes > limit)
                return at;
            at = tag.end;
        } else {
            at = next;
        }
        at = xml.find('<', at);
    }
    return npos;
}

} // namespace qovelmor
