// SPDX-License-Identifier: MIT
#include "render/VelmorMessage.h"

#include "platform/SystemLog.h"

using namespace Qt::Literals::StringLiterals;

namespace qovelmor {

VelmorMessage::VelmorMessage() = default;

VelmorMessage::VelmorMessage(const QString &text)
{
    setBitmapWithString(text);
}

VelmorMessage::VelmorMessage(const VelmorBitmap &bitmap)
{
    setBitmap(bitmap);
}

VelmorMessage::~VelmorMessage() = default;

void VelmorMessage::setBitmapWithString(const QString &text)
{
    setBitmap(*render(text, fontName()));
}

void VelmorMessage::appendString(const QString &text)
{
    appendBitmap(*render(text, fontName()));
}

void VelmorMessage::appendString(const QString &text, const QString &withFont)
{
    appendBitmap(*render(text, withFont));
}

std::shared_ptr<const VelmorBitmap> VelmorMessage::render(const QString &text,
                                                          const QString &fontName)
{
    const FontSettings now = settings();
    tempFont_ =
        std::make_unique<VelmorFont>(fontName, now.bold, now.italic, now.expansion, now.useFontx);
    tempFont_->setRotation(now.rotation);
    tempFont_->setBoarder(now.boarder);
    return tempFont_->bitmapWithString(text);
}

void VelmorMessage::setRotation(bool rotation)
{
    systemLog(logRender(), u"---VelmorMessage:setRotation:%1---"_s.arg(rotation ? 1 : 0));
    VelmorFont::setRotation(rotation);
    if (tempFont_)
        tempFont_->setRotation(rotation);
}

} // namespace qovelmor
