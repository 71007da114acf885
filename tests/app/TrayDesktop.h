// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/MessageBus.h"

#include <QDBusConnection>
#include <QObject>
#include <QSize>
#include <QStringList>
#include <QVariantMap>

#include <memory>

namespace qovelmor {

/// What a desktop's panel keeps: the list of the tray's items (org.kde.StatusNotifierWatcher).
class TrayWatcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }
    QStringList items() const { return items_; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service) { items_ << service; }

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    QStringList items_;
};

/// One entry of a menu that is asked for over the bus.
struct TrayEntry
{
    int id = -1;
    QString label;
    bool isEnabled = false;
};

/// A message bus of its own with the tray of a desktop on it. It shows what a panel would show, and
/// clicks as a person does on it.
class TrayDesktop
{
public:
    TrayDesktop();
    ~TrayDesktop();
    TrayDesktop(const TrayDesktop &) = delete;
    TrayDesktop &operator=(const TrayDesktop &) = delete;

    bool isReady() const { return bus_ && bus_->isConnected(); }
    QString address() const { return daemon_.address(); }
    QStringList items() const { return watcher_.items(); }

    QVariant itemProperty(const QString &name) const;
    /// The sizes in which the item brings its picture along, with all their pixels.
    QList<QSize> itemPictures() const;
    /// The entries of the item's menu, as a panel asks for them when it opens the menu.
    QList<TrayEntry> menu() const;
    TrayEntry entry(const QString &label) const;
    void clickEntry(const QString &label) const;
    void clickIcon() const;

private:
    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments) const;

    MessageBus daemon_;
    std::unique_ptr<QDBusConnection> bus_;
    TrayWatcher watcher_;
};

} // namespace qovelmor
