// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>

namespace qovelmor {

/// The present value of every setting, one field for each row of settingsTable(). What stands here
/// holds until the stored settings have been read.
struct SettingsValues
{
    // The board.
    int portNumber = 0;
    int scrollSpeed = 0; ///< steps of 8 ms
    int moduleCount = 0; ///< modules of 32 columns
    int brightness = 0;  ///< 0 to 10
    bool reverse180 = false;
    bool useBitmapFont = false;
    bool useNarrowFont = false;
    bool rotation = false; ///< text turned left by 90 degrees

    // The display.
    bool dispAuto = false; ///< read and show as soon as the program has started
    bool isScroll = false; ///< the message table follows the message on display
    bool dispProgress = false;
    bool virtualLED = true;
    QColor lightLEDColor = Qt::red;

    // The filters.
    bool dontShowOlder = false;
    int olderHours = 0;
    bool skipCMMode = false;
    QString skipCMWord1;
    QString skipCMWord2;
    QString skipCMWord3;
    QString skipCMWord4;
    QString skipCMWord5;
    QString skipCMWord6;
    QString skipCMWord7;
    QString skipCMWord8;

    // The log.
    bool logRSSRead = false;
    bool logRSSDisp = false;
    bool logTimer = false;
    bool logSystem = false;
    QString logFilePath;

    // Sounds.
    bool playFinishSound = false;
    QString finishSoundName;
    bool playArrivalSound = false;
    QString arrivalSoundName;
    float playSoundVolume = 0.5F; ///< 0.0 to 1.0

    // The browser.
    QString desigBrowser; ///< path of a desktop entry; empty: the system's default browser
};

} // namespace qovelmor
