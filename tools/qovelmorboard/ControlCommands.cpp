// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/ControlCommands.h"

#include "tools/qovelmorboard/Arguments.h"
#include "tools/qovelmorboard/BraillePicture.h"
#include "tools/qovelmorboard/SimulatedBoard.h"

namespace qovelmor::simboard {

namespace {

ControlAnswer done(bool success)
{
    return {success ? "ok\n" : "? not understood\n", false};
}

ControlAnswer misbehave(SimulatedBoard &board, const Arguments &arguments)
{
    return done(board.misbehave(arguments.text()));
}

ControlAnswer behave(SimulatedBoard &board, const Arguments &)
{
    board.behave();
    return done(true);
}

ControlAnswer hangUp(SimulatedBoard &board, const Arguments &)
{
    board.hangUp();
    return done(true);
}

ControlAnswer comeBack(SimulatedBoard &board, const Arguments &)
{
    board.comeBack();
    return done(true);
}

ControlAnswer restart(SimulatedBoard &board, const Arguments &)
{
    board.restart();
    return done(true);
}

ControlAnswer setVariable(SimulatedBoard &board, const Arguments &arguments)
{
    const auto value = arguments.integer(1);
    return done(value && board.setVariable(arguments.word(0), *value));
}

ControlAnswer picture(SimulatedBoard &board, const Arguments &)
{
    ControlAnswer answer;
    for (const std::string &line : brailleLines(board.view().picture.columns))
        answer.text += line + "\n";
    return answer;
}

ControlAnswer state(SimulatedBoard &board, const Arguments &)
{
    const BoardView view = board.view();
    return {"path " + view.path + " mode " + std::to_string(static_cast<int>(view.mode)) +
                " room " + std::to_string(view.roomColumns) + " brightness " +
                std::to_string(view.picture.brightness) + " lines " +
                std::to_string(view.linesReceived) + "\n",
            false};
}

ControlAnswer quit(SimulatedBoard &, const Arguments &)
{
    return {"ok\n", true};
}

struct ControlCommand
{
    std::string_view name;
    ControlAnswer (*obey)(SimulatedBoard &, const Arguments &);
};

constexpr ControlCommand commands[] = {
    {"misbehave", misbehave}, {"behave", behave},   {"hangup", hangUp},
    {"return", comeBack},     {"restart", restart}, {"set", setVariable},
    {"picture", picture},     {"state", state},     {"quit", quit},
};

} // namespace

ControlAnswer obeyControlCommand(SimulatedBoard &board, std::string_view line)
{
    const auto blank = line.find(' ');
    const std::string_view name = line.substr(0, blank);
    const Arguments arguments(blank == std::string_view::npos ? std::string_view()
                                                              : line.substr(blank + 1));
    for (const ControlCommand &command : commands) {
        if (command.name == name)
            return command.obey(board, arguments);
    }
    return done(false);
}

} // namespace qovelmor::simboard
