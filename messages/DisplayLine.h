// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"
#include "messages/MessageSwitches.h"

namespace qovelmor {

/// The line that scrolls for one message: headline, description, number, date, site name, as far as
/// the switches ask for them and the message has them.
///
/// `number` counts from 1; `date` is the text to show, which for a message without one is its
/// first-seen time.
QString displayLine(const Message &message, int number, int count, const QString &date,
                    const DisplaySwitches &switches);

} // namespace qovelmor
