// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Worker.h"

#include <atomic>

namespace qovelmor {

class Clock;

/// Why a read is made: what a person (or a timer) asks for always goes to the servers.
enum class ReadReason { Asked, EndOfList };

/// What one turn of the cycle consists of; the application controller answers.
///
/// The calls come on the thread that the operation runs on: the display thread, or the caller's.
class RunSteps
{
public:
    virtual ~RunSteps() = default;

    virtual void readPages(ReadReason reason) = 0; ///< fetch every feed, rebuild the list
    virtual void readFinished() = 0;
    virtual int messageCount() const = 0;
    virtual void displayStarts() = 0;
    virtual void showMessage(int index) = 0; ///< returns when it was shown or broken off
    virtual void displayStopped() = 0;       ///< after a stop was answered; on the stopping thread
    virtual void controlsChanged() = 0;
};

/// The two cycles of the program and their stop hand-shakes.
///
/// Reading: 0 idle, 1 reading, 2 stop asked. Display: 0 stopped, 1 displaying, 2 stop asked; the
/// display thread answers a stop by writing 0. Every transition is a compare-exchange from the
/// state it is described from, so nobody waits for an answer from a thread that has already ended.
///
/// startDispRSS and stopDispRSS belong to the main thread; queries may come from any thread.
class RunCycle
{
public:
    RunCycle(Clock &clock, RunSteps &steps);
    ~RunCycle();

    int readRSSState() const { return readRSSState_.load(); }
    int dispRSSState() const { return dispRSSState_.load(); }
    bool isReading() const { return readRSSState() == 1; }
    bool isRunning() const { return dispRSSState() == 1; }
    bool isDispBreak() const { return dispRSSState() == 2; }
    int lastDispLine() const { return lastDispLine_.load(); }
    void setLastDispLine(int index) { lastDispLine_ = index; }

    /// From outside only 0 makes sense: the port is lost, and the display thread is to end.
    void setDispRSSState(int state);

    /// Reads on the calling thread and goes back to the first line. Does nothing while another read
    /// runs.
    void startReadRSS(ReadReason reason = ReadReason::Asked);
    /// Waits for the end of a running read; nothing in a read looks at the request.
    void stopReadRSS();

    /// Starts the display thread; does nothing while one lives.
    void startDispRSS();
    /// Asks the display thread to end and joins it; does nothing when there is none. Not on the
    /// display thread.
    void stopDispRSS();

private:
    void readRSSThread(ReadReason reason);
    void dispRSSThread();
    bool showToEndOfList();

    Clock &clock_;
    RunSteps &steps_;
    std::atomic<int> readRSSState_ = 0;
    std::atomic<int> dispRSSState_ = 0;
    std::atomic<int> lastDispLine_ = 0;
    Worker displayThread_;
};

} // namespace qovelmor
