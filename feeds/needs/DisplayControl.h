// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

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

    /// True when a browser took the address.
    virtual bool siteAccessWithAddress(const QString &address) = 0;
    virtual void siteAccessErrorAlert() = 0;
};

} // namespace qovelmor
