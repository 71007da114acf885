// SPDX-License-Identifier: MIT
#include "board/SerialReceiver.h"

#include "board/CharacterQue.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace qovelmor {

SerialReceiver::SerialReceiver(Clock &clock, CharacterQue &que) : que_(que), worker_(clock) {}

SerialReceiver::~SerialReceiver()
{
    stop();
}

bool SerialReceiver::start(int descriptor)
{
    stop();
    event_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (event_ < 0)
        return false;
    threadExit_ = false; // a thread that ended by itself has not seen the order to end
    if (worker_.start([this, descriptor] { receiveThread(descriptor); }))
        return true;
    closeEvent();
    errno = EAGAIN;
    return false;
}

void SerialReceiver::stop()
{
    if (!worker_.isStarted())
        return;
    threadExit_ = true;
    wake();
    worker_.join();
    closeEvent();
}

void SerialReceiver::closeEvent()
{
    ::close(event_);
    event_ = -1;
}

void SerialReceiver::spaceMade()
{
    if (waitsForSpace_.exchange(false))
        wake();
}

void SerialReceiver::wake() const
{
    // Fails only when the counter is full, and then the thread wakes anyway.
    [[maybe_unused]] const int result = eventfd_write(event_, 1);
}

void SerialReceiver::receiveThread(int descriptor)
{
    bool alive = true;
    while (!threadExit_) {
        bool hasSpace = que_.space() > 0;
        if (!hasSpace) {
            // Said before looking once more: who makes room afterwards sees it and wakes us.
            waitsForSpace_ = true;
            hasSpace = que_.space() > 0;
        }
        // poll(2) leaves out a negative descriptor.
        std::array<pollfd, 2> wanted{pollfd{event_, POLLIN, 0},
                                     pollfd{alive && hasSpace ? descriptor : -1, POLLIN, 0}};
        if (poll(wanted.data(), wanted.size(), -1) < 0 && errno != EINTR)
            break;
        if (wanted[0].revents != 0) {
            eventfd_t ignored = 0;
            eventfd_read(event_, &ignored);
        }
        if (wanted[1].revents != 0)
            alive = moveBytes(descriptor);
    }
    threadExit_ = false;
}

// False when the line was hung up: read(2) then gives 0 or an error for ever, and poll(2) "ready".
bool SerialReceiver::moveBytes(int descriptor)
{
    std::array<char, 1024> bytes{};
    const auto most = std::min(bytes.size(), static_cast<std::size_t>(que_.space()));
    const ssize_t count = ::read(descriptor, bytes.data(), most);
    if (count > 0)
        que_.put(bytes.data(), static_cast<int>(count));
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

} // namespace qovelmor
