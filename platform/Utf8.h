// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string_view>

namespace qovelmor {

/// Text of UTF-8 that a parser has already found to be right, as the XML reader's is. Gives what
/// QString::fromUtf8() gives, in a third of the time and without room to spare: feeds are mostly
/// characters of three bytes, for which that one reserves thrice what is needed.
QString fromCheckedUtf8(std::string_view utf8);

} // namespace qovelmor
