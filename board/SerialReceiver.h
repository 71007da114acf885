// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Worker.h"

#include <atomic>

namespace qovelmor {

class CharacterQue;
class Clock;

/// The thread that moves bytes from a serial line into the receive queue.
///
/// It waits for readiness (poll(2) and an event descriptor) and takes no lock but the queue's own.
/// A line that was hung up is not looked at any more; the thread then waits for its end.
class SerialReceiver
{
public:
    SerialReceiver(Clock &clock, CharacterQue &que);
    ~SerialReceiver();
    SerialReceiver(const SerialReceiver &) = delete;
    SerialReceiver &operator=(const SerialReceiver &) = delete;

    /// Starts the thread on an open descriptor that outlives it. False, with errno, when the system
    /// has no event descriptor or no thread left.
    bool start(int descriptor);
    /// Ends the thread and waits for that; does nothing when there is none.
    void stop();

    /// To be called after bytes were taken from the queue: a thread that waits for room goes on.
    void spaceMade();

private:
    void receiveThread(int descriptor);
    bool moveBytes(int descriptor);
    void wake() const;
    void closeEvent();

    CharacterQue &que_;
    int event_ = -1;
    std::atomic<bool> threadExit_ = false;
    std::atomic<bool> waitsForSpace_ = false;
    Worker worker_;
};

} // namespace qovelmor
