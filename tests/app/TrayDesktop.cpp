// SPDX-License-Identifier: MIT
#include "TrayDesktop.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto connectionName = u"tray"_s;
const auto itemPath = u"/StatusNotifierItem"_s;
const auto itemInterface = u"org.kde.StatusNotifierItem"_s;
const auto menuInterface = u"com.canonical.dbusmenu"_s;
constexpr int answerLimit = 10'000; // ms, on a machine that has other things to do

/// A node of the menu's tree: its number, what it looks like, its entries.
struct Node
{
    int id = 0;
    QVariantMap looks;
    QVariantList entries;
};

Node nodeOf(const QDBusArgument &argument)
{
    Node node;
    argument.beginStructure();
    argument >> node.id >> node.looks >> node.entries;
    argument.endStructure();
    return node;
}

} // namespace

TrayDesktop::TrayDesktop()
{
    if (!daemon_.start())
        return;
    bus_ = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToBus(daemon_.address(), connectionName));
    bus_->registerObject(u"/StatusNotifierWatcher"_s, &watcher_,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties |
                             QDBusConnection::ExportAllSignals);
    bus_->registerService(u"org.kde.StatusNotifierWatcher"_s);
}

TrayDesktop::~TrayDesktop()
{
    bus_.reset();
    QDBusConnection::disconnectFromBus(connectionName);
}

QDBusMessage TrayDesktop::call(const QString &path, const QString &interface, const QString &method,
                               const QVariantList &arguments) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(items().value(0), path, interface, method);
    message.setArguments(arguments);
    return bus_->call(message, QDBus::Block, answerLimit);
}

QVariant TrayDesktop::itemProperty(const QString &name) const
{
    const QDBusMessage answer =
        call(itemPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {itemInterface, name});
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

QList<QSize> TrayDesktop::itemPictures() const
{
    const auto pictures = itemProperty(u"IconPixmap"_s).value<QDBusArgument>();
    QList<QSize> sizes;
    pictures.beginArray();
    while (!pictures.atEnd()) {
        QSize size;
        QByteArray pixels;
        pictures.beginStructure();
        pictures >> size.rwidth() >> size.rheight() >> pixels;
        pictures.endStructure();
        if (!size.isEmpty() && pixels.size() == 4 * size.width() * size.height())
            sizes << size;
    }
    pictures.endArray();
    return sizes;
}

QList<TrayEntry> TrayDesktop::menu() const
{
    const QString path = itemProperty(u"Menu"_s).value<QDBusObjectPath>().path();
    call(path, menuInterface, u"AboutToShow"_s, {0});
    const QDBusMessage answer = call(path, menuInterface, u"GetLayout"_s, {0, -1, QStringList()});
    QList<TrayEntry> entries;
    const Node root = nodeOf(answer.arguments().value(1).value<QDBusArgument>());
    for (const QVariant &child : root.entries) {
        const Node node = nodeOf(child.value<QDBusArgument>());
        entries << TrayEntry{node.id, node.looks.value(u"label"_s).toString(),
                             node.looks.value(u"enabled"_s, true).toBool()};
    }
    return entries;
}

TrayEntry TrayDesktop::entry(const QString &label) const
{
    for (const TrayEntry &one : menu()) {
        if (one.label.startsWith(label))
            return one;
    }
    return {};
}

void TrayDesktop::clickEntry(const QString &label) const
{
    const QString path = itemProperty(u"Menu"_s).value<QDBusObjectPath>().path();
    call(path, menuInterface, u"Event"_s,
         {entry(label).id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
}

void TrayDesktop::clickIcon() const
{
    call(itemPath, itemInterface, u"Activate"_s, {0, 0});
}

} // namespace qovelmor
