// SPDX-License-Identifier: MIT
#include "ControlsWalk.h"
#include "SettingsTable.h"

#include <QLabel>
#include <QTabBar>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto window = u"mainWindow"_s;

std::vector<Control> commandRow()
{
    return {
        {u"startDispButton"_s, press(), displays(true)},
        {u"stopDispButton"_s, press(), displays(false), startDisplay},
        {u"getRSSButton"_s, press(), requests(u"http://town/a"_s)},
        {u"drawerButton"_s, press(), closesAndStores(u"ledWindow"_s, u"LEDButtonState"_s)},
    };
}

std::vector<Gesture> clickSecondTab()
{
    return {{u"click"_s, [](AllWindows &, QWidget &tabs) {
                 auto *bar = tabs.findChild<QTabBar *>();
                 QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
             }}};
}

/// What the status line says while the feeds are read.
void noteStatusOfRead(AllWindows &p)
{
    p.loader.onLoad = [&p] {
        p.mainThread.drain();
        p.seen << p.find<QLabel>(u"statusText"_s)->text();
    };
}

Stage feedTab()
{
    const auto row = selected(window, u"rssListView"_s);
    const auto store = stores(u"RSSSiteAddresses"_s);
    const auto tab = becomes(u"tabView:didSelectTabViewItem:"_s, u"message"_s,
                             [](AllWindows &p) { return p.mainWindow.selectedTab(); });
    return {u"list"_s, window, [](AllWindows &) {},
            commandRow() +
                std::vector<Control>{
                    {u"mainTab"_s, clickSecondTab(), tab},
                    {u"mainTab"_s, keys({Qt::Key_Right}), tab},
                    {u"rssListView"_s, openRow(), browses(u"http://town/a"_s), row},
                    {u"rssListView"_s, keys({Qt::Key_Space}), store, row},
                    {u"rssListView"_s, keys({Qt::CTRL | Qt::Key_Down}), store, row},
                    {u"rssListView"_s, clickHeader(), store},
                    {u"rssListView"_s, keys({Qt::Key_Delete}), opens(u"deleteRSSURLAlert"_s), row},
                    {u"rssListView"_s, keys({Qt::CTRL | Qt::Key_C}), copies(), row},
                    {u"createButton"_s, press(), opens(u"addressPanel"_s)},
                    {u"editButton"_s, press(), opens(u"addressPanel"_s), row},
                    {u"deleteButton"_s, press(), opens(u"deleteRSSURLAlert"_s), row},
                    {u"accessButton"_s, press(), browses(u"http://town/a"_s), row},
                    {u"statusText"_s,
                     {{u"read"_s, [](AllWindows &p, QWidget &) { p.press(Qt::Key_F5); }}},
                     becomes(u"shows what is read"_s, u"http://town/a http://town/b"_s,
                             [](AllWindows &p) { return p.seen.join(u' '); }),
                     noteStatusOfRead},
                }};
}

Stage messageTab()
{
    const auto row = selected(window, u"msgListView"_s);
    // With the window of the on-screen board open, the panel would open there.
    const auto panel = inTurn({clicked(window, u"drawerButton"_s),
                               clicked(window, u"descriptionButton"_s), startDisplay});
    return {u"message"_s, window, [](AllWindows &p) { p.press(Qt::Key_2, Qt::ControlModifier); },
            alsoThere(
                {u"startDispButton"_s, u"stopDispButton"_s, u"getRSSButton"_s, u"drawerButton"_s}) +
                std::vector<Control>{
                    {u"descriptionButton"_s, press(), stores(u"DescButtonState"_s)},
                    {u"mainTab"_s, {}, {}},
                    {u"msgListView"_s, openRow(), browses(), row},
                    {u"msgListView"_s, keys({Qt::ALT | Qt::Key_Return}), displays(true), row},
                    {u"msgListView"_s, keys({Qt::CTRL | Qt::Key_C}), copies(), row},
                    {u"descriptionDrawer"_s, copyText(), copies(), panel},
                    {u"messageNumberText"_s, doubleClick(), browses(), startDisplay},
                }};
}

} // namespace

/// The main window's own controls, those of its two tables and the settings.
class MainWindowControlsTest : public ControlsWalk
{
    Q_OBJECT

public:
    MainWindowControlsTest() : ControlsWalk({feedTab(), messageTab(), settingsTab()}) {}
};

QTEST_MAIN(MainWindowControlsTest)
#include "mainwindowcontrols_test.moc"
