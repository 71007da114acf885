// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace qovelmor {

/// Tells on the main thread that serial devices have come or gone.
class SerialDeviceNotifier final : public QObject
{
    Q_OBJECT

public:
    /// Waits for the descriptor to become readable and then asks `takeChange` whether there was a
    /// change. A descriptor below 0 never tells anything.
    SerialDeviceNotifier(int descriptor, std::function<bool()> takeChange);
    /// Listens to the system's device registry.
    SerialDeviceNotifier();
    ~SerialDeviceNotifier() override;

Q_SIGNALS:
    void devicesChanged();

private:
    void listen(int descriptor);

    std::function<bool()> takeChange_;
    std::unique_ptr<QSocketNotifier> readable_;
};

} // namespace qovelmor
