// SPDX-License-Identifier: MIT
#include "RunningProgram.h"
#include "TrayDesktop.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

/// The built program on a display, beside a desktop with a tray.
class TrayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void item_isThereAndSaysWhatItIs();
    void menu_offersWhatAHiddenWindowCannot();
    void icon_hidesAndShowsTheMainWindow();
    void entry_bringsTheHiddenWindowBack();
    void entry_opensTheLEDWindow();
    void entry_quits();
};

namespace {

constexpr int limit = 60'000; // ms
constexpr auto endLimit = 60s;

const auto mainWindowEntry = u"メイン画面を開く"_s; // rests while the window is to be seen
const auto ledWindowEntry = u"LED 画面を開く"_s;
const auto quitEntry = u"QoVelmorRSS を終了"_s;

struct Desktop
{
    Desktop()
    {
        program.setVariable(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        program.setVariable(u"DBUS_SESSION_BUS_ADDRESS"_s, tray.address());
    }
    bool start()
    {
        return tray.isReady() && program.start() &&
               QTest::qWaitFor([this] { return tray.items().size() == 1; }, limit) &&
               QTest::qWaitFor([this] { return !isHidden(); }, limit);
    }
    bool isHidden() const { return tray.entry(mainWindowEntry).isEnabled; }

    TrayDesktop tray;
    RunningProgram program;
};

} // namespace

void TrayTest::item_isThereAndSaysWhatItIs()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    QCOMPARE(desktop.tray.itemProperty(u"Status"_s).toString(), u"Active"_s);
    QCOMPARE(desktop.tray.itemProperty(u"Category"_s).toString(), u"ApplicationStatus"_s);
    QCOMPARE(desktop.tray.itemProperty(u"Title"_s).toString(), u"QoVelmorRSS"_s);
    // Its picture: by name from the desktop's theme, or as it is.
    const bool hasPicture = !desktop.tray.itemProperty(u"IconName"_s).toString().isEmpty() ||
                            !desktop.tray.itemPictures().isEmpty();
    QVERIFY(hasPicture);
}

void TrayTest::menu_offersWhatAHiddenWindowCannot()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    QStringList labels;
    for (const TrayEntry &entry : desktop.tray.menu())
        labels << entry.label.section(u'(', 0, 0);
    QCOMPARE(labels, (QStringList{mainWindowEntry, ledWindowEntry, u"表示開始"_s, u"表示停止"_s,
                                  quitEntry}));
}

void TrayTest::icon_hidesAndShowsTheMainWindow()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    desktop.tray.clickIcon();
    QTRY_VERIFY_WITH_TIMEOUT(desktop.isHidden(), limit);
    desktop.tray.clickIcon();
    QTRY_VERIFY_WITH_TIMEOUT(!desktop.isHidden(), limit);
}

void TrayTest::entry_bringsTheHiddenWindowBack()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    desktop.tray.clickIcon();
    QTRY_VERIFY_WITH_TIMEOUT(desktop.isHidden(), limit);
    desktop.tray.clickEntry(mainWindowEntry);
    QTRY_VERIFY_WITH_TIMEOUT(!desktop.isHidden(), limit);
}

void TrayTest::entry_opensTheLEDWindow()
{
    Desktop desktop;
    desktop.program.set(u"VirtualLED"_s, false);
    QVERIFY(desktop.start());
    QTRY_VERIFY_WITH_TIMEOUT(desktop.tray.entry(ledWindowEntry).isEnabled, limit);
    desktop.tray.clickEntry(ledWindowEntry);
    QTRY_VERIFY_WITH_TIMEOUT(!desktop.tray.entry(ledWindowEntry).isEnabled, limit);
}

void TrayTest::entry_quits()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    desktop.tray.clickEntry(quitEntry);
    QCOMPARE(desktop.program.waitForEnd(endLimit), 0);
}

QTEST_GUILESS_MAIN(TrayTest)
#include "tray_test.moc"
