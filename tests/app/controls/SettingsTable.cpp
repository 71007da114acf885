// SPDX-License-Identifier: MIT
#include "SettingsTable.h"

#include "tests/support/DesktopWithEditor.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto window = u"mainWindow"_s;

Control check(const QString &name, const QString &key)
{
    return {name, press(), stores(key)};
}

/// A number that the arrow keys change.
Control number(const QString &name, const QString &key)
{
    return {name, keys({Qt::Key_Down}), stores(key)};
}

Control text(const QString &name, const QString &key)
{
    return {name, type(u"7"_s), stores(key)};
}

/// A choice of a group, when another one is on.
Control choice(const QString &name, const QString &key, const QString &other)
{
    return {name, press(), stores(key), clicked(window, other)};
}

/// What is chosen is stored, and heard once.
Control sound(const QString &name, const QString &key, Qt::Key step, const QString &sound,
              const QString &check)
{
    return {name, keys({step}),
            becomes(key + u" and the sound"_s, sound + u" stored, played "_s + sound,
                    [key](AllWindows &p) {
                        const QString played = p.sounds.played.join(u' ');
                        if (p.stored(key).isEmpty())
                            return u"nothing"_s;
                        return p.defaults.stringForKey(key) + u" stored, played "_s + played;
                    }),
            clicked(window, check)};
}

std::vector<Control> board()
{
    return {
        number(u"portNumber"_s, u"ComPortNumber"_s),
        {u"actComPortTest"_s, press(), opens(u"alert"_s)},
        number(u"scrollSpeed"_s, u"ScrollSpeed"_s),
        number(u"moduleCount"_s, u"LEDModuleCount"_s),
        number(u"brightness"_s, u"LEDBrightness"_s),
        check(u"reverse180"_s, u"Reverse180"_s),
        check(u"rotation"_s, u"RotationLeft90"_s),
        check(u"useBitmapFont"_s, u"UseBitmapFont"_s),
    };
}

std::vector<Control> display()
{
    return {
        check(u"dispAuto"_s, u"DisplayAuto"_s),
        check(u"isScroll"_s, u"ScrollToMessage"_s),
        check(u"dispProgress"_s, u"DispProgress"_s),
        check(u"virtualLED"_s, u"VirtualLED"_s),
        check(u"useNarrowFont"_s, u"UseNarrowFont"_s),
        {u"lightLEDColor"_s, press(), opens(u"lightLEDColorPanel"_s)},
    };
}

std::vector<Control> messages()
{
    const auto order = u"DispMessageOrder"_s;
    return {
        check(u"actDispLineCheck"_s, u"DispLineNumber"_s),
        check(u"actDispNameCheck"_s, u"DispSiteName"_s),
        check(u"actDispDateCheck"_s, u"DispTitleDate"_s),
        check(u"actDispDescCheck"_s, u"DispDescription"_s),
        choice(u"dispOrderOldest"_s, order, u"dispOrderRandom"_s),
        choice(u"dispOrderNewest"_s, order, u"dispOrderRandom"_s),
        choice(u"dispOrderRandom"_s, order, u"dispOrderNewest"_s),
        check(u"actDispEachRSSCheck"_s, u"DispEachRSS"_s),
        check(u"actUseMaxMsgCheck"_s, u"UseMaxMessages"_s),
        text(u"actMaxMessagesText"_s, u"MaxSiteMessages"_s),
        check(u"actDispInfoCheck"_s, u"DispInfoMessages"_s),
        check(u"actShowCalendarCheck"_s, u"ShowCalendarDate"_s),
    };
}

std::vector<Control> filters()
{
    std::vector<Control> rows = {
        check(u"dontShowOlder"_s, u"DontShowOlder"_s),
        number(u"olderHours"_s, u"OlderHours"_s),
        check(u"skipCMMode"_s, u"SkipCommercialMode"_s),
    };
    for (int word = 1; word <= 8; ++word)
        rows.push_back(text(u"skipCMWord%1"_s.arg(word), u"SkipCommercialWord%1"_s.arg(word)));
    return rows;
}

/// The application that the desktop has for the log file.
DesktopWithEditor &editor()
{
    static DesktopWithEditor desktop;
    return desktop;
}

std::vector<Control> log()
{
    editor(); // before anything asks what is installed
    return {
        check(u"logRSSRead"_s, u"LogRSSRead"_s),
        check(u"logRSSDisp"_s, u"LogRSSDisp"_s),
        check(u"logTimer"_s, u"LogTimer"_s),
        check(u"logSystem"_s, u"LogSystem"_s),
        {u"logFilePath"_s, copyText(),
         becomes(u"shows the path"_s, u"the path"_s,
                 [](AllWindows &p) {
                     const QString copied = QGuiApplication::clipboard()->text();
                     return copied == p.setup.logFilePath() ? u"the path"_s : copied;
                 })},
        {u"actLogFilePath"_s, press(), opens(u"logFilePanel"_s)},
        {u"actDispLog"_s, press(),
         becomes(u"the log file's application"_s, u"Logbook.txt"_s,
                 [](AllWindows &) { return editor().opened().section(u'/', -1); }),
         [startLog = clicked(window, u"logRSSRead"_s)](AllWindows &p) {
             editor().forget();
             startLog(p);
         }},
    };
}

std::vector<Control> soundsAndBrowser()
{
    return {
        check(u"playFinishSound"_s, u"PlayFinishSound"_s),
        sound(u"finishSoundName"_s, u"FinishSoundName"_s, Qt::Key_Down, u"Blow"_s,
              u"playFinishSound"_s),
        check(u"playArrivalSound"_s, u"PlayArrivalSound"_s),
        sound(u"arrivalSoundName"_s, u"ArrivalSoundName"_s, Qt::Key_Up, u"Basso"_s,
              u"playArrivalSound"_s),
        number(u"playSoundVolume"_s, u"PlaySoundVolume"_s),
        {u"desigBrowser"_s, copyText(), copies(u"/opt/reader.desktop"_s)},
        {u"actSelectBrowser"_s, press(), opens(u"browserPanel"_s)},
        {u"actDefaultBrowser"_s, press(), stores(u"DesignateBrowser"_s)},
    };
}

} // namespace

Stage settingsTab()
{
    return {u"setup"_s, window, [](AllWindows &p) { p.press(Qt::Key_Comma, Qt::ControlModifier); },
            alsoThere({u"startDispButton"_s, u"stopDispButton"_s, u"getRSSButton"_s,
                       u"drawerButton"_s, u"descriptionButton"_s, u"mainTab"_s}) +
                board() + display() + messages() + filters() + log() + soundsAndBrowser()};
}

} // namespace qovelmor
