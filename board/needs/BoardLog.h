// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// Where the board link reports to; the log book answers. Any thread.
class BoardLog
{
public:
    virtual ~BoardLog() = default;

    virtual void writeStringLog(const QString &text) = 0;
    virtual void writeWatchTimeBreakLog(const QString &place) = 0;
    /// The display has ended because the port is lost.
    virtual void setDispRSSStateStopped() = 0;
};

} // namespace qovelmor
