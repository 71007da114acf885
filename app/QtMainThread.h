// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainThread.h"

#include <QObject>

namespace qovelmor {

/// The main thread of a program with windows: posts through Qt's event queue.
///
/// pump() is the only place in the program that runs events outside the event loop. What a person
/// does meanwhile (keys, mouse, drops, closing a window) is eaten, so that no command can start in
/// the middle of another one and none is kept for later. The one exception is a window that offers
/// to break the work off (platform/views/AnswerableWindow.h).
class QtMainThread final : public QObject, public MainThread
{
    Q_OBJECT

public:
    QtMainThread();

    void post(std::function<void()> call) override;
    bool isCurrent() const override;
    void pump(std::chrono::milliseconds limit) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int pumping_ = 0;
};

} // namespace qovelmor
