// SPDX-License-Identifier: MIT
#pragma once

#include "render/FontSettings.h"
#include "render/OutlineText.h"
#include "render/VelmorBitmap.h"
#include "render/VelmorFontx.h"

#include <QImage>
#include <QString>

#include <memory>
#include <mutex>

namespace qovelmor {

/// A bitmap that renders text: through the dot fonts, or into its own dots with an outline font.
///
/// The settings may be changed from any thread at any time and count from the next rendering on.
/// One rendering at a time per object: the outline path writes the receiver's dots.
class VelmorFont : public VelmorBitmap
{
public:
    VelmorFont();
    VelmorFont(const QString &name, float bold, float italic, float expansion, bool useFontx);

    QString fontName() const { return settings().fontName; }
    /// A name that the system does not know is kept, and its default font draws.
    void setFontName(const QString &name);
    float size() const { return settings().size; }
    void setSize(float size);
    float bold() const { return settings().bold; }
    void setBold(float bold);
    float italic() const { return settings().italic; }
    void setItalic(float italic);
    float expansion() const { return settings().expansion; }
    void setExpansion(float expansion);
    int boarder() const { return settings().boarder; }
    void setBoarder(int boarder);
    bool useFontx() const { return settings().useFontx; }
    void setUseFontx(bool useFontx);
    bool rotation() const { return settings().rotation; }
    /// Stored, and passed on to the dot fonts' renderer. Subclasses pass it on further.
    virtual void setRotation(bool rotation);

    /// All settings at this moment.
    FontSettings settings() const;

    /// The inked band of an image by this object's threshold (see inkedHeightRange()).
    HeightRange heightRangeWithImage(const QImage &image) const;

    /// Renders one line. With the dot fonts the result is a new picture and the receiver's dots
    /// stay as they are. With the outline font the receiver becomes the picture, and the result is
    /// an unchanging picture of the same dots: it stays valid, and can go to another thread,
    /// whatever the receiver does next. Never null.
    std::shared_ptr<const VelmorBitmap> bitmapWithString(const QString &text);

private:
    mutable std::mutex settingsMutex_;
    FontSettings settings_;
    VelmorFontx fontx_;
};

} // namespace qovelmor
