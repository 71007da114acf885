// SPDX-License-Identifier: MIT
#include "app/TerminalView.h"

#include "messages/MessageList.h"
#include "messages/OnScreenBoard.h"
#include "messages/TerminalBoard.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {
// A terminal needs no more; a file wants few pictures, but at least one for each line.
constexpr qint64 millisecondsBetweenPicturesOnTerminal = 50;
constexpr qint64 millisecondsBetweenPicturesInFile = 1500;

constexpr int usualWidth = 80;

int terminalWidth()
{
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col
                                                                             : usualWidth;
}

} // namespace

TerminalView::TerminalView(OnScreenBoard &board, MessageList &msgList)
    : board_(board), msgList_(msgList), isTerminal_(::isatty(STDOUT_FILENO) == 1)
{
    sincePicture_.start();
    board_.frameChanged().listen([this] { showFrame(); });
    msgList_.changeNotice().listen([this] { showLine(); });
}

void TerminalView::showLine()
{
    const auto shown = msgList_.presentation();
    QString line = shown->statusText;
    const auto row = static_cast<std::size_t>(shown->messageIndex);
    if (!shown->messageNumber.isEmpty() && row < shown->messages->size())
        line = u"▶ "_s + shown->messageNumber + u"  "_s + (*shown->messages)[row].headline;
    if (line.isEmpty() || line == shownLine_)
        return;
    shownLine_ = line;
    rowsOnScreen_ = 0; // the next picture goes below the line
    print(line + u'\n');
}

void TerminalView::showFrame()
{
    const qint64 wait =
        isTerminal_ ? millisecondsBetweenPicturesOnTerminal : millisecondsBetweenPicturesInFile;
    if (sincePicture_.elapsed() < wait)
        return;
    sincePicture_.restart();
    const QStringList rows = terminalBoard(*board_.ledImage(), terminalWidth());
    QString text;
    if (isTerminal_ && rowsOnScreen_ > 0)
        text = u"\x1b[%1A"_s.arg(rowsOnScreen_);
    text += rows.join(u'\n') + u'\n';
    rowsOnScreen_ = static_cast<int>(rows.size());
    print(text);
}

void TerminalView::print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace qovelmor
