// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The written forms of dates in feeds.
namespace datetype {
constexpr int w3c = 1;     ///< 2008-05-01T12:10:00+09:00 (also Z or a zone's name)
constexpr int rfc822 = 2;  ///< Thu, 01 May 2008 23:30:00 +0900 (also Z or a zone's name)
constexpr int atomUtc = 3; ///< 2008-05-01T03:10:00Z and nothing else
} // namespace datetype

/// "MM/DD hh:mm" in Japan time (UTC+9); "00/00 00:00" for a text that is not in the form of `type`.
///
/// Outer blanks, a day of one digit and fractions of a second are forgiven. The hours of the offset
/// are taken from their fixed place in the form, its minutes are ignored (+05:30 counts as 5), and
/// a zone's name counts as UTC.
QString convertFeedDate(const QString &text, int type);

/// "%02d/%02d %02d:%02d", the form of all dates that people see.
QString dateText(int month, int day, int hour, int minute);

} // namespace qovelmor
