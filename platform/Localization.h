// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The text of a key in the localisation table (`resources/localization/ja.json`); a key that the
/// table does not hold is its own text.
QString localized(const QString &key);

/// The same as a screen reader says it: without the mark of its key, "(&S)", and the dots after it.
QString spokenText(const QString &key);

} // namespace qovelmor
