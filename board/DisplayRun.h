// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardLimits.h"
#include "platform/Worker.h"

#include <QByteArray>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace qovelmor {

class BoardCommands;
class BoardLog;
class VelmorBitmap;

/// Puts one image on the board: streams it in pieces, paced by the room on the board, and watches
/// it scroll out, or sends it whole and lets it stand.
///
/// showStatus: 0 idle, 1 running, 2 paused, 3 cancel asked. Each transition is a compare-exchange
/// from the state it is described from, so a request that comes too late is none, and nobody waits
/// for the answer of a run that has ended. One run at a time. A run ends by itself when the port is
/// lost or the program ends; while no port is open it waits for one.
class DisplayRun
{
public:
    using Image = std::shared_ptr<const VelmorBitmap>;

    DisplayRun(BoardCommands &board, Clock &clock, RunLimits limits);
    /// Ends the run that is under way.
    ~DisplayRun();
    DisplayRun(const DisplayRun &) = delete;
    DisplayRun &operator=(const DisplayRun &) = delete;

    /// Before the first run, or never.
    void setMessageList(BoardLog *log) { log_ = log; }

    int showStatus() const { return showStatus_.load(); }
    bool isRunning() const { return showStatus() == running; }
    bool isPaused() const { return showStatus() == paused; }

    /// The next run scrolls, or stands still.
    bool scroll() const { return scroll_.load(); }
    void setScroll(bool scrolls) { scroll_ = scrolls; }
    /// The sense is inverted on purpose: YES shows on the caller's thread and returns at the end of
    /// the run, NO starts a thread and returns at once.
    bool async() const { return async_.load(); }
    void setAsync(bool blocks) { async_ = blocks; }
    /// Column words are swapped on their way; YES on a little-endian machine.
    bool intel() const { return intel_.load(); }
    void setIntel(bool swaps) { intel_ = swaps; }

    Image bitmapData() const;
    void setBitmap(Image image);

    /// Waits for a running run (not for a paused or cancelled one); false when the program ends.
    bool waitWhileRunning();
    /// Waits for a running run, then shows the image held. A paused run is given up for it.
    void show() { claimAndRun(nullptr); }
    /// The same with an image of its own, which no other caller can replace in between.
    void showBitmap(const Image &image) { claimAndRun(&image); }
    /// The run itself, on the calling thread; ends in state 0.
    void showThread();

    /// Only from running: asks the run to end and waits until it has.
    void cancel();
    void pauseScroll() { change(running, paused); }   ///< only from running
    void restartScroll() { change(paused, running); } ///< only from paused

    /// Sends a standing image without showing it and without a run.
    void sendBufferBitmap(const VelmorBitmap &bitmap);

private:
    static constexpr int idle = 0;
    static constexpr int running = 1;
    static constexpr int paused = 2;
    static constexpr int cancelAsked = 3;

    struct Request
    {
        Image image;
        bool scrolls;
    };

    bool change(int from, int to) { return showStatus_.compare_exchange_strong(from, to); }
    bool claim(const Image *image);
    void claimAndRun(const Image *image);
    void startWorker();
    void waitForCancelledRun();
    void endRun();

    bool isCancelled() const { return showStatus() == cancelAsked; }
    bool mustEnd() const;
    bool pause() const;
    void run(const Request &request);
    void scrollingRun(const QByteArray &data);
    void beginScroll();
    bool sendPieces(const QByteArray &data);
    void waitForRoom(qsizetype remaining);
    void scrollOut();
    void standingRun(const QByteArray &data);
    void watchBroke(const char *place);

    BoardCommands &board_;
    Clock &clock_;
    const RunLimits limits_;
    BoardLog *log_ = nullptr;

    std::atomic<int> showStatus_ = idle;
    std::atomic<bool> scroll_ = false;
    std::atomic<bool> async_ = true;
    std::atomic<bool> intel_;
    mutable std::mutex imageMutex_; // for the image and the claim of the run that shows it
    Image bitmapData_;
    Request request_{};
    std::mutex endMutex_;
    std::condition_variable ended_;
    Worker worker_;
};

} // namespace qovelmor
