// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardLink.h"
#include "messages/needs/MessageSettings.h"

#include <QStringList>

#include <atomic>

namespace qovelmor {

/// A board link that only knows its waits.
class WaitingBoard final : public BoardLink
{
public:
    std::atomic<int> before = 0;
    std::atomic<int> after = 0;

    int waitBefore() override { return before; }
    int waitAfter() override { return after; }

    bool openSerialPortWithNumber(int) override { return false; }
    bool comTest() override { return false; }
    QStringList portNames() const override { return {}; }
    bool isLost() const override { return false; }
    void setSpeed(int) override {}
    void setModuleCount(int) override {}
    void setBright(int) override {}
    void setReverse(bool) override {}
    int moduleCount() override { return 0; }
    void setFontName(const QString &) override {}
    void setBoarder(int) override {}
    void setExpansion(float) override {}
    void setUseFontx(bool) override {}
    void setRotation(bool) override {}
    void setScroll(bool) override {}
    void setAsync(bool) override {}
    void showString(const QString &) override {}
    bool isRunning() const override { return false; }
    void clear() override {}
    void showPresentDate(double) override {}
};

/// The settings that the on-screen board asks for, as fields; everything else is off.
class ScreenSettings final : public MessageSettings
{
public:
    std::atomic<int> modules = 4;
    std::atomic<int> speed = 3;
    std::atomic<QRgb> light = 0xffff8c00;
    mutable WaitingBoard board;

    int scrollSpeed() const override { return speed; }
    QColor lightLEDColor() const override { return QColor::fromRgb(light); }
    int moduleCount() const override { return modules; }
    BoardLink &ledSystem() const override { return board; }

    bool logRSSRead() const override { return false; }
    bool logRSSDisp() const override { return false; }
    bool logTimer() const override { return false; }
    bool logSystem() const override { return false; }
    std::shared_ptr<LogFile> logFileHandle() const override { return nullptr; }
    void logFileFailed() override {}
    bool isCommercialMessage(const QString &) const override { return false; }
    bool dontShowOlder() const override { return false; }
    bool isOlderThan(std::optional<Clock::CalendarTime>) const override { return false; }
    bool isScroll() const override { return false; }
    bool dispProgress() const override { return false; }
    bool playArrivalSound() const override { return false; }
    QString arrivalSoundName() const override { return {}; }
    float playSoundVolume() const override { return 0; }
    bool useBitmapFont() const override { return false; }
};

} // namespace qovelmor
