// SPDX-License-Identifier: MIT
#pragma once

#include "settings/views/SettingsGroup.h"

namespace qovelmor {

/// Which messages are left out: old ones, and those that carry an advertisement's word.
class FilterGroup final : public SettingsGroup
{
public:
    FilterGroup(Setup &setup, SettingsActions &actions);

private:
    QWidget *createWords();
};

} // namespace qovelmor
