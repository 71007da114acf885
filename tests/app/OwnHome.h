// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserDefaults.h"

#include <QTemporaryDir>

namespace qovelmor {

/// A home and a profile for a program in the test's own process: no message bus, no feeds, and no
/// serial port of the machine. Libraries look for the home once, so one lasts as long as the test.
class OwnHome
{
public:
    OwnHome()
    {
        qputenv("HOME", folder_.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", filePath(QStringLiteral("config")).toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS",
                "unix:path=" + filePath(QStringLiteral("no-bus")).toUtf8());
        qunsetenv("QOVELMORRSS_SERIAL_DEVICES");
    }

    QString filePath(const QString &name) const { return folder_.filePath(name); }
    QString logPath() const
    {
        return filePath(QStringLiteral("Documents/QoVelmorRSS/Logbook.txt"));
    }

    /// Puts these values into the store that the next start of the program finds.
    bool writeProfile(const PropertyDictionary &values) const
    {
        UserDefaults store(UserDefaults::defaultPath());
        store.setArray({}, QStringLiteral("RSSSiteAddresses"));
        store.setInteger(noSuchPort, QStringLiteral("ComPortNumber"));
        for (const PropertyEntry &entry : values.entries())
            store.setValue(entry.value, entry.key);
        return store.synchronize();
    }

private:
    static constexpr int noSuchPort = 99;

    QTemporaryDir folder_;
};

} // namespace qovelmor
