// SPDX-License-Identifier: MIT
#pragma once

#include "render/VelmorFont.h"

#include <QString>

#include <memory>

namespace qovelmor {

/// A picture put together from rendered texts, with flags for its way over the board.
///
/// Each text is drawn by a font object of its own that takes this message's font name, stroke,
/// slant, expansion, threshold, rotation and choice of font; its size is always 16.
class VelmorMessage : public VelmorFont
{
public:
    VelmorMessage();
    explicit VelmorMessage(const QString &text);
    /// A copy of the bitmap's dots.
    explicit VelmorMessage(const VelmorBitmap &bitmap);
    ~VelmorMessage() override;

    /// The dots become the rendering of the text.
    void setBitmapWithString(const QString &text);
    /// The rendering of the text is added on the right.
    void appendString(const QString &text);
    void appendString(const QString &text, const QString &withFont);

    bool scrollMessage() const { return scrollMessage_; }
    void setScrollMessage(bool scrolls) { scrollMessage_ = scrolls; }
    bool repeatEndless() const { return repeatEndless_; }
    void setRepeatEndress(bool repeats) { repeatEndless_ = repeats; }
    bool waitScrollEnd() const { return waitScrollEnd_; }
    void setWaitScrollEnd(bool waits) { waitScrollEnd_ = waits; }

    /// Also counts for the font object of the last text, and leaves a line in the log.
    void setRotation(bool rotation) override;

private:
    std::shared_ptr<const VelmorBitmap> render(const QString &text, const QString &fontName);

    bool scrollMessage_ = false;
    bool repeatEndless_ = false;
    bool waitScrollEnd_ = false;
    std::unique_ptr<VelmorFont> tempFont_;
};

} // namespace qovelmor
