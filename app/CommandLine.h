// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <optional>

namespace qovelmor {

/// What the command line asked for.
struct CommandLine
{
    bool once = false;     ///< end after one pass over the list
    bool terminal = false; ///< draw the on-screen board in the terminal too

    /// Parses the arguments (program name first). Nothing when the program is to end at once with
    /// `exitStatus`: help and version were printed (0), or an option was not understood (2).
    static std::optional<CommandLine> parse(const QStringList &arguments, int &exitStatus);
};

} // namespace qovelmor
