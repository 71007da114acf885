// SPDX-License-Identifier: MIT
#pragma once

#include "board/LineSettings.h"
#include "board/OpenFailure.h"

#include <QByteArray>

#include <chrono>
#include <optional>

namespace qovelmor {

/// One open serial device: its descriptor, non-blocking, exclusive and close-on-exec.
class SerialLine
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    SerialLine() = default;
    ~SerialLine() { close(); }
    SerialLine(const SerialLine &) = delete;
    SerialLine &operator=(const SerialLine &) = delete;

    /// Opens and claims the device, reads its settings into `settings`, makes them raw at 19200
    /// baud and writes them back. Nothing on success; on a failure the line is closed again.
    std::optional<OpenFailure> open(const QByteArray &path, LineSettings &settings);

    /// Closes at once; what has not left yet is given up.
    void close();

    /// Waits until all output has left, but not beyond the deadline, and writes the settings back
    /// with immediate effect.
    void drainAndRestore(const LineSettings &settings, Deadline deadline);

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

    /// Writes all bytes; where the line takes none for now, waits for room until the deadline.
    /// False when the line reports an error or the deadline has passed.
    bool write(const QByteArray &bytes, Deadline deadline) const;

    /// What has arrived and was not read yet is gone.
    void discardUnread() const;

    /// Bytes that were written and have not left yet; 0 where the line cannot tell.
    int unsentBytes() const;

private:
    std::optional<OpenFailure> claim();
    std::optional<OpenFailure> configure(LineSettings &settings) const;
    void giveUpClaim();

    int descriptor_ = -1;
    bool isClaimed_ = false;
};

} // namespace qovelmor
