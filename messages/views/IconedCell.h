// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace qovelmor {

/// A cell whose image fills it: the image is scaled to the cell's inner frame and drawn at its
/// origin, in whatever direction the view lays out. A cell without an image is drawn as any other.
class IconedCell final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

} // namespace qovelmor
