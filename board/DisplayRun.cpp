// SPDX-License-Identifier: MIT
#include "board/DisplayRun.h"

#include "board/BoardCommands.h"
#include "board/ColumnWords.h"
#include "board/needs/BoardLog.h"
#include "platform/SystemLog.h"
#include "render/VelmorBitmap.h"

#include <algorithm>
#include <bit>
#include <future>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype bytesPerPiece = 32; // 16 columns: one command line
constexpr int roomForAPiece = 31;       // more than this is enough for the next one

// Whole pairs of columns: an odd last column of a standing image is not sent.
QByteArray wholePairs(const QByteArray &data)
{
    return data.first(data.size() / 4 * 4);
}

/// Notices that the line was closed and opened again. Orders have no answer: one that was sent
/// before that may never have reached the board.
class LineChange
{
public:
    explicit LineChange(const BoardCommands &board) : board_(board), opening_(board.openingNumber())
    {}

    /// Whether it has happened since this was last asked.
    bool hasHappened()
    {
        const int opening = board_.openingNumber();
        return std::exchange(opening_, opening) != opening;
    }

private:
    const BoardCommands &board_;
    int opening_;
};

} // namespace

DisplayRun::DisplayRun(BoardCommands &board, Clock &clock, RunLimits limits)
    : board_(board)
    , clock_(clock)
    , limits_(limits)
    , intel_(std::endian::native == std::endian::little)
    , worker_(clock)
{}

DisplayRun::~DisplayRun()
{
    if (!change(running, cancelAsked))
        change(paused, cancelAsked);
    worker_.join();
}

DisplayRun::Image DisplayRun::bitmapData() const
{
    const std::lock_guard lock(imageMutex_);
    return bitmapData_;
}

void DisplayRun::setBitmap(Image image)
{
    const std::lock_guard lock(imageMutex_);
    bitmapData_.swap(image);
}

bool DisplayRun::waitWhileRunning()
{
    while (isRunning()) {
        if (!clock_.sleepFor(limits_.step))
            return false;
    }
    return true;
}

// The claim and what it shows are taken together: of two callers each gets a run with its own
// image.
bool DisplayRun::claim(const Image *image)
{
    const std::lock_guard lock(imageMutex_);
    if (!change(idle, running))
        return false;
    if (image != nullptr)
        bitmapData_ = *image;
    request_ = {bitmapData_, scroll()};
    return true;
}

void DisplayRun::claimAndRun(const Image *image)
{
    do {
        if (!waitWhileRunning() || board_.isPortLost())
            return;
        change(paused, cancelAsked);
        waitForCancelledRun();
    } while (!claim(image));
    if (async())
        run(request_);
    else
        startWorker();
}

void DisplayRun::startWorker()
{
    // The run waits until its thread is stored: the next one may be started once it has ended.
    std::promise<void> stored;
    const bool isStarted = worker_.start([this, ready = stored.get_future().share()] {
        ready.wait();
        run(request_);
    });
    stored.set_value();
    if (!isStarted)
        endRun();
}

void DisplayRun::showThread()
{
    run({bitmapData(), scroll()});
}

void DisplayRun::cancel()
{
    if (change(running, cancelAsked))
        waitForCancelledRun();
}

void DisplayRun::waitForCancelledRun()
{
    while (isCancelled()) {
        if (clock_.sleepFor(limits_.step))
            continue;
        // The program ends and nothing sleeps any more: the run ends with its present exchange.
        clock_.threadWaits();
        std::unique_lock lock(endMutex_);
        ended_.wait(lock, [this] { return !isCancelled(); });
        lock.unlock();
        clock_.threadResumes();
    }
}

void DisplayRun::endRun()
{
    {
        const std::lock_guard lock(endMutex_);
        showStatus_ = idle;
    }
    ended_.notify_all();
}

bool DisplayRun::mustEnd() const
{
    return isCancelled() || board_.isPortLost() || clock_.sleepsEnded();
}

bool DisplayRun::pause() const
{
    return clock_.sleepFor(limits_.step);
}

void DisplayRun::watchBroke(const char *place)
{
    if (log_ != nullptr)
        log_->writeWatchTimeBreakLog(QLatin1StringView(place));
}

void DisplayRun::run(const Request &request)
{
    const QByteArray data = request.image ? columnWords(*request.image, intel()) : QByteArray();
    if (request.scrolls)
        scrollingRun(data);
    else
        standingRun(data);
    endRun();
}

void DisplayRun::scrollingRun(const QByteArray &data)
{
    if (sendPieces(data))
        scrollOut();
    else
        board_.sc_end(0);
}

void DisplayRun::beginScroll()
{
    board_.sc_clear();
    board_.sc_scroll();
}

// False when the run must end before all is sent. A piece that is refused, or whose reply does not
// come, is sent again. Until the first one is taken nothing shows that the board scrolls.
bool DisplayRun::sendPieces(const QByteArray &data)
{
    LineChange line(board_);
    beginScroll();
    qsizetype sent = 0;
    for (;;) {
        if (mustEnd())
            return false;
        if (sent >= data.size())
            return true;
        if (!board_.isPortOpen()) { // another port was chosen, and it did not open
            pause();
            continue;
        }
        if (sent == 0 && line.hasHappened())
            beginScroll();
        const QByteArray piece = data.mid(sent, bytesPerPiece);
        if (board_.sc_data(piece) >= 0)
            sent += piece.size();
        waitForRoom(data.size() - sent);
        while (isPaused() && !mustEnd())
            pause();
    }
}

void DisplayRun::waitForRoom(qsizetype remaining)
{
    const Watch watch(clock_, limits_.roomWatch);
    while (!mustEnd()) {
        const int room = board_.sc_data();
        if (room > roomForAPiece || remaining <= room)
            return;
        if (watch.isOver()) {
            watchBroke("VelmorSystem:showThread 1");
            board_.sc_clear();
            return;
        }
        pause();
    }
}

void DisplayRun::scrollOut()
{
    LineChange line(board_);
    board_.sc_end(1);
    const Watch watch(clock_, limits_.scrollEndWatch);
    while (!mustEnd()) {
        if (line.hasHappened())
            board_.sc_end(1);
        if (board_.sc_mode() == 1)
            return;
        // Asked a second time on purpose: only then is 0 the end.
        if (board_.sc_mode() == 0)
            return;
        if (watch.isOver()) {
            watchBroke("VelmorSystem:showThread 3");
            board_.sc_end(0);
            return;
        }
        pause();
    }
}

// A standing image does not look at a cancel while it is sent; it is shown in any case.
void DisplayRun::standingRun(const QByteArray &data)
{
    board_.sc_clear();
    board_.sc_stop();
    const QByteArray columns = wholePairs(data);
    const Watch watch(clock_, limits_.standingWatch);
    while (!board_.isPortLost() && board_.sc_data(columns) < 0) {
        if (clock_.sleepsEnded())
            break; // cut short, not refused
        if (log_ != nullptr)
            log_->writeStringLog(u"VelmorSystem:showThread:sc_data error3"_s);
        if (watch.isOver()) {
            watchBroke("VelmorSystem:showThread 4");
            break;
        }
        if (!pause())
            break;
    }
    board_.sc_show();
}

void DisplayRun::sendBufferBitmap(const VelmorBitmap &bitmap)
{
    const Watch watch(clock_, limits_.standingWatch);
    const QByteArray columns = wholePairs(columnWords(bitmap, intel()));
    while (!board_.isPortLost() && board_.sc_data(columns) < 0) {
        if (clock_.sleepsEnded())
            return;
        systemLog(logBoard(), u"sendBufferBitmap:sc_data: error"_s);
        if (watch.isOver()) {
            watchBroke("VelmorSystem:sendBufferBitmap");
            return;
        }
        if (!pause())
            return;
    }
}

} // namespace qovelmor
