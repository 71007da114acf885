// SPDX-License-Identifier: MIT
#include "board/CharacterQue.h"

#include <algorithm>

namespace qovelmor {

bool CharacterQue::putLocked(char byte)
{
    if (queLength_ > capacity - 1)
        return false;
    queBuffer_[static_cast<std::size_t>(putPoint_)] = byte;
    putPoint_ = (putPoint_ + 1) % capacity;
    ++queLength_;
    return true;
}

char CharacterQue::getLocked()
{
    if (queLength_ == 0)
        return 0;
    const char byte = queBuffer_[static_cast<std::size_t>(getPoint_)];
    getPoint_ = (getPoint_ + 1) % capacity;
    --queLength_;
    return byte;
}

bool CharacterQue::putChar(quint8 byte)
{
    const char plain = static_cast<char>(byte);
    return put(&plain, 1) == 1;
}

quint8 CharacterQue::getChar()
{
    const std::lock_guard lock(mutex_);
    return static_cast<quint8>(getLocked());
}

int CharacterQue::count() const
{
    const std::lock_guard lock(mutex_);
    return queLength_;
}

int CharacterQue::space() const
{
    const std::lock_guard lock(mutex_);
    return capacity - queLength_;
}

void CharacterQue::clear()
{
    const std::lock_guard lock(mutex_);
    getPoint_ = 0;
    putPoint_ = 0;
    queLength_ = 0;
}

int CharacterQue::put(const char *bytes, int length)
{
    int taken = 0;
    {
        const std::lock_guard lock(mutex_);
        while (taken < length && putLocked(bytes[taken]))
            ++taken;
    }
    if (taken > 0)
        changed_.notify_all();
    return taken;
}

QByteArray CharacterQue::take(int most)
{
    const std::lock_guard lock(mutex_);
    QByteArray bytes;
    bytes.reserve(std::min(most, queLength_));
    while (bytes.size() < most && queLength_ > 0)
        bytes.append(getLocked());
    return bytes;
}

bool CharacterQue::waitUntil(Deadline deadline, const std::function<bool(int)> &done) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, deadline, [&] { return done(queLength_); });
}

void CharacterQue::wakeWaiters()
{
    // The empty critical section keeps the notice from falling between a waiter's look at its
    // condition and its sleep.
    {
        const std::lock_guard lock(mutex_);
    }
    changed_.notify_all();
}

} // namespace qovelmor
