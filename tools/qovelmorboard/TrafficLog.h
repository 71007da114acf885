// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace qovelmor::simboard {

/// A file that was opened for writing; closed when it goes.
struct FileCloser
{
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using OutputFile = std::unique_ptr<std::FILE, FileCloser>;

/// Every line in both directions with the time of day in front; ">" is from the host, "<" to it.
/// Bytes outside printable ASCII are written as \xHH.
class TrafficLog
{
public:
    /// False when the file cannot be made; errno says why.
    bool open(const std::string &path);

    void fromHost(std::string_view bytes) { add(fromHost_, '>', '\r', bytes); }
    void toHost(std::string_view bytes) { add(toHost_, '<', '\n', bytes); }
    /// Something that is no traffic: "hang-up", "restart".
    void event(std::string_view text) { writeLine('*', text); }

private:
    void add(std::string &line, char mark, char end, std::string_view bytes);
    void writeLine(char mark, std::string_view text);

    OutputFile file_;
    std::string fromHost_;
    std::string toHost_;
};

} // namespace qovelmor::simboard
