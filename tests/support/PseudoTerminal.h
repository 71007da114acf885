// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <mutex>

namespace qovelmor {

/// The far end of a serial line: the master of a fresh pseudo-terminal. The program under test
/// opens path() as its device.
class PseudoTerminal
{
public:
    PseudoTerminal() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
        std::array<char, 128> name{};
        if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0 ||
            ptsname_r(master_, name.data(), name.size()) != 0)
            qFatal("no pseudo-terminal");
        path_ = name.data();
    }
    ~PseudoTerminal() { hangUp(); }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    const QByteArray &path() const { return path_; }
    int descriptor() const { return master_; }

    /// Pulls the cable: the device is gone, for whoever holds it open too.
    void hangUp()
    {
        if (master_ >= 0)
            ::close(master_);
        master_ = -1;
    }

    /// What the near end has sent, waiting up to `limit` for something; empty when nothing came.
    QByteArray read(std::chrono::milliseconds limit) const
    {
        std::array<char, 4096> bytes{};
        const auto end = std::chrono::steady_clock::now() + limit;
        for (;;) {
            const ssize_t count = ::read(master_, bytes.data(), bytes.size());
            if (count > 0)
                return QByteArray(bytes.data(), static_cast<qsizetype>(count));
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(
                end - std::chrono::steady_clock::now());
            if (left.count() <= 0)
                return {};
            // While the near end has the device closed, poll(2) says "hung up" at once.
            pollfd wanted{master_, POLLIN, 0};
            if (poll(&wanted, 1, static_cast<int>(left.count())) > 0 &&
                (wanted.revents & POLLIN) == 0)
                poll(nullptr, 0, 1);
        }
    }

    /// Reads until `count` bytes have come or the limit has passed.
    QByteArray readBytes(qsizetype count, std::chrono::milliseconds limit) const
    {
        const auto end = std::chrono::steady_clock::now() + limit;
        QByteArray bytes;
        while (bytes.size() < count && std::chrono::steady_clock::now() < end)
            bytes += read(std::chrono::milliseconds(20));
        return bytes;
    }

    /// Sends to the near end; false when not all of it was taken. Any thread.
    bool write(const QByteArray &bytes) const
    {
        // The system turns the second of two writers away, where neither may be made to wait.
        const std::lock_guard lock(writeMutex_);
        return ::write(master_, bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
               bytes.size();
    }

private:
    mutable std::mutex writeMutex_;
    int master_ = -1;
    QByteArray path_;
};

} // namespace qovelmor
