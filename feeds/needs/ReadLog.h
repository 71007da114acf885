// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// Why a feed's document could not be had.
struct ReadError
{
    int code = 0;   ///< HTTP status, transfer error number, or line of an XML error
    QString domain; ///< which of these it is, as the log book prints it
    QString cause;  ///< a sentence for the user (Japanese), shown in the feed's tooltip
};

/// Where a feed reader reports to; the log book answers.
class ReadLog
{
public:
    virtual ~ReadLog() = default;

    virtual void writeReadRSSErrorLog(const QString &address, const ReadError &error) = 0;
    virtual void writeWatchTimeBreakLog(const QString &place) = 0;
};

} // namespace qovelmor
