// SPDX-License-Identifier: MIT
#include "app/StartupWindow.h"

#include "platform/Localization.h"

#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

StartupWindow::StartupWindow() : QWidget(nullptr, Qt::SplashScreen), accessField_(new QLabel)
{
    setObjectName(u"startupWindow"_s);
    auto *text = new QLabel(localized(u"StartingUp"_s));
    text->setAlignment(Qt::AlignCenter);
    auto *progress = new QProgressBar;
    progress->setObjectName(u"progressIndi"_s);
    progress->setAccessibleName(localized(u"StartingUp"_s));
    progress->setRange(0, 0); // how long it takes depends on the network
    progress->setTextVisible(false);

    accessField_->setObjectName(u"accessField"_s);
    accessField_->setTextFormat(Qt::PlainText);
    accessField_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 24, 32, 24);
    layout->addWidget(text);
    layout->addWidget(progress);
    layout->addWidget(accessField_);
    setFixedSize(420, 130);
    move(screen()->availableGeometry().center() - rect().center());
}

void StartupWindow::showAddress(const QString &address)
{
    const QFontMetrics metrics = accessField_->fontMetrics();
    accessField_->setText(metrics.elidedText(address, Qt::ElideMiddle, accessField_->width()));
    accessField_->repaint();
}

} // namespace qovelmor
