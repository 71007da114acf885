// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace qovelmor {

/// The kinds of serial devices that can be asked for.
enum class SerialDeviceType { Any = 0, Rs232 = 1, Modem = 2 };

/// What a look-up found: paths as the bytes of a UTF-8 text, in a stable order.
struct SerialLookup
{
    int result = 0;              ///< 0 on success, else the system's (negative) error number
    bool registryAbsent = false; ///< there is no device registry to ask
    QList<QByteArray> paths;     ///< devices that the environment names stand here in any case
};

/// What the device registry says about one terminal device.
struct TerminalFacts
{
    QByteArray path;
    QByteArray driver;   ///< of the device behind it; empty for consoles and pseudo-terminals
    QByteArray uartType; ///< the kernel's `type` attribute; "0" is a socket without a chip
    bool isModem = false;
};

/// A serial port that a person can plug something into: a driver stands behind it, and a chip.
bool isSerialDevice(const TerminalFacts &facts);

/// Whether a list of this kind names the device: every serial port for Any and Rs232, the ones that
/// the registry marks as modems for Modem.
bool isListed(const TerminalFacts &facts, SerialDeviceType type);

/// Before or after in the list: by name, numbers by their value (ttyUSB2 before ttyUSB10).
bool standsBefore(const QByteArray &path, const QByteArray &otherPath);

/// The devices that QOVELMORRSS_SERIAL_DEVICES names (colon-separated), then the ones that libudev
/// lists: every serial port for Any and Rs232, the ones marked as modems for Modem. None twice.
SerialLookup findSerialDevices(SerialDeviceType type);

/// The name of a device for a menu: the text after the last "." of the path's last component, or
/// the whole component when it holds none.
QString serialPortName(const QByteArray &path);

/// The names of all RS-232 ports as they are now, in the order of their port numbers.
QStringList serialPortNames();

} // namespace qovelmor
