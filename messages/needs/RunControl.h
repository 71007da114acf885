// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// What the message list asks of the run cycle; the application controller answers. Any thread
/// unless said otherwise.
class RunControl
{
public:
    virtual ~RunControl() = default;

    virtual bool isOutputLED() const = 0;  ///< lines go to the board, not to the on-screen board
    virtual bool isDispBreak() const = 0;  ///< a stop of the display was asked for
    virtual bool isDisplaying() const = 0; ///< a line is running
    virtual int dispRSSState() const = 0;  ///< 0 stopped, 1 displaying, 2 stop asked
    virtual void setDispRSSState(int state) = 0;

    // Main thread only.
    virtual bool isDisplayActive() const = 0; ///< a display thread lives, in whatever state
    virtual void stopDispRSS() = 0;
    virtual void startDispRSS() = 0;
    virtual void setLastDispLine(int index) = 0;
    virtual bool isLEDWindowVisible() const = 0;
    virtual bool siteAccessWithAddress(const QString &address) = 0;
    virtual void siteAccessErrorAlert() = 0;
};

} // namespace qovelmor
