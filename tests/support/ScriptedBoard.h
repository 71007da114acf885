// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/PseudoTerminal.h"

#include <QByteArray>
#include <QList>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace qovelmor {

/// The far end of a line with just enough of a board behind it: it records every command line and
/// answers as a script says, on a thread of its own.
class ScriptedBoard
{
public:
    /// Talkative boards end every command with "Ok."; quiet ones answer questions only.
    enum class Kind { Talkative, Quiet };
    /// The tagged lines of the answer to a command line, or nothing to stay silent.
    using Script = std::function<std::optional<QByteArray>(const QByteArray &line)>;

    struct Manner
    {
        Kind kind = Kind::Talkative;
        int bytesPerSecond = 0;             ///< 0: as fast as it goes; 1920 is a true line
        std::chrono::milliseconds delay{0}; ///< before each answer
        bool bytewise = false;              ///< each byte of an answer by itself
    };

    ScriptedBoard() : ScriptedBoard(Manner{}) {}
    explicit ScriptedBoard(Manner manner)
        : manner_(manner), script_(defaultAnswer), thread_([this] { run(); })
    {}
    ~ScriptedBoard() { stop(); }

    /// A board of four modules with room for everything, whose scroll ends at once.
    static std::optional<QByteArray> defaultAnswer(const QByteArray &line)
    {
        if (line == "ver")
            return "V test board\r\n";
        if (line == "sc_mode")
            return "D 1\r\n";
        if (line.startsWith("sc_data"))
            return "D 256\r\n";
        if (line == "set cmodule")
            return "D cmodule 4\r\n";
        return "";
    }

    const QByteArray &path() const { return line_.path(); }
    PseudoTerminal &line() { return line_; }

    void setScript(Script script)
    {
        const std::lock_guard lock(mutex_);
        script_ = std::move(script);
    }

    /// The command lines so far, without their carriage returns.
    QList<QByteArray> lines() const
    {
        const std::lock_guard lock(mutex_);
        return lines_;
    }
    QList<QByteArray> takeLines()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(lines_, {});
    }

    /// From now on nothing is read, and so nothing answered.
    void stopReading() { stop(); }

    /// Pulls the cable.
    void hangUp()
    {
        stop();
        line_.hangUp();
    }

private:
    void stop()
    {
        stop_ = true;
        if (thread_.joinable())
            thread_.join();
    }

    void run()
    {
        QByteArray pending;
        while (!stop_) {
            pending += line_.read(std::chrono::milliseconds(5));
            for (qsizetype end = pending.indexOf('\r'); end >= 0; end = pending.indexOf('\r')) {
                pace(end + 1);
                answer(pending.first(end));
                pending.remove(0, end + 1);
            }
        }
    }

    void answer(const QByteArray &line)
    {
        std::optional<QByteArray> tagged;
        {
            const std::lock_guard lock(mutex_);
            lines_.append(line);
            tagged = script_(line);
        }
        if (!tagged || (manner_.kind == Kind::Quiet && !isQuestion(line)))
            return;
        std::this_thread::sleep_for(manner_.delay);
        send(line + "\r\n" + *tagged + "Ok.\r\n");
    }

    static bool isQuestion(const QByteArray &line)
    {
        static const QList<QByteArray> questions{
            "echo",      "ver",       "sync",      "help",      "lm_pget",   "rcir",
            "rcir_data", "rcir_stat", "rom_check", "rom_cread", "rom_dread", "rom_format",
            "rom_state", "rr",        "sc_data",   "sc_mode"};
        const QList<QByteArray> words = line.split(' ');
        return questions.contains(words[0]) || (words[0] == "set" && words.size() == 2);
    }

    void send(const QByteArray &bytes)
    {
        if (manner_.bytesPerSecond == 0 && !manner_.bytewise) {
            line_.write(bytes);
            return;
        }
        for (const char byte : bytes) {
            pace(1);
            line_.write(QByteArray(1, byte));
        }
    }

    void pace(qsizetype bytes) const
    {
        if (manner_.bytesPerSecond > 0)
            std::this_thread::sleep_for(
                std::chrono::nanoseconds(1'000'000'000LL * bytes / manner_.bytesPerSecond));
    }

    PseudoTerminal line_;
    const Manner manner_;
    mutable std::mutex mutex_;
    Script script_;
    QList<QByteArray> lines_;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

} // namespace qovelmor
