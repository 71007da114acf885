// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/BoardState.h"
#include "tools/qovelmorboard/Misbehaviour.h"
#include "tools/qovelmorboard/ReplyQueue.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qovelmor::simboard {

/// How much a board talks.
enum class BoardKind {
    Talkative, ///< echoes what it reads and says "Ok." after every command
    Quiet,     ///< speaks only when it is asked a question
};

struct FirmwareOptions
{
    BoardKind kind = BoardKind::Talkative;
    std::size_t bufferColumns = 128;
    double speedFactor = 1.0; ///< scrolls this many times faster than the variables say
    unsigned seed = 1;        ///< of the noise
};

/// The program inside the board: bytes in, bytes out, dots.
///
/// Pure: all time comes from the caller, who calls advance() at nextEvent() or later. A command is
/// a line of up to 100 bytes ended by a carriage return; the rest of a longer line is dropped, line
/// feeds are skipped.
class BoardFirmware : private DisplayWatcher
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    static constexpr std::size_t longestLine = 100;
    /// The unit of "scmode_div".
    static constexpr std::chrono::milliseconds speedStep{8};

    /// `watcher`, which may be null, is told about every picture and must outlive the board.
    BoardFirmware(const FirmwareOptions &options, Time now, DisplayWatcher *watcher = nullptr);

    void receive(std::string_view bytes, Time now);
    void advance(Time now);
    /// When something happens next by itself: a column moves or a byte may leave.
    std::optional<Time> nextEvent() const;
    /// The bytes that may leave by `now`.
    std::string takeOutput(Time now) { return replies_.take(now); }

    /// Power off and on: everything but the ROM is forgotten.
    void restart(Time now);

    Misbehaviour &misbehaviour() { return misbehaviour_; }
    const Misbehaviour &misbehaviour() const { return misbehaviour_; }
    /// The order to hang up, once: after how many milliseconds the line comes back (0: never).
    std::optional<int> takeHangUp();

    const BoardState &state() const { return *state_; }
    BoardPicture picture() const { return state_->picture(); }
    void setGlyphs(GlyphSource glyphs);
    /// Sets a variable as the host would; false when there is no such variable or value.
    bool setVariable(std::string_view name, int value);

private:
    void runStarted(bool scrolling) override;
    void columnShown(ColumnWord column) override;
    void runEnded(DisplayMode how) override;

    void receiveByte(char byte, Time now);
    void obey(const std::string &line, Time now);
    std::string answer(const std::string &line);
    void send(std::string_view bytes, Time now);
    void noteMovement(bool movedBefore, Time now);
    Duration columnTime() const;

    FirmwareOptions options_;
    DisplayWatcher *watcher_;
    Misbehaviour misbehaviour_;
    ReplyQueue replies_;
    GlyphSource glyphs_ = boxGlyphs;
    std::unique_ptr<BoardState> state_;
    std::string line_;
    Time poweredOn_;
    Time now_;
    Time nextStep_;
    std::optional<int> hangUp_;
};

} // namespace qovelmor::simboard
