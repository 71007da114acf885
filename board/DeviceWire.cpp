// SPDX-License-Identifier: MIT
#include "board/DeviceWire.h"

#include "board/CharacterQue.h"

#include <cerrno>

namespace qovelmor {

DeviceWire::DeviceWire(Clock &clock, CharacterQue &que)
    : clock_(clock), que_(que), receiver_(clock, que)
{}

DeviceWire::~DeviceWire()
{
    receiver_.stop();
}

std::optional<OpenFailure> DeviceWire::open(const QByteArray &path, LineSettings &settings)
{
    auto failure = line_.open(path, settings);
    que_.clear();
    if (!failure && !receiver_.start(line_.descriptor()))
        failure = OpenFailure{OpenFailure::Step::Open, errno};
    if (failure)
        line_.close();
    return failure;
}

void DeviceWire::close()
{
    receiver_.stop();
    line_.close();
}

void DeviceWire::drainAndRestore(const LineSettings &settings, Clock::SteadyTime deadline)
{
    receiver_.stop();
    line_.drainAndRestore(settings, deadline);
}

bool DeviceWire::write(const QByteArray &bytes, Clock::SteadyTime deadline)
{
    return line_.write(bytes, deadline);
}

int DeviceWire::unsentBytes() const
{
    return line_.unsentBytes();
}

void DeviceWire::discardUnread()
{
    line_.discardUnread();
}

void DeviceWire::spaceMade()
{
    receiver_.spaceMade();
}

void DeviceWire::waitForBytes(Clock::SteadyTime deadline,
                              const std::function<bool(int count)> &done)
{
    // The queue's wait runs on the real steady clock, whatever clock the deadline is from.
    const auto left = deadline - clock_.steadyNow();
    que_.waitUntil(std::chrono::steady_clock::now() + left, done);
}

std::unique_ptr<SerialWire> DeviceWire::make(Clock &clock, CharacterQue &que)
{
    return std::make_unique<DeviceWire>(clock, que);
}

} // namespace qovelmor
