// SPDX-License-Identifier: MIT
#pragma once

#include "app/GuideWindow.h"
#include "messages/views/MessageSwitchesView.h"
#include "platform/views/PlaceKeeper.h"
#include "schedule/views/TimerView.h"
#include "settings/views/SerialDeviceNotifier.h"
#include "settings/views/SettingsView.h"
#include "tests/app/WindowedProgram.h"

#include <QClipboard>
#include <QFile>

namespace qovelmor {

/// All windows of the program, with two feeds, their headlines and two timers. What would leave the
/// program is recorded: links that are opened, sounds, requests.
struct AllWindows : WindowedProgram
{
    explicit AllWindows(bool withBoard = false) : WindowedProgram(withBoard)
    {
        ports = {QStringLiteral("ttyS0"), QStringLiteral("ttyS1")};
        addFeed(QStringLiteral("http://town/a"), {QStringLiteral("一"), QStringLiteral("二")});
        addFeed(QStringLiteral("http://town/b"), {QStringLiteral("三")});
        addTimers();
        defaults.setString(QStringLiteral("/opt/reader.desktop"),
                           QStringLiteral("DesignateBrowser"));
        QGuiApplication::clipboard()->clear();

        auto *settingsView = new SettingsView(setup, devices_);
        settingsView->addGroup(new MessageSwitchesView(msgList));
        mainWindow.addTab(settingsView, tab::setup, QStringLiteral("TabSetup"),
                          QStringLiteral("MenuShowTabSetup"));
        mainWindow.addWindow(&timerWindow, QStringLiteral("actOpenTimerWindow"),
                             QStringLiteral("MenuTimers"), Qt::CTRL | Qt::Key_T);
        new PlaceKeeper(timerWindow, defaults, QStringLiteral("TimerWindowGeometry"));
        mainWindow.setGuide(&guideWindow);
        mainWindow.resize(1000, 900);
    }

    /// The window or dialog of this name that is to be seen; null when there is none.
    static QWidget *shown(const QString &name)
    {
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (top->objectName() == name && top->isVisible())
                return top;
        }
        return nullptr;
    }
    /// A control of a window that is shown.
    static QWidget *controlIn(const QString &top, const QString &name)
    {
        const QWidget *owner = shown(top);
        return owner ? owner->findChild<QWidget *>(name) : nullptr;
    }

    /// What the file on the disk holds under a key of its root: one element, as it is written.
    QString stored(const QString &key) const
    {
        QFile file(defaults.path());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QString begin = QStringLiteral("\n\t<key>");
        const QString text = QString::fromUtf8(file.readAll());
        const qsizetype place = text.indexOf(begin + key + QStringLiteral("</key>"));
        return place < 0 ? QString() : text.mid(place, text.indexOf(begin, place + 1) - place);
    }

    /// A click with the mouse on a control of a window.
    void click(const QString &top, const QString &name)
    {
        QWidget *target = controlIn(top, name);
        QVERIFY2(target, qPrintable(top + u'/' + name));
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(10, target->height() / 2));
        settle();
    }
    void selectRow(const QString &top, const QString &table)
    {
        WindowedProgram::selectRow(qobject_cast<QTableView *>(controlIn(top, table)), 0);
    }

    QStringList seen; ///< what a test has noted on its way
    TimerView timerWindow{rssTimer};
    GuideWindow guideWindow;

private:
    void addTimers()
    {
        const auto entry = [](int time, int operation) {
            return PropertyDictionary{{QStringLiteral("TimerValidate"), true},
                                      {QStringLiteral("TimerFireDay"), 127},
                                      {QStringLiteral("TimerFireTime"), time},
                                      {QStringLiteral("TimerOperation"), operation},
                                      {QStringLiteral("TimerAddress"), QString()}};
        };
        defaults.setArray({entry(540, 1), entry(1080, 2)}, QStringLiteral("TimerList"));
    }

    SerialDeviceNotifier devices_{-1, [] { return false; }};
};

} // namespace qovelmor
