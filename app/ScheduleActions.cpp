// SPDX-License-Identifier: MIT
#include "app/ScheduleActions.h"

#include "app/VelmorRSS.h"
#include "feeds/RSSList.h"
#include "messages/MessageList.h"

namespace qovelmor {

void ScheduleActions::connect(VelmorRSS &control, RSSList &rssList, MessageList &msgList)
{
    control_ = &control;
    rssList_ = &rssList;
    msgList_ = &msgList;
}

bool ScheduleActions::isMainThreadBusy() const
{
    return control_->isBusy();
}

bool ScheduleActions::isDisplayActive() const
{
    return control_->isDisplayActive();
}

void ScheduleActions::actStopDisp()
{
    control_->actStopDisp();
}

void ScheduleActions::actGetRSS()
{
    control_->actGetRSS();
}

void ScheduleActions::actStartDisp()
{
    control_->actStartDisp();
}

void ScheduleActions::setTempReader(const QString &address)
{
    // The feed's name is fetched: what arrives meanwhile waits, as during the read that follows.
    control_->listChangeStarts();
    rssList_->setTempReader(address);
    control_->listChangeEnds();
}

void ScheduleActions::writeTimerStartLog(const QString &address)
{
    msgList_->logBook().writeTimerStartLog(address);
}

void ScheduleActions::writeTimerStopLog()
{
    msgList_->logBook().writeTimerStopLog();
}

} // namespace qovelmor
