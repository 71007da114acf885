// SPDX-License-Identifier: MIT
#pragma once

#include "board/needs/BoardLog.h"
#include "feeds/needs/ReadLog.h"

#include <QString>
#include <QStringList>

#include <atomic>

namespace qovelmor {

class Clock;
class MessageSettings;
class RunControl;

/// The user's log book: one Shift_JIS line for each event, led by a time stamp.
///
/// Each kind of line has its switch in the settings; without an open log file lines are dropped. A
/// line is on the disk when the call returns. Control characters in what a line is about become
/// blanks, so that one event is always one line. Any thread.
class LogBook final : public ReadLog, public BoardLog
{
public:
    explicit LogBook(Clock &clock);

    /// Both must outlive the log book; until then nothing is written.
    void connect(MessageSettings &settings, RunControl &runControl);

    /// `result` is the code of a feed read; the line says it in words.
    void writeReadRSSLog(const QString &address, int result);
    /// `count` headlines were taken in the cycle.
    void writeReadCompleteLog(int count);
    void writeReadRSSErrorLog(const QString &address, const ReadError &error) override;
    void writeDispStartLog();
    void writeDispMessageLog(const QString &line);
    void writeStringLog(const QString &text) override;
    void writeTimerStartLog(const QString &text);
    void writeTimerStopLog();
    /// `place` is where a loop was broken off by its watch time.
    void writeWatchTimeBreakLog(const QString &place) override;

    /// The board's port is lost: the display counts as stopped.
    void setDispRSSStateStopped() override;

    /// The present local time as "yy/MM/dd hh:mm:ss", the year counted from 2000.
    QString dateString() const;

private:
    enum class Line : std::size_t;
    void write(Line line, const QStringList &arguments = {});

    Clock &clock_;
    std::atomic<MessageSettings *> settings_ = nullptr;
    std::atomic<RunControl *> runControl_ = nullptr;
};

} // namespace qovelmor
