// SPDX-License-Identifier: MIT
#pragma once

#include "board/needs/PortLoss.h"

namespace qovelmor {

class MainThread;
class VelmorRSS;

/// The port of a board that was there is lost for good: says so once, and ends the program in order
/// when the alert is answered.
class PortLossAlarm final : public PortLoss
{
public:
    explicit PortLossAlarm(MainThread &mainThread) : mainThread_(mainThread) {}

    /// Before the port is opened; must outlive the alarm's calls.
    void connect(VelmorRSS &control) { control_ = &control; }

    void portLost(const PortLossAlert &alert) override;

private:
    MainThread &mainThread_;
    VelmorRSS *control_ = nullptr;
};

} // namespace qovelmor
