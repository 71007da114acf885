// SPDX-License-Identifier: MIT
#pragma once

#include "settings/views/SettingsGroup.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace qovelmor {

/// What goes into the log book, and where the log book is.
class LogGroup final : public SettingsGroup
{
public:
    LogGroup(Setup &setup, SettingsActions &actions);

    void enableShowLogButton(bool enabled);
    void showLogNote(const QString &text);
    /// The answer of the panel that chooses the file.
    void chooseFile(const QString &path);

private:
    QPushButton *showLogButton_ = nullptr;
    QLineEdit *logFilePath_ = nullptr;
    QLabel *logNote_ = nullptr;
};

} // namespace qovelmor
