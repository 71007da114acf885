// SPDX-License-Identifier: MIT
#include "app/ExitSignals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace qovelmor {

namespace {

constexpr std::array exitSignals = {SIGTERM, SIGINT, SIGHUP};

// A handler may do next to nothing: it writes one byte, and the event loop reads it.
std::array<int, 2> wakeUp = {-1, -1};

extern "C" void handleExitSignal(int)
{
    const int savedErrno = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(wakeUp[0], &byte, 1);
    errno = savedErrno;
}

} // namespace

ExitSignals::ExitSignals(std::function<void()> requested) : requested_(std::move(requested))
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, wakeUp.data()) != 0)
        return;
    notifier_ = std::make_unique<QSocketNotifier>(wakeUp[1], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { handleSignal(); });

    struct sigaction action = {};
    action.sa_handler = handleExitSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : exitSignals)
        ::sigaction(number, &action, nullptr);
}

ExitSignals::~ExitSignals()
{
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    for (const int number : exitSignals)
        ::sigaction(number, &standard, nullptr);
    notifier_.reset();
    for (int &end : wakeUp) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
}

void ExitSignals::handleSignal()
{
    std::array<char, 16> bytes{};
    while (::read(wakeUp[1], bytes.data(), bytes.size()) > 0) {
    }
    requested_();
}

} // namespace qovelmor
