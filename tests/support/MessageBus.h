// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace qovelmor {

/// A message bus of the test's own: everybody may own, send and hear everything, and no service of
/// the machine is started on it.
class MessageBus
{
public:
    MessageBus() = default;
    ~MessageBus()
    {
        daemon_.kill();
        daemon_.waitForFinished();
    }
    MessageBus(const MessageBus &) = delete;
    MessageBus &operator=(const MessageBus &) = delete;

    bool start()
    {
        QFile rules(folder_.filePath(QStringLiteral("bus.conf")));
        if (!rules.open(QIODevice::WriteOnly))
            return false;
        rules.write("<busconfig><listen>unix:dir=" + folder_.path().toLocal8Bit() +
                    "</listen><auth>EXTERNAL</auth><policy context='default'>"
                    "<allow send_destination='*'/><allow receive_sender='*'/><allow own='*'/>"
                    "<allow user='*'/></policy></busconfig>");
        rules.close();
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--config-file=") + rules.fileName(),
                       QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        // The address may come in pieces.
        while (!daemon_.canReadLine() && daemon_.waitForReadyRead()) {
        }
        address_ = QString::fromLatin1(daemon_.readLine()).trimmed();
        return !address_.isEmpty();
    }

    QString address() const { return address_; }

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
};

} // namespace qovelmor
