// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/FrameWriter.h"
#include "tools/qovelmorboard/ProgramOptions.h"
#include "tools/qovelmorboard/TerminalPicture.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <string>

class QSocketNotifier;

namespace qovelmor::simboard {

class BoardWindow;

/// The running program: the board, its pictures, and where orders come from.
class BoardProgram : public QObject
{
    Q_OBJECT

public:
    /// `signalDescriptor` becomes readable when the program is asked to end.
    BoardProgram(const ProgramOptions &options, int signalDescriptor);
    ~BoardProgram() override;

    /// Opens the serial line and prints its path; false, with a line on standard error, when that
    /// fails.
    bool start();

private:
    void watch(int descriptor, void (BoardProgram::*readable)());
    bool listen();
    void handleSignal();
    void handleInput();
    void handleConnection();
    void handleClient(int descriptor, QSocketNotifier *notifier);
    /// Obeys the whole lines in `text` and leaves the rest; returns the answers.
    std::string obeyLines(std::string &text);
    void refresh();
    void drawTerminal(const BoardView &view);

    ProgramOptions options_;
    int signalDescriptor_;
    int controlDescriptor_ = -1;
    std::unique_ptr<SimulatedBoard> board_;
    std::unique_ptr<BoardWindow> window_;
    std::unique_ptr<FrameWriter> frames_;
    TerminalPicture terminal_;
    std::string input_;
    QTimer refreshTimer_;
};

} // namespace qovelmor::simboard
