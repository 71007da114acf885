// SPDX-License-Identifier: MIT
#include "schedule/RSSTimer.h"

#include "platform/Localization.h"
#include "platform/RowMove.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"
#include "schedule/TimerTableModel.h"
#include "schedule/needs/MinuteTimer.h"
#include "schedule/needs/TimerActions.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto useTimerKey = u"UseRSSTimer"_s;
const auto timerListKey = u"TimerList"_s;
const auto columnWidthsKey = u"TimerListColumnWidths"_s;

} // namespace

RSSTimer::RSSTimer(TimerServices services) : services_(services), changes_(services.mainThread)
{
    services_.defaults.registerDefaults({{useTimerKey, true}});
}

RSSTimer::~RSSTimer()
{
    stopRSSTimer();
}

void RSSTimer::awakeFromNibx()
{
    useTimer_ = services_.defaults.boolForKey(useTimerKey);
    applyColumnWidths();
    timerList_.clear();
    for (const PropertyValue &entry :
         services_.defaults.arrayForKey(timerListKey).value_or(PropertyArray())) {
        if (const auto *dictionary = entry.get<PropertyDictionary>())
            timerList_.push_back(std::make_shared<TMRData>(timerFrom(*dictionary)));
    }
    renewControls();
    renewTableView();
    if (useTimer_)
        startRSSTimer();
}

void RSSTimer::applyColumnWidths()
{
    const PropertyArray widths =
        services_.defaults.arrayForKey(columnWidthsKey).value_or(PropertyArray());
    for (std::size_t column = 0; column < widths.size(); ++column) {
        if (column < TimerTableModel::columnCountOfTable)
            window_->setColumnWidth(static_cast<int>(column), widths[column].toDouble());
        else
            systemLog(logSchedule(), u"columnWidths: index error"_s);
    }
}

// The schedule. -------------------------------------------------------------------------------

void RSSTimer::setUseTimer(bool use)
{
    useTimer_ = use;
    if (use)
        startRSSTimer();
    else
        stopRSSTimer();
    services_.defaults.setBool(use, useTimerKey);
    services_.defaults.synchronize();
}

void RSSTimer::startRSSTimer()
{
    services_.timer.start([this] { timerHandle(); });
    isRunning_ = true;
    setNextMinuteFire();
}

void RSSTimer::stopRSSTimer()
{
    if (!isRunning_)
        return;
    services_.timer.stop();
    isRunning_ = false;
}

void RSSTimer::setNextMinuteFire()
{
    setNextMinuteFire(services_.clock.calendarNow());
}

void RSSTimer::setNextMinuteFire(Clock::CalendarTime now)
{
    services_.timer.setNextFire(rule_.arm(now));
}

void RSSTimer::timerHandle()
{
    const Clock::CalendarTime now = services_.clock.calendarNow();
    const bool isEarly = rule_.isEarly(now);
    setNextMinuteFire(now);
    if (isEarly || !useTimer_ || isFiring_ || services_.actions.isMainThreadBusy())
        return;
    if (!rule_.takes(now))
        return;

    isFiring_ = true;
    const LocalTime local = localTime(now);
    const TimerList timers = timerList_; // a timer's read may last minutes
    for (const auto &timer : timers) {
        if (timer->isFireNow(local))
            fire(*timer);
    }
    isFiring_ = false;
}

void RSSTimer::fire(const TMRData &timer)
{
    if (timer.does(TimerOperation::StartDisplay)) {
        fireStart(timer);
    } else if (timer.does(TimerOperation::StopDisplay)) {
        services_.actions.actStopDisp();
        services_.actions.writeTimerStopLog();
    }
}

void RSSTimer::fireStart(const TMRData &timer)
{
    TimerActions &actions = services_.actions;
    if (actions.isDisplayActive())
        actions.actStopDisp();
    // Reading and starting each drop the one-feed list again, so the whole feed list is read even
    // when the timer names an address. The order is meant so.
    if (!timer.address().isEmpty())
        actions.setTempReader(timer.address());
    actions.actGetRSS();
    actions.actStartDisp();
    actions.writeTimerStartLog(timer.address());
}

// The list. -----------------------------------------------------------------------------------

void RSSTimer::saveTimerList()
{
    PropertyArray entries;
    for (const auto &timer : timerList_)
        entries.emplace_back(toDictionary(*timer));
    services_.defaults.setArray(std::move(entries), timerListKey);
    services_.defaults.synchronize();
}

void RSSTimer::renewTimerList()
{
    renewTableView();
    saveTimerList();
}

void RSSTimer::renewControls()
{
    window_->renewControls(useTimer_, window_->selectedRow() >= 0);
}

bool RSSTimer::shouldEditTableColumn(int row)
{
    if (row < 0 || row >= static_cast<int>(timerList_.size())) {
        systemLog(logSchedule(), u"shouldEditTableColumn: index error"_s);
        return false;
    }
    TMRData &timer = *timerList_[static_cast<std::size_t>(row)];
    timer.setValidate(!timer.validate());
    renewTimerList();
    return true;
}

bool RSSTimer::acceptRowDrop(int from, int target)
{
    if (!isRowMove(from, target, timerList_.size()))
        return false;
    moveTimerFromIndex(from, target);
    renewTimerList();
    return true;
}

void RSSTimer::moveTimerFromIndex(int from, int target)
{
    moveRow(timerList_, from, target);
}

void RSSTimer::setColumnWidths(const std::vector<double> &widths)
{
    services_.defaults.setArray(PropertyArray(widths.begin(), widths.end()), columnWidthsKey);
    services_.defaults.synchronize();
}

std::shared_ptr<TMRData> RSSTimer::selectedTimer() const
{
    const int row = window_->selectedRow();
    if (row < 0 || row >= static_cast<int>(timerList_.size()))
        return nullptr;
    return timerList_[static_cast<std::size_t>(row)];
}

RSSTimer::TimerList::iterator RSSTimer::find(const std::weak_ptr<TMRData> &timer)
{
    const auto wanted = timer.lock();
    return wanted ? std::ranges::find(timerList_, wanted) : timerList_.end();
}

// The dialog. ---------------------------------------------------------------------------------

void RSSTimer::timerDialog(DialogMode mode)
{
    if (mode == DialogMode::NewTimer) {
        dialogMode_ = mode;
        window_->openDialog(localized(u"New Timer"_s), TimerDraft());
        return;
    }
    const std::shared_ptr<TMRData> timer = selectedTimer();
    if (!timer) {
        systemLog(logSchedule(), u"timerDialog: index error"_s);
        return;
    }
    dialogMode_ = mode;
    edited_ = timer;
    window_->openDialog(localized(u"Edit Timer"_s), draftFrom(*timer));
}

void RSSTimer::actEditExecute(const TimerDraft &draft)
{
    // Making a timer cannot fail here, so there is no "timer is nil" to report.
    auto timer = std::make_shared<TMRData>(timerFrom(draft));
    if (dialogMode_ == DialogMode::NewTimer) {
        const int row = window_->selectedRow();
        const bool isInside = row >= 0 && row < static_cast<int>(timerList_.size());
        timerList_.insert(isInside ? timerList_.begin() + row : timerList_.end(), timer);
    } else if (const auto place = find(edited_); place != timerList_.end()) {
        *place = timer;
    }
    renewTimerList();
    window_->closeDialog();
}

void RSSTimer::actDeleteTimer()
{
    const std::shared_ptr<TMRData> timer = selectedTimer();
    if (!timer)
        return;
    deleted_ = timer;
    deleteTimerAlert();
}

void RSSTimer::deleteTimerAlert()
{
    window_->openDeleteAlert({localized(u"DeleteTimer"_s), localized(u"DeleteTimerInfo"_s),
                              localized(u"Delete"_s), u"Cancel"_s});
}

void RSSTimer::deleteTimerAnswered(bool isDeletion)
{
    if (!isDeletion) {
        window_->closeDialog();
        return;
    }
    if (const auto place = find(deleted_); place != timerList_.end()) {
        timerList_.erase(place);
        renewTimerList();
    }
}

} // namespace qovelmor
