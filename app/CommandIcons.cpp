// SPDX-License-Identifier: MIT
#include "app/CommandIcons.h"

#include <QPainter>
#include <QPalette>
#include <QPolygonF>

namespace qovelmor {

namespace {

// The shape lies in a square of 16 by 16.
QPixmap drawn(const QPolygonF &shape, const QColor &color, int side)
{
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 16.0, side / 16.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(shape);
    return picture;
}

QIcon iconOf(const QPolygonF &shape, const QPalette &palette)
{
    QIcon icon;
    for (const int side : {16, 24, 32, 48}) {
        icon.addPixmap(drawn(shape, palette.color(QPalette::Active, QPalette::ButtonText), side));
        icon.addPixmap(drawn(shape, palette.color(QPalette::Disabled, QPalette::ButtonText), side),
                       QIcon::Disabled);
    }
    return icon;
}

} // namespace

QIcon startIcon(const QPalette &palette)
{
    return iconOf(QPolygonF({{4, 2}, {14, 8}, {4, 14}}), palette);
}

QIcon stopIcon(const QPalette &palette)
{
    return iconOf(QPolygonF({{3, 3}, {13, 3}, {13, 13}, {3, 13}}), palette);
}

} // namespace qovelmor
