// SPDX-License-Identifier: MIT
#include "settings/Setup.h"

#include "board/AbsentBoard.h"
#include "platform/Localization.h"
#include "platform/LogFile.h"
#include "platform/Sounds.h"
#include "platform/UserDefaults.h"
#include "settings/CommercialFilter.h"
#include "settings/needs/MessageOutput.h"

#include <QDir>
#include <QFileInfo>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr float narrowExpansion = -0.2F;

std::unique_ptr<BoardLink> boardOrAbsent(std::unique_ptr<BoardLink> board)
{
    if (board)
        return board;
    return std::make_unique<AbsentBoard>();
}

} // namespace

Setup::Setup(SetupServices services, std::unique_ptr<BoardLink> board)
    : services_(std::move(services)), hasBoard_(board != nullptr), logFailure_(services_.mainThread)
{
    board_ = boardOrAbsent(std::move(board));
    services_.defaults.registerDefaults(factorySettings());
    logFailure_.listen([this] { window_->showLogNote(localized(u"LogFileWriteError"_s)); });
}

Setup::~Setup() = default;

void Setup::awakeFromNibx()
{
    {
        SettingsValues stored = readSettings(services_.defaults);
        const std::lock_guard lock(valuesMutex_);
        values_ = std::move(stored);
    }
    setDesigBrowser(services_.defaults.stringForKey(settingKey(&SettingsValues::desigBrowser)));
    createSoundMenuOfPopUp(SoundMenu::Finish);
    createSoundMenuOfPopUp(SoundMenu::Arrival);
    if (isLogging())
        openLogFile();
    startBoard();
    renewalControls();
}

void Setup::createSoundMenuOfPopUp(SoundMenu menu)
{
    window_->fillSoundMenu(menu, services_.sounds.soundNames());
}

void Setup::previewSound(const QString &name)
{
    services_.sounds.play(name, playSoundVolume());
}

// The board link. -----------------------------------------------------------------------------

void Setup::startBoard()
{
    chosenPort_ = portNumber();
    if (!ledSystem().openSerialPortWithNumber(portNumber())) {
        boardProblem_ = ledSystem().openProblem();
        dropBoard(boardProblem_.isEmpty() ? localized(u"PortNotOpened"_s) : boardProblem_);
        msgList_->writeStringLog(u"シリアルポートのオープンに失敗"_s);
    } else if (!ledSystem().comTest()) {
        msgList_->writeStringLog(u"LED電光掲示板がないのでモニター画面に出力"_s);
        dropBoard(localized(u"BoardSilent"_s));
    } else {
        configureBoard();
    }
}

void Setup::configureBoard()
{
    BoardLink &board = ledSystem();
    board.setSpeed(scrollSpeed());
    board.setModuleCount(moduleCount());
    board.setBright(brightness());
    board.setReverse(reverse180());
    board.setScroll(true);
    board.setAsync(false); // NO: lines run on a thread of the link
    board.setUseFontx(useBitmapFont());
    board.setRotation(rotation());
}

void Setup::dropBoard(const QString &problem)
{
    linkProblem_ = problem;
    hasBoard_ = false;
    board_ = std::make_unique<AbsentBoard>();
}

QStringList Setup::portNames() const
{
    return hasLedSystem() ? ledSystem().portNames() : services_.devicePortNames();
}

QString Setup::linkProblem() const
{
    return hasLedSystem() ? ledSystem().openProblem() : linkProblem_;
}

// The log file. -------------------------------------------------------------------------------

bool Setup::isLogging() const
{
    return logRSSRead() || logRSSDisp() || logTimer() || logSystem();
}

std::shared_ptr<LogFile> Setup::logFileHandle() const
{
    const std::lock_guard lock(logMutex_);
    return logFileHandle_;
}

void Setup::openLogFile()
{
    const QString path = logFilePath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (logFileHandle())
        return;
    std::shared_ptr<LogFile> file = LogFile::create(path);
    window_->enableShowLogButton(file != nullptr);
    // No alert and no log line: logging is an extra, and the note stands beside its switches.
    window_->showLogNote(file ? QString() : localized(u"LogFileOpenError"_s));
    logFailureSaid_ = false;
    const std::lock_guard lock(logMutex_);
    logFileHandle_ = std::move(file);
}

void Setup::closeLogFile()
{
    if (!isLogging())
        _closeLogFile();
}

void Setup::_closeLogFile()
{
    if (!logFileHandle())
        return;
    window_->enableShowLogButton(false);
    // Each line is on the disk when it is written; the file is closed by the last one who holds it,
    // which may be another thread in the middle of a line.
    const std::lock_guard lock(logMutex_);
    logFileHandle_.reset();
}

void Setup::logFileFailed()
{
    if (!logFailureSaid_.exchange(true))
        logFailure_.changed();
}

// The filters. --------------------------------------------------------------------------------

bool Setup::isOlderThan(std::optional<Clock::CalendarTime> date) const
{
    if (!date)
        return false;
    const std::chrono::duration<qint64, std::ratio<3600>> limit(olderHours());
    // In milliseconds, so that no number of hours overflows.
    const auto elapsed =
        std::chrono::floor<std::chrono::milliseconds>(services_.clock.calendarNow() - *date);
    return elapsed > limit;
}

bool Setup::isCommercialMessage(const QString &text) const
{
    SettingsValues values;
    {
        const std::lock_guard lock(valuesMutex_);
        if (!values_.skipCMMode)
            return false;
        values = values_;
    }
    const QString upperText = text.toUpper();
    for (const QString *word :
         {&values.skipCMWord1, &values.skipCMWord2, &values.skipCMWord3, &values.skipCMWord4,
          &values.skipCMWord5, &values.skipCMWord6, &values.skipCMWord7, &values.skipCMWord8}) {
        if (qovelmor::isCommercialMessage(upperText, *word))
            return true;
    }
    return false;
}

// Setters that do more than keep. -------------------------------------------------------------

void Setup::write(SettingField field)
{
    PropertyValue value = [&] {
        const std::lock_guard lock(valuesMutex_);
        return storedSetting(field, values_);
    }();
    services_.defaults.setValueIfChanged(std::move(value), settingKey(field));
    services_.defaults.synchronize();
}

void Setup::setPortNumber(int number)
{
    chosenPort_ = number;
    if (!ledSystem().openSerialPortWithNumber(number))
        store(&SettingsValues::portNumber, number);
}

void Setup::setScrollSpeed(int stepsOf8Milliseconds)
{
    keep(&SettingsValues::scrollSpeed, stepsOf8Milliseconds);
    ledSystem().setSpeed(stepsOf8Milliseconds);
    write(&SettingsValues::scrollSpeed);
}

void Setup::setModuleCount(int modulesOf32Columns)
{
    keep(&SettingsValues::moduleCount, modulesOf32Columns);
    ledSystem().setModuleCount(modulesOf32Columns);
    write(&SettingsValues::moduleCount);
}

void Setup::setBrightness(int level0To10)
{
    keep(&SettingsValues::brightness, level0To10);
    ledSystem().setBright(level0To10);
    write(&SettingsValues::brightness);
}

void Setup::setReverse180(bool turnedBy180)
{
    keep(&SettingsValues::reverse180, turnedBy180);
    ledSystem().setReverse(turnedBy180);
    write(&SettingsValues::reverse180);
}

void Setup::setUseBitmapFont(bool use)
{
    keep(&SettingsValues::useBitmapFont, use);
    ledSystem().setUseFontx(use);
    write(&SettingsValues::useBitmapFont);
}

void Setup::setUseNarrowFont(bool use)
{
    keep(&SettingsValues::useNarrowFont, use);
    msgList_->setExpansion(use ? narrowExpansion : 0.0F);
    write(&SettingsValues::useNarrowFont);
}

void Setup::setRotation(bool turnedLeftBy90)
{
    keep(&SettingsValues::rotation, turnedLeftBy90);
    ledSystem().setRotation(turnedLeftBy90);
    write(&SettingsValues::rotation);
}

void Setup::setLogSwitch(bool SettingsValues::*field, bool on)
{
    keep(field, on);
    if (on)
        openLogFile();
    else
        closeLogFile();
    write(field);
}

} // namespace qovelmor
