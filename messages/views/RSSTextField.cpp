// SPDX-License-Identifier: MIT
#include "messages/views/RSSTextField.h"

#include "platform/PlainText.h"

#include <QMouseEvent>
#include <QStyle>
#include <QStyleOption>
#include <QStylePainter>

namespace qovelmor {

RSSTextField::RSSTextField(const QString &name, QWidget *parent) : QLabel(parent)
{
    setObjectName(name);
    setTextFormat(Qt::PlainText);
}

void RSSTextField::showText(const QString &text)
{
    const QString plain = lineForWindow(text);
    if (plain == this->text())
        return;
    setText(plain);
    noteWhatIsHidden();
}

void RSSTextField::setHint(const QString &hint)
{
    hint_ = hint;
    noteWhatIsHidden();
}

// However long the text is, the window can be made narrow.
QSize RSSTextField::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth(), QLabel::minimumSizeHint().height()};
}

void RSSTextField::noteWhatIsHidden()
{
    const bool fits = fontMetrics().horizontalAdvance(text()) <= contentsRect().width();
    setToolTip(fits ? hint_ : plainTooltip(text()));
}

void RSSTextField::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    QStyleOption option;
    option.initFrom(this);
    painter.drawItemText(contentsRect(), int(alignment()) | Qt::TextSingleLine, option.palette,
                         isEnabled(), shown, foregroundRole());
}

void RSSTextField::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    noteWhatIsHidden();
}

void RSSTextField::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT doubleClicked();
    QLabel::mouseDoubleClickEvent(event);
}

} // namespace qovelmor
