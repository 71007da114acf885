// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardVariables.h"

#include <algorithm>

namespace qovelmor::simboard {

namespace {

constexpr std::array<VariableRule, 9> allRules{{
    {BoardVariable::ModuleCount, "cmodule", 4, 32},
    {BoardVariable::Reverse, "led_reverse", 0, 1},
    {BoardVariable::RomVerbose, "rom_verbose", 0, 1},
    {BoardVariable::ScrollDivider, "scmode_div", 3, 255},
    {BoardVariable::WaitBefore, "scmode_wait1", 10, 255},
    {BoardVariable::WaitAfter, "scmode_wait2", 10, 255},
    {BoardVariable::ScrollVerbose, "scmode_verbose", 0, 1},
    {BoardVariable::SwitchEnable, "sw_enable", 1, 1},
    {BoardVariable::DumpInfrared, "dump_ir", 0, 1},
}};

const VariableRule &ruleOf(BoardVariable variable)
{
    return allRules[static_cast<std::size_t>(variable)];
}

} // namespace

BoardVariables::BoardVariables()
{
    for (const VariableRule &rule : allRules)
        values_[static_cast<std::size_t>(rule.variable)] = rule.initial;
}

std::span<const VariableRule> BoardVariables::rules()
{
    return allRules;
}

const VariableRule *BoardVariables::find(std::string_view name)
{
    const auto found = std::find_if(allRules.begin(), allRules.end(),
                                    [name](const VariableRule &rule) { return rule.name == name; });
    return found == allRules.end() ? nullptr : &*found;
}

bool BoardVariables::set(BoardVariable variable, int value)
{
    if (value < 0 || value > ruleOf(variable).maximum)
        return false;
    values_[static_cast<std::size_t>(variable)] = value;
    return true;
}

} // namespace qovelmor::simboard
