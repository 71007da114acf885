// SPDX-License-Identifier: MIT
#include "OwnHome.h"
#include "app/CommandLine.h"
#include "app/Program.h"
#include "platform/UserDefaults.h"

#include <QAbstractButton>
#include <QApplication>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The program's settings tab and its timer window: reached by the keyboard, joined to the
/// program's own parts, stored when it ends.
class WindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingsAndTimers_areReachedAndStored();
};

namespace {

constexpr QSize timersSize(720, 380);

QWidget *window(const QString &name)
{
    for (QWidget *found : QApplication::topLevelWidgets()) {
        if (found->objectName() == name)
            return found;
    }
    return nullptr;
}

void changeASetting(QWidget &main)
{
    QTest::keyClick(&main, Qt::Key_Comma, Qt::ControlModifier);
    const auto *tabs = main.findChild<QTabWidget *>(u"mainTab"_s);
    QCOMPARE(tabs->currentWidget()->property("identifier").toString(), u"setup"_s);
    auto *speed = main.findChild<QSpinBox *>(u"scrollSpeed"_s);
    QVERIFY(speed->isVisible());
    QCOMPARE(speed->value(), 5); // what was stored has been read into the controls
    speed->setFocus();
    QTest::keyClick(speed, Qt::Key_Up);
}

void addATimer(QWidget &main)
{
    QTest::keyClick(&main, Qt::Key_T, Qt::ControlModifier);
    QWidget *timers = window(u"timerWindow"_s);
    QVERIFY(timers != nullptr);
    QVERIFY(timers->isVisible());
    timers->resize(timersSize);
    QTest::mouseClick(timers->findChild<QAbstractButton *>(u"createButton"_s), Qt::LeftButton);
    QTest::mouseClick(timers->findChild<QAbstractButton *>(u"actEditExecute"_s), Qt::LeftButton);
}

} // namespace

void WindowsTest::settingsAndTimers_areReachedAndStored()
{
    const OwnHome home;
    QVERIFY(home.writeProfile({{u"ScrollSpeed"_s, 5}}));
    Program program(CommandLine{});
    QTimer driver;
    bool done = false;
    connect(&driver, &QTimer::timeout, this, [&] {
        QWidget *main = window(u"mainWindow"_s);
        if (done || main == nullptr || !main->isVisible())
            return; // the start goes on
        done = true;
        QApplication::setActiveWindow(main);
        changeASetting(*main);
        addATimer(*main);
        QApplication::setActiveWindow(main);
        QTest::keyClick(main, Qt::Key_Q, Qt::ControlModifier);
    });
    driver.start(50);
    QCOMPARE(program.run(), 0);

    const UserDefaults store(UserDefaults::defaultPath());
    QCOMPARE(store.integerForKey(u"ScrollSpeed"_s), 6);
    QWidget again;
    QVERIFY(again.restoreGeometry(store.dataForKey(u"TimerWindowGeometry"_s)));
    QCOMPARE(again.size(), timersSize);
    QCOMPARE(store.arrayForKey(u"TimerList"_s).value_or(PropertyArray()).size(), std::size_t{1});
}

QTEST_MAIN(WindowsTest)
#include "windows_test.moc"
