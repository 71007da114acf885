// SPDX-License-Identifier: MIT
#pragma once

#include "board/VelmorSystem.h"
#include "board/needs/BoardSettings.h"
#include "platform/SystemClock.h"
#include "tests/board/RecordingLog.h"
#include "tests/support/ScriptedBoard.h"
#include "tests/support/StdoutCapture.h"

#include <QTest>

namespace qovelmor {

/// Where no time-out must be met, however late the board's thread gets to run. A quiet board owes
/// no answer, so nothing is gained by waiting long for one.
inline BoardLimits patientBoardLimits(ScriptedBoard::Kind kind = ScriptedBoard::Kind::Talkative)
{
    using namespace std::chrono_literals;
    return {.port = {.receiveWatch = 20s,
                     .receiveStringWatch = 20s,
                     .pollStep = 20ms,
                     .sendSlack = 20s},
            .settle = {.most = kind == ScriptedBoard::Kind::Quiet ? 100ms : 5000ms},
            .run = {.step = 20ms, .roomWatch = 20s, .scrollEndWatch = 20s, .standingWatch = 20s}};
}

/// Where time-outs are the subject: limits that a test can wait for, in the proportions of the real
/// ones.
inline BoardLimits shortBoardLimits()
{
    using namespace std::chrono_literals;
    return {
        .port = {.receiveWatch = 200ms,
                 .receiveStringWatch = 100ms,
                 .pollStep = 20ms,
                 .sendSlack = 100ms},
        .settle = {},
        .run = {.step = 20ms, .roomWatch = 300ms, .scrollEndWatch = 400ms, .standingWatch = 150ms}};
}

class TestBoardSettings final : public BoardSettings
{
public:
    bool rotation() const override { return rotation_.load(); }
    std::atomic<bool> rotation_ = false;
};

/// A board link on a pseudo-terminal with a scripted board at its far end, opened and greeted.
struct BoardBench
{
    explicit BoardBench(ScriptedBoard::Manner manner = {})
        : BoardBench(manner, patientBoardLimits(manner.kind))
    {}
    /// With a main thread, which is the thread that makes this, its sleeps run what is posted to
    /// it.
    BoardBench(ScriptedBoard::Manner manner, BoardLimits limits, MainThread *mainThread = nullptr)
        : clock(mainThread)
        , far(manner)
        , system(clock, limits, [path = far.path()](SerialDeviceType) {
            return SerialLookup{0, false, {path}};
        })
    {
        system.setMessageList(&log);
        system.setPortLoss(&log);
        system.setSetup(&settings);
        StdoutCapture quiet;
        if (!system.openSerialPortWithNumber(0))
            qFatal("the pseudo-terminal does not open");
        waitForLine("x");
        far.takeLines();
    }

    bool waitForLine(const QByteArray &line)
    {
        return QTest::qWaitFor([&] { return far.lines().contains(line); }, 10'000);
    }
    /// The lines that have come once the board has answered all of them.
    QList<QByteArray> linesSoFar()
    {
        system.sync();
        QList<QByteArray> lines = far.takeLines();
        lines.removeAll("sync");
        return lines;
    }

    SystemClock clock;
    ScriptedBoard far;
    RecordingLog log;
    TestBoardSettings settings;
    VelmorSystem system;
};

} // namespace qovelmor
