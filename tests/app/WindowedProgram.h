// SPDX-License-Identifier: MIT
#pragma once

#include "WholeProgram.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "feeds/views/FeedListView.h"
#include "messages/OnScreenBoard.h"
#include "messages/views/LEDWindow.h"
#include "messages/views/MessageListView.h"

#include <QAction>
#include <QApplication>
#include <QTableView>
#include <QTest>

namespace qovelmor {

/// The whole program in simulated time with its real windows, which are found by their names.
struct WindowedProgram : WholeProgram
{
    explicit WindowedProgram(bool withBoard = false)
        : WholeProgram(withBoard)
        , ledWindow(board_, defaults)
        , mainWindow({control, msgList, setup, defaults}, new FeedListView(rssList),
                     new MessageListView(msgList), ledWindow)
    {
        control.setWindow(mainWindow);
    }
    ~WindowedProgram()
    {
        clock.endSleeps();
        control.stopDispRSS();
        mainThread.drain();
        control.setWindow(window); // for what ends after the windows
    }

    /// Launches, reads what was added with addFeed() and shows the tab.
    void launchOnTab(const QString &identifier, bool withMessages = true)
    {
        launch();
        if (withMessages)
            control.startReadRSS();
        mainWindow.selectTab(identifier);
        settle();
        mainWindow.activateWindow();
        [[maybe_unused]] const bool isActive = QTest::qWaitForWindowActive(&mainWindow);
    }

    void settle()
    {
        mainThread.drain();
        QCoreApplication::processEvents();
    }

    template <typename T = QWidget>
    T *find(const QString &name)
    {
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (T *widget = dynamic_cast<T *>(top); widget && top->objectName() == name)
                return widget;
            if (T *widget = top->findChild<T *>(name))
                return widget;
        }
        qFatal("no widget is named %s", qPrintable(name));
        return nullptr;
    }
    QAction *item(const QString &name) { return mainWindow.findChild<QAction *>(name); }

    void click(const QString &name)
    {
        QTest::mouseClick(find(name), Qt::LeftButton);
        settle();
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&mainWindow, Qt::Key(key), modifiers);
        settle();
    }
    void selectRow(QTableView *table, int row)
    {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell(table, row));
        settle();
    }
    static QPoint cell(QTableView *table, int row)
    {
        return table->visualRect(table->model()->index(row, 1)).center();
    }

private:
    OnScreenBoard board_{setup, clock, mainThread};

public:
    LEDWindow ledWindow;
    MainWindow mainWindow;
};

} // namespace qovelmor
