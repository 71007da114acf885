// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <array>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace qovelmor {

/// The ring of received bytes between the receive thread, which puts them in, and whoever reads
/// replies.
///
/// Every operation is whole: one mutex that nothing else is taken under guards the ring, so a clear
/// cannot tear a put that runs beside it.
class CharacterQue
{
public:
    static constexpr int capacity = 8192;

    /// Adds one byte; false (and the byte is dropped) when the queue is full.
    bool putChar(quint8 byte);
    /// Takes the oldest byte. An empty queue gives 0 as a received zero does: look at count()
    /// first.
    quint8 getChar();
    int count() const;
    int space() const;
    void clear();

    /// Adds as many of the bytes as there is room for and gives their number.
    int put(const char *bytes, int length);
    /// Takes up to `most` bytes, the oldest first.
    QByteArray take(int most);

    using Deadline = std::chrono::steady_clock::time_point;
    /// Waits until `done`, asked with the number of bytes held, says yes; false at the deadline. It
    /// is asked again after each put and each wakeWaiters(), with the queue locked: it must not
    /// call back.
    bool waitUntil(Deadline deadline, const std::function<bool(int count)> &done) const;
    /// Makes every wait look at its condition again.
    void wakeWaiters();

private:
    bool putLocked(char byte);
    char getLocked();

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::array<char, capacity> queBuffer_{};
    int getPoint_ = 0;
    int putPoint_ = 0;
    int queLength_ = 0;
};

} // namespace qovelmor
