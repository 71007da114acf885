// SPDX-License-Identifier: MIT
#include "app/TrayIcon.h"

#include <QApplication>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

TrayIcon::TrayIcon(const QList<QAction *> &items, QObject *parent)
    : QObject(parent), icon_(QApplication::windowIcon())
{
    menu_.setObjectName(u"trayMenu"_s);
    menu_.addActions(items);
    icon_.setContextMenu(&menu_);
    icon_.setToolTip(u"QoVelmorRSS"_s);
    connect(&menu_, &QMenu::aboutToShow, this, &TrayIcon::menuOpens);
    connect(&icon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    Q_EMIT clicked();
            });
    icon_.show();
}

bool TrayIcon::isThere() const
{
    return icon_.isVisible() && QSystemTrayIcon::isSystemTrayAvailable();
}

} // namespace qovelmor
