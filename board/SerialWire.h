// SPDX-License-Identifier: MIT
#pragma once

#include "board/LineSettings.h"
#include "board/OpenFailure.h"
#include "platform/Clock.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>

namespace qovelmor {

class CharacterQue;

/// What a serial port stands on: a line, and whoever brings what arrives on it into the queue.
class SerialWire
{
public:
    virtual ~SerialWire() = default;

    /// Opens the device as a raw 19200 baud line, empties the queue and lets bytes arrive. Nothing
    /// on success; on a failure the line is closed again.
    virtual std::optional<OpenFailure> open(const QByteArray &path, LineSettings &settings) = 0;
    /// Closes at once; what has not left yet is given up.
    virtual void close() = 0;
    /// Nothing arrives any more. Waits until all output has left, but not beyond the deadline, and
    /// writes the settings back.
    virtual void drainAndRestore(const LineSettings &settings, Clock::SteadyTime deadline) = 0;

    /// False when the line reports an error or takes nothing until the deadline.
    virtual bool write(const QByteArray &bytes, Clock::SteadyTime deadline) = 0;
    /// Bytes that were written and have not left yet; 0 where the line cannot tell.
    virtual int unsentBytes() const = 0;

    /// What has arrived and stands before the queue is gone.
    virtual void discardUnread() = 0;
    /// To be called after bytes were taken from the queue.
    virtual void spaceMade() = 0;
    /// Waits until `done`, asked with the number of bytes in the queue, says yes, or the deadline
    /// has passed. It must not call back.
    virtual void waitForBytes(Clock::SteadyTime deadline,
                              const std::function<bool(int count)> &done) = 0;
};

using SerialWireMaker = std::function<std::unique_ptr<SerialWire>(Clock &clock, CharacterQue &que)>;

} // namespace qovelmor
