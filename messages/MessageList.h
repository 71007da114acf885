// SPDX-License-Identifier: MIT
#pragma once

#include "messages/FirstSeenMemory.h"
#include "messages/InformationFile.h"
#include "messages/LedProgress.h"
#include "messages/LineDisplay.h"
#include "messages/LogBook.h"
#include "messages/MessageMenus.h"
#include "messages/MessagePresentation.h"
#include "messages/MessageSwitches.h"
#include "messages/MessageViewSettings.h"
#include "messages/RandomInsertion.h"
#include "platform/ChangeNotice.h"
#include "settings/needs/MessageOutput.h"

#include <QString>

#include <atomic>
#include <cstdlib>
#include <optional>

namespace qovelmor {

class BoardProgress;
class FeedSource;
class SoundPlayer;
struct ReadOutcome;

/// The controller of the message list: reads all feeds into one list, shows its messages line by
/// line, keeps the log book and the switches, and answers the window.
///
/// readRSSPages and dispRSSDataWithIndex run on whatever thread calls them, one at a time; setters
/// and act… operations belong to the main thread; queries may come from any thread. The window
/// listens to changeNotice() and then takes presentation().
class MessageList final : public MessageOutput
{
public:
    struct Parts
    {
        Clock &clock;
        MainThread &mainThread;
        UserDefaults &defaults;
        SoundPlayer &sounds;
        QString documentFolder;      ///< where the user's "Information.txt" is
        QString informationTemplate; ///< the file that it is made from
        RandomSource random = &std::rand;
    };
    /// Those who need the message list themselves.
    struct Connections
    {
        FeedSource &feeds;
        MessageSettings &settings;
        RunControl &runControl;
        LineScreen &screen;
        BoardProgress *boardProgress = nullptr; ///< null: no progress is shown on a board
    };

    explicit MessageList(Parts parts);
    ~MessageList() override;
    MessageList(const MessageList &) = delete;
    MessageList &operator=(const MessageList &) = delete;

    /// Once, before anything else; all must outlive the last read and the last line.
    void connect(const Connections &connections);
    /// At launch: takes over what is stored, hands the board its font settings.
    void awakeFromNibx();
    void applicationWillTerminate();

    // What the window shows. -------------------------------------------------------------------

    ChangeNotice &changeNotice() { return notice_; }
    PresentationSnapshot presentation() const { return presentation_.snapshot(); }
    /// Whether the message on display carries the ▶ mark.
    bool isPresentMarked() const;
    /// Asks the window to draw the list anew.
    void renewTableView() { notice_.changed(); }
    /// A sentence for the status line; empty clears it.
    void setStatusText(const QString &text);

    // The list. --------------------------------------------------------------------------------

    MessageSnapshot msgList() const { return presentation()->messages; }
    int messageCount() const { return static_cast<int>(msgList()->size()); }
    int messageIndex() const { return presentation()->messageIndex; }

    /// Reads every enabled feed and replaces the list; until then the old one stays. A read that
    /// the program's end has cut short changes and stores nothing.
    void readRSSPages();
    int takenCount() const { return takenCount_; } ///< headlines taken by the last read

    /// Inserts a message at a random place of the list; nothing is only logged.
    void randomAddObject(const std::optional<Message> &message);
    /// The first-seen time of a headline that came without a date.
    QString dateStringWithMessage(const QString &headline);
    std::optional<Clock::CalendarTime> dateWithString(const QString &text) const;
    bool isTooOldDate(const QString &text) const;
    /// Makes first-seen times durable that were noted since the last save; each read and each shown
    /// message does this too. Not while drawing.
    void saveFirstSeenTimes();

    // The display. -----------------------------------------------------------------------------

    /// Shows one message; returns when it has been shown or was broken off.
    void dispRSSDataWithIndex(int index);
    void dispTitleThread(const QString &line) { display_.dispTitleThread(line); }
    void eraseDispNumber();
    void createProgressBar() { ledProgress_.createProgressBar(); }

    // The log book. ----------------------------------------------------------------------------

    LogBook &logBook() { return logBook_; }
    void writeStringLog(const QString &text) override { logBook_.writeStringLog(text); }
    void writeDispStartLog() { logBook_.writeDispStartLog(); }

    // Switches. --------------------------------------------------------------------------------

    std::shared_ptr<const DisplaySwitches> switches() const { return switches_.snapshot(); }
    MessageViewSettings &viewSettings() { return viewSettings_; }
    void _setRowHeight(double points) { viewSettings_.setRowHeight(points); }
    /// The table's font is the system's; only its size can be chosen.
    void setFont(double points) { viewSettings_.setFontSize(points); }

    void setIsDispLine(bool value) { switches_.setIsDispLine(value); }
    void setIsDispDate(bool value) { switches_.setIsDispDate(value); }
    void setIsDispName(bool value) { switches_.setIsDispName(value); }
    void setIsDispDesc(bool value) { switches_.setIsDispDesc(value); }
    void setMaxMessages(int value) { switches_.setMaxMessages(value); }
    void setUseMaxMsg(bool value) { switches_.setUseMaxMsg(value); }
    void setDispOrder(int value) { switches_.setDispOrder(value); }
    void setDispEachRSS(bool value) { switches_.setDispEachRSS(value); }
    void setShowCalendar(bool value) { switches_.setShowCalendar(value); }
    /// Loads or drops the information lines too.
    void setDispInfo(bool value);
    void prepareInfoMessages(bool load);
    /// What is wrong with the information file, as a sentence for the window; empty when nothing.
    QString informationProblem() const { return informationProblem_; }
    /// Taken up by the board and the on-screen board at the next line.
    void setFontName(const QString &name);
    void setFontBoarder(int threshold);
    void setExpansion(float expansion) override;

    // What a person does. ----------------------------------------------------------------------

    // Each control of the switches, with its value.
    void actDispLineCheck(bool isOn) { setIsDispLine(isOn); }
    void actDispDateCheck(bool isOn) { setIsDispDate(isOn); }
    void actDispNameCheck(bool isOn) { setIsDispName(isOn); }
    void actDispDescCheck(bool isOn) { setIsDispDesc(isOn); }
    void actShowCalendarCheck(bool isOn) { setShowCalendar(isOn); }
    void actDispEachRSSCheck(bool isOn) { setDispEachRSS(isOn); }
    void actDispInfoCheck(bool isOn) { setDispInfo(isOn); }
    void actUseMaxMsgCheck(bool isOn) { setUseMaxMsg(isOn); }
    void actMaxMessagesText(int number) { setMaxMessages(number); }
    void actDispOrderMatrix(int order) { setDispOrder(order); }

    /// With the option key the display starts again at the row; without it the row's link is
    /// opened.
    void actDoubleClickListView(int selectedRow, bool hasOptionKey);
    /// Opens the link of the message on display, while the display runs.
    void actDoubleClickRSSView();
    /// The text that copying the row puts on the clipboard.
    std::optional<QString> actCopyRow(int selectedRow) const;
    void actFontItem(const QString &name) { setFontName(name); }
    void actBoarderItem(int threshold) { setFontBoarder(threshold); }
    /// The items of the threshold menu; hands the stored threshold to the board.
    std::vector<BoarderItem> createBoarderMenu();
    bool isFontItemEnabled() const;
    bool isBoarderItemEnabled() const;

private:
    void startTitleLine(const DisplaySwitches &switches);
    void startReadProgress(int siteCount);
    void siteStarts(const QString &address);
    void siteIsRead(int sitesRead);
    void keep(ReadOutcome outcome);
    bool storeMessages(const MessageVector &messages);
    void endReadProgress(const QString &statusText);
    void playArrivalSound(const Message &message);
    void openLink(const Message &message);
    template <typename Edit>
    void present(const Edit &edit);

    Clock &clock_;
    UserDefaults &defaults_;
    SoundPlayer &sounds_;
    const RandomSource random_;
    FeedSource *feeds_ = nullptr;
    MessageSettings *settings_ = nullptr;
    RunControl *runControl_ = nullptr;
    LineScreen *screen_ = nullptr;

    ChangeNotice notice_;
    PresentationState presentation_;
    MessageSwitches switches_;
    MessageViewSettings viewSettings_;
    FirstSeenMemory firstSeen_;
    LogBook logBook_;
    InformationFile information_;
    QString informationProblem_; ///< main thread only
    LineDisplay display_;
    LedProgress ledProgress_;
    MessageSnapshot lastMSG_; ///< the list of the read before; touched by the reading thread only
    bool isShorteningSaid_ = false; ///< touched by the reading thread only
    std::atomic<int> takenCount_ = 0;
};

} // namespace qovelmor
