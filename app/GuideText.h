// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The guide's Markdown with the lines of each paragraph joined. A line's end is a space to
/// Markdown, and between two Japanese characters there must be none.
QString withoutLineBreaks(const QString &markdown);

} // namespace qovelmor
