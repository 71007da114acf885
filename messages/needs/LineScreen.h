// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// Where lines run when no board takes them; the on-screen board answers. Any thread.
class LineScreen
{
public:
    virtual ~LineScreen() = default;

    /// Waits while a line runs, then starts this one on a thread of the screen's own.
    virtual void showString(const QString &text) = 0;
    /// Asks the running line to stop and waits until it has; nothing when none runs.
    virtual void stopShowString() = 0;
    virtual bool isShowing() const = 0; ///< a line runs and nobody has asked it to stop

    // Taken up at the next line.
    virtual void setFontName(const QString &name) = 0;
    virtual void setExpansion(float expansion) = 0;
};

} // namespace qovelmor
