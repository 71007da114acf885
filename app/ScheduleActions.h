// SPDX-License-Identifier: MIT
#pragma once

#include "schedule/needs/TimerActions.h"

namespace qovelmor {

class MessageList;
class RSSList;
class VelmorRSS;

/// Passes what a timer does on to the controller, the feed list and the message list.
class ScheduleActions final : public TimerActions
{
public:
    /// Once, before the schedule's start; all must outlive it.
    void connect(VelmorRSS &control, RSSList &rssList, MessageList &msgList);

    bool isMainThreadBusy() const override;
    bool isDisplayActive() const override;
    void actStopDisp() override;
    void actGetRSS() override;
    void actStartDisp() override;
    void setTempReader(const QString &address) override;
    void writeTimerStartLog(const QString &address) override;
    void writeTimerStopLog() override;

private:
    VelmorRSS *control_ = nullptr;
    RSSList *rssList_ = nullptr;
    MessageList *msgList_ = nullptr;
};

} // namespace qovelmor
