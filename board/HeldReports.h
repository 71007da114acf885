// SPDX-License-Identifier: MIT
#pragma once

#include "board/needs/BoardLog.h"
#include "board/needs/PortLoss.h"

#include <functional>
#include <vector>

namespace qovelmor {

/// Keeps what an exchange has to report until the exchange is over: the log writes to the disk, and
/// nobody is called out to while the link is held.
///
/// Not locked: it belongs to whoever holds the link. The receivers may be null and are asked when a
/// report is delivered.
class HeldReports final : public BoardLog, public PortLoss
{
public:
    void setMessageList(BoardLog *log) { log_ = log; }
    void setPortLoss(PortLoss *loss) { loss_ = loss; }

    void writeStringLog(const QString &text) override;
    void writeWatchTimeBreakLog(const QString &place) override;
    void setDispRSSStateStopped() override;
    void portLost(const PortLossAlert &alert) override;

    using Calls = std::vector<std::function<void()>>;
    /// What was reported since the last call, ready to be made in this order.
    Calls take() { return std::exchange(calls_, {}); }

private:
    void holdForLog(std::function<void(BoardLog &)> call);

    BoardLog *log_ = nullptr;
    PortLoss *loss_ = nullptr;
    Calls calls_;
};

} // namespace qovelmor
