// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>

namespace qovelmor {

// What a document may cost. libxml2 itself bounds depth (256), names (50,000 bytes), texts (10 MB)
// and the growth through entities; the rest is bounded here. Real feeds stay far below.
namespace xmllimits {

/// Reading the attributes of one element takes time with the square of their number.
constexpr std::size_t attributesPerElement = 128;
/// Each prefixed name is looked up in a list of all declarations in force.
constexpr int namespacesInScope = 256;
/// The tree: a document of 32 MiB can ask for 1 GiB of nodes.
constexpr std::size_t treeBytes = std::size_t{320} * 1024 * 1024;
/// What the document's own entities may add to its text.
constexpr std::size_t entityBytes = std::size_t{4} * 1024 * 1024;
/// A document up to this size is handed to the parser in one piece, which is a little faster. A
/// larger one goes piece by piece and no further than its first error: each double hyphen in a
/// comment is one, for which the parser copies all of the comment before it.
constexpr std::size_t wholeBytes = std::size_t{64} * 1024;
/// What a document of this size took goes back to the system when it is done with.
constexpr std::size_t largeBytes = std::size_t{4} * 1024 * 1024;
/// Processor time of the calling thread; what was built until then takes time to free, too.
constexpr std::chrono::milliseconds parseTime{800};

} // namespace xmllimits

} // namespace qovelmor
