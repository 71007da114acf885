// SPDX-License-Identifier: MIT
#include "settings/views/ColorWell.h"

#include "platform/Localization.h"

#include <QColorDialog>
#include <QPainter>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize swatchSize{44, 16};

} // namespace

ColorWell::ColorWell(QWidget *parent) : QPushButton(parent)
{
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setIconSize(swatchSize);
    connect(this, &QPushButton::clicked, this, [this] { openPanel(); });
}

void ColorWell::setColor(const QColor &color)
{
    color_ = color;
    setIcon(swatch());
    setText(color.name());
    setAccessibleDescription(color.name());
}

void ColorWell::openPanel()
{
    if (panel_) {
        panel_->raise();
        panel_->activateWindow();
        return;
    }
    panel_ = new QColorDialog(color_, window());
    panel_->setObjectName(u"lightLEDColorPanel"_s);
    panel_->setWindowTitle(localized(u"TitleLEDColor"_s));
    panel_->setAttribute(Qt::WA_DeleteOnClose);
    connect(panel_, &QColorDialog::colorSelected, this, [this](const QColor &color) {
        setColor(color);
        Q_EMIT colorChosen(color);
    });
    panel_->open();
}

QIcon ColorWell::swatch() const
{
    const qreal ratio = devicePixelRatioF();
    QPixmap pixmap(swatchSize * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(color_);
    QPainter painter(&pixmap);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(QRectF(0, 0, swatchSize.width() - 1, swatchSize.height() - 1));
    return QIcon(pixmap);
}

} // namespace qovelmor
