// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace qovelmor {

/// What the feed list asks of the program around it: the display must rest while the list changes.
class DisplayControl
{
public:
    virtual ~DisplayControl() = default;

    /// Whether a display thread lives, in whatever state (showing, reading, being stopped).
    virtual bool isDisplayActive() const = 0;
    virtual void stopDispRSS() = 0;
    virtual void startDispRSS() = 0;

    /// The list is about to change, which may take as long as its feeds are fetched, and has
    /// changed. What arrives meanwhile (a timer, sleep, quitting) waits for the end.
    virtual void listChangeStarts() = 0;
    virtual void listChangeEnds() = 0;
    /// Runs `work` on the main thread soon, but not in the middle of a read or another change.
    virtual void whenIdle(std::function<void()> work) = 0;

    /// True when a browser took the address.
    virtual bool siteAccessWithAddress(const QString &address) = 0;
    virtual void siteAccessErrorAlert() = 0;
};

} // namespace qovelmor
