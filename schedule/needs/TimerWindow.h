// SPDX-License-Identifier: MIT
#pragma once

#include "schedule/TimerDraft.h"

#include <QString>

namespace qovelmor {

/// The confirmation that the deletion of a timer asks for.
struct TimerAlert
{
    QString title;
    QString informative;
    QString deleteButton;
    QString cancelButton;
};

/// The timer window as the schedule sees it. Main thread only. The bodies here do nothing: a
/// process without a window uses them as they are.
class TimerWindow
{
public:
    virtual ~TimerWindow() = default;

    /// The first selected row, -1 when none is.
    virtual int selectedRow() const { return -1; }
    virtual void setColumnWidth(int /*column*/, double /*points*/) {}
    /// Sets the check box "use the timers", and which buttons can be used; the add button always
    /// can.
    virtual void renewControls(bool /*useTimer*/, bool /*canEdit*/) {}

    /// Opens the dialog with these contents; its answer is actEditExecute() or actEditCancel().
    virtual void openDialog(const QString & /*title*/, const TimerDraft &) {}
    virtual void closeDialog() {}
    /// Opens the confirmation; its answer is deleteTimerAnswered().
    virtual void openDeleteAlert(const TimerAlert &) {}
};

} // namespace qovelmor
