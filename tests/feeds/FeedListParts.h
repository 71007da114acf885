// SPDX-License-Identifier: MIT
#pragma once

#include "FakeFeedLoader.h"
#include "feeds/FeedEntry.h"
#include "feeds/FeedListActions.h"
#include "feeds/RSSList.h"
#include "feeds/needs/DisplayControl.h"
#include "platform/QueueMainThread.h"
#include "platform/SimulatedClock.h"
#include "platform/UserDefaults.h"

#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <map>

namespace qovelmor {

/// A web of feeds that have a title, one of them also an item; other addresses cannot be read.
class FeedsByAddress final : public FeedLoader
{
public:
    FeedLoad load(const FeedRequest &request) override
    {
        requested << request.address;
        if (duringLoad)
            duringLoad();
        if (postponed.contains(request.address))
            return PostponedFeed{{503, QStringLiteral("HTTP"), QStringLiteral("混雑")}};
        if (pages.contains(request.address))
            return documentOf(QStringLiteral("<html xmlns='http://www.w3.org/1999/xhtml'/>"));
        const auto title = titles.find(request.address);
        if (title == titles.end())
            return ReadError{404, QStringLiteral("HTTP"), QStringLiteral("ない\n<b>404</b>\u202e")};
        const QString item = request.address == itemsIn
                                 ? QStringLiteral("<item><title>x</title></item>")
                                 : QString();
        const QString text = QStringLiteral("<rss version=\"2.0\"><channel><title>%1</title>%2"
                                            "</channel></rss>");
        return documentOf(text.arg(title->second, item));
    }

    std::map<QString, QString> titles;
    QStringList pages;     ///< addresses of documents that are no feeds
    QStringList postponed; ///< addresses whose server wants to be left alone
    QString itemsIn;
    QStringList requested;
    std::function<void()> duringLoad;

private:
    static LoadedFeed documentOf(const QString &text)
    {
        XmlParseResult parsed = XmlDocument::parse(text.toUtf8());
        return {std::make_shared<XmlFeedDocument>(std::move(parsed.document)), {}};
    }
};

class RecordingControl final : public DisplayControl
{
public:
    RecordingControl(QStringList &calls, MainThread &mainThread)
        : calls_(calls), mainThread_(mainThread)
    {}

    bool isDisplayActive() const override { return isActive; }
    void stopDispRSS() override
    {
        calls_ << QStringLiteral("stop");
        isActive = false;
    }
    void startDispRSS() override
    {
        calls_ << QStringLiteral("start");
        isActive = true;
    }
    void listChangeStarts() override { ++changesRunning; }
    void listChangeEnds() override { --changesRunning; }
    void whenIdle(std::function<void()> work) override { mainThread_.post(std::move(work)); }
    bool siteAccessWithAddress(const QString &address) override
    {
        calls_ << QStringLiteral("open ") + address;
        return opensSites;
    }
    void siteAccessErrorAlert() override { calls_ << QStringLiteral("open failed"); }

    bool isActive = false;
    bool opensSites = true;
    int changesRunning = 0;

private:
    QStringList &calls_;
    MainThread &mainThread_;
};

class RecordingFeedWindow final : public FeedWindow
{
public:
    explicit RecordingFeedWindow(QStringList &calls) : calls_(calls) {}

    int selectedRow() const override { return selected; }
    void renewControls(bool hasSelection) override
    {
        calls_ << QStringLiteral("controls %1").arg(hasSelection);
    }
    void showAddressBeingFetched(const QString &address) override { shown << address; }
    void showStatus(const QString &text) override { statuses << text; }
    void openAddressDialog(const QString &title, const QString &address) override
    {
        calls_ << QStringLiteral("dialog ") + title + u' ' + address;
    }
    void closeAddressDialog() override { calls_ << QStringLiteral("close"); }
    void openDeleteAlert(const FeedAlert &alert) override { alerts.push_back(alert); }
    void openLoadPanel(const FeedFilePanel &panel) override { panels.push_back(panel); }
    void openSavePanel(const FeedFilePanel &panel) override { panels.push_back(panel); }
    void copyToPasteboard(const QString &text) override { pasteboard = text; }

    int selected = -1;
    QStringList shown;
    QStringList statuses;
    QString pasteboard;
    std::vector<FeedAlert> alerts;
    std::vector<FeedFilePanel> panels;

private:
    QStringList &calls_;
};

/// A feed list with everything around it: a real store in a temporary folder, feeds by address.
class FeedListParts
{
public:
    FeedListParts()
    {
        list.setControl(control);
        list.setMsgList(log);
        list.setWindow(&window);
    }

    QString storePath() const { return folder.filePath(QStringLiteral("store.plist")); }

    void storeEntries(const std::vector<FeedEntry> &entries)
    {
        PropertyArray array;
        for (const FeedEntry &entry : entries)
            array.emplace_back(toDictionary(entry));
        defaults.setArray(std::move(array), QStringLiteral("RSSSiteAddresses"));
    }
    /// Starts with feeds a, b, c … that need not be fetched: http://a/ named A and so on.
    void startWith(const QString &letters)
    {
        std::vector<FeedEntry> entries;
        for (const QChar letter : letters)
            entries.push_back({true, addressOf(letter), QString(letter.toUpper()), 2});
        storeEntries(entries);
        list.awakeFromNibx();
        calls.clear();
    }
    static QString addressOf(QChar letter) { return QStringLiteral("http://%1/").arg(letter); }

    /// The feeds' letters in list order.
    QString letters() const
    {
        QString text;
        for (const RSSList::Reader &reader : list.tableReaders())
            text += reader->address().mid(7).chopped(1);
        return text;
    }
    /// What a next start would find.
    std::vector<FeedEntry> storedEntries() const
    {
        std::vector<FeedEntry> entries;
        const UserDefaults onDisk(storePath());
        for (const PropertyValue &value :
             onDisk.arrayForKey(QStringLiteral("RSSSiteAddresses")).value_or(PropertyArray()))
            entries.push_back(*feedEntryFrom(value));
        return entries;
    }
    QString storedLetters() const
    {
        QString text;
        for (const FeedEntry &entry : storedEntries())
            text += entry.address.mid(7).chopped(1);
        return text;
    }

    QTemporaryDir folder;
    UserDefaults defaults{storePath()};
    SimulatedClock clock{Clock::CalendarTime(std::chrono::hours(24 * 20000))};
    QueueMainThread mainThread;
    FeedsByAddress web;
    RecordingLog log;
    QStringList calls; ///< of the display and of the window, in order
    RecordingControl control{calls, mainThread};
    RecordingFeedWindow window{calls};
    RSSList list{{defaults, {web, clock}, mainThread}};
    FeedListActions actions{list};
};

} // namespace qovelmor
