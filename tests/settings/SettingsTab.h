// SPDX-License-Identifier: MIT
#pragma once

#include "SetupParts.h"
#include "settings/views/SerialDeviceNotifier.h"
#include "settings/views/SettingsView.h"

#include <QApplication>
#include <QDir>
#include <QTest>

#include <unistd.h>

#include <array>

namespace qovelmor {

/// The home folder of the test program, empty again for each test. One for all of them: the
/// program takes the place of its log from the home that it was started with.
class EmptyHome
{
public:
    EmptyHome()
    {
        QDir(path()).removeRecursively();
        QDir().mkpath(path());
        qputenv("HOME", path().toLocal8Bit());
        qunsetenv("XDG_CONFIG_HOME");
    }
    QString path() const
    {
        static const QTemporaryDir folder;
        return folder.filePath(QStringLiteral("home"));
    }
    QString filePath(const QString &name) const { return path() + u'/' + name; }
};

/// The settings tab in a shown window, over a home folder of its own with a real store in it.
class SettingsTab
{
public:
    SettingsTab()
    {
        defaults = std::make_unique<UserDefaults>(UserDefaults::defaultPath());
        if (::pipe(deviceEvents.data()) != 0)
            qFatal("no pipe");
    }
    ~SettingsTab()
    {
        view.reset();
        setup.reset();
        ::close(deviceEvents[0]);
        ::close(deviceEvents[1]);
    }

    /// Before the start: a board that answers, unless the test says otherwise.
    RecordingBoard &withBoard()
    {
        auto made = std::make_unique<RecordingBoard>(boardCalls);
        board = made.get();
        made->ports = {QStringLiteral("ttyUSB0"), QStringLiteral("ttyUSB1")};
        link = std::move(made);
        return *board;
    }
    /// Starts the settings and shows the tab; the board's calls of the start are forgotten.
    void start()
    {
        setup = std::make_unique<Setup>(
            SetupServices{*defaults, clock, sounds, mainThread, [this] { return systemPorts; }},
            std::move(link));
        setup->setMsgList(output);
        devices = std::make_unique<SerialDeviceNotifier>(deviceEvents[0], [this] {
            std::array<char, 16> taken{};
            return ::read(deviceEvents[0], taken.data(), taken.size()) > 0;
        });
        view = std::make_unique<SettingsView>(*setup, *devices);
        view->resize(900, 640);
        setup->awakeFromNibx();
        view->show();
        QApplication::setActiveWindow(view.get());
        boardCalls.clear();
    }

    /// The control with this name; a missing one fails the test at once.
    template <typename Control = QWidget>
    Control &control(const QString &name) const
    {
        auto *found = view->findChild<Control *>(name);
        if (found == nullptr)
            qFatal("no control %s", qPrintable(name));
        return *found;
    }
    /// A panel or an alert that is open; null when there is none.
    template <typename Panel = QWidget>
    Panel *panel(const QString &name) const
    {
        for (Panel *found : view->findChildren<Panel *>(name)) {
            if (found->isVisible()) // one that was closed may wait for its deletion
                return found;
        }
        return nullptr;
    }
    void plugOrUnplug() { QCOMPARE(::write(deviceEvents[1], "x", 1), 1); }

    /// What the file of the store holds now.
    std::optional<PropertyValue> onDisk(const QString &key) const
    {
        return UserDefaults(UserDefaults::defaultPath()).valueForKey(key);
    }

    EmptyHome home;
    std::unique_ptr<UserDefaults> defaults;
    SimulatedClock clock{Clock::CalendarTime(std::chrono::hours(24 * 20000))};
    QueueMainThread mainThread;
    RecordingSounds sounds;
    RecordingOutput output;
    QStringList boardCalls;
    QStringList systemPorts{QStringLiteral("ttyS0"), QStringLiteral("ttyS1")};
    RecordingBoard *board = nullptr;
    std::unique_ptr<BoardLink> link;
    std::unique_ptr<Setup> setup;
    std::unique_ptr<SerialDeviceNotifier> devices;
    std::unique_ptr<SettingsView> view;
    std::array<int, 2> deviceEvents{};
};

} // namespace qovelmor
