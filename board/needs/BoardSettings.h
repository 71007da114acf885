// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

/// What a display run asks of the settings; the settings controller answers. Any thread.
class BoardSettings
{
public:
    virtual ~BoardSettings() = default;

    /// Full-width characters are turned left by a quarter, for a board that stands on its side.
    virtual bool rotation() const = 0;
};

} // namespace qovelmor
