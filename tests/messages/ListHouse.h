// SPDX-License-Identifier: MIT
#pragma once

#include "ListPartners.h"
#include "TimedLine.h"
#include "messages/MessageList.h"
#include "platform/QueueMainThread.h"
#include "platform/SimulatedClock.h"
#include "platform/UserDefaults.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

namespace qovelmor {

/// A local moment of the test's zone.
inline Clock::CalendarTime localMoment(const QString &isoText)
{
    const auto moment = QDateTime::fromString(isoText, Qt::ISODate);
    return Clock::CalendarTime(std::chrono::milliseconds(moment.toMSecsSinceEpoch()));
}

/// A message list with everything around it, by simulated time from 14 November 2026, 12:00.
struct ListHouse
{
    QTemporaryDir folder;
    SimulatedClock clock{localMoment(QStringLiteral("2026-11-14T12:00:00"))};
    QueueMainThread mainThread;
    Journal journal;
    TimedScreen screen{clock, journal, std::chrono::seconds(2)};
    TimedBoard board{clock, journal, std::chrono::seconds(2)};
    ListSettings settings{board};
    ListRunControl run{journal};
    ListFeeds feeds;
    ListSounds sounds{journal};
    ListProgress progress{journal};
    UserDefaults defaults{storePath()};
    std::atomic<int> drawn = -1; ///< the random numbers are 0, 1, 2 …
    MessageList list{{clock, mainThread, defaults, sounds, documents(), templatePath(),
                      [this] { return ++drawn; }}};

    ListHouse() { list.connect({feeds, settings, run, screen, &progress}); }

    QString storePath() const { return folder.filePath(QStringLiteral("store.plist")); }
    QString documents() const { return folder.filePath(QStringLiteral("Documents")); }
    QString templatePath() const { return folder.filePath(QStringLiteral("template.txt")); }

    /// The user's information file; `text` is plain ASCII or already Shift_JIS.
    void writeInformation(const QByteArray &text)
    {
        QDir().mkpath(documents());
        QFile file(documents() + QStringLiteral("/Information.txt"));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("cannot write the information file");
    }

    QStringList headlines() const
    {
        QStringList all;
        for (const Message &message : *list.msgList())
            all.append(message.headline);
        return all;
    }
};

} // namespace qovelmor
