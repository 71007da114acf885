// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/SimulatedBoard.h"

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace qovelmor::simboard {

/// What the command line asks for.
struct ProgramOptions
{
    SimulatedBoardOptions board;
    std::vector<std::pair<std::string, int>> variables; ///< set before the host comes
    bool terminal = false;                              ///< draw the dots on standard output
    bool window = false;
    bool commandsFromInput = false; ///< read control commands from standard input
    bool exitWithParent = false;
    QString controlPath; ///< a local socket for control commands; empty: none
    QString framesFolder;
    int mostFrames = 1000;
};

/// Reads the command line (the program's name first). When it asks for help or the version, or is
/// wrong, `text` holds what to print and `exitCode` how to end; true means go on.
bool readProgramOptions(const QStringList &arguments, ProgramOptions &options, QString &text,
                        int &exitCode);

} // namespace qovelmor::simboard
