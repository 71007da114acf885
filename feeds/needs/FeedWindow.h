// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The confirmation that the deletion of a feed asks for.
struct FeedAlert
{
    QString title;
    QString informative;
    QString deleteButton;
    QString cancelButton;
};

/// A panel that asks for a feed list's file.
struct FeedFilePanel
{
    QString title;
    QString button;
    QString fileName; ///< proposed name; empty when a file is opened
    QString fileType; ///< extension of the files
};

/// The feed table and its dialogs as the feed list sees them. Main thread only. Whatever is opened
/// stays open, and its answer comes back as the call that is named with it. The bodies here do
/// nothing: a process without a window uses them as they are.
class FeedWindow
{
public:
    virtual ~FeedWindow() = default;

    /// The first selected row, -1 when none is.
    virtual int selectedRow() const { return -1; }
    /// Which buttons can be used: edit, delete and open need a selected row, add never does.
    virtual void renewControls(bool /*hasSelection*/) {}

    /// The address that is being fetched, at once on the screen; empty when that is over.
    virtual void showAddressBeingFetched(const QString &) {}
    /// Which of how many addresses is fetched next, where there are several.
    virtual void showFetchProgress(int /*number*/, int /*total*/) {}
    /// An import begins and ends; actImportCancel() may be called in between.
    virtual void importStarts(int /*total*/) {}
    virtual void importEnds() {}
    /// A sentence for the status line.
    virtual void showStatus(const QString &) {}

    /// Opens the address dialog; its answer is actAddressExec() or actAddressCancel().
    virtual void openAddressDialog(const QString & /*title*/, const QString & /*address*/) {}
    virtual void closeAddressDialog() {}
    /// Opens the confirmation; its answer is deleteRSSURLAnswered().
    virtual void openDeleteAlert(const FeedAlert &) {}
    /// Opens the panel for an import; its answer is loadURLChosen().
    virtual void openLoadPanel(const FeedFilePanel &) {}
    /// Opens the panel for an export; its answer is saveURLChosen().
    virtual void openSavePanel(const FeedFilePanel &) {}

    virtual void copyToPasteboard(const QString &) {}
};

} // namespace qovelmor
