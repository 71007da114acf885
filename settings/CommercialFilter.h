// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// Whether an advertisement's keyword marks the text ("PR:", "AD ", "CM/"): the first occurrence of
/// the keyword must be followed by a character that is no letter.
///
/// `upperText` is the headline in upper case; the keyword is taken as it stands, so one with
/// lower-case letters never matches. What stands before the keyword does not count, nor do later
/// occurrences, and a keyword at the very end of the text is no mark.
bool isCommercialMessage(const QString &upperText, const QString &keyword);

} // namespace qovelmor
