// SPDX-License-Identifier: MIT
#pragma once

#include "settings/views/SettingsGroup.h"

class QLineEdit;

namespace qovelmor {

/// The browser that opens the messages' pages.
class BrowserGroup final : public SettingsGroup
{
public:
    BrowserGroup(Setup &setup, SettingsActions &actions);

    /// Shows the chosen browser: the path of its desktop entry.
    void showBrowser(const QString &desktopFile);

private:
    QLineEdit *desigBrowser_;
};

} // namespace qovelmor
