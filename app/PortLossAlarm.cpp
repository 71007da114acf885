// SPDX-License-Identifier: MIT
#include "app/PortLossAlarm.h"

#include "app/VelmorRSS.h"
#include "platform/MainThread.h"

namespace qovelmor {

void PortLossAlarm::portLost(const PortLossAlert &alert)
{
    mainThread_.post([control = control_, alert] {
        control->portLostAlert(alert.title, alert.text, alert.button);
    });
}

} // namespace qovelmor
