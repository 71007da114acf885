// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The number that a person typed into a text field: the integer at its beginning, blanks before it
/// skipped, whatever follows; 0 where there is none. Full-width digits and signs, as a Japanese
/// keyboard gives them, count like the others. What does not fit into 32 bits is the nearest that
/// does.
int typedInteger(const QString &text);

} // namespace qovelmor
