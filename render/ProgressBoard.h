// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

namespace qovelmor {

class VelmorBitmap;

/// What the progress image needs of the board that it is shown on.
class ProgressBoard
{
public:
    virtual ~ProgressBoard() = default;

    /// Renders a line with the board's own font settings. Never null.
    virtual std::shared_ptr<const VelmorBitmap> bitmapWithString(const QString &text) = 0;
    /// How many modules of 32 columns the board has; 0 or less when it does not know.
    virtual int cmodule() = 0;
    virtual void cmodule(int modules) = 0;
    /// Sends the columns of a standing image; they light up with sc_show().
    virtual void sendBufferBitmap(const VelmorBitmap &bitmap) = 0;
    virtual void sc_show() = 0;
    virtual void sc_clear() = 0;
};

} // namespace qovelmor
