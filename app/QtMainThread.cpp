// SPDX-License-Identifier: MIT
#include "app/QtMainThread.h"

#include "platform/views/AnswerableWindow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QTimer>

namespace qovelmor {

namespace {

bool isUserInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

} // namespace

QtMainThread::QtMainThread()
{
    QCoreApplication::instance()->installEventFilter(this);
}

void QtMainThread::post(std::function<void()> call)
{
    QMetaObject::invokeMethod(this, std::move(call), Qt::QueuedConnection);
}

bool QtMainThread::isCurrent() const
{
    return QThread::currentThread() == thread();
}

void QtMainThread::pump(std::chrono::milliseconds limit)
{
    Q_ASSERT(isCurrent());
    ++pumping_;
    // When the pump itself runs within a posted call, the event loop takes those behind it for
    // known, and leaves them until something else is posted.
    QCoreApplication::sendPostedEvents();
    if (limit > std::chrono::milliseconds::zero()) {
        QTimer wakeUp;
        wakeUp.setSingleShot(true);
        wakeUp.setTimerType(Qt::PreciseTimer);
        wakeUp.start(limit);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    } else {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
    --pumping_;
}

bool QtMainThread::eventFilter(QObject *watched, QEvent *event)
{
    if (pumping_ == 0 || !isUserInput(event->type()) || isAnswerable(*watched))
        return QObject::eventFilter(watched, event);
    event->ignore();
    return true;
}

} // namespace qovelmor
