// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedViewSettings.h"
#include "feeds/RSSReader.h"
#include "feeds/needs/FeedWindow.h"
#include "messages/needs/FeedSource.h"
#include "platform/ChangeNotice.h"

#include <QStringList>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace qovelmor {

class DisplayControl;
class MainThread;
class UserDefaults;

/// What the feed list stands on; all of it outlives the list.
struct FeedListServices
{
    UserDefaults &defaults;
    FeedServices reading;
    MainThread &mainThread;
};

/// The ordered list of feeds, kept in the defaults store.
///
/// The read cycle asks for the feeds from its own thread; everything else runs on the main thread.
/// Before the order or the contents of the list change the display is stopped, and started again
/// afterwards if it had been running.
class RSSList final : public FeedSource
{
public:
    using Reader = std::shared_ptr<RSSReader>;
    using ReaderList = std::vector<Reader>;

    /// Whether a feed that is made is put into the list or in the place of one.
    enum class AddressMode { Edit, Add };

    /// Registers the factory defaults.
    explicit RSSList(FeedListServices services);
    ~RSSList() override;
    RSSList(const RSSList &) = delete;
    RSSList &operator=(const RSSList &) = delete;

    // To be set before awakeFromNibx(), but for the window, which may be missing (null).
    void setControl(DisplayControl &control) { control_ = &control; }
    void setMsgList(ReadLog &log) { msgList_ = &log; }
    void setWindow(FeedWindow *window) { window_ = window ? window : &noWindow_; }
    FeedWindow &window() const { return *window_; }
    DisplayControl &control() const { return *control_; }

    /// Start-up: makes the readers. Feeds without name or format are fetched now.
    void awakeFromNibx();

    // The feeds. --------------------------------------------------------------------------------

    /// The feeds to read, in order: the list, or the one-feed list while there is one (which is
    /// logged). Any thread.
    ReaderList readerList() const;
    std::vector<std::shared_ptr<Feed>> feeds() const override;
    /// How many of them are enabled. Any thread.
    int validSiteCount() const override;

    /// The list as the table shows it. Any thread.
    ReaderList tableReaders() const;
    int readerCount() const;
    /// How many enabled feeds offered nothing at their last read.
    int failedSiteCount() const;
    /// Null for a row outside the list.
    Reader readerAt(int row) const;
    /// -1 when the reader is not in the list any more.
    int rowOf(const std::weak_ptr<RSSReader> &reader) const;

    /// Puts a list of this one feed in the list's place; its name is fetched at once.
    void setTempReader(const QString &address);
    void delTempReader();

    // Changes. ----------------------------------------------------------------------------------

    void createReaders();
    /// Makes a feed (its name is fetched at once) and puts it in: Add inserts it at the index, or
    /// at the end when the index lies outside the list; Edit puts it in the place of the one there.
    void createReaderWithAddress(const QString &address, int index, AddressMode mode);
    void removeReader(int row);
    /// What became of an import.
    struct Appended
    {
        int count = 0;
        int unread = 0; ///< of them: feeds that could not be read
        bool isCancelled = false;
    };
    /// Adds one feed for each address at the end, or none when it is broken off meanwhile.
    Appended appendAddresses(const QStringList &addresses);
    /// Breaks appendAddresses() off, the fetch that is running too (where isImportCancelled() ends
    /// it).
    void cancelImport() { isImportCancelled_ = true; }
    bool isImportCancelled() const { return isImportCancelled_; } ///< any thread
    /// Moves a row so that it stands above what was at `target`; an index outside changes nothing.
    void moveRSSReaderFromIndex(int from, int target);

    /// Inverts whether the feed is read and saves; NO for a row past the list.
    bool shouldEditTableColumn(int row);
    /// Inverts every feed for itself.
    void invertValidates();

    void saveSiteAddresses();
    /// Tells the table that a feed or the list has changed. Any thread.
    void renewTableView() { changes_.changed(); }
    void renewRSSList();
    void renewControls();
    ChangeNotice &changes() { return changes_; }

    // How the table looks. ----------------------------------------------------------------------

    FeedViewSettings &view() { return view_; }
    void _setRowHeight(double points) { view_.setRowHeight(points); }
    /// The font is the system's; only its size can be chosen.
    void setFont(double points) { view_.setFontSize(points); }
    double font() const { return view_.fontSize(); }

private:
    Reader makeReader(const QString &address);
    void replaceList(ReaderList list);

    FeedListServices services_;
    FeedViewSettings view_;
    DisplayControl *control_ = nullptr;
    ReadLog *msgList_ = nullptr;
    FeedWindow noWindow_;
    FeedWindow *window_ = &noWindow_;
    ChangeNotice changes_;
    std::atomic<bool> isImportCancelled_ = false;

    mutable std::mutex mutex_; // a leaf: guards the two lists
    ReaderList readerList_;
    ReaderList tempReader_; ///< empty or one feed
};

} // namespace qovelmor
