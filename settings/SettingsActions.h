// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>

namespace qovelmor {

class Setup;

/// What each control of the settings tab does when the user changes it; every operation is called
/// with the control's value. Main thread only.
class SettingsActions
{
public:
    explicit SettingsActions(Setup &setup) : setup_(setup) {}

    // Board.
    void actPortNumber(int number);
    void actScrollSpeed(int speed);
    void actModuleCount(int modules);
    void actBrightness(int level);
    void actReverse180(bool on);
    void actRotaionCheck(bool on);
    /// Also renews the controls: what the board's text menus offer depends on it.
    void actUseBitmapFontCheck(bool on);
    void actUseNarrowCheck(bool on);
    /// Asks the board whether it is there and opens an alert with the answer.
    void actComPortTest();

    // Display.
    void actDispAuto(bool on);
    void actScrollCheck(bool on);
    void actDispProgressCheck(bool on);
    void actVirtualLEDCheck(bool on);
    void actLightLEDColor(const QColor &color);

    // Filters.
    void actDontShowOlder(bool on);
    void actOlderHours(int hours);
    void actSkipCMMode(bool on);
    void actSkipCMWord1(const QString &word);
    void actSkipCMWord2(const QString &word);
    void actSkipCMWord3(const QString &word);
    void actSkipCMWord4(const QString &word);
    void actSkipCMWord5(const QString &word);
    void actSkipCMWord6(const QString &word);
    void actSkipCMWord7(const QString &word);
    void actSkipCMWord8(const QString &word);

    // Log.
    void actLogRSSReadCheck(bool on);
    void actLogRSSDispCheck(bool on);
    void actLogTimerCheck(bool on);
    void actLogSystemCheck(bool on);
    /// Opens the log file with the system's application for it.
    void actDispLog();
    /// Opens the panel that chooses the log file.
    void actLogFilePath();
    /// The panel's answer: the path holds for this run and is not written to the store, on purpose.
    void actLogFileChosen(const QString &path);

    // Sounds. A sound that is chosen is played once.
    void actPlayFinishSoundCheck(bool on);
    void actPlayArrivalSoundCheck(bool on);
    void actFinishSoundNamePopUp(const QString &name);
    void actArrivalSoundNamePopUp(const QString &name);
    void actPlaySoundVolumeSlider(float volume0To1);

    // Browser.
    void actDefaultBrowser();
    /// Opens the panel that chooses a browser among the installed applications.
    void actSelectBrowser();
    void actBrowserChosen(const QString &path);

    /// Shows the settings tab.
    void actPreferences();

private:
    Setup &setup_;
};

} // namespace qovelmor
