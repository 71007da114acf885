// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// Whether a dropped text is taken for a feed's address: it begins with "http://" or "feed://", in
/// lower case. Other schemes, https among them, can only be typed.
bool isWebAddressString(const QString &text);

/// A leading "feed://" becomes "http://"; other text stays as it is.
QString feedToHttpString(const QString &text);

/// What becomes of a text that is dropped on the feed table from elsewhere.
enum class DropVerdict {
    Accepted,    ///< a web address: the feed is added
    TypeInstead, ///< an https address: refused, but it can be typed, which is worth saying
    Refused
};

DropVerdict dropVerdict(const QString &text);

} // namespace qovelmor
