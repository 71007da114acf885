// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ChangeNotice.h"
#include "schedule/MinuteRule.h"
#include "schedule/TMRData.h"
#include "schedule/needs/TimerWindow.h"

#include <memory>
#include <vector>

namespace qovelmor {

class MinuteTimer;
class TimerActions;
class UserDefaults;

/// What the schedule stands on; all of it outlives it.
struct TimerServices
{
    UserDefaults &defaults;
    Clock &clock;
    MainThread &mainThread;
    MinuteTimer &timer;
    TimerActions &actions;
};

/// The schedule: the ordered list of timers, and the minute timer that carries them out. Everything
/// runs on the main thread; every change is written to the store at once.
class RSSTimer
{
public:
    using TimerList = std::vector<std::shared_ptr<TMRData>>;

    /// Registers the factory default.
    explicit RSSTimer(TimerServices services);
    ~RSSTimer();
    RSSTimer(const RSSTimer &) = delete;
    RSSTimer &operator=(const RSSTimer &) = delete;

    void setWindow(TimerWindow &window) { window_ = &window; }
    /// Before the window goes.
    void removeWindow() { window_ = &noWindow_; }

    /// Start-up: reads the timers and, when the schedule is in use, starts the minute timer.
    void awakeFromNibx();

    // The schedule. -----------------------------------------------------------------------------

    bool useTimer() const { return useTimer_; }
    void setUseTimer(bool use);
    void actUseTimerCheck(bool on) { setUseTimer(on); }

    void startRSSTimer();
    void stopRSSTimer();
    /// Sets the minute timer to the beginning of the next minute.
    void setNextMinuteFire();
    /// A fire of the minute timer: sets it to the next minute, then carries out, in list order, the
    /// timers of this minute. A minute that comes while the main thread is busy is lost.
    void timerHandle();

    // The list. ---------------------------------------------------------------------------------

    const TimerList &timerList() const { return timerList_; }
    /// Told after every change of the list, for the table.
    ChangeNotice &changes() { return changes_; }
    void saveTimerList();
    void renewTableView() { changes_.changed(); }
    void renewTimerList();
    void renewControls();

    /// Inverts the timer's `validate` and saves; NO for a row outside the list.
    bool shouldEditTableColumn(int row);
    /// A row dropped above row `target` of the same table; NO where it would stay where it is.
    bool acceptRowDrop(int from, int target);
    void moveTimerFromIndex(int from, int target);
    void setColumnWidths(const std::vector<double> &widths);

    // The dialog. -------------------------------------------------------------------------------

    enum class DialogMode { NewTimer, EditTimer };
    /// Opens the dialog: empty, or with the selected timer, without which it does not open.
    void timerDialog(DialogMode mode);
    void actCreateTimer() { timerDialog(DialogMode::NewTimer); }
    void actEditTimer() { timerDialog(DialogMode::EditTimer); }
    void actDoubleClickTimerView() { actEditTimer(); }
    void actEditExecute(const TimerDraft &draft);
    void actEditCancel() { window_->closeDialog(); }
    /// Asks whether the selected timer is meant to go.
    void actDeleteTimer();
    void deleteTimerAlert();
    /// The confirmation's answer.
    void deleteTimerAnswered(bool isDeletion);

private:
    void setNextMinuteFire(Clock::CalendarTime now);
    void fire(const TMRData &timer);
    void fireStart(const TMRData &timer);
    void applyColumnWidths();
    std::shared_ptr<TMRData> selectedTimer() const;
    TimerList::iterator find(const std::weak_ptr<TMRData> &timer);

    TimerServices services_;
    TimerWindow noWindow_;
    TimerWindow *window_ = &noWindow_;
    ChangeNotice changes_;

    TimerList timerList_;
    bool useTimer_ = false;
    bool isRunning_ = false;
    bool isFiring_ = false; ///< a timer's read lets the minute timer in again
    MinuteRule rule_;

    // A dialog may stay open while the list changes: what it acts on is known by identity.
    DialogMode dialogMode_ = DialogMode::NewTimer;
    std::weak_ptr<TMRData> edited_;
    std::weak_ptr<TMRData> deleted_;
};

} // namespace qovelmor
