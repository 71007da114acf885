// SPDX-License-Identifier: MIT
#include "platform/views/AnswerableWindow.h"

#include <QWidget>
#include <QWindow>

namespace qovelmor {

namespace {

constexpr auto mark = "qovelmorAnswerable";

} // namespace

void makeAnswerable(QWidget &window)
{
    window.setProperty(mark, true);
    if (QWindow *native = window.windowHandle())
        native->setProperty(mark, true);
}

bool isAnswerable(const QObject &object)
{
    if (const auto *widget = qobject_cast<const QWidget *>(&object))
        return widget->window()->property(mark).toBool();
    return object.property(mark).toBool();
}

} // namespace qovelmor
