// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PropertyValue.h"
#include "settings/SettingsValues.h"

#include <variant>
#include <vector>

namespace qovelmor {

class UserDefaults;

/// Which field of the values a setting lives in; the alternative tells its type.
using SettingField =
    std::variant<bool SettingsValues::*, int SettingsValues::*, float SettingsValues::*,
                 QString SettingsValues::*, QColor SettingsValues::*>;

/// One setting: its key in the defaults store, its field, and what a first run finds.
struct SettingRow
{
    QString key;
    SettingField field;
    PropertyValue factory;
};

/// Every setting that this folder keeps, in the order in which the store lists them.
const std::vector<SettingRow> &settingsTable();

/// The key of a field.
QString settingKey(SettingField field);

/// The factory defaults of all settings, to be registered with the store.
PropertyDictionary factorySettings();

/// All settings as the store holds them. Numbers too large for their field become the largest or
/// smallest it can hold; a colour that cannot be read becomes red.
SettingsValues readSettings(const UserDefaults &defaults);

/// The stored form of one field.
PropertyValue storedSetting(SettingField field, const SettingsValues &values);

} // namespace qovelmor
