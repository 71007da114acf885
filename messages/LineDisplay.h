// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Worker.h"

#include <QString>

#include <atomic>

namespace qovelmor {

class Clock;
class InformationFile;
class LineScreen;
class MessageSettings;
class MessageSwitches;
class RunControl;

/// Shows lines where the output is (the board or the on-screen board) and waits until they have run
/// through, a stop was asked for, or the program quits.
class LineDisplay
{
public:
    LineDisplay(Clock &clock, InformationFile &information, const MessageSwitches &switches);
    ~LineDisplay();

    /// All must outlive the last line.
    void connect(const MessageSettings &settings, const RunControl &runControl, LineScreen &screen);

    /// Shows a message's line, after the information line whose turn it is; on the board followed
    /// by the present date when the switch asks for it then. Returns when all of it has been shown
    /// or broken off.
    void show(const QString &line);

    /// Shows one line without waiting for its end.
    void dispTitleThread(const QString &line);

    /// Starts dispTitleThread on a thread of its own. While another line still runs (the title of
    /// the read before) there is no title: it would have to wait, and with it the read and a stop.
    void startTitle(const QString &line);
    /// Waits until the started title line has been handed over, if there is one.
    void finishTitle();
    /// Whether a started title line is still being handed over or one runs on the board.
    bool isTitleRunning() const;

private:
    bool showInformation(bool onBoard);
    bool showAndWait(const QString &line, bool onBoard);
    bool waitForEnd(bool onBoard);
    bool isBusy(bool onBoard) const;
    void breakOff(bool onBoard);

    Clock &clock_;
    InformationFile &information_;
    const MessageSwitches &switches_;
    const MessageSettings *settings_ = nullptr;
    const RunControl *runControl_ = nullptr;
    LineScreen *screen_ = nullptr;
    std::atomic<bool> isTitlePending_ = false;
    Worker titleThread_;
};

} // namespace qovelmor
