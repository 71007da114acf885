// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/Arguments.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/BoardState.h"
#include "tools/qovelmorboard/Reply.h"

#include <array>

namespace qovelmor::simboard {

namespace {

void bright(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto level = arguments.integer(0);
    if (!level)
        reply.error(errorArgument);
    else if (!board.setBright(*level))
        reply.error(errorRange);
}

void bright0(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto level = arguments.integer(0);
    if (!level)
        reply.error(errorArgument);
    else if (*level < 0 || *level > 255)
        reply.error(errorRange);
    else
        board.panel.setBrightness(*level);
}

void clear(BoardState &board, const Arguments &, Reply &)
{
    board.panel.clear();
    board.textColumn = 0;
}

void on(BoardState &board, const Arguments &, Reply &)
{
    board.panel.setDriven(true);
}

void off(BoardState &board, const Arguments &, Reply &)
{
    board.panel.setDriven(false);
}

struct Place
{
    int x;
    int y;
};

/// The two coordinates of a dot command; says what is wrong with them otherwise.
std::optional<Place> placeOf(const BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto x = arguments.integer(0);
    const auto y = arguments.integer(1);
    if (!x || !y) {
        reply.error(errorArgument);
        return std::nullopt;
    }
    if (!board.panel.contains(*x, *y)) {
        reply.error(errorRange);
        return std::nullopt;
    }
    return Place{*x, *y};
}

void lightDot(BoardState &board, const Arguments &arguments, Reply &reply)
{
    if (const auto place = placeOf(board, arguments, reply))
        board.panel.setDot(place->x, place->y, true);
}

void darkenDot(BoardState &board, const Arguments &arguments, Reply &reply)
{
    if (const auto place = placeOf(board, arguments, reply))
        board.panel.setDot(place->x, place->y, false);
}

void invertDot(BoardState &board, const Arguments &arguments, Reply &reply)
{
    if (const auto place = placeOf(board, arguments, reply))
        board.panel.setDot(place->x, place->y, !board.panel.dot(place->x, place->y));
}

void readDot(BoardState &board, const Arguments &arguments, Reply &reply)
{
    if (const auto place = placeOf(board, arguments, reply))
        reply.data(board.panel.dot(place->x, place->y) ? "1" : "0");
}

void goOnWithText(BoardState &board, const Arguments &arguments, Reply &)
{
    for (const ColumnWord column : board.glyphs(arguments.text()))
        board.panel.setColumn(board.textColumn++, column);
}

void writeText(BoardState &board, const Arguments &arguments, Reply &reply)
{
    clear(board, arguments, reply);
    goOnWithText(board, arguments, reply);
}

constexpr std::array<BoardCommand, 11> commands{{
    {"lm_bright", "0-10", Answers::Never, bright},
    {"lm_bright0", "0-255", Answers::Never, bright0},
    {"lm_clear", "", Answers::Never, clear},
    {"lm_off", "", Answers::Never, off},
    {"lm_on", "", Answers::Never, on},
    {"lm_pexor", "x y", Answers::Never, invertDot},
    {"lm_pget", "x y", Answers::Always, readDot},
    {"lm_preset", "x y", Answers::Never, darkenDot},
    {"lm_pset", "x y", Answers::Never, lightDot},
    {"lm_puts", "text", Answers::Never, writeText},
    {"lm_puts2", "text", Answers::Never, goOnWithText},
}};

} // namespace

std::span<const BoardCommand> panelCommands()
{
    return commands;
}

} // namespace qovelmor::simboard
