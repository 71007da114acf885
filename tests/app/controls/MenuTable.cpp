// SPDX-License-Identifier: MIT
#include "MenuTable.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto mainWindow = u"mainWindow"_s;

void showMessages(AllWindows &p)
{
    p.mainWindow.selectTab(tab::message);
}

void openTimers(AllWindows &p)
{
    p.press(Qt::Key_T, Qt::ControlModifier);
}

Effect selectsTab(const QString &name)
{
    return becomes(u"the tab"_s, name, [](AllWindows &p) { return p.mainWindow.selectedTab(); });
}

} // namespace

std::vector<MenuItem> barItems()
{
    const auto feed = selected(mainWindow, u"rssListView"_s);
    const auto message = inTurn({showMessages, selected(mainWindow, u"msgListView"_s)});
    const auto shutLEDWindow = clicked(mainWindow, u"drawerButton"_s);
    const auto ends = becomes(u"the program"_s, u"has ended"_s, [](AllWindows &p) {
        return p.clock.sleepsEnded() && !p.mainWindow.isVisible() ? u"has ended"_s : u"runs"_s;
    });
    const auto rowHeight = stores(u"RSSRowHeight"_s);
    const Deed enlarge = [](AllWindows &p) { p.press(Qt::Key_Plus, Qt::ControlModifier); };
    const Deed useOutlines = [](AllWindows &p) { p.setup.setUseBitmapFont(false); };
    return {
        {u"fileMenu"_s, u"actGetRSS"_s, Qt::Key_F5, requests(u"http://town/a"_s)},
        {u"fileMenu"_s, u"actLoadURL"_s, {}, opens(u"loadURLPanel"_s)},
        {u"fileMenu"_s, u"actSaveURL"_s, {}, opens(u"saveURLPanel"_s)},
        {u"fileMenu"_s, u"actQuit"_s, Qt::CTRL | Qt::Key_Q, ends},
        {u"editMenu"_s, u"actCopyRow"_s, QKeySequence::Copy, copies(), feed},
        {u"editMenu"_s, u"actPreferences"_s, Qt::CTRL | Qt::Key_Comma, selectsTab(tab::setup)},
        {u"viewMenu"_s, u"actShowTab_list"_s, Qt::CTRL | Qt::Key_1, selectsTab(tab::list),
         showMessages},
        {u"viewMenu"_s, u"actShowTab_message"_s, Qt::CTRL | Qt::Key_2, selectsTab(tab::message)},
        {u"viewMenu"_s, u"actShowTab_setup"_s, Qt::CTRL | Qt::Key_3, selectsTab(tab::setup)},
        {u"viewMenu"_s, u"actSizeBigger"_s, QKeySequence::ZoomIn, rowHeight},
        {u"viewMenu"_s, u"actSizeSmaller"_s, QKeySequence::ZoomOut, rowHeight},
        {u"viewMenu"_s, u"actSizeOriginal"_s, Qt::CTRL | Qt::Key_0, rowHeight, enlarge},
        {u"viewMenu"_s, u"actDescriptionDrawer"_s, Qt::CTRL | Qt::Key_I,
         stores(u"DescButtonState"_s), showMessages},
        {u"displayMenu"_s, u"actStartDisp"_s, Qt::CTRL | Qt::Key_D, displays(true)},
        {u"displayMenu"_s, u"actStopDisp"_s, Qt::CTRL | Qt::Key_Period, displays(false),
         startDisplay},
        {u"displayMenu"_s, u"actOpenSelectedMessage"_s, Qt::CTRL | Qt::Key_Return, browses(),
         message},
        {u"displayMenu"_s, u"actDisplayFromSelection"_s, Qt::ALT | Qt::Key_Return, displays(true),
         message},
        {u"fontMenu"_s, u"actFontItem"_s, {}, stores(u"LEDViewFontName"_s), {}, 1},
        {u"boarderMenu"_s,
         u"actBoarderItem"_s,
         {},
         stores(u"FontBoarderValue"_s),
         useOutlines,
         30,
         true},
        {u"windowMenu"_s, u"actOpenLEDWindow"_s, Qt::CTRL | Qt::Key_L, opens(u"ledWindow"_s),
         shutLEDWindow},
        {u"windowMenu"_s, u"actOpenTimerWindow"_s, Qt::CTRL | Qt::Key_T, opens(u"timerWindow"_s)},
        {u"helpMenu"_s, u"actGuide"_s, Qt::Key_F1, opens(u"guideWindow"_s)},
        {u"helpMenu"_s, u"actAbout"_s, {}, opens(u"aboutDialog"_s)},
    };
}

std::vector<MenuItem> trayItems()
{
    const Deed hide = [](AllWindows &p) { p.mainWindow.hideMainWindow(); };
    std::vector<MenuItem> items = {{u"trayMenu"_s, restingItem, {}, opens(mainWindow), hide}};
    for (MenuItem item : barItems()) {
        if (item.name == u"actOpenLEDWindow"_s || item.name == u"actStartDisp"_s ||
            item.name == u"actStopDisp"_s || item.name == u"actQuit"_s) {
            item.menu = u"trayMenu"_s;
            item.keys = {};
            items.push_back(item);
        }
    }
    return items;
}

std::vector<MenuItem> rowItems()
{
    const auto list = u"rssListView"_s;
    const auto feeds = stores(u"RSSSiteAddresses"_s);
    const auto feed = selected(mainWindow, list);
    const Deed second = [](AllWindows &p) {
        auto *table = p.find<QTableView>(u"rssListView"_s);
        p.WindowedProgram::selectRow(table, 1);
    };
    const auto timers = stores(u"TimerList"_s);
    const auto timer = inTurn({openTimers, selected(u"timerWindow"_s, u"timerView"_s)});
    const auto secondTimer = inTurn({timer, [](AllWindows &p) {
                                         auto *table = p.find<QTableView>(u"timerView"_s);
                                         p.WindowedProgram::selectRow(table, 1);
                                     }});
    return {
        {list, u"rowOpen"_s, {}, browses(u"http://town/a"_s), feed},
        {list, u"rowEdit"_s, {}, opens(u"addressPanel"_s), feed},
        {list, u"rowDelete"_s, {}, opens(u"deleteRSSURLAlert"_s), feed},
        {list, u"rowCopy"_s, {}, copies(), feed},
        {list, u"rowMoveUp"_s, Qt::CTRL | Qt::Key_Up, feeds, second},
        {list, u"rowMoveDown"_s, Qt::CTRL | Qt::Key_Down, feeds, feed},
        {list, u"invertAll"_s, {}, feeds},
        {u"timerView"_s, u"rowEdit"_s, {}, opens(u"timerPanel"_s), timer},
        {u"timerView"_s, u"rowDelete"_s, {}, opens(u"deleteTimerAlert"_s), timer},
        {u"timerView"_s, u"rowMoveUp"_s, Qt::CTRL | Qt::Key_Up, timers, secondTimer},
        {u"timerView"_s, u"rowMoveDown"_s, Qt::CTRL | Qt::Key_Down, timers, timer},
        {u"scrollView"_s, u"actOpenMessageOnDisplay"_s, Qt::Key_Return, browses(), startDisplay},
        {u"scrollView"_s, u"actCloseLEDWindow"_s, Qt::CTRL | Qt::Key_W,
         closesAndStores(u"ledWindow"_s, u"LEDButtonState"_s)},
    };
}

} // namespace qovelmor
