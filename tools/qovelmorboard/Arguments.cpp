// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/Arguments.h"

#include <charconv>

namespace qovelmor::simboard {

namespace {

template <typename Number>
std::optional<Number> readWhole(std::string_view word, int base)
{
    Number number{};
    const char *end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number, base);
    if (word.empty() || error != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

} // namespace

Arguments::Arguments(std::string_view text) : text_(text)
{
    while (!text.empty()) {
        const auto blank = text.find(' ');
        const auto word = text.substr(0, blank);
        if (!word.empty())
            words_.emplace_back(word);
        text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
    }
}

std::string_view Arguments::word(std::size_t index) const
{
    return index < words_.size() ? std::string_view(words_[index]) : std::string_view();
}

std::optional<int> Arguments::integer(std::size_t index) const
{
    return readWhole<int>(word(index), 10);
}

std::optional<unsigned> Arguments::hex(std::size_t index) const
{
    if (word(index).size() > 4)
        return std::nullopt;
    return readWhole<unsigned>(word(index), 16);
}

std::optional<std::vector<unsigned>> Arguments::hexFrom(std::size_t first) const
{
    std::vector<unsigned> numbers;
    for (std::size_t index = first; index < words_.size(); ++index) {
        const auto number = hex(index);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

std::string hexText(unsigned value, int digits)
{
    constexpr std::string_view figures = "0123456789abcdef";
    std::string text;
    for (int place = digits - 1; place >= 0; --place)
        text.push_back(figures[(value >> (4 * place)) & 0xFU]);
    return text;
}

} // namespace qovelmor::simboard
