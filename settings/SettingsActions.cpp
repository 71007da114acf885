// SPDX-License-Identifier: MIT
#include "settings/SettingsActions.h"

#include "board/BoardLink.h"
#include "platform/Localization.h"
#include "settings/Setup.h"

#include <QFileInfo>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Where the system's packages put the entries of installed applications.
constexpr auto applicationsFolder = u"/usr/share/applications";

} // namespace

void SettingsActions::actPortNumber(int number)
{
    setup_.setPortNumber(number);
}

void SettingsActions::actScrollSpeed(int speed)
{
    setup_.setScrollSpeed(speed);
}

void SettingsActions::actModuleCount(int modules)
{
    setup_.setModuleCount(modules);
}

void SettingsActions::actBrightness(int level)
{
    setup_.setBrightness(level);
}

void SettingsActions::actReverse180(bool on)
{
    setup_.setReverse180(on);
}

void SettingsActions::actRotaionCheck(bool on)
{
    setup_.setRotation(on);
}

void SettingsActions::actUseBitmapFontCheck(bool on)
{
    setup_.setUseBitmapFont(on);
    setup_.renewalControls();
}

void SettingsActions::actUseNarrowCheck(bool on)
{
    setup_.setUseNarrowFont(on);
}

void SettingsActions::actComPortTest()
{
    // Both wordings are meant as they stand.
    const bool isThere = setup_.ledSystem().comTest();
    const QString message = isThere ? u"Communication test to LED board is succeed."_s
                                    : u"Communication test to LED board is failed."_s;
    const QString advice =
        isThere
            ? QString()
            : localized(
                  u"Confirm LED board power and connection, port setting and farmware version."_s);
    setup_.window().openAlert(localized(message), advice, localized(u"Understand"_s));
}

void SettingsActions::actDispAuto(bool on)
{
    setup_.setDispAuto(on);
}

void SettingsActions::actScrollCheck(bool on)
{
    setup_.setIsScroll(on);
}

void SettingsActions::actDispProgressCheck(bool on)
{
    setup_.setDispProgress(on);
}

void SettingsActions::actVirtualLEDCheck(bool on)
{
    setup_.setVirtualLED(on);
}

void SettingsActions::actLightLEDColor(const QColor &color)
{
    setup_.setLightLEDColor(color);
}

void SettingsActions::actDontShowOlder(bool on)
{
    setup_.setDontShowOlder(on);
}

void SettingsActions::actOlderHours(int hours)
{
    setup_.setOlderHours(hours);
}

void SettingsActions::actSkipCMMode(bool on)
{
    setup_.setSkipCMMode(on);
}

void SettingsActions::actSkipCMWord1(const QString &word)
{
    setup_.setSkipCMWord1(word);
}

void SettingsActions::actSkipCMWord2(const QString &word)
{
    setup_.setSkipCMWord2(word);
}

void SettingsActions::actSkipCMWord3(const QString &word)
{
    setup_.setSkipCMWord3(word);
}

void SettingsActions::actSkipCMWord4(const QString &word)
{
    setup_.setSkipCMWord4(word);
}

void SettingsActions::actSkipCMWord5(const QString &word)
{
    setup_.setSkipCMWord5(word);
}

void SettingsActions::actSkipCMWord6(const QString &word)
{
    setup_.setSkipCMWord6(word);
}

void SettingsActions::actSkipCMWord7(const QString &word)
{
    setup_.setSkipCMWord7(word);
}

void SettingsActions::actSkipCMWord8(const QString &word)
{
    setup_.setSkipCMWord8(word);
}

void SettingsActions::actLogRSSReadCheck(bool on)
{
    setup_.setLogRSSRead(on);
}

void SettingsActions::actLogRSSDispCheck(bool on)
{
    setup_.setLogRSSDisp(on);
}

void SettingsActions::actLogTimerCheck(bool on)
{
    setup_.setLogTimer(on);
}

void SettingsActions::actLogSystemCheck(bool on)
{
    setup_.setLogSystem(on);
}

void SettingsActions::actDispLog()
{
    setup_.window().openWithApplication(setup_.logFilePath());
}

void SettingsActions::actLogFilePath()
{
    const QFileInfo present(setup_.logFilePath());
    FilePanel panel;
    panel.title = localized(u"TitleSetLogFile"_s);
    panel.button = localized(u"Setup"_s);
    panel.folder = present.absolutePath();
    panel.fileName = present.fileName();
    setup_.window().openLogFilePanel(panel);
}

void SettingsActions::actLogFileChosen(const QString &path)
{
    setup_.keepLogFilePath(path);
}

void SettingsActions::actPlayFinishSoundCheck(bool on)
{
    setup_.setPlayFinishSound(on);
    setup_.window().enableSoundMenu(SoundMenu::Finish, on);
}

void SettingsActions::actPlayArrivalSoundCheck(bool on)
{
    setup_.setPlayArrivalSound(on);
    setup_.window().enableSoundMenu(SoundMenu::Arrival, on);
}

void SettingsActions::actFinishSoundNamePopUp(const QString &name)
{
    setup_.setFinishSoundName(name);
    setup_.previewSound(name);
}

void SettingsActions::actArrivalSoundNamePopUp(const QString &name)
{
    setup_.setArrivalSoundName(name);
    setup_.previewSound(name);
}

void SettingsActions::actPlaySoundVolumeSlider(float volume0To1)
{
    setup_.setPlaySoundVolume(volume0To1);
}

void SettingsActions::actDefaultBrowser()
{
    setup_.setDesigBrowser(u""_s);
    setup_.window().showBrowser(u""_s);
}

void SettingsActions::actSelectBrowser()
{
    FilePanel panel;
    panel.title = u"指定ブラウザの選択"_s;
    panel.button = u"選択"_s;
    panel.folder = QString::fromUtf16(applicationsFolder);
    panel.fileType = u"desktop"_s;
    setup_.window().openBrowserPanel(panel);
}

void SettingsActions::actBrowserChosen(const QString &path)
{
    setup_.setDesigBrowser(path);
    setup_.window().showBrowser(path);
}

void SettingsActions::actPreferences()
{
    setup_.window().showTab(u"setup"_s);
}

} // namespace qovelmor
