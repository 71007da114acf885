// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace qovelmor {

/// A document's text in UTF-8, or where it could not be read.
struct XmlText
{
    enum class Failure { None, UnknownEncoding, BrokenText };

    QByteArray utf8;
    /// The document's own encoding declaration does not name the encoding of `utf8` any more.
    bool isConverted = false;
    Failure failure = Failure::None;
    int line = 0;        ///< of the failure, from 1
    QByteArray encoding; ///< the encoding that was taken, as it was named
};

/// Brings the bytes of an XML document to UTF-8. A byte order mark counts over `charset` (of the
/// transport; may be empty or unknown), that over the XML declaration; without any of them it is
/// UTF-8 or, by the pattern of its first characters, UTF-16.
///
/// Shift_JIS and EUC-JP are read as Japanese desktops write them: with the characters of NEC and
/// IBM (①㈱髙), and with "~" and "\" where ASCII has them. ISO-2022-JP is read the same way.
XmlText decodeXml(const QByteArray &bytes, const QByteArray &charset);

} // namespace qovelmor
