// SPDX-License-Identifier: MIT
#pragma once

#include "board/SerialLine.h"
#include "board/SerialReceiver.h"
#include "board/SerialWire.h"

namespace qovelmor {

/// A serial device of the system, and the thread that reads it. It lives in real time.
class DeviceWire final : public SerialWire
{
public:
    DeviceWire(Clock &clock, CharacterQue &que);
    ~DeviceWire() override;

    std::optional<OpenFailure> open(const QByteArray &path, LineSettings &settings) override;
    void close() override;
    void drainAndRestore(const LineSettings &settings, Clock::SteadyTime deadline) override;
    bool write(const QByteArray &bytes, Clock::SteadyTime deadline) override;
    int unsentBytes() const override;
    void discardUnread() override;
    void spaceMade() override;
    void waitForBytes(Clock::SteadyTime deadline,
                      const std::function<bool(int count)> &done) override;

    /// Makes one, for a port.
    static std::unique_ptr<SerialWire> make(Clock &clock, CharacterQue &que);

private:
    const Clock &clock_;
    CharacterQue &que_;
    // The thread ends before its descriptor is closed.
    SerialLine line_;
    SerialReceiver receiver_;
};

} // namespace qovelmor
