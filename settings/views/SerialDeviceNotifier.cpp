// SPDX-License-Identifier: MIT
#include "settings/views/SerialDeviceNotifier.h"

#include "board/SerialDeviceWatcher.h"

#include <QSocketNotifier>

namespace qovelmor {

SerialDeviceNotifier::SerialDeviceNotifier(int descriptor, std::function<bool()> takeChange)
    : takeChange_(std::move(takeChange))
{
    listen(descriptor);
}

SerialDeviceNotifier::SerialDeviceNotifier()
{
    const auto watcher = std::make_shared<SerialDeviceWatcher>();
    takeChange_ = [watcher] { return watcher->takeChange(); };
    listen(watcher->descriptor());
}

SerialDeviceNotifier::~SerialDeviceNotifier() = default;

void SerialDeviceNotifier::listen(int descriptor)
{
    if (descriptor < 0)
        return;
    readable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(readable_.get(), &QSocketNotifier::activated, this, [this] {
        if (takeChange_())
            Q_EMIT devicesChanged();
    });
}

} // namespace qovelmor
