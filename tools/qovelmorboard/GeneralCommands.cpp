// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/Arguments.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/BoardState.h"
#include "tools/qovelmorboard/Reply.h"

#include <algorithm>
#include <array>

namespace qovelmor::simboard {

namespace {

constexpr unsigned bytesPerMemoryLine = 16;
constexpr unsigned mostMemoryBytesPerReply = 256;

using CommandGroup = std::span<const BoardCommand>;

std::array<CommandGroup, 5> allGroups()
{
    return {generalCommands(), displayCommands(), panelCommands(), romCommands(),
            infraredCommands()};
}

void version(BoardState &, const Arguments &, Reply &reply)
{
    reply.version("QoVelmor LED board 1.0");
}

void help(BoardState &, const Arguments &, Reply &reply)
{
    for (const CommandGroup group : allGroups()) {
        for (const BoardCommand &command : group) {
            std::string line(command.name);
            if (!command.usage.empty())
                line.append(" ").append(command.usage);
            reply.version(line);
        }
    }
}

void sync(BoardState &board, const Arguments &, Reply &reply)
{
    reply.data("sync " + std::to_string(board.uptime.count()));
}

void echo(BoardState &board, const Arguments &arguments, Reply &reply)
{
    if (const auto wanted = arguments.integer(0))
        board.echo = *wanted != 0;
    reply.data(board.echo ? "echo 1" : "echo 0");
}

void setVariable(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const VariableRule *rule = BoardVariables::find(arguments.word(0));
    if (!rule) {
        reply.error(errorUnknown);
        return;
    }
    if (arguments.count() == 1) {
        reply.data(std::string(rule->name) + " " +
                   std::to_string(board.variables.value(rule->variable)));
        return;
    }
    const auto value = arguments.integer(1);
    if (!value)
        reply.error(errorArgument);
    else if (!board.variables.set(rule->variable, *value))
        reply.error(errorRange);
    else if (rule->variable == BoardVariable::ModuleCount)
        board.setModules(*value);
}

/// "D rom data AAAA: " and up to 16 bytes; the address field has a fixed width because hosts read
/// the bytes from the 18th character on.
std::string memoryLine(const BoardMemory &memory, unsigned from, unsigned end)
{
    std::string line = "rom data " + hexText(from, 4) + ":";
    for (unsigned address = from; address < end; ++address)
        line += " " + hexText(memory.byteAt(address), 2);
    return line;
}

void readMemory(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto first = arguments.hex(0);
    const auto end = arguments.hex(1);
    if (!first || !end) {
        reply.error(errorArgument);
        return;
    }
    if (*first >= *end || *end > BoardMemory::size || *end - *first > mostMemoryBytesPerReply) {
        reply.error(errorRange);
        return;
    }
    for (unsigned from = *first; from < *end; from += bytesPerMemoryLine)
        reply.data(memoryLine(board.memory, from, std::min(from + bytesPerMemoryLine, *end)));
}

void writeMemory(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto first = arguments.hex(0);
    const auto bytes = arguments.hexFrom(1);
    if (!first || !bytes ||
        std::any_of(bytes->begin(), bytes->end(), [](unsigned byte) { return byte > 0xFF; })) {
        reply.error(errorArgument);
        return;
    }
    if (*first + bytes->size() > BoardMemory::size) {
        reply.error(errorRange);
        return;
    }
    for (std::size_t i = 0; i < bytes->size(); ++i)
        board.memory.setByteAt(*first + i, static_cast<std::uint8_t>((*bytes)[i]));
}

constexpr std::array<BoardCommand, 7> commands{{
    {"echo", "[0|1]", Answers::Always, echo},
    {"help", "", Answers::Always, help},
    {"rr", "first end", Answers::Always, readMemory},
    {"rw", "first byte...", Answers::Never, writeMemory},
    {"set", "name [value]", Answers::WithOneArgument, setVariable},
    {"sync", "", Answers::Always, sync},
    {"ver", "", Answers::Always, version},
}};

} // namespace

std::span<const BoardCommand> generalCommands()
{
    return commands;
}

bool isQuestion(const BoardCommand &command, const Arguments &arguments)
{
    return command.answers == Answers::Always ||
           (command.answers == Answers::WithOneArgument && arguments.count() == 1);
}

const BoardCommand *findBoardCommand(std::string_view name)
{
    for (const CommandGroup group : allGroups()) {
        for (const BoardCommand &command : group) {
            if (command.name == name)
                return &command;
        }
    }
    return nullptr;
}

} // namespace qovelmor::simboard
