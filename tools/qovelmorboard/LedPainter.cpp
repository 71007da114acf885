// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/LedPainter.h"

#include <QPainter>

#include <algorithm>

namespace qovelmor::simboard {

namespace {

/// A board at its lowest level still shows what it shows.
constexpr double lowestGlow = 0.25;

QImage led(int cell, const QColor &color)
{
    QImage image(cell, cell, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const double radius = 0.42 * cell;
    painter.drawEllipse(QPointF(0.5 * cell, 0.5 * cell), radius, radius);
    return image;
}

} // namespace

QSize LedPainter::sizeOf(const BoardPicture &picture) const
{
    return {std::max(1, int(picture.columns.size())) * cell_, DotPanel::rows * cell_};
}

QImage LedPainter::paint(const BoardPicture &picture)
{
    if (brightness_ != picture.brightness) {
        brightness_ = picture.brightness;
        const double glow = lowestGlow + (1.0 - lowestGlow) * brightness_ / 255.0;
        lit_ = led(cell_, QColor(int(255 * glow), int(140 * glow), 0));
        dark_ = led(cell_, QColor(40, 28, 20));
    }
    QImage image(sizeOf(picture), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    for (int x = 0; x < int(picture.columns.size()); ++x) {
        const unsigned column = picture.columns[std::size_t(x)];
        for (int y = 0; y < DotPanel::rows; ++y) {
            const bool isLit = ((column >> (DotPanel::rows - 1 - y)) & 1U) != 0;
            painter.drawImage(x * cell_, y * cell_, isLit ? lit_ : dark_);
        }
    }
    return image;
}

} // namespace qovelmor::simboard
