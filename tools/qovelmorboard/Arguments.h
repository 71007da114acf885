// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qovelmor::simboard {

/// What stands after the name of a command, split at blanks.
class Arguments
{
public:
    explicit Arguments(std::string_view text);

    std::string_view text() const { return text_; } ///< unchanged, as it came
    std::size_t count() const { return words_.size(); }
    bool isEmpty() const { return words_.empty(); }
    std::string_view word(std::size_t index) const;
    /// A whole decimal number; nothing when absent or anything else.
    std::optional<int> integer(std::size_t index) const;
    /// A number of one to four hexadecimal digits in either case.
    std::optional<unsigned> hex(std::size_t index) const;
    /// All words from `first` on as hexadecimal numbers; nothing when one of them is none.
    std::optional<std::vector<unsigned>> hexFrom(std::size_t first) const;

private:
    std::string text_;
    std::vector<std::string> words_;
};

/// Lower-case hexadecimal, filled up with zeros to this many digits.
std::string hexText(unsigned value, int digits);

} // namespace qovelmor::simboard
