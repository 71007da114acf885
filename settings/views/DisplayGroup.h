// SPDX-License-Identifier: MIT
#pragma once

#include "settings/views/SettingsGroup.h"

namespace qovelmor {

/// How and where the messages are shown.
class DisplayGroup final : public SettingsGroup
{
public:
    DisplayGroup(Setup &setup, SettingsActions &actions);
};

} // namespace qovelmor
