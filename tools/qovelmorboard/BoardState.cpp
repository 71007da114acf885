// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardState.h"

#include <algorithm>

namespace qovelmor::simboard {

namespace {

void appendBox(std::vector<ColumnWord> &columns, int width)
{
    columns.push_back(0);
    columns.push_back(0x7FFE);
    for (int x = 2; x < width - 2; ++x)
        columns.push_back(0x4002);
    columns.push_back(0x7FFE);
    columns.push_back(0);
}

} // namespace

bool isShiftJisLead(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

std::vector<ColumnWord> boxGlyphs(std::string_view text)
{
    std::vector<ColumnWord> columns;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isShiftJisLead(text[i]) && i + 1 < text.size()) {
            appendBox(columns, 16);
            ++i;
        } else if (text[i] == ' ') {
            columns.insert(columns.end(), 8, ColumnWord{0});
        } else {
            appendBox(columns, 8);
        }
    }
    return columns;
}

BoardState::BoardState(std::size_t bufferColumns, const BoardRom &savedRom, DisplayWatcher *watcher)
    : panel(0)
    , buffer(bufferColumns)
    , display(panel, buffer, variables, watcher)
    , rom(savedRom)
    , bufferColumns_(bufferColumns)
{
    rom.close();
    variables.set(BoardVariable::ScrollDivider, rom.speed);
    variables.set(BoardVariable::Reverse, rom.reverse);
    setBright(rom.bright);
    setModules(variables.value(BoardVariable::ModuleCount));
}

void BoardState::setModules(int modules)
{
    if (!variables.set(BoardVariable::ModuleCount, modules))
        return;
    panel.setModules(modules);
    // A standing picture must always fit.
    buffer.setCapacity(std::max(bufferColumns_, static_cast<std::size_t>(panel.width())));
}

bool BoardState::setBright(int level)
{
    if (level < 0 || level > 10)
        return false;
    panel.setBrightness(level * 255 / 10);
    return true;
}

BoardPicture BoardState::picture() const
{
    return panel.picture(variables.isOn(BoardVariable::Reverse));
}

} // namespace qovelmor::simboard
