// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace qovelmor::simboard {

/// What one command says, before its end mark: lines with a tag in front that tells what they are.
class Reply
{
public:
    void data(std::string_view text) { addLine("D ", text); }
    void version(std::string_view text) { addLine("V ", text); }
    void error(std::string_view text) { addLine("E ", text); }
    /// A line without a tag; the host skips it.
    void remark(std::string_view text) { addLine("", text); }
    /// The ROM is slow and says so when it is done, before the command's own end mark.
    void romDone() { addLine("", "Ok."); }

    const std::string &text() const { return text_; }

private:
    void addLine(std::string_view tag, std::string_view text)
    {
        text_ += tag;
        text_ += text;
        text_ += "\r\n";
    }

    std::string text_;
};

} // namespace qovelmor::simboard
