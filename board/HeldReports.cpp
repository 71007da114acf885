// SPDX-License-Identifier: MIT
#include "board/HeldReports.h"

namespace qovelmor {

void HeldReports::holdForLog(std::function<void(BoardLog &)> call)
{
    if (log_ != nullptr)
        calls_.push_back([log = log_, call = std::move(call)] { call(*log); });
}

void HeldReports::writeStringLog(const QString &text)
{
    holdForLog([text](BoardLog &log) { log.writeStringLog(text); });
}

void HeldReports::writeWatchTimeBreakLog(const QString &place)
{
    holdForLog([place](BoardLog &log) { log.writeWatchTimeBreakLog(place); });
}

void HeldReports::setDispRSSStateStopped()
{
    holdForLog([](BoardLog &log) { log.setDispRSSStateStopped(); });
}

void HeldReports::portLost(const PortLossAlert &alert)
{
    if (loss_ != nullptr)
        calls_.push_back([loss = loss_, alert] { loss->portLost(alert); });
}

} // namespace qovelmor
