// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"

namespace qovelmor {

/// What copying a row puts on the clipboard: date, headline and description.
QString copiedRowText(const Message &message);

} // namespace qovelmor
