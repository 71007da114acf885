// SPDX-License-Identifier: MIT
#include "messages/LineDisplay.h"

#include "board/BoardLink.h"
#include "messages/InformationFile.h"
#include "messages/MessageSwitches.h"
#include "messages/needs/LineScreen.h"
#include "messages/needs/MessageSettings.h"
#include "messages/needs/RunControl.h"
#include "platform/Clock.h"
#include "platform/SystemLog.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 100ms;
constexpr double calendarSeconds = 3.0;

} // namespace

LineDisplay::LineDisplay(Clock &clock, InformationFile &information,
                         const MessageSwitches &switches)
    : clock_(clock), information_(information), switches_(switches), titleThread_(clock)
{}

LineDisplay::~LineDisplay()
{
    finishTitle();
}

void LineDisplay::connect(const MessageSettings &settings, const RunControl &runControl,
                          LineScreen &screen)
{
    screen_ = &screen;
    settings_ = &settings;
    runControl_ = &runControl;
}

void LineDisplay::show(const QString &line)
{
    const bool onBoard = runControl_->isOutputLED();
    if (switches_.snapshot()->dispInfo && !showInformation(onBoard))
        return;
    if (!showAndWait(line, onBoard))
        return;
    if (onBoard && switches_.snapshot()->showCalendar && !runControl_->isDispBreak())
        settings_->ledSystem().showPresentDate(calendarSeconds);
}

// False when the message must not follow. A broken-off line keeps its turn.
bool LineDisplay::showInformation(bool onBoard)
{
    const auto next = information_.interleaved();
    switch (next.kind) {
    case InformationFile::Interleaved::Kind::Nothing:
        return true;
    case InformationFile::Interleaved::Kind::IndexError:
        systemLog(logMessages(), onBoard ? u"dispRSSDataWithIndex: index error2"_s
                                         : u"dispRSSDataWithIndex: index error3"_s);
        return false;
    case InformationFile::Interleaved::Kind::Line:
        break;
    }
    if (!next.line.isEmpty() && !showAndWait(u"【お知らせ】"_s + next.line, onBoard))
        return false;
    information_.advance();
    return true;
}

// A title line that still runs is waited for here, where a stop can end it: the board and the
// screen would wait for it without looking.
bool LineDisplay::showAndWait(const QString &line, bool onBoard)
{
    if (!waitForEnd(onBoard))
        return false;
    if (onBoard)
        settings_->ledSystem().showString(line);
    else
        screen_->showString(line);
    return waitForEnd(onBoard);
}

bool LineDisplay::waitForEnd(bool onBoard)
{
    while (isBusy(onBoard)) {
        if (runControl_->isDispBreak()) {
            breakOff(onBoard);
            return false;
        }
        if (!clock_.sleepFor(pollInterval))
            return false;
    }
    return !clock_.sleepsEnded();
}

bool LineDisplay::isBusy(bool onBoard) const
{
    return onBoard ? settings_->ledSystem().isRunning() : screen_->isShowing();
}

void LineDisplay::breakOff(bool onBoard)
{
    if (onBoard)
        settings_->ledSystem().clear();
    else
        screen_->stopShowString();
}

void LineDisplay::dispTitleThread(const QString &line)
{
    if (runControl_->isOutputLED())
        settings_->ledSystem().showString(line);
    else
        screen_->showString(line);
}

void LineDisplay::startTitle(const QString &line)
{
    if (isBusy(runControl_->isOutputLED()))
        return;
    isTitlePending_ = true;
    const bool isStarted = titleThread_.start([this, line] {
        dispTitleThread(line);
        isTitlePending_ = false;
    });
    if (!isStarted)
        isTitlePending_ = false;
}

// Polls instead of joining at once: on the main thread a sleep of the clock keeps the window
// painted, a join would not.
void LineDisplay::finishTitle()
{
    while (isTitlePending_ && clock_.sleepFor(pollInterval)) {
    }
    titleThread_.join();
}

bool LineDisplay::isTitleRunning() const
{
    return isTitlePending_ || (settings_ && settings_->ledSystem().isRunning());
}

} // namespace qovelmor
