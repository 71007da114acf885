// SPDX-License-Identifier: MIT
#pragma once

#include "render/VelmorBitmap.h"
#include "tests/board/BoardBench.h"

namespace qovelmor {

/// An image whose column x carries the word x + 1.
inline DisplayRun::Image numbered(int columns)
{
    auto image = std::make_shared<VelmorBitmap>(columns);
    for (int x = 0; x < columns; ++x) {
        for (int y = 0; y < 16; ++y) {
            if (((x + 1) >> (15 - y) & 1) != 0)
                image->setBit(x, y);
        }
    }
    return image;
}

/// The line that carries the columns first to last of such an image.
inline QByteArray dataLine(int first, int last)
{
    QByteArray line("sc_data ");
    for (int x = first; x <= last; ++x)
        line += QByteArray::number(x + 1, 16).rightJustified(4, '0') + ' ';
    return line;
}

/// A board whose room and mode a test changes while a run goes on.
struct LiveBoard
{
    std::atomic<int> room = 256;  ///< answer to the question for room
    std::atomic<int> taken = 256; ///< answer to columns
    std::atomic<int> mode = 1;
    std::atomic<bool> silent = false;

    ScriptedBoard::Script script()
    {
        return [this](const QByteArray &line) -> std::optional<QByteArray> {
            if (silent)
                return std::nullopt;
            const auto number = [](int value) { return "D " + QByteArray::number(value) + "\r\n"; };
            if (line == "sc_data")
                return number(room);
            if (line.startsWith("sc_data "))
                return number(taken);
            if (line == "sc_mode")
                return number(mode);
            return ScriptedBoard::defaultAnswer(line);
        };
    }
};

/// Patient limits but for the run's own.
inline BoardLimits withRunLimits(RunLimits run)
{
    BoardLimits limits = patientBoardLimits();
    limits.run = run;
    return limits;
}

/// A board link whose run a test drives.
struct RunBench : BoardBench
{
    using Lines = QList<QByteArray>;

    explicit RunBench(ScriptedBoard::Manner manner = {})
        : RunBench(manner, patientBoardLimits(manner.kind))
    {}
    RunBench(ScriptedBoard::Manner manner, BoardLimits limits) : BoardBench(manner, limits)
    {
        far.setScript(live.script());
        system.setScroll(true);
        system.setAsync(false);
    }
    ~RunBench()
    {
        system.restartScroll();
        system.cancel();
    }

    /// Starts a run on its own thread.
    void start(int columns) { system.showBitmap(numbered(columns)); }
    bool waitForEnd()
    {
        return QTest::qWaitFor([this] { return system.showStatus() == 0; }, 10'000);
    }
    int count(const QByteArray &line) { return static_cast<int>(far.lines().count(line)); }

    LiveBoard live;
};

} // namespace qovelmor
