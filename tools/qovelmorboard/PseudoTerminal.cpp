// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/PseudoTerminal.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace qovelmor::simboard {

namespace {

void closeDescriptor(int &descriptor)
{
    if (descriptor >= 0)
        ::close(std::exchange(descriptor, -1));
}

} // namespace

bool PseudoTerminal::fail(const char *what)
{
    error_ = std::string(what) + ": " + std::generic_category().message(errno);
    close();
    return false;
}

bool PseudoTerminal::open(const std::string &link)
{
    close();
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0)
        return fail("no pseudo-terminal");
    std::array<char, 128> name{};
    if (::ptsname_r(master_, name.data(), name.size()) != 0)
        return fail("no name for the pseudo-terminal");
    path_ = name.data();
    hostEnd_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (hostEnd_ < 0 || !makeRaw())
        return fail("cannot set up the pseudo-terminal");
    return link.empty() || makeLink(link);
}

bool PseudoTerminal::makeRaw()
{
    termios attributes{};
    if (::tcgetattr(hostEnd_, &attributes) != 0)
        return false;
    ::cfmakeraw(&attributes);
    ::cfsetspeed(&attributes, B19200);
    return ::tcsetattr(hostEnd_, TCSANOW, &attributes) == 0;
}

bool PseudoTerminal::makeLink(const std::string &link)
{
    struct stat there = {};
    if (::lstat(link.c_str(), &there) == 0 && S_ISLNK(there.st_mode))
        ::unlink(link.c_str());
    if (::symlink(path_.c_str(), link.c_str()) != 0)
        return fail("cannot make the link");
    link_ = link;
    return true;
}

void PseudoTerminal::close()
{
    if (!link_.empty()) {
        // Somebody else's link of the same name stays.
        std::array<char, 128> target{};
        const auto length = ::readlink(link_.c_str(), target.data(), target.size());
        if (length > 0 && path_ == std::string_view(target.data(), static_cast<size_t>(length)))
            ::unlink(link_.c_str());
    }
    link_.clear();
    path_.clear();
    closeDescriptor(hostEnd_);
    closeDescriptor(master_);
}

std::string PseudoTerminal::read(std::size_t limit)
{
    std::string bytes(limit, '\0');
    const auto count = ::read(master_, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

void PseudoTerminal::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count = ::write(master_, bytes.data(), bytes.size());
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return;
    }
}

void PseudoTerminal::forgetExclusiveUse()
{
    ::ioctl(hostEnd_, TIOCNXCL);
}

} // namespace qovelmor::simboard
