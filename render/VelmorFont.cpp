// SPDX-License-Identifier: MIT
#include "render/VelmorFont.h"

namespace qovelmor {

VelmorFont::VelmorFont() = default;

VelmorFont::VelmorFont(const QString &name, float bold, float italic, float expansion,
                       bool useFontx)
{
    settings_.fontName = name;
    settings_.bold = bold;
    settings_.italic = italic;
    settings_.expansion = expansion;
    settings_.useFontx = useFontx;
}

void VelmorFont::setFontName(const QString &name)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.fontName = name;
}

void VelmorFont::setSize(float size)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.size = size;
}

void VelmorFont::setBold(float bold)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.bold = bold;
}

void VelmorFont::setItalic(float italic)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.italic = italic;
}

void VelmorFont::setExpansion(float expansion)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.expansion = expansion;
}

void VelmorFont::setBoarder(int boarder)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.boarder = boarder;
}

void VelmorFont::setUseFontx(bool useFontx)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.useFontx = useFontx;
}

void VelmorFont::setRotation(bool rotation)
{
    const std::lock_guard lock(settingsMutex_);
    settings_.rotation = rotation;
    fontx_.setRotation(rotation);
}

FontSettings VelmorFont::settings() const
{
    const std::lock_guard lock(settingsMutex_);
    return settings_;
}

HeightRange VelmorFont::heightRangeWithImage(const QImage &image) const
{
    return inkedHeightRange(image, boarder());
}

std::shared_ptr<const VelmorBitmap> VelmorFont::bitmapWithString(const QString &text)
{
    const FontSettings now = settings();
    if (now.useFontx)
        return fontx_.bitmapWithString(text);
    auto picture = renderOutlineText(text, now);
    setBitmap(*picture);
    return picture;
}

} // namespace qovelmor
