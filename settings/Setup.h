// SPDX-License-Identifier: MIT
#pragma once

#include "board/needs/BoardSettings.h"
#include "messages/needs/MessageSettings.h"
#include "platform/ChangeNotice.h"
#include "settings/SettingsTable.h"
#include "settings/SettingsValues.h"
#include "settings/needs/SettingsWindow.h"

#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace qovelmor {

class MessageOutput;
class SoundPlayer;
class UserDefaults;

/// What the settings stand on; all of it outlives them.
struct SetupServices
{
    UserDefaults &defaults;
    Clock &clock;
    SoundPlayer &sounds;
    MainThread &mainThread;
    /// The serial devices of the system, for the port menu while no board link exists.
    std::function<QStringList()> devicePortNames;
};

/// The settings: their values, what a change does at once, the log file and the board link.
///
/// Getters may be called from any thread; everything else runs on the main thread. A setter keeps
/// the value, applies it and writes it to the store before it returns.
class Setup final : public MessageSettings, public BoardSettings
{
public:
    /// Registers the factory defaults. `board` may be null: then no board link exists from the
    /// start.
    Setup(SetupServices services, std::unique_ptr<BoardLink> board);
    ~Setup() override;

    /// Where changes of the text's width and start-up notes go. To be set before awakeFromNibx().
    void setMsgList(MessageOutput &output) { msgList_ = &output; }
    void setWindow(SettingsWindow &window) { window_ = &window; }
    /// Before the window goes.
    void removeWindow() { window_ = &noWindow_; }

    /// Start-up: reads the settings, opens the log, finds and configures the board.
    void awakeFromNibx();
    /// The end of the program: the log file is closed.
    void applicationWillTerminate() { _closeLogFile(); }

    // The board link. ---------------------------------------------------------------------------

    /// Never absent: without a board it answers NO, 0 or nothing. The link is dropped, if at all,
    /// in awakeFromNibx() and then for the whole run.
    BoardLink &ledSystem() const override { return *board_; }
    bool hasLedSystem() const { return hasBoard_; }
    /// Why the port did not open at the start and what helps, as a sentence for the window; empty
    /// when there is nothing to say.
    QString boardProblem() const { return boardProblem_; }
    /// The names for the port menu, in the order of the port numbers.
    QStringList portNames() const;
    /// The number that the port menu stands on: the one asked for last in this run.
    int chosenPort() const { return chosenPort_; }
    /// Why there is no board link, or why the port chosen last did not open, as a sentence to stand
    /// beside the port menu; empty when all is well.
    QString linkProblem() const;

    // The log file. -----------------------------------------------------------------------------

    std::shared_ptr<LogFile> logFileHandle() const override;
    void logFileFailed() override;
    /// Creates the log's folder and, if no log is open, starts a fresh log file.
    void openLogFile();
    /// Closes the log unless one of the four log switches is on.
    void closeLogFile();
    void _closeLogFile();

    // The filters. ------------------------------------------------------------------------------

    /// Whether more than olderHours() have passed since the date; NO without a date.
    bool isOlderThan(std::optional<Clock::CalendarTime> date) const override;
    /// Whether the text carries one of the advertisement words, while that filter is on.
    bool isCommercialMessage(const QString &text) const override;

    // Getters. ----------------------------------------------------------------------------------

    int portNumber() const { return get(&SettingsValues::portNumber); }
    int scrollSpeed() const override { return get(&SettingsValues::scrollSpeed); }
    int moduleCount() const override { return get(&SettingsValues::moduleCount); }
    int brightness() const { return get(&SettingsValues::brightness); }
    bool reverse180() const { return get(&SettingsValues::reverse180); }
    bool useBitmapFont() const override { return get(&SettingsValues::useBitmapFont); }
    bool useNarrowFont() const { return get(&SettingsValues::useNarrowFont); }
    bool rotation() const override { return get(&SettingsValues::rotation); }
    bool dispAuto() const { return get(&SettingsValues::dispAuto); }
    bool isScroll() const override { return get(&SettingsValues::isScroll); }
    bool dispProgress() const override { return get(&SettingsValues::dispProgress); }
    bool virtualLED() const { return get(&SettingsValues::virtualLED); }
    QColor lightLEDColor() const override { return get(&SettingsValues::lightLEDColor); }
    bool dontShowOlder() const override { return get(&SettingsValues::dontShowOlder); }
    int olderHours() const { return get(&SettingsValues::olderHours); }
    bool skipCMMode() const { return get(&SettingsValues::skipCMMode); }
    QString skipCMWord1() const { return get(&SettingsValues::skipCMWord1); }
    QString skipCMWord2() const { return get(&SettingsValues::skipCMWord2); }
    QString skipCMWord3() const { return get(&SettingsValues::skipCMWord3); }
    QString skipCMWord4() const { return get(&SettingsValues::skipCMWord4); }
    QString skipCMWord5() const { return get(&SettingsValues::skipCMWord5); }
    QString skipCMWord6() const { return get(&SettingsValues::skipCMWord6); }
    QString skipCMWord7() const { return get(&SettingsValues::skipCMWord7); }
    QString skipCMWord8() const { return get(&SettingsValues::skipCMWord8); }
    bool logRSSRead() const override { return get(&SettingsValues::logRSSRead); }
    bool logRSSDisp() const override { return get(&SettingsValues::logRSSDisp); }
    bool logTimer() const override { return get(&SettingsValues::logTimer); }
    bool logSystem() const override { return get(&SettingsValues::logSystem); }
    QString logFilePath() const { return get(&SettingsValues::logFilePath); }
    bool playFinishSound() const { return get(&SettingsValues::playFinishSound); }
    QString finishSoundName() const { return get(&SettingsValues::finishSoundName); }
    bool playArrivalSound() const override { return get(&SettingsValues::playArrivalSound); }
    QString arrivalSoundName() const override { return get(&SettingsValues::arrivalSoundName); }
    float playSoundVolume() const override { return get(&SettingsValues::playSoundVolume); }
    QString desigBrowser() const { return get(&SettingsValues::desigBrowser); }

    // Setters. ----------------------------------------------------------------------------------

    /// Opens the port. The number is kept and written only when that FAILS, on purpose: it is then
    /// tried at the next start. A port that opens is used for this run alone.
    void setPortNumber(int number);
    void setScrollSpeed(int stepsOf8Milliseconds);
    void setModuleCount(int modulesOf32Columns);
    void setBrightness(int level0To10);
    void setReverse180(bool turnedBy180);
    void setUseBitmapFont(bool use);
    void setUseNarrowFont(bool use);
    /// Taken up by the board link at the next line.
    void setRotation(bool turnedLeftBy90);
    void setDispAuto(bool on) { store(&SettingsValues::dispAuto, on); }
    void setIsScroll(bool on) { store(&SettingsValues::isScroll, on); }
    void setDispProgress(bool on) { store(&SettingsValues::dispProgress, on); }
    void setVirtualLED(bool on) { store(&SettingsValues::virtualLED, on); }
    void setLightLEDColor(const QColor &color) { store(&SettingsValues::lightLEDColor, color); }
    void setDontShowOlder(bool on) { store(&SettingsValues::dontShowOlder, on); }
    void setOlderHours(int hours) { store(&SettingsValues::olderHours, hours); }
    void setSkipCMMode(bool on) { store(&SettingsValues::skipCMMode, on); }
    void setSkipCMWord1(const QString &word) { store(&SettingsValues::skipCMWord1, word); }
    void setSkipCMWord2(const QString &word) { store(&SettingsValues::skipCMWord2, word); }
    void setSkipCMWord3(const QString &word) { store(&SettingsValues::skipCMWord3, word); }
    void setSkipCMWord4(const QString &word) { store(&SettingsValues::skipCMWord4, word); }
    void setSkipCMWord5(const QString &word) { store(&SettingsValues::skipCMWord5, word); }
    void setSkipCMWord6(const QString &word) { store(&SettingsValues::skipCMWord6, word); }
    void setSkipCMWord7(const QString &word) { store(&SettingsValues::skipCMWord7, word); }
    void setSkipCMWord8(const QString &word) { store(&SettingsValues::skipCMWord8, word); }
    void setLogRSSRead(bool on) { setLogSwitch(&SettingsValues::logRSSRead, on); }
    void setLogRSSDisp(bool on) { setLogSwitch(&SettingsValues::logRSSDisp, on); }
    void setLogTimer(bool on) { setLogSwitch(&SettingsValues::logTimer, on); }
    void setLogSystem(bool on) { setLogSwitch(&SettingsValues::logSystem, on); }
    void setLogFilePath(const QString &path) { store(&SettingsValues::logFilePath, path); }
    void setPlayFinishSound(bool on) { store(&SettingsValues::playFinishSound, on); }
    void setFinishSoundName(const QString &name) { store(&SettingsValues::finishSoundName, name); }
    void setPlayArrivalSound(bool on) { store(&SettingsValues::playArrivalSound, on); }
    void setArrivalSoundName(const QString &name)
    {
        store(&SettingsValues::arrivalSoundName, name);
    }
    void setPlaySoundVolume(float volume0To1)
    {
        store(&SettingsValues::playSoundVolume, volume0To1);
    }
    void setDesigBrowser(const QString &path) { store(&SettingsValues::desigBrowser, path); }

    // What the controls of the settings tab need beside the values. -----------------------------

    /// Keeps a log path for this run without writing it to the store.
    void keepLogFilePath(const QString &path) { keep(&SettingsValues::logFilePath, path); }
    /// Plays a sound once at the present volume.
    void previewSound(const QString &name);
    void renewalControls() { window_->renewalControls(); }
    SettingsWindow &window() const { return *window_; }

private:
    template <typename T>
    T get(T SettingsValues::*field) const
    {
        const std::lock_guard lock(valuesMutex_);
        return values_.*field;
    }
    template <typename T>
    void keep(T SettingsValues::*field, const T &value)
    {
        const std::lock_guard lock(valuesMutex_);
        values_.*field = value;
    }
    template <typename T>
    void store(T SettingsValues::*field, const T &value)
    {
        keep(field, value);
        write(field);
    }

    void write(SettingField field);
    void setLogSwitch(bool SettingsValues::*field, bool on);
    bool isLogging() const;
    void createSoundMenuOfPopUp(SoundMenu menu);
    void startBoard();
    void configureBoard();
    void dropBoard(const QString &problem);

    SetupServices services_;
    MessageOutput *msgList_ = nullptr;
    SettingsWindow noWindow_;
    SettingsWindow *window_ = &noWindow_;

    std::unique_ptr<BoardLink> board_;
    std::atomic<bool> hasBoard_;
    QString boardProblem_; ///< outlives the link that met it
    QString linkProblem_;  ///< why the link was dropped
    int chosenPort_ = 0;

    mutable std::mutex valuesMutex_; // a leaf: nothing is called while it is held
    SettingsValues values_;

    mutable std::mutex logMutex_; // a leaf too
    std::shared_ptr<LogFile> logFileHandle_;
    std::atomic<bool> logFailureSaid_ = false;
    ChangeNotice logFailure_;
};

} // namespace qovelmor
