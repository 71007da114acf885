// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QString>

namespace qovelmor {

class MessageList;
class OnScreenBoard;

/// Shows the on-screen board in the terminal that the program was started from: the dots in place
/// when the output is a terminal, else the text of each line and a picture now and then. For
/// machines without a display.
class TerminalView final
{
public:
    /// Both must outlive the view. Main thread only.
    TerminalView(OnScreenBoard &board, MessageList &msgList);

private:
    void showFrame();
    void showLine();
    void print(const QString &text);

    OnScreenBoard &board_;
    MessageList &msgList_;
    const bool isTerminal_;
    QString shownLine_;
    int rowsOnScreen_ = 0;
    QElapsedTimer sincePicture_;
};

} // namespace qovelmor
