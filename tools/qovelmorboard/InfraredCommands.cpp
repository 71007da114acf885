// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/Arguments.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/BoardState.h"
#include "tools/qovelmorboard/Reply.h"

#include <array>

namespace qovelmor::simboard {

namespace {

std::string runText(const BoardState &board)
{
    return board.infrared.isListening() ? "run:1" : "run:0";
}

void transmit(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const bool heard = board.infrared.hear(arguments.text());
    if (heard && board.variables.isOn(BoardVariable::DumpInfrared))
        reply.remark("ir: " + std::string(arguments.text()));
}

void receive(BoardState &board, const Arguments &arguments, Reply &reply)
{
    if (const auto wanted = arguments.integer(0))
        board.infrared.setListening(*wanted != 0);
    reply.data(runText(board));
}

void readData(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const std::string_view message = board.infrared.oldest();
    if (arguments.word(0) != "detail") {
        reply.data(message);
        return;
    }
    std::string bytes = std::to_string(message.size());
    for (const char byte : message)
        bytes += " " + hexText(static_cast<unsigned char>(byte), 2);
    reply.data(bytes);
}

void freeMessages(BoardState &board, const Arguments &arguments, Reply &)
{
    if (arguments.word(0) == "all")
        board.infrared.freeAll();
    else
        board.infrared.freeOldest();
}

void state(BoardState &board, const Arguments &, Reply &reply)
{
    reply.data(runText(board) + " held:" + std::to_string(board.infrared.count()) +
               " free:" + std::to_string(InfraredStore::maximumMessages - board.infrared.count()));
}

constexpr std::array<BoardCommand, 5> commands{{
    {"rcir", "[0|1]", Answers::Always, receive},
    {"rcir_data", "[detail]", Answers::Always, readData},
    {"rcir_free", "[all]", Answers::Never, freeMessages},
    {"rcir_stat", "", Answers::Always, state},
    {"txir", "text", Answers::Never, transmit},
}};

} // namespace

std::span<const BoardCommand> infraredCommands()
{
    return commands;
}

} // namespace qovelmor::simboard
