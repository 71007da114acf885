// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace qovelmor {

/// How long the serial port waits for what.
struct PortLimits
{
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds receiveWatch{1000};      ///< every receive operation but receiveString
    Milliseconds receiveStringWatch{500}; ///< receiveString
    Milliseconds pollStep{100};           ///< the step of receiveChar and receiveStringMorethan
    Milliseconds sendSlack{500};          ///< for bytes to leave, beyond the time the line needs
};

/// How long an exchange with the board waits before a question goes out, so that the answer to the
/// command before it is not taken for the answer to the question. Counted from the moment the line
/// is free.
struct SettleLimits
{
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds quiet{3};    ///< after every answer has come: some byte times of silence
    Milliseconds silence{20}; ///< for missing answers, from a board that gave none lately
    Milliseconds most{100};   ///< for missing answers of a board that gives them (USB adapters
                              ///< keep bytes for 16 ms); on a line that never falls silent
};

/// The limits of a display run.
struct RunLimits
{
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds step{100};             ///< between two looks at anything
    Milliseconds roomWatch{3000};       ///< for room on the board
    Milliseconds scrollEndWatch{30000}; ///< for the line to scroll out
    Milliseconds standingWatch{1000};   ///< for a standing image to be taken
};

/// Every limit of the board link; the defaults are the ones for a real board.
struct BoardLimits
{
    PortLimits port;
    SettleLimits settle;
    RunLimits run;
};

} // namespace qovelmor
