// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QColor>
#include <QString>

#include <memory>
#include <optional>

namespace qovelmor {

class BoardLink;
class LogFile;

/// The settings that the message list asks for while it reads, shows and logs. Any thread.
class MessageSettings
{
public:
    virtual ~MessageSettings() = default;

    virtual bool logRSSRead() const = 0;
    virtual bool logRSSDisp() const = 0;
    virtual bool logTimer() const = 0;
    virtual bool logSystem() const = 0;
    virtual std::shared_ptr<LogFile> logFileHandle() const = 0; ///< null: no log file is open
    /// The log file took no line (disk full, file system gone); said to the user once.
    virtual void logFileFailed() = 0;

    virtual bool isCommercialMessage(const QString &text) const = 0;
    virtual bool dontShowOlder() const = 0;
    virtual bool isOlderThan(std::optional<Clock::CalendarTime> date) const = 0;

    virtual bool isScroll() const = 0; ///< keep the table scrolled to the message on display
    virtual bool dispProgress() const = 0;
    virtual bool playArrivalSound() const = 0;
    virtual QString arrivalSoundName() const = 0;
    virtual float playSoundVolume() const = 0;
    virtual int scrollSpeed() const = 0;
    virtual QColor lightLEDColor() const = 0;
    virtual bool useBitmapFont() const = 0;
    virtual int moduleCount() const = 0;

    /// Never absent: without a board it answers NO, 0 or nothing.
    virtual BoardLink &ledSystem() const = 0;
};

} // namespace qovelmor
