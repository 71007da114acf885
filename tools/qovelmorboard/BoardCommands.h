// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace qovelmor::simboard {

class Arguments;
class Reply;
struct BoardState;

/// Whether a command is a question, which every board answers, or only an order.
enum class Answers {
    Never,
    Always,
    WithOneArgument, ///< "set NAME" asks, "set NAME value" orders
};

/// One command of the board: its name, its arguments as the help shows them, and what it does.
struct BoardCommand
{
    std::string_view name;
    std::string_view usage;
    Answers answers;
    void (*run)(BoardState &, const Arguments &, Reply &);
};

bool isQuestion(const BoardCommand &command, const Arguments &arguments);

std::span<const BoardCommand> generalCommands();  ///< ver, help, sync, echo, set, rr, rw
std::span<const BoardCommand> displayCommands();  ///< sc_…
std::span<const BoardCommand> panelCommands();    ///< lm_…
std::span<const BoardCommand> romCommands();      ///< rom_…
std::span<const BoardCommand> infraredCommands(); ///< txir, rcir…

/// The command of this name; null when there is none.
const BoardCommand *findBoardCommand(std::string_view name);

// The numbers at the start of an error line; all below 0, so that a host that reads a number sees
// a failure.
inline constexpr std::string_view errorNoRoom = "-1 no room";
inline constexpr std::string_view errorArgument = "-2 bad argument";
inline constexpr std::string_view errorRange = "-3 out of range";
inline constexpr std::string_view errorUnknown = "-4 unknown";

} // namespace qovelmor::simboard
