// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

/// While it lives, a fatal message of the toolkit (no display to connect to, no platform plugin)
/// ends the program with one clear line on standard error and status 1, instead of a core dump.
class FatalMessagesEndQuietly
{
public:
    FatalMessagesEndQuietly();
    ~FatalMessagesEndQuietly();
    FatalMessagesEndQuietly(const FatalMessagesEndQuietly &) = delete;
    FatalMessagesEndQuietly &operator=(const FatalMessagesEndQuietly &) = delete;
};

/// While it lives, exit() called from within (the toolkit does so when its display goes away) ends
/// the process at once, with one clear line on standard error and status 1: other threads still
/// run, and destroying what is global would pull the ground from under them.
class ExitsAtOnce
{
public:
    ExitsAtOnce();
    ~ExitsAtOnce();
    ExitsAtOnce(const ExitsAtOnce &) = delete;
    ExitsAtOnce &operator=(const ExitsAtOnce &) = delete;
};

/// Whether the environment names a display or a platform that needs none; says on standard error
/// what to do when it does not.
bool hasDisplay();

} // namespace qovelmor
