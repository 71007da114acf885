// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/Arguments.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/BoardState.h"
#include "tools/qovelmorboard/Reply.h"

#include <algorithm>
#include <array>

namespace qovelmor::simboard {

namespace {

constexpr std::size_t bytesPerColumn = 2;
constexpr std::size_t bytesPerLine = 32;

std::size_t freeBytes(const BoardState &board)
{
    const std::size_t room = board.buffer.room() * bytesPerColumn;
    // While nothing drains there is nothing to wait for: the host may go on at once.
    return board.display.isMoving() ? room : std::max(room, bytesPerLine);
}

void data(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto words = arguments.hexFrom(0);
    if (!words) {
        reply.error(errorArgument);
        return;
    }
    std::vector<ColumnWord> columns;
    std::transform(words->begin(), words->end(), std::back_inserter(columns),
                   [](unsigned word) { return static_cast<ColumnWord>(word); });
    if (!columns.empty() && (board.refusesColumns || !board.display.accept(columns)))
        reply.error(errorNoRoom);
    else
        reply.data(std::to_string(freeBytes(board)));
}

void mode(BoardState &board, const Arguments &, Reply &reply)
{
    const DisplayMode told = board.neverEnds ? DisplayMode::Scrolling : board.display.mode();
    reply.data(std::to_string(static_cast<int>(told)));
}

void clear(BoardState &board, const Arguments &arguments, Reply &)
{
    if (arguments.integer(0).value_or(0) == 0)
        board.display.clear();
    else
        board.buffer.clear();
}

void end(BoardState &board, const Arguments &arguments, Reply &)
{
    if (arguments.integer(0).value_or(1) == 0)
        board.display.stop();
    else
        board.display.endWhenScrolledOut();
}

void scroll(BoardState &board, const Arguments &, Reply &)
{
    board.display.scroll();
}

void loop(BoardState &board, const Arguments &, Reply &)
{
    board.display.loop();
}

void show(BoardState &board, const Arguments &, Reply &)
{
    board.display.show();
}

void stop(BoardState &board, const Arguments &, Reply &)
{
    board.display.stop();
}

constexpr std::array<BoardCommand, 8> commands{{
    {"sc_clear", "[0|1]", Answers::Never, clear},
    {"sc_data", "[word...]", Answers::Always, data},
    {"sc_end", "[0|1]", Answers::Never, end},
    {"sc_loop", "", Answers::Never, loop},
    {"sc_mode", "", Answers::Always, mode},
    {"sc_scroll", "", Answers::Never, scroll},
    {"sc_show", "", Answers::Never, show},
    {"sc_stop", "", Answers::Never, stop},
}};

} // namespace

std::span<const BoardCommand> displayCommands()
{
    return commands;
}

} // namespace qovelmor::simboard
