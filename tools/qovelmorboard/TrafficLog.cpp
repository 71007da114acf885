// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/TrafficLog.h"

#include "tools/qovelmorboard/Arguments.h"

#include <time.h>

#include <array>
#include <chrono>
#include <utility>

namespace qovelmor::simboard {

namespace {

/// A line that never ends must not fill the memory.
constexpr std::size_t longestLine = 1000;

std::string timeOfDay()
{
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    const auto part = duration_cast<milliseconds>(now - system_clock::from_time_t(seconds)).count();
    std::tm fields{};
    ::localtime_r(&seconds, &fields);
    std::array<char, 64> text{};
    const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &fields);
    std::array<char, 8> fraction{};
    std::snprintf(fraction.data(), fraction.size(), ".%03d", static_cast<int>(part));
    return std::string(text.data(), length) + fraction.data();
}

} // namespace

bool TrafficLog::open(const std::string &path)
{
    file_.reset(std::fopen(path.c_str(), "ae"));
    return file_ != nullptr;
}

void TrafficLog::add(std::string &line, char mark, char end, std::string_view bytes)
{
    if (!file_)
        return;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (byte == end || line.size() >= longestLine)
            writeLine(mark, std::exchange(line, {}));
        if (byte == '\r' || byte == '\n')
            continue;
        if (value >= 0x20 && value < 0x7F && byte != '\\')
            line.push_back(byte);
        else
            line += "\\x" + hexText(value, 2);
    }
}

void TrafficLog::writeLine(char mark, std::string_view text)
{
    if (!file_)
        return;
    const std::string line = timeOfDay() + " " + mark + " " + std::string(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), file_.get());
    std::fflush(file_.get());
}

} // namespace qovelmor::simboard
