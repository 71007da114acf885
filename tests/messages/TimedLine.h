// SPDX-License-Identifier: MIT
#pragma once

#include "Journal.h"
#include "board/BoardLink.h"
#include "messages/needs/LineScreen.h"
#include "platform/Clock.h"

#include <atomic>

namespace qovelmor {

/// A place that shows one line at a time, each for the same time by the clock.
class TimedLine
{
public:
    TimedLine(Clock &clock, std::chrono::milliseconds length) : clock_(clock), length_(length) {}

    /// Waits in steps of 0.1 s for the end of the line before.
    void show()
    {
        while (runs() && clock_.sleepFor(std::chrono::milliseconds(100))) {
        }
        end_ = clock_.steadyNow() + length_.load();
    }
    void stop() { end_ = clock_.steadyNow(); }
    /// For the lines that start from now on.
    void setLength(std::chrono::milliseconds length) { length_ = length; }
    bool runs() const { return clock_.steadyNow() < end_.load(); }

private:
    Clock &clock_;
    std::atomic<std::chrono::milliseconds> length_;
    std::atomic<Clock::SteadyTime> end_{};
};

/// The on-screen board as the message list sees it.
class TimedScreen final : public LineScreen
{
public:
    TimedScreen(Clock &clock, Journal &journal, std::chrono::milliseconds length)
        : line_(clock, length), journal_(journal)
    {}

    void setLength(std::chrono::milliseconds length) { line_.setLength(length); }

    void showString(const QString &text) override
    {
        line_.show();
        journal_.add(QStringLiteral("screen ") + text);
    }
    void stopShowString() override
    {
        line_.stop();
        journal_.add(QStringLiteral("screen stopped"));
    }
    bool isShowing() const override { return line_.runs(); }
    void setFontName(const QString &name) override
    {
        journal_.add(QStringLiteral("screen font ") + name);
    }
    void setExpansion(float expansion) override
    {
        journal_.add(QStringLiteral("screen expansion ") + QString::number(double(expansion)));
    }

private:
    TimedLine line_;
    Journal &journal_;
};

/// The board as the message list sees it; its display runs do not block.
class TimedBoard final : public BoardLink
{
public:
    TimedBoard(Clock &clock, Journal &journal, std::chrono::milliseconds length)
        : line_(clock, length), journal_(journal)
    {}

    void setLength(std::chrono::milliseconds length) { line_.setLength(length); }

    void showString(const QString &text) override
    {
        line_.show();
        journal_.add(QStringLiteral("board ") + text);
    }
    bool isRunning() const override { return line_.runs(); }
    void clear() override
    {
        line_.stop();
        journal_.add(QStringLiteral("board cleared"));
    }
    void showPresentDate(double seconds) override
    {
        journal_.add(QStringLiteral("board date ") + QString::number(seconds));
    }
    void setFontName(const QString &name) override
    {
        journal_.add(QStringLiteral("board font ") + name);
    }
    void setBoarder(int threshold) override
    {
        journal_.add(QStringLiteral("board boarder ") + QString::number(threshold));
    }
    void setExpansion(float expansion) override
    {
        journal_.add(QStringLiteral("board expansion ") + QString::number(double(expansion)));
    }

    bool openSerialPortWithNumber(int) override { return false; }
    bool comTest() override { return false; }
    QStringList portNames() const override { return {}; }
    bool isLost() const override { return false; }
    void setSpeed(int) override {}
    void setModuleCount(int) override {}
    void setBright(int) override {}
    void setReverse(bool) override {}
    int moduleCount() override { return 4; }
    int waitBefore() override { return 0; }
    int waitAfter() override { return 0; }
    void setUseFontx(bool) override {}
    void setRotation(bool) override {}
    void setScroll(bool) override {}
    void setAsync(bool) override {}

private:
    TimedLine line_;
    Journal &journal_;
};

} // namespace qovelmor
