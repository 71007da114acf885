// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace qovelmor {

/// The offset of the first tag with more than `limit` attributes, or npos. Looks at UTF-8 text
/// before it is parsed, since the parser's time grows with the square of that number and nothing
/// can stop it inside a tag. For a well-formed document the answer is exact; where a document is
/// damaged the parser gives up at that place.
std::size_t findCrowdedTag(std::string_view xml, std::size_t limit);

} // namespace qovelmor
