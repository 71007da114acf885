// SPDX-License-Identifier: MIT
#pragma once

#include "messages/InformationFile.h"
#include "messages/MessageSwitches.h"
#include "platform/Worker.h"

#include <QString>

#include <atomic>

namespace qovelmor {

class Clock;
class LineScreen;
class MessageSettings;
class RunControl;

/// Shows lines where the output is (the board or the on-screen board) and waits until they have run
/// through, a stop was asked for, or the program quits.
class LineDisplay
{
public:
    LineDisplay(Clock &clock, InformationFile &information);
    ~LineDisplay();

    /// All must outlive the last line.
    void connect(const MessageSettings &settings, const RunControl &runControl, LineScreen &screen);

    /// Shows a message's line, after the information line whose turn it is; on the board followed
    /// by the present date when the switch asks for it. Returns when all of it has been shown or
    /// broken off.
    void show(const QString &line, const DisplaySwitches &switches);

    /// Shows one line without waiting for its end.
    void dispTitleThread(const QString &line);

    /// Starts dispTitleThread on a thread of its own.
    void startTitle(const QString &line);
    /// Waits until the started title line has been handed over, if there is one.
    void finishTitle();
    /// Whether a started title line is still being handed over or runs on the board.
    bool isTitleRunning() const;

private:
    bool showInformation(bool onBoard);
    bool showAndWait(const QString &line, bool onBoard);
    bool waitForEnd(bool onBoard);
    bool isBusy(bool onBoard) const;
    void breakOff(bool onBoard);

    Clock &clock_;
    InformationFile &information_;
    const MessageSettings *settings_ = nullptr;
    const RunControl *runControl_ = nullptr;
    LineScreen *screen_ = nullptr;
    std::atomic<bool> isTitlePending_ = false;
    Worker titleThread_;
};

} // namespace qovelmor
