// SPDX-License-Identifier: MIT
#pragma once

#include "app/ScheduleActions.h"
#include "app/VelmorRSS.h"
#include "board/BoardLink.h"
#include "feeds/FeedLoader.h"
#include "feeds/RSSList.h"
#include "messages/MessageList.h"
#include "messages/needs/LineScreen.h"
#include "platform/LinkOpener.h"
#include "platform/QueueMainThread.h"
#include "platform/SimulatedClock.h"
#include "platform/Sounds.h"
#include "platform/UserDefaults.h"
#include "schedule/RSSTimer.h"
#include "schedule/needs/MinuteTimer.h"
#include "settings/Setup.h"
#include "tests/support/PlainWindow.h"

#include <QTemporaryDir>

#include <atomic>
#include <map>
#include <mutex>

namespace qovelmor {

/// Servers that answer after 200 ms of simulated time, with one document for each address.
class TownLoader final : public FeedLoader
{
public:
    explicit TownLoader(Clock &clock) : clock_(clock) {}

    void serve(const QString &address, const QStringList &headlines)
    {
        QString xml = QStringLiteral("<rss version='2.0'><channel><title>町</title>");
        for (const QString &headline : headlines) {
            xml += QStringLiteral("<item><title>%1</title><link>http://town/%1</link>"
                                  "<description>%1 のこと</description>"
                                  "<pubDate>Sat, 21 Nov 2026 09:30:00 +0900</pubDate></item>")
                       .arg(headline);
        }
        serveDocument(address, xml + QStringLiteral("</channel></rss>"));
    }
    void serveDocument(const QString &address, const QString &xml)
    {
        const std::lock_guard lock(mutex_);
        documents_[address] = xml.toUtf8();
    }
    void remove(const QString &address)
    {
        const std::lock_guard lock(mutex_);
        documents_.erase(address);
    }

    FeedLoad load(const FeedRequest &request) override
    {
        ++loads;
        noteLoadOf(request.address);
        if (++inside_ > 1)
            overlapped = true;
        if (onLoad)
            onLoad();
        clock_.sleepFor(std::chrono::milliseconds(200));
        --inside_;
        QByteArray bytes;
        {
            const std::lock_guard lock(mutex_);
            const auto place = documents_.find(request.address);
            if (place == documents_.end())
                return ReadError{404, QStringLiteral("HTTP"), QStringLiteral("見つかりません")};
            bytes = place->second;
        }
        auto parsed = XmlDocument::parse(bytes);
        if (!parsed.document)
            return ReadError{parsed.failure.line, QStringLiteral("XML"), parsed.failure.cause};
        return LoadedFeed{std::make_shared<const XmlFeedDocument>(std::move(parsed.document)), {}};
    }

    int loadsOf(const QString &address)
    {
        const std::lock_guard lock(mutex_);
        return loadsOf_[address];
    }

    std::function<void()> onLoad; ///< run in the middle of a load, on its thread
    std::atomic<int> loads = 0;
    std::atomic<bool> overlapped = false;

private:
    void noteLoadOf(const QString &address)
    {
        const std::lock_guard lock(mutex_);
        ++loadsOf_[address];
    }

    Clock &clock_;
    std::mutex mutex_;
    std::map<QString, QByteArray> documents_;
    std::map<QString, int> loadsOf_;
    std::atomic<int> inside_ = 0;
};

/// A screen on which each line takes two seconds of simulated time, if not told otherwise.
class TimedScreen final : public LineScreen
{
public:
    explicit TimedScreen(Clock &clock) : clock_(clock), run_(clock) {}

    std::atomic<int> stepsOfALine = 20; ///< of 100 ms

    void showString(const QString &text) override
    {
        run_.join();
        {
            const std::lock_guard lock(mutex_);
            shown_ << text;
        }
        state_ = 1;
        run_.start([this] {
            for (int step = 0; step < stepsOfALine && state_ == 1; ++step)
                clock_.sleepFor(std::chrono::milliseconds(100));
            state_ = 0;
        });
    }
    void stopShowString() override
    {
        int running = 1;
        state_.compare_exchange_strong(running, 2);
        run_.join();
    }
    bool isShowing() const override { return state_ == 1; }
    void setFontName(const QString &) override {}
    void setExpansion(float) override {}

    QStringList takeShown()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(shown_, {});
    }

private:
    Clock &clock_;
    std::atomic<int> state_ = 0;
    std::mutex mutex_;
    QStringList shown_;
    Worker run_;
};

/// A board that answers; each line takes two seconds of simulated time on it.
class TimedBoard final : public BoardLink
{
public:
    explicit TimedBoard(Clock &clock) : screen_(clock) {}

    bool openSerialPortWithNumber(int) override { return true; }
    bool comTest() override { return answers; }
    QStringList portNames() const override { return {QStringLiteral("ttyUSB0")}; }
    bool isLost() const override { return lost_; }
    void setSpeed(int) override {}
    void setModuleCount(int) override {}
    void setBright(int) override {}
    void setReverse(bool) override {}
    int moduleCount() override { return 4; }
    int waitBefore() override { return 1; }
    int waitAfter() override { return 1; }
    void setFontName(const QString &) override {}
    void setBoarder(int) override {}
    void setExpansion(float) override {}
    void setUseFontx(bool) override {}
    void setRotation(bool) override {}
    void setScroll(bool) override {}
    void setAsync(bool) override {}
    void showString(const QString &text) override
    {
        if (loses && !lost_.exchange(true))
            onLost();
        if (!lost_)
            screen_.showString(text);
    }
    bool isRunning() const override { return screen_.isShowing(); }
    void clear() override
    {
        ++clears;
        screen_.stopShowString();
    }
    void showPresentDate(double) override {}
    QStringList takeShown() { return screen_.takeShown(); }

    /// From now on a line ends after so many steps of 100 ms: 10 when the board has fallen silent,
    /// 300 when it never says that the line has run out.
    void setStepsOfALine(int steps) { screen_.stepsOfALine = steps; }

    bool answers = true;
    std::atomic<bool> loses = false; ///< the port is gone at the next line
    std::function<void()> onLost;    ///< once, on the thread that found it
    std::atomic<int> clears = 0;

private:
    TimedScreen screen_;
    std::atomic<bool> lost_ = false;
};

class RecordingOpener final : public LinkOpener
{
public:
    bool open(const QString &address, const QString &browser) override
    {
        opened << address;
        browsers << browser;
        return takes;
    }
    QStringList opened;
    QStringList browsers;
    bool takes = true;
};

class RecordingSounds final : public SoundPlayer
{
public:
    QStringList soundNames() const override
    {
        return {QStringLiteral("Basso"), QStringLiteral("Blow")};
    }
    void play(const QString &name, float) override
    {
        const std::lock_guard lock(mutex_);
        played << name;
    }
    std::mutex mutex_;
    QStringList played;
};

/// Fires when the test says so.
class HandTimer final : public MinuteTimer
{
public:
    void start(std::function<void()> handler) override { handler_ = std::move(handler); }
    void setNextFire(std::chrono::milliseconds) override {}
    void stop() override { handler_ = {}; }
    void fire()
    {
        if (handler_)
            handler_();
    }

private:
    std::function<void()> handler_;
};

/// Every controller of the program, connected as in the program, in simulated time and without a
/// widget. The store stands in memory-backed files where there are such.
struct WholeProgram
{
    explicit WholeProgram(bool withBoard = false)
        : folder(QStringLiteral("/dev/shm/qovelmorrss-test-XXXXXX"))
        , defaults(folder.filePath(QStringLiteral("store.plist")))
        , board(withBoard ? new TimedBoard(clock) : nullptr)
        , setup({defaults, clock, sounds, mainThread, [this] { return ports; }},
                std::unique_ptr<BoardLink>(board))
        , rssList({defaults, {loader, clock}, mainThread})
        , msgList({clock, mainThread, defaults, sounds, folder.filePath(QStringLiteral("docs")),
                   QStringLiteral(":/Information.txt")})
        , rssTimer({defaults, clock, mainThread, timer, actions})
        , control({clock, mainThread, defaults,
                   [this](std::chrono::seconds age) { reuseAges.push_back(age); }, opener, sounds},
                  {setup, rssList, msgList, rssTimer})
    {
        setup.setMsgList(msgList);
        rssList.setControl(control);
        rssList.setMsgList(msgList.logBook());
        msgList.connect({rssList, setup, control, screen});
        actions.connect(control, rssList, msgList);
        control.setWindow(window);
        defaults.setArray({}, QStringLiteral("RSSSiteAddresses"));
    }
    ~WholeProgram()
    {
        clock.endSleeps();
        control.stopDispRSS();
        mainThread.drain();
    }

    void addFeed(const QString &address, const QStringList &headlines)
    {
        loader.serve(address, headlines);
        auto sites =
            defaults.arrayForKey(QStringLiteral("RSSSiteAddresses")).value_or(PropertyArray());
        sites.push_back(PropertyDictionary{{QStringLiteral("RSSValidate"), true},
                                           {QStringLiteral("RSSAddressString"), address},
                                           {QStringLiteral("RSSNameString"), QStringLiteral("町")},
                                           {QStringLiteral("RSSFormat"), 2}});
        defaults.setArray(std::move(sites), QStringLiteral("RSSSiteAddresses"));
    }

    void launch(const std::function<bool()> &isOptionKeyHeld = [] { return false; })
    {
        control.applicationDidFinishLaunching(isOptionKeyHeld);
        mainThread.drain();
    }

    void sleep(std::chrono::milliseconds duration)
    {
        clock.sleepFor(duration);
        mainThread.drain();
    }

    SimulatedClock clock{Clock::CalendarTime(std::chrono::seconds(1'795'230'000))};
    QueueMainThread mainThread;
    QTemporaryDir folder;
    UserDefaults defaults;
    RecordingSounds sounds;
    RecordingOpener opener;
    TownLoader loader{clock};
    TimedScreen screen{clock};
    HandTimer timer;
    ScheduleActions actions;
    PlainWindow window;
    std::vector<std::chrono::seconds> reuseAges;
    QStringList ports; ///< what a program without a board offers
    TimedBoard *board;
    Setup setup;
    RSSList rssList;
    MessageList msgList;
    RSSTimer rssTimer;
    VelmorRSS control;
};

} // namespace qovelmor
