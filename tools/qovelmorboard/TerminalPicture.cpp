// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/TerminalPicture.h"

#include "tools/qovelmorboard/BraillePicture.h"

#include <algorithm>

namespace qovelmor::simboard {

namespace {

constexpr std::size_t dotsPerCharacter = 2;

std::string repeated(std::string_view text, std::size_t times)
{
    std::string result;
    for (std::size_t i = 0; i < times; ++i)
        result += text;
    return result;
}

std::string_view modeText(DisplayMode mode)
{
    switch (mode) {
    case DisplayMode::Idle:
        return "standing";
    case DisplayMode::Ended:
        return "scrolled out";
    case DisplayMode::Scrolling:
        return "scrolling";
    case DisplayMode::Waiting:
        return "waiting for columns";
    case DisplayMode::Looping:
        return "looping";
    }
    return "";
}

std::string statusText(const BoardView &view)
{
    const std::string line = view.path.empty() ? "hung up" : view.path;
    return line + "  " + std::string(modeText(view.mode)) + "  speed " +
           std::to_string(view.scrollDivider) + "  brightness " +
           std::to_string(view.picture.brightness * 100 / 255) + " %  room " +
           std::to_string(view.roomColumns);
}

} // namespace

std::vector<std::string> terminalLines(const BoardView &view, std::size_t terminalColumns)
{
    const std::size_t frame = 2;
    const std::size_t inside = std::max(terminalColumns, frame + 1) - frame;
    const std::span<const ColumnWord> all(view.picture.columns);
    const std::size_t widest = std::min(inside, (all.size() + 1) / dotsPerCharacter);

    std::vector<std::string> lines{"╭" + repeated("─", widest) + "╮"};
    for (std::size_t x = 0; x < all.size(); x += inside * dotsPerCharacter) {
        const auto strip = all.subspan(x, std::min(inside * dotsPerCharacter, all.size() - x));
        const std::size_t missing = widest - (strip.size() + 1) / dotsPerCharacter;
        for (const std::string &dots : brailleLines(strip))
            lines.push_back("│" + dots + repeated(" ", missing) + "│");
    }
    lines.push_back("╰" + repeated("─", widest) + "╯");
    lines.push_back(statusText(view).substr(0, terminalColumns));
    return lines;
}

std::string TerminalPicture::update(const std::vector<std::string> &lines)
{
    if (lines == shown_)
        return {};
    std::string text = "\x1b[?25l";
    if (!shown_.empty())
        text += "\x1b[" + std::to_string(shown_.size()) + "A\r";
    // Drawn over what is there and cleared behind it, so that nothing flickers.
    for (const std::string &line : lines)
        text += line + "\x1b[K\n";
    text += "\x1b[J";
    shown_ = lines;
    return text;
}

} // namespace qovelmor::simboard
