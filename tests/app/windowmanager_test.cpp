// SPDX-License-Identifier: MIT
#include "WindowedProgram.h"

#include <QMessageBox>
#include <QScreen>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// What only a window manager brings about: frames, places, keyboard focus, minimized windows.
class WindowManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstStart_showsTheSignBesideTheMainWindow();
    void theMainWindowKeepsTheKeys();
    void alertOfTheSign_givesTheKeysBack();
    void minimizedWindow_comesBack();
    void minimizedWindow_isNotToBeSeen();
    void placeIsKept();
};

void WindowManagerTest::firstStart_showsTheSignBesideTheMainWindow()
{
    WindowedProgram p; // without a board the sign's window opens by itself
    p.launch();
    QVERIFY(QTest::qWaitForWindowExposed(&p.mainWindow));
    QVERIFY(QTest::qWaitForWindowExposed(&p.ledWindow));
    const auto hasFrame = [](const QWidget &window) {
        return window.frameGeometry().height() > window.geometry().height();
    };
    QTRY_VERIFY(hasFrame(p.mainWindow) && hasFrame(p.ledWindow));
    QTRY_VERIFY(!p.mainWindow.frameGeometry().intersects(p.ledWindow.frameGeometry()));
    const QRect screen = p.mainWindow.screen()->availableGeometry();
    QVERIFY(screen.contains(p.mainWindow.frameGeometry()));
    QVERIFY(screen.contains(p.ledWindow.frameGeometry()));
}

void WindowManagerTest::theMainWindowKeepsTheKeys()
{
    WindowedProgram p;
    p.launch();
    QVERIFY(QTest::qWaitForWindowActive(&p.mainWindow));
    p.click(u"drawerButton"_s);
    p.click(u"drawerButton"_s);
    QVERIFY(QTest::qWaitForWindowExposed(&p.ledWindow));
    QTRY_VERIFY(p.mainWindow.isActiveWindow());
}

void WindowManagerTest::alertOfTheSign_givesTheKeysBack()
{
    WindowedProgram p;
    p.launch();
    QVERIFY(QTest::qWaitForWindowExposed(&p.ledWindow));
    p.ledWindow.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&p.ledWindow));
    p.control.siteAccessErrorAlert();
    auto *alert = p.find<QMessageBox>(u"alert"_s);
    QVERIFY(QTest::qWaitForWindowActive(alert));
    p.click(u"alertButton"_s);
    QTRY_VERIFY(p.ledWindow.isActiveWindow());
}

void WindowManagerTest::minimizedWindow_comesBack()
{
    WindowedProgram p;
    p.launch();
    QVERIFY(QTest::qWaitForWindowActive(&p.mainWindow));
    p.mainWindow.showMinimized();
    QTRY_VERIFY(!p.mainWindow.isActiveWindow());
    p.control.secondLaunch();
    QVERIFY(QTest::qWaitForWindowActive(&p.mainWindow));
    QVERIFY(!p.mainWindow.isMinimized());
}

// A click on the tray's icon would hide what nobody sees, and the menu item would rest.
void WindowManagerTest::minimizedWindow_isNotToBeSeen()
{
    WindowedProgram p;
    p.launch();
    QVERIFY(QTest::qWaitForWindowActive(&p.mainWindow));
    const QAction *item = p.item(u"actOpenMainWindow"_s);
    QVERIFY(!item->isEnabled());
    p.mainWindow.showMinimized();
    QTRY_VERIFY(item->isEnabled());
    QVERIFY(!p.mainWindow.isMainWindowVisible());
    p.control.applicationShouldHandleReopen();
    QVERIFY(QTest::qWaitForWindowActive(&p.mainWindow));
    QVERIFY(!p.mainWindow.isMinimized());
    QTRY_VERIFY(!item->isEnabled());
}

void WindowManagerTest::placeIsKept()
{
    WindowedProgram p;
    p.launch();
    QVERIFY(QTest::qWaitForWindowActive(&p.mainWindow));
    p.mainWindow.resize(700, 500);
    QTRY_COMPARE(p.mainWindow.size(), QSize(700, 500));
    p.control.actQuit();
    const UserDefaults store(p.defaults.path());
    QWidget again;
    QVERIFY(again.restoreGeometry(store.dataForKey(u"MainWindowGeometry"_s)));
    QCOMPARE(again.size(), QSize(700, 500));
}

QTEST_MAIN(WindowManagerTest)
#include "windowmanager_test.moc"
