// SPDX-License-Identifier: MIT
#pragma once

#include "ControlTable.h"

namespace qovelmor {

/// The tab of the settings, group by group.
Stage settingsTab();

} // namespace qovelmor
