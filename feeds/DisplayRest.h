// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/needs/DisplayControl.h"

namespace qovelmor {

/// While it lives the feed list changes: a display that was active is stopped and started again at
/// the end, and nothing else begins. So the read cycle never sees the list change.
class DisplayRest
{
public:
    explicit DisplayRest(DisplayControl &control)
        : control_(control), wasActive_(control.isDisplayActive())
    {
        control_.listChangeStarts();
        if (wasActive_)
            control_.stopDispRSS();
    }
    ~DisplayRest()
    {
        if (wasActive_)
            control_.startDispRSS();
        control_.listChangeEnds();
    }
    DisplayRest(const DisplayRest &) = delete;
    DisplayRest &operator=(const DisplayRest &) = delete;

private:
    DisplayControl &control_;
    const bool wasActive_;
};

} // namespace qovelmor
