// SPDX-License-Identifier: MIT
#include "ControlsWalk.h"

#include <QScrollBar>
#include <QTextBrowser>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto mainWindow = u"mainWindow"_s;
const auto timerWindow = u"timerWindow"_s;

void openTimers(AllWindows &p)
{
    p.press(Qt::Key_T, Qt::ControlModifier);
}

// The window of the on-screen board is open from the start where no board answers.
Stage ledWindow()
{
    const auto description = inTurn({clicked(mainWindow, u"descriptionButton"_s), startDisplay});
    return {u"LED window"_s,
            u"ledWindow"_s,
            [](AllWindows &p) { p.press(Qt::Key_2, Qt::ControlModifier); },
            {
                {u"scrollView"_s, doubleClick(), browses(), startDisplay},
                {u"scrollView"_s, keys({Qt::Key_Return}), browses(), startDisplay},
                {u"scrollView"_s, keys({Qt::CTRL | Qt::Key_W, Qt::CTRL | Qt::Key_L}),
                 closesAndStores(u"ledWindow"_s, u"LEDButtonState"_s)},
                {u"scrollView"_s, keys({Qt::Key_F1}), opens(u"guideWindow"_s)},
                {u"ledDrawer"_s, copyText(), copies(), description},
            }};
}

Stage timers()
{
    const auto row = selected(timerWindow, u"timerView"_s);
    const auto store = stores(u"TimerList"_s);
    return {u"timers"_s,
            timerWindow,
            openTimers,
            {
                {u"timerView"_s, openRow(), opens(u"timerPanel"_s), row},
                {u"timerView"_s, keys({Qt::Key_Space, Qt::CTRL | Qt::Key_Down}), store, row},
                {u"timerView"_s, keys({Qt::Key_Delete}), opens(u"deleteTimerAlert"_s), row},
                {u"timerView"_s, keys({Qt::CTRL | Qt::Key_W}), closes(timerWindow)},
                {u"timerView"_s, keys({Qt::Key_F1}), opens(u"guideWindow"_s)},
                {u"createButton"_s, press(), opens(u"timerPanel"_s)},
                {u"editButton"_s, press(), opens(u"timerPanel"_s), row},
                {u"deleteButton"_s, press(), opens(u"deleteTimerAlert"_s), row},
                {u"useTimerCheck"_s, press(), stores(u"UseRSSTimer"_s)},
            }};
}

/// What is entered counts when the dialog is confirmed.
Control entry(const QString &name, std::vector<Gesture> gestures)
{
    return {name, std::move(gestures), closesAndStores(u"timerPanel"_s, u"TimerList"_s)};
}

Control tick(const QString &name)
{
    return entry(name, keyThenClick(Qt::Key_Space, u"actEditExecute"_s));
}

Stage timerDialog()
{
    const auto panel = u"timerPanel"_s;
    const auto edit = clicked(timerWindow, u"editButton"_s);
    const auto confirm = clicked(panel, u"actEditExecute"_s);
    Control start = tick(u"actionRadioStart"_s); // when the timer has been one that stops
    start.before = inTurn({clicked(panel, u"actionRadioStop"_s), confirm, edit});
    const auto change = clicked(panel, u"mondayCheck"_s);
    return {u"timer dialog"_s,
            panel,
            inTurn({openTimers, selected(timerWindow, u"timerView"_s), edit}),
            {
                tick(u"validateCheck"_s),
                tick(u"sundayCheck"_s),
                tick(u"mondayCheck"_s),
                tick(u"tuesdayCheck"_s),
                tick(u"wednesdayCheck"_s),
                tick(u"thursdayCheck"_s),
                tick(u"fridayCheck"_s),
                tick(u"saturdayCheck"_s),
                entry(u"fireHourText"_s, typeThenClick(u"7"_s, u"actEditExecute"_s)),
                entry(u"fireMinuteText"_s, typeThenClick(u"7"_s, u"actEditExecute"_s)),
                start,
                tick(u"actionRadioStop"_s),
                tick(u"actionRadioNothing"_s),
                entry(u"urlText"_s, typeThenClick(u"http://town/c"_s, u"actEditExecute"_s)),
                {u"actEditExecute"_s, press(), closesAndStores(panel, u"TimerList"_s), change},
                {u"actEditCancel"_s, press(), closes(panel, u"TimerList"_s), change},
            }};
}

Stage addressDialog()
{
    const auto panel = u"addressPanel"_s;
    const auto key = u"RSSSiteAddresses"_s;
    const Deed typed = [panel](AllWindows &) {
        QTest::keyClicks(AllWindows::controlIn(panel, u"addressText"_s), u"http://town/c"_s);
    };
    return {u"address dialog"_s,
            panel,
            inTurn({selected(mainWindow, u"rssListView"_s), clicked(mainWindow, u"editButton"_s)}),
            {
                {u"addressText"_s, type(u"http://town/c"_s), closesAndStores(panel, key)},
                {u"actAddressExec"_s, press(), closesAndStores(panel, key), typed},
                {u"actAddressCancel"_s, press(), closes(panel, key), typed},
            }};
}

Stage guide()
{
    const auto panel = u"guideWindow"_s;
    const auto scrolled = changes(u"the text's place"_s, [](AllWindows &p) {
        const auto *text = p.guideWindow.findChild<QTextBrowser *>(u"guideText"_s);
        return QString::number(text->verticalScrollBar()->value());
    });
    const auto found = becomes(u"the word found"_s, u"dialout"_s, [](AllWindows &p) {
        return p.guideWindow.findChild<QTextBrowser *>(u"guideText"_s)->textCursor().selectedText();
    });
    return {u"guide"_s,
            panel,
            [](AllWindows &p) { p.press(Qt::Key_F1); },
            {
                {u"guideSearch"_s, type(u"dialout"_s), found},
                {u"guideChapters"_s, keys({Qt::Key_Down, Qt::Key_End}), scrolled},
                {u"guideChapters"_s, keys({Qt::CTRL | Qt::Key_W, Qt::Key_Escape}), closes(panel)},
                {u"guideText"_s, copyText(), copies()},
                {u"guideText"_s, keys({Qt::Key_PageDown}), scrolled},
            }};
}

/// A question with two answers, the first of which acts on the key.
Stage question(const QString &alert, const QString &key, const Deed &open)
{
    return {
        alert,
        alert,
        open,
        {
            {alert + u"Accept"_s, press() + keys({Qt::Key_Return}), closesAndStores(alert, key)},
            {alert + u"Cancel"_s, press() + keys({Qt::Key_Escape}), closes(alert, key)},
        }};
}

/// An alert that only wants to be read.
Stage remark(const QString &name, const QString &alert, const QString &button, const Deed &open)
{
    return {name,
            alert,
            open,
            {{button, press() + keys({Qt::Key_Return, Qt::Key_Escape}), closes(alert)}}};
}

std::vector<Stage> alerts()
{
    const Deed refuseLinks = [](AllWindows &p) { p.opener.takes = false; };
    return {
        question(u"deleteRSSURLAlert"_s, u"RSSSiteAddresses"_s,
                 inTurn({selected(mainWindow, u"rssListView"_s),
                         clicked(mainWindow, u"deleteButton"_s)})),
        question(u"deleteTimerAlert"_s, u"TimerList"_s,
                 inTurn({openTimers, selected(timerWindow, u"timerView"_s),
                         clicked(timerWindow, u"deleteButton"_s)})),
        remark(u"no browser"_s, u"alert"_s, u"alertButton"_s,
               inTurn({refuseLinks, selected(mainWindow, u"rssListView"_s),
                       clicked(mainWindow, u"accessButton"_s)})),
        remark(u"communication test"_s, u"alert"_s, u"alertButton"_s,
               inTurn({[](AllWindows &p) { p.press(Qt::Key_Comma, Qt::ControlModifier); },
                       clicked(mainWindow, u"actComPortTest"_s)})),
        remark(u"about"_s, u"aboutDialog"_s, u"aboutDialogButton"_s,
               [](AllWindows &p) { p.item(u"actAbout"_s)->trigger(); }),
    };
}

std::vector<Stage> allStages()
{
    std::vector<Stage> stages = {ledWindow(), timers(), timerDialog(), addressDialog(), guide()};
    for (Stage &alert : alerts())
        stages.push_back(std::move(alert));
    return stages;
}

} // namespace

/// The windows beside the main window, and the dialogs and alerts of all.
class WindowControlsTest : public ControlsWalk
{
    Q_OBJECT

public:
    WindowControlsTest() : ControlsWalk(allStages()) {}
};

QTEST_MAIN(WindowControlsTest)
#include "windowcontrols_test.moc"
