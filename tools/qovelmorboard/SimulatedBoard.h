// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/BoardFirmware.h"
#include "tools/qovelmorboard/LinePace.h"
#include "tools/qovelmorboard/PseudoTerminal.h"
#include "tools/qovelmorboard/RunRecord.h"
#include "tools/qovelmorboard/TrafficLog.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace qovelmor::simboard {

struct SimulatedBoardOptions
{
    FirmwareOptions firmware;
    bool throttled = true;   ///< 1,920 bytes a second each way, as 19200 baud carry
    std::string link;        ///< keep a symbolic link to the pseudo-terminal here
    std::string logFile;     ///< both directions, line by line
    std::string columnsFile; ///< every column shown
    std::vector<FaultOrder> faults;
};

/// What the board looks like at one moment.
struct BoardView
{
    std::string path; ///< of the host's end; empty while hung up
    BoardPicture picture;
    DisplayMode mode = DisplayMode::Idle;
    std::size_t roomColumns = 0;
    int scrollDivider = 0;
    std::size_t linesReceived = 0; ///< command lines since the start
    int hangUps = 0;               ///< how often the line has gone dead
};

/// A whole board on a pseudo-terminal with a thread of its own. All operations may be called from
/// any thread; the real steady clock paces it, because it waits for real bytes.
class SimulatedBoard
{
public:
    /// Null, with the cause in `error`, when there is no pseudo-terminal or a file cannot be made.
    static std::unique_ptr<SimulatedBoard> create(const SimulatedBoardOptions &options,
                                                  std::string &error);
    ~SimulatedBoard();
    SimulatedBoard(const SimulatedBoard &) = delete;
    SimulatedBoard &operator=(const SimulatedBoard &) = delete;

    std::string path() const { return view().path; }
    BoardView view() const;
    std::vector<ColumnRun> runs() const;
    /// The last command lines as they came, without their carriage returns (at most 10,000).
    std::vector<std::string> lines() const;

    /// Waits until `condition` holds; it is looked at after everything that happens, and must not
    /// call the board. False when the time is over.
    bool waitUntil(const std::function<bool(const BoardView &)> &condition,
                   std::chrono::milliseconds limit) const;

    /// False when the text of the order cannot be understood.
    bool misbehave(std::string_view orders);
    void behave();
    void restart();
    bool setVariable(std::string_view name, int value);
    void setGlyphs(GlyphSource glyphs);
    /// The line goes dead; comeBack() gives it a new pseudo-terminal (and the link, if any). Both
    /// happen at once, but on the board's thread: wait for view().path.
    void hangUp();
    void comeBack();

private:
    using Time = BoardFirmware::Time;

    explicit SimulatedBoard(const SimulatedBoardOptions &options);

    void run();
    int waitForEvent(bool wantsInput, Time deadline);
    bool isListening() const;
    Time deadline(Time now);
    void turn(bool hasInput);
    void readLine(Time now);
    void writeReplies(Time now);
    void keepLines(std::string_view bytes);
    void hangUpLocked(int comeBackAfter, Time now);
    void comeBackLocked();
    BoardView viewLocked() const;
    void wake() const;

    SimulatedBoardOptions options_;
    int wakeDescriptor_ = -1;
    mutable std::mutex mutex_; ///< guards everything below; never held while waiting
    mutable std::condition_variable changed_;
    bool stopping_ = false;
    PseudoTerminal terminal_;
    TrafficLog log_;
    RunRecord record_;
    BoardFirmware firmware_;
    LinePace inPace_;
    LinePace outPace_;
    std::string pendingOut_;
    std::string line_;
    std::deque<std::string> lines_;
    std::size_t linesReceived_ = 0;
    int hangUps_ = 0;
    std::optional<Time> deafUntil_;
    std::optional<Time> comeBackAt_;
    std::thread thread_;
};

} // namespace qovelmor::simboard
