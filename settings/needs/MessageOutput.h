// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// What the settings ask of the message list when a change reaches it.
class MessageOutput
{
public:
    virtual ~MessageOutput() = default;

    /// Horizontal expansion of board text, logarithmic: 0 is none, −0.2 the narrow font.
    virtual void setExpansion(float expansion) = 0;
    virtual void writeStringLog(const QString &text) = 0;
};

} // namespace qovelmor
