// SPDX-License-Identifier: MIT
#pragma once

#include "board/VelmorSystem.h"
#include "platform/SimulatedClock.h"
#include "tests/board/RecordingLog.h"
#include "tests/board/SimulatedWire.h"
#include "tests/support/ScriptedBoard.h"
#include "tests/support/StdoutCapture.h"

#include <utility>

namespace qovelmor {

/// A board link with the real limits, opened and greeted, on a line that takes no real time: no
/// busy machine moves its time-outs. The test and a run that it has started may use it in turn, but
/// not beside each other.
struct WireBench
{
    using Script = SimulatedWire::Script;

    /// A board that says "Ok." after every command.
    WireBench() : WireBench(talkative(ScriptedBoard::defaultAnswer)) { takeLines(); }
    /// A board that sends what the script says and nothing else.
    explicit WireBench(Script script)
        : script_(std::move(script)), system(clock, {}, [](SerialDeviceType) {
            return SerialLookup{0, false, {"/dev/board"}};
        })
    {
        system.setWire([this](Clock &ticks, CharacterQue &que) {
            auto made = std::make_unique<SimulatedWire>(
                ticks, que, [this](const QByteArray &line) { return answer(line); });
            wire_ = made.get();
            return made;
        });
        system.setMessageList(&log);
        system.setPortLoss(&log);
        const StdoutCapture quiet;
        if (!system.openSerialPortWithNumber(0))
            qFatal("the simulated line does not open");
    }

    /// What a talkative board answers from now on.
    void setScript(ScriptedBoard::Script script) { script_ = talkative(std::move(script)); }
    /// The command lines so far, without their carriage returns.
    QList<QByteArray> takeLines() { return std::exchange(lines_, {}); }
    /// Moves the time to when nothing is on its way any more.
    void letAllArrive() { clock.sleepUntil(wire_->quietAt()); }

private:
    static Script talkative(ScriptedBoard::Script script)
    {
        return [script = std::move(script)](const QByteArray &line) -> QList<SimulatedWire::Piece> {
            const auto tagged = script(line);
            if (!tagged)
                return {};
            return {{line + "\r\n" + *tagged + "Ok.\r\n"}};
        };
    }
    QList<SimulatedWire::Piece> answer(const QByteArray &line)
    {
        lines_.append(line);
        return script_(line);
    }

    Script script_;
    QList<QByteArray> lines_;
    SimulatedWire *wire_ = nullptr;

public:
    SimulatedClock clock{Clock::CalendarTime(std::chrono::seconds(1'795'230'000))};
    RecordingLog log;
    VelmorSystem system;
};

} // namespace qovelmor
