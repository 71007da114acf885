// SPDX-License-Identifier: MIT
#pragma once

#include "board/CocoaSerialPort.h"
#include "platform/SystemClock.h"
#include "tests/board/RecordingLog.h"
#include "tests/support/PseudoTerminal.h"
#include "tests/support/StdoutCapture.h"

#include <QTest>

#include <dirent.h>
#include <sys/resource.h>

#include <thread>

namespace qovelmor {

// Long enough that a loaded machine does not reach it by accident, short enough to wait for.
inline constexpr PortLimits shortLimits{.receiveWatch = std::chrono::milliseconds(250),
                                        .receiveStringWatch = std::chrono::milliseconds(250),
                                        .pollStep = std::chrono::milliseconds(20),
                                        .sendSlack = std::chrono::milliseconds(200)};

/// Where the time-out must not be met, however late a thread gets to run.
inline constexpr PortLimits patientLimits{.receiveWatch = std::chrono::seconds(20),
                                          .receiveStringWatch = std::chrono::seconds(20),
                                          .pollStep = std::chrono::milliseconds(20),
                                          .sendSlack = std::chrono::seconds(20)};

/// The look-up finds these devices.
inline CocoaSerialPort::DeviceLookup listing(const QList<QByteArray> &paths)
{
    return [paths](SerialDeviceType) { return SerialLookup{0, false, paths}; };
}

/// A port on a fresh pseudo-terminal; standard output is kept out of the test's own.
struct SerialBench
{
    explicit SerialBench(PortLimits limits = shortLimits)
        : port(clock, limits, listing({far.path()}))
    {
        port.setMessageList(&log);
        port.setPortLoss(&log);
        StdoutCapture quiet;
        port.initForRS232();
        if (!port.openWithPortNumber(0))
            qFatal("the pseudo-terminal does not open");
    }

    /// The far end sends, and the port's queue has it.
    void arrive(const QByteArray &bytes)
    {
        const auto wanted = port.bufferCount() + bytes.size();
        far.write(bytes);
        QTRY_COMPARE_WITH_TIMEOUT(port.bufferCount(), wanted, 5000);
    }

    SystemClock clock;
    PseudoTerminal far;
    RecordingLog log;
    CocoaSerialPort port;
};

/// Sends what it is told after a delay, on a thread of its own.
class LateSender
{
public:
    LateSender(const PseudoTerminal &far, std::chrono::milliseconds delay, QByteArray bytes)
        : thread_([&far, delay, bytes = std::move(bytes)] {
            std::this_thread::sleep_for(delay);
            far.write(bytes);
        })
    {}
    ~LateSender() { thread_.join(); }

private:
    std::thread thread_;
};

/// Processor time of this process so far.
inline double processSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

inline int openDescriptors()
{
    int count = 0;
    DIR *folder = opendir("/proc/self/fd");
    while (readdir(folder) != nullptr)
        ++count;
    closedir(folder);
    return count;
}

} // namespace qovelmor
