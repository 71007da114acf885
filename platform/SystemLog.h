// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>
#include <QString>

namespace qovelmor {

/// Writes one diagnostic line to the system log (Qt's message handler) under the category of the
/// folder that speaks; `text` is taken as it stands.
void systemLog(const QLoggingCategory &category, const QString &text);

// One category for each folder, so that a person can switch them with QT_LOGGING_RULES.
Q_DECLARE_LOGGING_CATEGORY(logPlatform)
Q_DECLARE_LOGGING_CATEGORY(logRender)
Q_DECLARE_LOGGING_CATEGORY(logBoard)
Q_DECLARE_LOGGING_CATEGORY(logFeeds)
Q_DECLARE_LOGGING_CATEGORY(logSettings)
Q_DECLARE_LOGGING_CATEGORY(logMessages)
Q_DECLARE_LOGGING_CATEGORY(logSchedule)
Q_DECLARE_LOGGING_CATEGORY(logApp)

} // namespace qovelmor
