// SPDX-License-Identifier: MIT
#include "board/SerialLine.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace qovelmor {

namespace {

// Milliseconds until the deadline for poll(2), rounded up; 0 when it has passed.
int pollLimit(SerialLine::Deadline deadline)
{
    using namespace std::chrono;
    const auto left = ceil<milliseconds>(deadline - steady_clock::now()).count();
    return left > 0 ? static_cast<int>(std::min<std::int64_t>(left, 60'000)) : 0;
}

} // namespace

std::optional<OpenFailure> SerialLine::open(const QByteArray &path, LineSettings &settings)
{
    close();
    if (path.isNull())
        return OpenFailure{OpenFailure::Step::Open, EFAULT};
    descriptor_ = ::open(path.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0)
        return OpenFailure{OpenFailure::Step::Open, errno};
    auto failure = claim();
    if (!failure)
        failure = configure(settings);
    if (failure)
        close();
    return failure;
}

// TIOCEXCL does not keep the superuser out, the lock does (from those who ask for it). The lock
// comes first: where another program holds it, that one's exclusive use is left as it is.
std::optional<OpenFailure> SerialLine::claim()
{
    if (flock(descriptor_, LOCK_EX | LOCK_NB) != 0)
        return OpenFailure{OpenFailure::Step::Claim, errno == EWOULDBLOCK ? EBUSY : errno};
    if (ioctl(descriptor_, TIOCEXCL) != 0)
        return OpenFailure{OpenFailure::Step::Claim, errno};
    isClaimed_ = true;
    return std::nullopt;
}

// A pseudo-terminal keeps the exclusive use as long as its far end lives, whoever closes it: then
// only the superuser could open it again. A child that was just forked keeps the lock.
void SerialLine::giveUpClaim()
{
    if (!isClaimed_)
        return;
    ioctl(descriptor_, TIOCNXCL);
    flock(descriptor_, LOCK_UN);
    isClaimed_ = false;
}

std::optional<OpenFailure> SerialLine::configure(LineSettings &settings) const
{
    if (tcgetattr(descriptor_, &settings.record()) != 0)
        return OpenFailure{OpenFailure::Step::ReadSettings, errno};
    settings.makeRaw19200();
    if (tcsetattr(descriptor_, TCSAFLUSH, &settings.record()) != 0)
        return OpenFailure{OpenFailure::Step::WriteSettings, errno};
    return std::nullopt;
}

void SerialLine::close()
{
    // The system's own close would wait for a line that takes nothing, for half a minute.
    if (unsentBytes() > 0)
        tcflush(descriptor_, TCOFLUSH);
    giveUpClaim();
    if (descriptor_ >= 0)
        ::close(descriptor_);
    descriptor_ = -1;
}

void SerialLine::drainAndRestore(const LineSettings &settings, Deadline deadline)
{
    if (!isOpen())
        return;
    constexpr int step = 5; // ms
    while (unsentBytes() > 0 && std::chrono::steady_clock::now() < deadline)
        poll(nullptr, 0, step);
    if (unsentBytes() == 0)
        tcdrain(descriptor_);
    tcsetattr(descriptor_, TCSANOW, &settings.record());
}

bool SerialLine::write(const QByteArray &bytes, Deadline deadline) const
{
    if (!isOpen())
        return false;
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t taken = ::write(descriptor_, bytes.constData() + sent,
                                      static_cast<std::size_t>(bytes.size() - sent));
        if (taken > 0) {
            sent += taken;
            continue;
        }
        if (taken < 0 && errno == EINTR)
            continue;
        if (taken < 0 && errno != EAGAIN)
            return false;
        pollfd room{descriptor_, POLLOUT, 0};
        const int ready = poll(&room, 1, pollLimit(deadline));
        if (ready == 0 || (ready < 0 && errno != EINTR))
            return false;
    }
    return true;
}

void SerialLine::discardUnread() const
{
    if (isOpen())
        tcflush(descriptor_, TCIFLUSH);
}

int SerialLine::unsentBytes() const
{
    int count = 0;
    if (!isOpen() || ioctl(descriptor_, TIOCOUTQ, &count) != 0)
        return 0;
    return count;
}

} // namespace qovelmor
