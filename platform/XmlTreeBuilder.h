// SPDX-License-Identifier: MIT
#pragma once

#include "platform/XmlLimits.h"

#include <QByteArray>

#include <chrono>
#include <span>
#include <string_view>

struct _xmlDoc;

namespace qovelmor {

/// Why the builder gave up.
enum class XmlBreak { None, IllFormed, TooLarge, TooSlow, TooManyNamespaces, Declarations };

struct XmlTree
{
    _xmlDoc *document = nullptr; ///< owned by whoever asked for it; null on a break
    XmlBreak reason = XmlBreak::None;
    int line = 0;    ///< of the break
    QByteArray text; ///< libxml2's own words for IllFormed
};

/// Parses UTF-8 into a tree whose elements and attributes stand in one made-up namespace for each
/// prefix, as written: those without a prefix in none. Comments and processing instructions are
/// left out, and so is the white space directly inside elements that are named in `containers`.
/// Gives up when the calling thread has worked on it for `mostTime`.
XmlTree buildXmlTree(std::string_view utf8, std::span<const std::string_view> containers,
                     std::chrono::nanoseconds mostTime = xmllimits::parseTime);

/// The name of the made-up namespace for a prefix.
QByteArray xmlNamespaceOfPrefix(std::string_view prefix);

} // namespace qovelmor
