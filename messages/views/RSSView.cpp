// SPDX-License-Identifier: MIT
#include "messages/views/RSSView.h"

#include <QMouseEvent>

namespace qovelmor {

void RSSView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT doubleClicked();
    QWidget::mouseDoubleClickEvent(event);
}

} // namespace qovelmor
