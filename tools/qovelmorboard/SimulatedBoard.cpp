// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/SimulatedBoard.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace qovelmor::simboard {

using std::chrono::milliseconds;

namespace {

constexpr std::size_t linesKept = 10000;
/// How long the host's exclusive claim may outlive its close().
constexpr milliseconds claimCheck{100};
constexpr std::size_t mostBytesPerRead = 4096;
/// A board that has this much to say listens again when it has said it.
constexpr std::size_t mostPendingBytes = 16384;

std::string systemError(const std::string &what)
{
    return what + ": " + std::generic_category().message(errno);
}

} // namespace

SimulatedBoard::SimulatedBoard(const SimulatedBoardOptions &options)
    : options_(options)
    , firmware_(options.firmware, std::chrono::steady_clock::now(), &record_)
    , inPace_(options.throttled, std::chrono::steady_clock::now())
    , outPace_(options.throttled, std::chrono::steady_clock::now())
{
    for (const FaultOrder &order : options.faults)
        firmware_.misbehaviour().order(order);
}

std::unique_ptr<SimulatedBoard> SimulatedBoard::create(const SimulatedBoardOptions &options,
                                                       std::string &error)
{
    std::unique_ptr<SimulatedBoard> board(new SimulatedBoard(options));
    if (!options.logFile.empty() && !board->log_.open(options.logFile)) {
        error = systemError(options.logFile);
        return nullptr;
    }
    if (!options.columnsFile.empty() && !board->record_.open(options.columnsFile)) {
        error = systemError(options.columnsFile);
        return nullptr;
    }
    board->wakeDescriptor_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (board->wakeDescriptor_ < 0) {
        error = systemError("eventfd");
        return nullptr;
    }
    if (!board->terminal_.open(options.link)) {
        error = board->terminal_.error();
        return nullptr;
    }
    board->thread_ = std::thread([raw = board.get()] { raw->run(); });
    return board;
}

SimulatedBoard::~SimulatedBoard()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    if (thread_.joinable()) {
        wake();
        thread_.join();
    }
    if (wakeDescriptor_ >= 0)
        ::close(wakeDescriptor_);
}

void SimulatedBoard::wake() const
{
    const std::uint64_t one = 1;
    // A full counter wakes the thread as well as one more would.
    [[maybe_unused]] const auto written = ::write(wakeDescriptor_, &one, sizeof one);
}

// The thread. ------------------------------------------------------------------------------------

void SimulatedBoard::run()
{
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        const Time now = std::chrono::steady_clock::now();
        const Time wakeUp = deadline(now);
        const bool listens = isListening() && inPace_.allowed(now) > 0;
        lock.unlock();
        const int ready = waitForEvent(listens, wakeUp);
        lock.lock();
        if (listens && (ready & POLLIN) == 0)
            inPace_.ranEmpty();
        turn((ready & POLLIN) != 0);
        changed_.notify_all();
    }
}

bool SimulatedBoard::isListening() const
{
    return terminal_.isOpen() && !deafUntil_ && pendingOut_.size() < mostPendingBytes;
}

SimulatedBoard::Time SimulatedBoard::deadline(Time now)
{
    Time next = now + claimCheck;
    if (const auto event = firmware_.nextEvent())
        next = std::min(next, *event);
    if (!pendingOut_.empty())
        next = std::min(next, outPace_.nextTime());
    if (isListening() && inPace_.allowed(now) == 0)
        next = std::min(next, inPace_.nextTime());
    if (comeBackAt_)
        next = std::min(next, *comeBackAt_);
    if (deafUntil_)
        next = std::min(next, *deafUntil_);
    return next;
}

int SimulatedBoard::waitForEvent(bool wantsInput, Time deadline)
{
    // Only this thread opens and closes the terminal while it runs, so the descriptor is its own.
    std::array<pollfd, 2> waits{
        {{wakeDescriptor_, POLLIN, 0}, {wantsInput ? terminal_.descriptor() : -1, POLLIN, 0}}};
    const auto rest =
        std::max(std::chrono::nanoseconds(0),
                 std::chrono::nanoseconds(deadline - std::chrono::steady_clock::now()));
    const timespec limit{static_cast<time_t>(rest.count() / 1000000000),
                         static_cast<long>(rest.count() % 1000000000)};
    ::ppoll(waits.data(), waits.size(), &limit, nullptr);
    std::uint64_t woken = 0;
    [[maybe_unused]] const auto count = ::read(wakeDescriptor_, &woken, sizeof woken);
    return waits[1].revents;
}

void SimulatedBoard::turn(bool hasInput)
{
    const Time now = std::chrono::steady_clock::now();
    if (comeBackAt_ && *comeBackAt_ <= now)
        comeBackLocked();
    if (deafUntil_ && *deafUntil_ <= now)
        deafUntil_.reset();
    if (const auto forMilliseconds = firmware_.misbehaviour().consume(Fault::Deaf))
        deafUntil_ = *forMilliseconds > 0 ? now + milliseconds(*forMilliseconds) : Time::max();
    if (terminal_.isOpen())
        terminal_.forgetExclusiveUse();
    if (hasInput && isListening())
        readLine(now);
    firmware_.advance(now);
    if (const auto comeBackAfter = firmware_.takeHangUp())
        hangUpLocked(*comeBackAfter, now);
    writeReplies(now);
}

void SimulatedBoard::readLine(Time now)
{
    const std::string bytes = terminal_.read(std::min(inPace_.allowed(now), mostBytesPerRead));
    inPace_.took(bytes.size());
    log_.fromHost(bytes);
    keepLines(bytes);
    firmware_.receive(bytes, now);
}

void SimulatedBoard::keepLines(std::string_view bytes)
{
    for (const char byte : bytes) {
        if (byte == '\r') {
            if (lines_.size() >= linesKept)
                lines_.pop_front();
            lines_.push_back(std::exchange(line_, {}));
            ++linesReceived_;
        } else if (line_.size() < mostBytesPerRead) {
            line_.push_back(byte);
        }
    }
}

void SimulatedBoard::writeReplies(Time now)
{
    pendingOut_ += firmware_.takeOutput(now);
    if (!terminal_.isOpen()) {
        pendingOut_.clear();
        return;
    }
    if (pendingOut_.empty()) {
        outPace_.ranEmpty();
        return;
    }
    const std::size_t count = std::min(pendingOut_.size(), outPace_.allowed(now));
    if (count == 0)
        return;
    const std::string sent = pendingOut_.substr(0, count);
    terminal_.write(sent);
    outPace_.took(count);
    log_.toHost(sent);
    pendingOut_.erase(0, count);
}

void SimulatedBoard::hangUpLocked(int comeBackAfter, Time now)
{
    log_.event("hang-up");
    ++hangUps_;
    terminal_.close();
    pendingOut_.clear();
    line_.clear();
    comeBackAt_.reset();
    if (comeBackAfter > 0)
        comeBackAt_ = now + milliseconds(comeBackAfter);
}

void SimulatedBoard::comeBackLocked()
{
    comeBackAt_.reset();
    if (terminal_.isOpen())
        return;
    if (terminal_.open(options_.link))
        log_.event("line is back: " + terminal_.path());
    else
        log_.event("line does not come back: " + terminal_.error());
}

// What other threads ask. ------------------------------------------------------------------------

BoardView SimulatedBoard::viewLocked() const
{
    const BoardState &state = firmware_.state();
    return {terminal_.path(),
            firmware_.picture(),
            state.display.mode(),
            state.buffer.room(),
            state.variables.value(BoardVariable::ScrollDivider),
            linesReceived_,
            hangUps_};
}

BoardView SimulatedBoard::view() const
{
    const std::lock_guard lock(mutex_);
    return viewLocked();
}

std::vector<ColumnRun> SimulatedBoard::runs() const
{
    const std::lock_guard lock(mutex_);
    return {record_.runs().begin(), record_.runs().end()};
}

std::vector<std::string> SimulatedBoard::lines() const
{
    const std::lock_guard lock(mutex_);
    return {lines_.begin(), lines_.end()};
}

bool SimulatedBoard::waitUntil(const std::function<bool(const BoardView &)> &condition,
                               milliseconds limit) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [&] { return condition(viewLocked()); });
}

bool SimulatedBoard::misbehave(std::string_view orders)
{
    const auto parsed = Misbehaviour::parse(orders);
    if (!parsed)
        return false;
    {
        const std::lock_guard lock(mutex_);
        for (const FaultOrder &order : *parsed)
            firmware_.misbehaviour().order(order);
        log_.event("misbehave " + std::string(orders));
    }
    wake();
    return true;
}

void SimulatedBoard::behave()
{
    {
        const std::lock_guard lock(mutex_);
        firmware_.misbehaviour().behave();
        deafUntil_.reset();
        log_.event("behave");
    }
    wake();
}

void SimulatedBoard::restart()
{
    {
        const std::lock_guard lock(mutex_);
        firmware_.restart(std::chrono::steady_clock::now());
        log_.event("restart");
    }
    wake();
}

bool SimulatedBoard::setVariable(std::string_view name, int value)
{
    const std::lock_guard lock(mutex_);
    return firmware_.setVariable(name, value);
}

void SimulatedBoard::setGlyphs(GlyphSource glyphs)
{
    const std::lock_guard lock(mutex_);
    firmware_.setGlyphs(std::move(glyphs));
}

void SimulatedBoard::hangUp()
{
    // The board's own thread may be waiting on the descriptor, so it does the closing.
    misbehave("hangup=0");
}

void SimulatedBoard::comeBack()
{
    {
        const std::lock_guard lock(mutex_);
        comeBackAt_ = std::chrono::steady_clock::now();
    }
    wake();
}

} // namespace qovelmor::simboard
