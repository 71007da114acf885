// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardWindow.h"

#include <QPainter>

namespace qovelmor::simboard {

using namespace Qt::Literals::StringLiterals;

BoardWindow::BoardWindow()
{
    setWindowTitle(u"LED board"_s);
    setAccessibleName(u"LED board"_s);
}

QSize BoardWindow::sizeHint() const
{
    return painter_.sizeOf(picture_);
}

void BoardWindow::setPicture(const BoardPicture &picture)
{
    if (!image_.isNull() && picture == picture_)
        return;
    const bool resized = picture.columns.size() != picture_.columns.size();
    picture_ = picture;
    image_ = painter_.paint(picture_);
    if (resized)
        resize(sizeHint());
    update();
}

void BoardWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (image_.isNull())
        return;
    const QSize size = image_.size().scaled(rect().size(), Qt::KeepAspectRatio);
    QRect place(QPoint(0, 0), size);
    place.moveCenter(rect().center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, image_);
}

} // namespace qovelmor::simboard
