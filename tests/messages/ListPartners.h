// SPDX-License-Identifier: MIT
#pragma once

#include "Journal.h"
#include "messages/needs/BoardProgress.h"
#include "messages/needs/FeedSource.h"
#include "messages/needs/MessageSettings.h"
#include "messages/needs/RunControl.h"
#include "platform/LogFile.h"
#include "platform/Sounds.h"

#include <QStringList>

#include <atomic>
#include <functional>

namespace qovelmor {

/// The settings as fields; set up before threads start, except for the atomics.
class ListSettings final : public MessageSettings
{
public:
    explicit ListSettings(BoardLink &link) : board(link) {}

    BoardLink &board;
    std::atomic<bool> logsRead = false;
    std::atomic<bool> logsDisp = false;
    std::atomic<bool> logsTimer = false;
    std::atomic<bool> logsSystem = false;
    std::shared_ptr<LogFile> logFile;
    std::atomic<int> logFailures = 0;
    QString commercialWord; ///< a text that holds it is a commercial; empty: none is
    bool skipsOlder = false;
    std::optional<Clock::CalendarTime> oldest; ///< what lies before it is older
    bool scrolls = true;
    bool showsProgress = true;
    bool playsSound = false;

    bool logRSSRead() const override { return logsRead; }
    bool logRSSDisp() const override { return logsDisp; }
    bool logTimer() const override { return logsTimer; }
    bool logSystem() const override { return logsSystem; }
    std::shared_ptr<LogFile> logFileHandle() const override { return logFile; }
    void logFileFailed() override { ++logFailures; }
    bool isCommercialMessage(const QString &text) const override
    {
        return !commercialWord.isEmpty() && text.contains(commercialWord);
    }
    bool dontShowOlder() const override { return skipsOlder; }
    bool isOlderThan(std::optional<Clock::CalendarTime> date) const override
    {
        return date && oldest && *date < *oldest;
    }
    bool isScroll() const override { return scrolls; }
    bool dispProgress() const override { return showsProgress; }
    bool playArrivalSound() const override { return playsSound; }
    QString arrivalSoundName() const override { return QStringLiteral("Blow"); }
    float playSoundVolume() const override { return 0.5F; }
    int scrollSpeed() const override { return 3; }
    QColor lightLEDColor() const override { return QColor(Qt::red); }
    bool useBitmapFont() const override { return usesBitmapFont; }
    int moduleCount() const override { return 4; }
    BoardLink &ledSystem() const override { return board; }

    bool usesBitmapFont = false;
};

/// The run cycle: its state is set by the test, what it is told goes into the journal.
class ListRunControl final : public RunControl
{
public:
    explicit ListRunControl(Journal &journal) : journal_(journal) {}

    std::atomic<bool> outputLED = false;
    std::atomic<int> state = 1;
    std::atomic<bool> hasDisplayThread = false;
    std::atomic<bool> browserTakes = true;

    bool isOutputLED() const override { return outputLED; }
    bool isDispBreak() const override { return state == 2; }
    bool isDisplaying() const override { return state == 1; }
    int dispRSSState() const override { return state; }
    void setDispRSSState(int value) override { state = value; }
    bool isDisplayActive() const override { return hasDisplayThread; }
    void stopDispRSS() override { journal_.add(QStringLiteral("stop")); }
    void startDispRSS() override { journal_.add(QStringLiteral("start")); }
    void setLastDispLine(int index) override { journal_.add(QStringLiteral("line %1").arg(index)); }
    bool isLEDWindowVisible() const override { return false; }
    bool siteAccessWithAddress(const QString &address) override
    {
        journal_.add(QStringLiteral("open ") + address);
        return browserTakes;
    }
    void siteAccessErrorAlert() override { journal_.add(QStringLiteral("alert")); }

private:
    Journal &journal_;
};

/// One feed: `onRead` runs while it is read.
class ListFeed final : public Feed
{
public:
    QString url = QStringLiteral("http://feed/");
    bool isValid = true;
    int result = 0;
    std::vector<ItemRecord> items;
    std::vector<QString> titles; ///< what the commercial filter sees; the headline when absent
    std::function<void()> onRead;
    int reads = 0;

    bool validate() const override { return isValid; }
    QString address() const override { return url; }
    int readHeadlines() override
    {
        ++reads;
        if (onRead)
            onRead();
        return result;
    }
    int count() const override { return int(items.size()); }
    ItemRecord headlineAtIndex(int index) const override { return items[std::size_t(index)]; }
    QString titleAtIndex(int index) const override
    {
        const auto place = std::size_t(index);
        return place < titles.size() ? titles[place] : items[place].headline;
    }
};

class ListFeeds final : public FeedSource
{
public:
    std::vector<std::shared_ptr<ListFeed>> all;

    ListFeed &add(const QString &url, int result = 0)
    {
        all.push_back(std::make_shared<ListFeed>());
        all.back()->url = url;
        all.back()->result = result;
        return *all.back();
    }
    std::vector<std::shared_ptr<Feed>> feeds() const override { return {all.begin(), all.end()}; }
    int validSiteCount() const override
    {
        return int(
            std::count_if(all.begin(), all.end(), [](const auto &feed) { return feed->isValid; }));
    }
};

class ListSounds final : public SoundPlayer
{
public:
    explicit ListSounds(Journal &journal) : journal_(journal) {}
    QStringList soundNames() const override { return {}; }
    void play(const QString &name, float volume) override
    {
        journal_.add(QStringLiteral("sound %1 %2").arg(name).arg(double(volume)));
    }

private:
    Journal &journal_;
};

class ListProgress final : public BoardProgress
{
public:
    explicit ListProgress(Journal &journal) : journal_(journal) {}
    void create() override { journal_.add(QStringLiteral("bar made")); }
    void start(int maxValue) override { journal_.add(QStringLiteral("bar of %1").arg(maxValue)); }
    void move(int value) override { journal_.add(QStringLiteral("bar at %1").arg(value)); }
    void stop() override { journal_.add(QStringLiteral("bar gone")); }

private:
    Journal &journal_;
};

/// An item with the parts that most tests need.
inline ItemRecord item(const QString &headline, const QString &date = {})
{
    ItemRecord record;
    record.headline = headline;
    record.date = date;
    return record;
}

} // namespace qovelmor
