// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

struct udev;
struct udev_monitor;

namespace qovelmor {

/// Tells when serial devices come and go, through a descriptor that an event loop can wait for.
///
/// Without a device registry (a container without udev) the descriptor is -1 and nothing is told.
class SerialDeviceWatcher
{
public:
    SerialDeviceWatcher();
    ~SerialDeviceWatcher();

    /// Readable when something has changed; -1 when there is nothing to watch. Close-on-exec.
    int descriptor() const;

    /// Takes up what has been told so far; true when a terminal device came, went or changed.
    bool takeChange();

private:
    struct Deleter
    {
        void operator()(udev *handle) const;
        void operator()(udev_monitor *handle) const;
    };

    std::unique_ptr<udev, Deleter> registry_;
    std::unique_ptr<udev_monitor, Deleter> monitor_;
};

} // namespace qovelmor
