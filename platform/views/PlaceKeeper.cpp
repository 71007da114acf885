// SPDX-License-Identifier: MIT
#include "platform/views/PlaceKeeper.h"

#include "platform/UserDefaults.h"
#include "platform/views/FittedPlace.h"

#include <QEvent>
#include <QWidget>

namespace qovelmor {

using namespace std::chrono_literals;

namespace {

constexpr auto settleTime = 700ms; // after the last move, so that a drag is stored once

} // namespace

PlaceKeeper::PlaceKeeper(QWidget &window, UserDefaults &defaults, const QString &key)
    : QObject(&window), window_(window), defaults_(defaults), key_(key)
{
    if (!restoreFitted(window_, defaults_.dataForKey(key_)))
        boundToScreen(window_);
    window_.installEventFilter(this);
    settled_.setSingleShot(true);
    settled_.setInterval(settleTime);
    connect(&settled_, &QTimer::timeout, this, &PlaceKeeper::storePlace);
}

bool PlaceKeeper::eventFilter(QObject *watched, QEvent *event)
{
    const bool isMove = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (isMove && window_.isVisible())
        settled_.start();
    else if (event->type() == QEvent::Hide && !event->spontaneous())
        storePlace();
    return QObject::eventFilter(watched, event);
}

void PlaceKeeper::storePlace()
{
    settled_.stop();
    defaults_.setData(window_.saveGeometry(), key_);
    defaults_.synchronize();
}

} // namespace qovelmor
