// SPDX-License-Identifier: MIT
#include "board/SerialDeviceWatcher.h"

#include <libudev.h>

namespace qovelmor {

void SerialDeviceWatcher::Deleter::operator()(udev *handle) const
{
    udev_unref(handle);
}

void SerialDeviceWatcher::Deleter::operator()(udev_monitor *handle) const
{
    udev_monitor_unref(handle);
}

SerialDeviceWatcher::SerialDeviceWatcher() : registry_(udev_new())
{
    if (!registry_)
        return;
    // "udev" tells after the rules have run: by then the device can be opened.
    monitor_.reset(udev_monitor_new_from_netlink(registry_.get(), "udev"));
    if (!monitor_)
        return;
    if (udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "tty", nullptr) < 0 ||
        udev_monitor_enable_receiving(monitor_.get()) < 0)
        monitor_.reset();
}

SerialDeviceWatcher::~SerialDeviceWatcher() = default;

int SerialDeviceWatcher::descriptor() const
{
    return monitor_ ? udev_monitor_get_fd(monitor_.get()) : -1;
}

bool SerialDeviceWatcher::takeChange()
{
    if (!monitor_)
        return false;
    bool changed = false;
    while (udev_device *device = udev_monitor_receive_device(monitor_.get())) {
        udev_device_unref(device);
        changed = true;
    }
    return changed;
}

} // namespace qovelmor
