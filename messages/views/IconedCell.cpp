// SPDX-License-Identifier: MIT
#include "messages/views/IconedCell.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>

namespace qovelmor {

namespace {

constexpr int frameWidth = 1;

// The image of a cell at the size in which it will be drawn.
QPixmap imageOf(const QVariant &decoration, QSize size, double pixelRatio)
{
    if (decoration.canConvert<QIcon>() && decoration.typeId() == QMetaType::QIcon)
        return decoration.value<QIcon>().pixmap(size, pixelRatio);
    if (decoration.typeId() == QMetaType::QImage)
        return QPixmap::fromImage(decoration.value<QImage>());
    return decoration.value<QPixmap>();
}

} // namespace

void IconedCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                       const QModelIndex &index) const
{
    const QRect interior = option.rect.adjusted(frameWidth, frameWidth, -frameWidth, -frameWidth);
    const QPixmap image = imageOf(index.data(Qt::DecorationRole), interior.size(),
                                  painter->device()->devicePixelRatio());
    if (image.isNull()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(interior, image);
    painter->restore();
}

} // namespace qovelmor
