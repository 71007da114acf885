// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/BoardFirmware.h"
#include "tools/qovelmorboard/RunRecord.h"

#include <QByteArray>

#include <string>

namespace qovelmor::simboard {

/// A board's program on the bench: time stands still until a test moves it.
class FirmwareBench
{
public:
    using Milliseconds = std::chrono::milliseconds;

    explicit FirmwareBench(BoardKind kind = BoardKind::Talkative, std::size_t bufferColumns = 128)
        : firmware_({kind, bufferColumns, 1.0, 1}, now_, &record_)
    {}

    BoardFirmware &firmware() { return firmware_; }
    const RunRecord &record() const { return record_; }
    BoardFirmware::Time now() const { return now_; }

    /// Sends one command line and gives what the board says at once.
    QByteArray say(const char *line) { return send(std::string(line) + "\r"); }
    QByteArray send(const std::string &bytes)
    {
        firmware_.receive(bytes, now_);
        return hear();
    }
    QByteArray hear() { return QByteArray::fromStdString(firmware_.takeOutput(now_)); }

    void wait(Milliseconds time)
    {
        now_ += time;
        firmware_.advance(now_);
    }

private:
    BoardFirmware::Time now_{std::chrono::seconds(1000)};
    RunRecord record_;
    BoardFirmware firmware_;
};

} // namespace qovelmor::simboard
