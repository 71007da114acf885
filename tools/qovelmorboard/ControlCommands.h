// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace qovelmor::simboard {

class SimulatedBoard;

/// What a control command answers.
struct ControlAnswer
{
    std::string text; ///< lines, each ended by a line feed
    bool quit = false;
};

/// Obeys one line such as "misbehave mute*3" or "state"; what cannot be understood is answered with
/// a line that starts with "?".
ControlAnswer obeyControlCommand(SimulatedBoard &board, std::string_view line);

} // namespace qovelmor::simboard
