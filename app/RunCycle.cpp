// SPDX-License-Identifier: MIT
#include "app/RunCycle.h"

#include "platform/Clock.h"

namespace qovelmor {

using namespace std::chrono_literals;

namespace {
constexpr auto pollStep = 100ms;
}

RunCycle::RunCycle(Clock &clock, RunSteps &steps)
    : clock_(clock), steps_(steps), displayThread_(clock)
{}

RunCycle::~RunCycle()
{
    stopDispRSS();
}

void RunCycle::setDispRSSState(int state)
{
    dispRSSState_ = state;
    steps_.controlsChanged();
}

void RunCycle::startReadRSS(ReadReason reason)
{
    int idle = 0;
    if (!readRSSState_.compare_exchange_strong(idle, 1))
        return;
    lastDispLine_ = 0;
    readRSSThread(reason);
    steps_.controlsChanged();
}

void RunCycle::readRSSThread(ReadReason reason)
{
    steps_.readPages(reason);
    readRSSState_ = 0;
    steps_.readFinished();
}

void RunCycle::stopReadRSS()
{
    int reading = 1;
    if (readRSSState_.compare_exchange_strong(reading, 2)) {
        // Not "until idle": with an empty list the next read starts at once.
        while (readRSSState_ == 2 && clock_.sleepFor(pollStep)) {
        }
    }
    steps_.controlsChanged();
}

void RunCycle::startDispRSS()
{
    if (dispRSSState_ != 0)
        return;
    displayThread_.join(); // a thread whose port was lost may still be on its way out
    int stopped = 0;
    if (!dispRSSState_.compare_exchange_strong(stopped, 1))
        return;
    steps_.controlsChanged();
    if (!displayThread_.start([this] { dispRSSThread(); }))
        setDispRSSState(0);
}

void RunCycle::stopDispRSS()
{
    int displaying = 1;
    if (!dispRSSState_.compare_exchange_strong(displaying, 2)) {
        displayThread_.join(); // one that ended by itself, after its port was lost
        return;
    }
    // The steps keep the window painted; once the program quits they return at once, and the join
    // alone waits for the thread, which then meets no sleep either.
    while (dispRSSState_ == 2 && clock_.sleepFor(pollStep)) {
    }
    displayThread_.join();
    steps_.displayStopped();
    steps_.controlsChanged();
}

void RunCycle::dispRSSThread()
{
    while (isRunning()) {
        steps_.displayStarts();
        steps_.controlsChanged();
        // When the program quits, lines and reads end at once; the stop that it is about to ask for
        // may come later, and until then the feeds would be read in vain over and over.
        if (!showToEndOfList() || clock_.sleepsEnded())
            break;
        startReadRSS(ReadReason::EndOfList);
    }
    dispRSSState_ = 0;
    steps_.controlsChanged();
}

// False when the display is to end.
bool RunCycle::showToEndOfList()
{
    while (lastDispLine_ < steps_.messageCount()) {
        steps_.showMessage(lastDispLine_);
        if (!isRunning() || clock_.sleepsEnded())
            return false;
        ++lastDispLine_;
    }
    return true;
}

} // namespace qovelmor
