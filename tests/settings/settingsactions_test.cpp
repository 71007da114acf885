// SPDX-License-Identifier: MIT
#include "SetupParts.h"
#include "platform/Localization.h"
#include "settings/SettingsActions.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class SettingsActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void action_setsItsSetting_data();
    void action_setsItsSetting();
    void comPortTest_data();
    void comPortTest();
    void bitmapFont_renewsTheControls();
    void soundSwitch_enablesItsMenu();
    void soundChoice_playsItOnce();
    void logFile_isProposedAndKeptForThisRun();
    void dispLog_opensTheFile();
    void browser_isChosenAndForgotten();
    void preferences_showsTheTab();
};

namespace {

using Action = std::function<void(SettingsActions &)>;

void addAction(const char *key, const PropertyValue &expected, const Action &action)
{
    QTest::newRow(key) << QString::fromLatin1(key) << std::make_shared<PropertyValue>(expected)
                       << action;
}

} // namespace

void SettingsActionsTest::action_setsItsSetting_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<std::shared_ptr<PropertyValue>>("expected");
    QTest::addColumn<Action>("action");

    using A = SettingsActions;
    addAction("ComPortNumber", 7, [](A &a) { a.actPortNumber(7); });
    addAction("ScrollSpeed", 5, [](A &a) { a.actScrollSpeed(5); });
    addAction("LEDModuleCount", 6, [](A &a) { a.actModuleCount(6); });
    addAction("LEDBrightness", 2, [](A &a) { a.actBrightness(2); });
    addAction("Reverse180", true, [](A &a) { a.actReverse180(true); });
    addAction("RotationLeft90", true, [](A &a) { a.actRotaionCheck(true); });
    addAction("UseBitmapFont", false, [](A &a) { a.actUseBitmapFontCheck(false); });
    addAction("UseNarrowFont", true, [](A &a) { a.actUseNarrowCheck(true); });
    addAction("DisplayAuto", true, [](A &a) { a.actDispAuto(true); });
    addAction("ScrollToMessage", false, [](A &a) { a.actScrollCheck(false); });
    addAction("DispProgress", false, [](A &a) { a.actDispProgressCheck(false); });
    addAction("VirtualLED", false, [](A &a) { a.actVirtualLEDCheck(false); });
    addAction("DontShowOlder", true, [](A &a) { a.actDontShowOlder(true); });
    addAction("OlderHours", 24, [](A &a) { a.actOlderHours(24); });
    addAction("SkipCommercialMode", true, [](A &a) { a.actSkipCMMode(true); });
    addAction("SkipCommercialWord1", u"1"_s, [](A &a) { a.actSkipCMWord1(u"1"_s); });
    addAction("SkipCommercialWord2", u"2"_s, [](A &a) { a.actSkipCMWord2(u"2"_s); });
    addAction("SkipCommercialWord3", u"3"_s, [](A &a) { a.actSkipCMWord3(u"3"_s); });
    addAction("SkipCommercialWord4", u"4"_s, [](A &a) { a.actSkipCMWord4(u"4"_s); });
    addAction("SkipCommercialWord5", u"5"_s, [](A &a) { a.actSkipCMWord5(u"5"_s); });
    addAction("SkipCommercialWord6", u"6"_s, [](A &a) { a.actSkipCMWord6(u"6"_s); });
    addAction("SkipCommercialWord7", u"7"_s, [](A &a) { a.actSkipCMWord7(u"7"_s); });
    addAction("SkipCommercialWord8", u"8"_s, [](A &a) { a.actSkipCMWord8(u"8"_s); });
    addAction("LogRSSRead", true, [](A &a) { a.actLogRSSReadCheck(true); });
    addAction("LogRSSDisp", true, [](A &a) { a.actLogRSSDispCheck(true); });
    addAction("LogTimer", true, [](A &a) { a.actLogTimerCheck(true); });
    addAction("LogSystem", true, [](A &a) { a.actLogSystemCheck(true); });
    addAction("PlayFinishSound", true, [](A &a) { a.actPlayFinishSoundCheck(true); });
    addAction("PlayArrivalSound", true, [](A &a) { a.actPlayArrivalSoundCheck(true); });
    addAction("FinishSoundName", u"Blow"_s, [](A &a) { a.actFinishSoundNamePopUp(u"Blow"_s); });
    addAction("ArrivalSoundName", u"Basso"_s, [](A &a) { a.actArrivalSoundNamePopUp(u"Basso"_s); });
    addAction("PlaySoundVolume", 0.75, [](A &a) { a.actPlaySoundVolumeSlider(0.75F); });
    addAction("DesignateBrowser", u"/a.desktop"_s,
              [](A &a) { a.actBrowserChosen(u"/a.desktop"_s); });
}

void SettingsActionsTest::action_setsItsSetting()
{
    QFETCH(QString, key);
    QFETCH(std::shared_ptr<PropertyValue>, expected);
    QFETCH(Action, action);

    SetupParts parts;
    SettingsActions actions(parts.startWithoutBoard());
    QVERIFY(parts.defaults.valueForKey(key) != *expected);
    action(actions);
    QVERIFY(parts.defaults.valueForKey(key) == *expected);
}

void SettingsActionsTest::comPortTest_data()
{
    QTest::addColumn<bool>("answers");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informative");

    QTest::newRow("the board answers")
        << true << u"Communication test to LED board is succeed."_s << QString();
    QTest::newRow("the board is silent")
        << false << u"Communication test to LED board is failed."_s
        << u"Confirm LED board power and connection, port setting and farmware version."_s;
}

void SettingsActionsTest::comPortTest()
{
    QFETCH(bool, answers);
    QFETCH(QString, message);
    QFETCH(QString, informative);

    SetupParts parts;
    RecordingBoard &board = parts.makeWithBoard();
    SettingsActions actions(parts.start());
    board.answers = answers;
    actions.actComPortTest();
    QCOMPARE(parts.window.alerts,
             (QStringList{localized(message), localized(informative), localized(u"Understand"_s)}));
}

void SettingsActionsTest::bitmapFont_renewsTheControls()
{
    SetupParts parts;
    SettingsActions actions(parts.startWithoutBoard());
    parts.window.calls.clear();
    actions.actUseBitmapFontCheck(false);
    QCOMPARE(parts.window.calls, QStringList{u"renewal"_s});
}

void SettingsActionsTest::soundSwitch_enablesItsMenu()
{
    SetupParts parts;
    SettingsActions actions(parts.startWithoutBoard());
    parts.window.calls.clear();
    actions.actPlayFinishSoundCheck(true);
    actions.actPlayArrivalSoundCheck(false);
    QCOMPARE(parts.window.calls, (QStringList{u"enable finish 1"_s, u"enable arrival 0"_s}));
}

void SettingsActionsTest::soundChoice_playsItOnce()
{
    SetupParts parts;
    SettingsActions actions(parts.startWithoutBoard());
    actions.actPlaySoundVolumeSlider(0.25F);
    QVERIFY(parts.sounds.played.isEmpty());
    actions.actFinishSoundNamePopUp(u"Blow"_s);
    QCOMPARE(parts.sounds.played, QStringList{u"Blow 0.25"_s});
    actions.actArrivalSoundNamePopUp(u"Basso"_s);
    QCOMPARE(parts.sounds.played, (QStringList{u"Blow 0.25"_s, u"Basso 0.25"_s}));
}

void SettingsActionsTest::logFile_isProposedAndKeptForThisRun()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    SettingsActions actions(setup);
    actions.actLogFilePath();
    QCOMPARE(parts.window.panels.size(), std::size_t{1});
    const FilePanel &panel = parts.window.panels.front();
    QCOMPARE(panel.title, localized(u"TitleSetLogFile"_s));
    QCOMPARE(panel.button, localized(u"Setup"_s));
    QCOMPARE(panel.folder, parts.folder.filePath(u"logs/book"_s));
    QCOMPARE(panel.fileName, u"Logbook.txt"_s);

    actions.actLogFileChosen(u"/tmp/other.txt"_s);
    QCOMPARE(setup.logFilePath(), u"/tmp/other.txt"_s);
    // The store keeps the old path: choosing a file lasts for this run only.
    QCOMPARE(parts.defaults.stringForKey(u"LogFilePath"_s), parts.logPath());
}

void SettingsActionsTest::dispLog_opensTheFile()
{
    SetupParts parts;
    SettingsActions actions(parts.startWithoutBoard());
    parts.window.calls.clear();
    actions.actDispLog();
    QCOMPARE(parts.window.calls, QStringList{u"open "_s + parts.logPath()});
}

void SettingsActionsTest::browser_isChosenAndForgotten()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    SettingsActions actions(setup);
    actions.actSelectBrowser();
    QCOMPARE(parts.window.panels.size(), std::size_t{1});
    QCOMPARE(parts.window.panels.front().title, u"指定ブラウザの選択"_s);
    QCOMPARE(parts.window.panels.front().button, u"選択"_s);
    QCOMPARE(parts.window.panels.front().fileType, u"desktop"_s);

    parts.window.calls.clear();
    actions.actBrowserChosen(u"/usr/share/applications/a.desktop"_s);
    QCOMPARE(setup.desigBrowser(), u"/usr/share/applications/a.desktop"_s);
    actions.actDefaultBrowser();
    QCOMPARE(setup.desigBrowser(), u""_s);
    QCOMPARE(parts.window.calls,
             (QStringList{u"browser /usr/share/applications/a.desktop"_s, u"browser "_s}));
}

void SettingsActionsTest::preferences_showsTheTab()
{
    SetupParts parts;
    SettingsActions actions(parts.startWithoutBoard());
    parts.window.calls.clear();
    actions.actPreferences();
    QCOMPARE(parts.window.calls, QStringList{u"tab setup"_s});
}

QTEST_GUILESS_MAIN(SettingsActionsTest)
#include "settingsactions_test.moc"
