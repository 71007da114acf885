// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/Arguments.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/BoardState.h"
#include "tools/qovelmorboard/Reply.h"

#include <algorithm>
#include <array>

namespace qovelmor::simboard {

namespace {

constexpr unsigned mostWordsPerReply = 64;

/// Further words about a ROM command, where they are asked for.
void tell(const BoardState &board, Reply &reply, std::string_view text)
{
    if (board.variables.isOn(BoardVariable::RomVerbose))
        reply.remark(text);
}

void check(BoardState &board, const Arguments &, Reply &reply)
{
    tell(board, reply, "rom: adding up");
    reply.data("sum " + hexText(board.rom.checkSum(), 4) + " words " +
               std::to_string(board.rom.used()));
    reply.romDone();
}

void readCommand(BoardState &board, const Arguments &, Reply &reply)
{
    reply.data(board.rom.command);
    reply.romDone();
}

void writeCommand(BoardState &board, const Arguments &arguments, Reply &reply)
{
    tell(board, reply, "rom: writing the command");
    board.rom.command = std::string(arguments.text());
}

void closeData(BoardState &board, const Arguments &, Reply &)
{
    board.rom.close();
}

void readData(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto first = arguments.hex(0);
    const auto last = arguments.hex(1);
    if (!first || !last) {
        reply.error(errorArgument);
        return;
    }
    if (*first > *last || *last >= BoardRom::maximumWords || *last - *first >= mostWordsPerReply) {
        reply.error(errorRange);
        return;
    }
    std::string words = hexText(board.rom.wordAt(*first), 4);
    for (unsigned address = *first + 1; address <= *last; ++address)
        words += " " + hexText(board.rom.wordAt(address), 4);
    reply.data(words);
}

void writeData(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto words = arguments.hexFrom(0);
    if (!words)
        reply.error(errorArgument);
    else if (!board.rom.write(*words))
        reply.error(errorNoRoom);
    else
        tell(board, reply, "rom: " + std::to_string(board.rom.used()) + " words");
}

void format(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const int words = arguments.integer(0).value_or(static_cast<int>(BoardRom::maximumWords));
    if (words < 0 || words > static_cast<int>(BoardRom::maximumWords)) {
        reply.error(errorRange);
        return;
    }
    board.rom.format(static_cast<std::size_t>(words));
    reply.data("romsize = " + std::to_string(board.rom.size()));
}

void scroll(BoardState &board, const Arguments &arguments, Reply &reply)
{
    board.display.stop();
    if (arguments.integer(0).value_or(1) == 0)
        return;
    if (!board.buffer.append(board.rom.words())) {
        reply.error(errorNoRoom);
        return;
    }
    board.display.scroll();
    board.display.endWhenScrolledOut();
}

/// A value that holds from the next power-on.
struct StartValue
{
    std::string_view name;
    int BoardRom::*value;
    int maximum;
};

constexpr std::array<StartValue, 3> startValues{{
    {"bright", &BoardRom::bright, 10},
    {"speed", &BoardRom::speed, 255},
    {"led_reverse", &BoardRom::reverse, 1},
}};

void setStart(BoardState &board, const Arguments &arguments, Reply &reply)
{
    const auto number = arguments.integer(1);
    const auto found =
        std::find_if(startValues.begin(), startValues.end(), [&arguments](const StartValue &start) {
            return start.name == arguments.word(0);
        });
    if (found == startValues.end())
        reply.error(errorUnknown);
    else if (!number)
        reply.error(errorArgument);
    else if (*number < 0 || *number > found->maximum)
        reply.error(errorRange);
    else
        board.rom.*found->value = *number;
}

void state(BoardState &board, const Arguments &, Reply &reply)
{
    const BoardRom &rom = board.rom;
    reply.data("size " + std::to_string(rom.size()) + " used " + std::to_string(rom.used()) +
               " bright " + std::to_string(rom.bright) + " speed " + std::to_string(rom.speed) +
               " led_reverse " + std::to_string(rom.reverse));
}

constexpr std::array<BoardCommand, 10> commands{{
    {"rom_check", "", Answers::Always, check},
    {"rom_cread", "", Answers::Always, readCommand},
    {"rom_cwrite", "text", Answers::Never, writeCommand},
    {"rom_dclose", "", Answers::Never, closeData},
    {"rom_dread", "first last", Answers::Always, readData},
    {"rom_dwrite", "word...", Answers::Never, writeData},
    {"rom_format", "[words]", Answers::Always, format},
    {"rom_scroll", "[0|1]", Answers::Never, scroll},
    {"rom_set", "bright|speed|led_reverse n", Answers::Never, setStart},
    {"rom_state", "", Answers::Always, state},
}};

} // namespace

std::span<const BoardCommand> romCommands()
{
    return commands;
}

} // namespace qovelmor::simboard
