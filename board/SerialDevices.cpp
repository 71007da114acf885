// SPDX-License-Identifier: MIT
#include "board/SerialDevices.h"

#include <QtGlobal>

#include <libudev.h>

#include <algorithm>
#include <memory>

namespace qovelmor {

namespace {

struct UdevDeleter
{
    void operator()(udev *handle) const { udev_unref(handle); }
    void operator()(udev_enumerate *handle) const { udev_enumerate_unref(handle); }
    void operator()(udev_device *handle) const { udev_device_unref(handle); }
};

template <typename T>
using UdevHandle = std::unique_ptr<T, UdevDeleter>;

// The driver of the nearest device above that has one; the newest kernels put layers without a
// meaning of their own between a terminal and its chip.
QByteArray driverBehind(udev_device *terminal)
{
    for (udev_device *parent = udev_device_get_parent(terminal); parent != nullptr;
         parent = udev_device_get_parent(parent)) {
        if (const char *driver = udev_device_get_driver(parent))
            return driver;
    }
    return {};
}

TerminalFacts factsOf(udev_device *terminal)
{
    const auto isSet = [terminal](const char *property) {
        return qstrcmp(udev_device_get_property_value(terminal, property), "1") == 0;
    };
    TerminalFacts facts;
    facts.path = udev_device_get_devnode(terminal);
    facts.driver = driverBehind(terminal);
    facts.uartType = udev_device_get_sysattr_value(terminal, "type");
    facts.isModem = isSet("ID_MM_CANDIDATE");
    return facts;
}

// The 64 virtual consoles, tty0 and so on, have no driver. The registry opens some thirty files to
// look at one, which made up a third of the time to start.
bool leaveOutConsoles(udev_enumerate *found)
{
    return udev_enumerate_add_match_sysname(found, "tty[!0-9]*") >= 0 &&
           udev_enumerate_add_match_sysname(found, "[!t]*") >= 0;
}

QList<QByteArray> systemDevices(udev_enumerate *found, udev *registry, SerialDeviceType type)
{
    QList<QByteArray> paths;
    for (udev_list_entry *entry = udev_enumerate_get_list_entry(found); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const UdevHandle<udev_device> terminal(
            udev_device_new_from_syspath(registry, udev_list_entry_get_name(entry)));
        if (!terminal)
            continue; // unplugged since the look-up
        const TerminalFacts facts = factsOf(terminal.get());
        if (isListed(facts, type))
            paths.append(facts.path);
    }
    std::sort(paths.begin(), paths.end(), standsBefore);
    return paths;
}

void appendNew(QList<QByteArray> &paths, const QByteArray &path)
{
    if (!path.isEmpty() && !paths.contains(path))
        paths.append(path);
}

} // namespace

bool isSerialDevice(const TerminalFacts &facts)
{
    return !facts.path.isEmpty() && !facts.driver.isEmpty() && facts.uartType != "0";
}

bool isListed(const TerminalFacts &facts, SerialDeviceType type)
{
    return isSerialDevice(facts) && (type != SerialDeviceType::Modem || facts.isModem);
}

bool standsBefore(const QByteArray &path, const QByteArray &otherPath)
{
    const auto stemOf = [](const QByteArray &text) {
        qsizetype end = text.size();
        while (end > 0 && text[end - 1] >= '0' && text[end - 1] <= '9')
            --end;
        return text.first(end);
    };
    const QByteArray stem = stemOf(path);
    const QByteArray otherStem = stemOf(otherPath);
    if (stem != otherStem)
        return stem < otherStem;
    const auto number = path.sliced(stem.size()).toULongLong();
    const auto otherNumber = otherPath.sliced(stem.size()).toULongLong();
    return number != otherNumber ? number < otherNumber : path < otherPath;
}

SerialLookup findSerialDevices(SerialDeviceType type)
{
    SerialLookup lookup;
    for (const QByteArray &path : qgetenv("QOVELMORRSS_SERIAL_DEVICES").split(':'))
        appendNew(lookup.paths, path);

    const UdevHandle<udev> registry(udev_new());
    const UdevHandle<udev_enumerate> found(registry ? udev_enumerate_new(registry.get()) : nullptr);
    if (!found || udev_enumerate_add_match_subsystem(found.get(), "tty") < 0 ||
        !leaveOutConsoles(found.get())) {
        lookup.registryAbsent = true;
        lookup.result = -ENODEV;
        return lookup;
    }
    lookup.result = udev_enumerate_scan_devices(found.get());
    if (lookup.result < 0)
        return lookup;
    lookup.result = 0;
    for (const QByteArray &path : systemDevices(found.get(), registry.get(), type))
        appendNew(lookup.paths, path);
    return lookup;
}

QString serialPortName(const QByteArray &path)
{
    const QString text = QString::fromUtf8(path);
    const QString component = text.mid(text.lastIndexOf(u'/') + 1);
    const qsizetype dot = component.lastIndexOf(u'.');
    return dot < 0 || dot == component.size() - 1 ? component : component.mid(dot + 1);
}

QStringList serialPortNames()
{
    QStringList names;
    const SerialLookup lookup = findSerialDevices(SerialDeviceType::Rs232);
    for (const QByteArray &path : lookup.paths)
        names.append(serialPortName(path));
    return names;
}

} // namespace qovelmor
