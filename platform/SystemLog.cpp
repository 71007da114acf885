// SPDX-License-Identifier: MIT
#include "platform/SystemLog.h"

#include "platform/PlainText.h"

#include <QDebug>

namespace qovelmor {

Q_LOGGING_CATEGORY(logPlatform, "qovelmorrss.platform", QtInfoMsg)
Q_LOGGING_CATEGORY(logRender, "qovelmorrss.render", QtInfoMsg)
Q_LOGGING_CATEGORY(logBoard, "qovelmorrss.board", QtInfoMsg)
Q_LOGGING_CATEGORY(logFeeds, "qovelmorrss.feeds", QtInfoMsg)
Q_LOGGING_CATEGORY(logSettings, "qovelmorrss.settings", QtInfoMsg)
Q_LOGGING_CATEGORY(logMessages, "qovelmorrss.messages", QtInfoMsg)
Q_LOGGING_CATEGORY(logSchedule, "qovelmorrss.schedule", QtInfoMsg)
Q_LOGGING_CATEGORY(logApp, "qovelmorrss.app", QtInfoMsg)

void systemLog(const QLoggingCategory &category, const QString &text)
{
    qCWarning(category).noquote().nospace() << withoutControls(text);
}

} // namespace qovelmor
