// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/RSSList.h"

#include <QString>

#include <memory>

namespace qovelmor {

/// What the buttons, menus, dialogs and drops of the feed table do. Main thread only.
///
/// Dialogs are opened and stay open; what they act on is remembered by identity, because the list
/// may change before the answer comes.
class FeedListActions
{
public:
    explicit FeedListActions(RSSList &list) : list_(list) {}

    // Add and edit: a dialog with one address.
    void actCreateRSSURL();
    void actEditRSSURL();
    void actAddressExec(const QString &address);
    void actAddressCancel();

    void actDeleteRSSURL();
    /// The confirmation's answer.
    void deleteRSSURLAnswered(bool isDeletion);

    /// Opens the selected feed's address in a browser.
    void actDoubleClickListView();
    /// Puts date, name and address of the selected feed on the pasteboard.
    void actCopyRow();

    // The feed list's file. The chosen name's extension becomes "rssurl" in both directions.
    void actLoadURL();
    void loadURLChosen(const QString &path);
    /// Breaks off the import that is running: the list stays as it was.
    void actImportCancel();
    void actSaveURL();
    void saveURLChosen(const QString &path);

    // Drops. `target` is the row above which something is dropped; NO when it was refused. An
    // address that was accepted is fetched and put in soon, above the row that stood there.
    bool acceptRowDrop(int from, int target);
    bool acceptAddressDrop(const QString &text, int target);

private:
    void addressDialog(const QString &address);
    void deleteRSSURLAlert();

    RSSList &list_;
    RSSList::AddressMode addressMode_ = RSSList::AddressMode::Add;
    std::weak_ptr<RSSReader> edited_;
    std::weak_ptr<RSSReader> deleted_;
};

} // namespace qovelmor
