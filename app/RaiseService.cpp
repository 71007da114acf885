// SPDX-License-Identifier: MIT
#include "app/RaiseService.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString objectPath = u"/net/qovelmor/QoVelmorRSS"_s;
const QString interfaceName = u"net.qovelmor.QoVelmorRSS"_s;
constexpr int answerLimitMilliseconds = 2000;

QString busName(const QString &profileFolder)
{
    const QByteArray folder = QDir(profileFolder).absolutePath().toUtf8();
    const QByteArray digest = QCryptographicHash::hash(folder, QCryptographicHash::Sha1).toHex();
    return interfaceName + u".profile"_s + QString::fromLatin1(digest.left(12));
}

} // namespace

RaiseService::RaiseService(const QString &profileFolder, std::function<void()> raise)
    : name_(busName(profileFolder)), raise_(std::move(raise))
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
    bus.registerService(name_);
}

RaiseService::~RaiseService()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.unregisterService(name_);
    bus.unregisterObject(objectPath);
}

bool RaiseService::raiseFirst(const QString &profileFolder)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const auto call = QDBusMessage::createMethodCall(busName(profileFolder), objectPath,
                                                     interfaceName, u"raiseWindow"_s);
    return bus.call(call, QDBus::Block, answerLimitMilliseconds).type() ==
           QDBusMessage::ReplyMessage;
}

void RaiseService::raiseWindow()
{
    raise_();
}

} // namespace qovelmor
