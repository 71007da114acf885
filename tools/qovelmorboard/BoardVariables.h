// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace qovelmor::simboard {

/// What the "set" command sets and reads back.
enum class BoardVariable {
    ModuleCount,   ///< "cmodule": modules of 32 columns
    Reverse,       ///< "led_reverse": 1 turns the picture by 180 degrees
    RomVerbose,    ///< "rom_verbose": 1 tells about ROM commands in extra lines
    ScrollDivider, ///< "scmode_div": a column takes this many steps of 8 ms
    WaitBefore,    ///< "scmode_wait1": column times before a scroll starts
    WaitAfter,     ///< "scmode_wait2": column times after the last column has left
    ScrollVerbose, ///< "scmode_verbose": 1 tells when a scroll starts and ends
    SwitchEnable,  ///< "sw_enable": the message switches of the board act
    DumpInfrared,  ///< "dump_ir": 1 shows each infrared message in an extra line
};

/// One variable: its name on the line, its value after power-on and its highest value (the lowest
/// is 0 for all).
struct VariableRule
{
    BoardVariable variable;
    std::string_view name;
    int initial;
    int maximum;
};

/// The named numbers of the board.
class BoardVariables
{
public:
    BoardVariables();

    static std::span<const VariableRule> rules();
    /// The rule of this name; null when there is no such variable.
    static const VariableRule *find(std::string_view name);

    int value(BoardVariable variable) const { return values_[static_cast<std::size_t>(variable)]; }
    bool isOn(BoardVariable variable) const { return value(variable) != 0; }
    /// False, and no change, for a value outside the variable's limits.
    bool set(BoardVariable variable, int value);

private:
    std::array<int, 9> values_{};
};

} // namespace qovelmor::simboard
