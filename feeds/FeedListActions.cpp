// SPDX-License-Identifier: MIT
#include "feeds/FeedListActions.h"

#include "feeds/AddressFile.h"
#include "feeds/WebAddress.h"
#include "feeds/needs/DisplayControl.h"
#include "platform/Localization.h"
#include "platform/RowMove.h"
#include "platform/SystemLog.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto absentText = u"(null)"_s; // what an absent text reads when it is formatted

QString rowText(const RSSReader &reader)
{
    const QString date = reader.date().value_or(QString());
    const QString head =
        (date.isEmpty() ? u"-"_s : date) + u' ' + reader.name().value_or(absentText);
    return head + u' ' + reader.address();
}

} // namespace

// Add and edit. -------------------------------------------------------------------------------

void FeedListActions::addressDialog(const QString &address)
{
    const bool isAddition = addressMode_ == RSSList::AddressMode::Add;
    list_.window().openAddressDialog(localized(isAddition ? u"Add URL"_s : u"Edit URL"_s), address);
}

void FeedListActions::actCreateRSSURL()
{
    addressMode_ = RSSList::AddressMode::Add;
    addressDialog(u""_s);
}

void FeedListActions::actEditRSSURL()
{
    const RSSList::Reader reader = list_.readerAt(list_.window().selectedRow());
    if (!reader) {
        systemLog(logFeeds(), u"RSSList:index error1"_s);
        return;
    }
    addressMode_ = RSSList::AddressMode::Edit;
    edited_ = reader;
    addressDialog(reader->address());
}

void FeedListActions::actAddressExec(const QString &address)
{
    const bool isAddition = addressMode_ == RSSList::AddressMode::Add;
    const int row = isAddition ? list_.window().selectedRow() : list_.rowOf(edited_);
    // The text is taken as typed: only dropped addresses lose their "feed://".
    if (isAddition || row >= 0)
        list_.createReaderWithAddress(address, row, addressMode_);
    list_.window().closeAddressDialog();
    list_.renewRSSList();
}

void FeedListActions::actAddressCancel()
{
    list_.window().closeAddressDialog();
}

// Delete. -------------------------------------------------------------------------------------

void FeedListActions::actDeleteRSSURL()
{
    const RSSList::Reader reader = list_.readerAt(list_.window().selectedRow());
    if (!reader)
        return;
    deleted_ = reader;
    deleteRSSURLAlert();
}

void FeedListActions::deleteRSSURLAlert()
{
    list_.window().openDeleteAlert({localized(u"DeleteRSSURL"_s), localized(u"DeleteRSSInfo"_s),
                                    localized(u"Delete"_s), u"Cancel"_s});
}

void FeedListActions::deleteRSSURLAnswered(bool isDeletion)
{
    if (isDeletion)
        list_.removeReader(list_.rowOf(deleted_));
    else
        list_.window().closeAddressDialog();
}

// The selected row. ---------------------------------------------------------------------------

void FeedListActions::actDoubleClickListView()
{
    const RSSList::Reader reader = list_.readerAt(list_.window().selectedRow());
    if (!reader)
        systemLog(logFeeds(), u"RSSList:index error2"_s);
    else if (!list_.control().siteAccessWithAddress(reader->address()))
        list_.control().siteAccessErrorAlert();
}

void FeedListActions::actCopyRow()
{
    const RSSList::Reader reader = list_.readerAt(list_.window().selectedRow());
    if (!reader)
        systemLog(logFeeds(), u"RSSList:index error3"_s);
    else
        list_.window().copyToPasteboard(rowText(*reader));
}

// The feed list's file. -----------------------------------------------------------------------

void FeedListActions::actLoadURL()
{
    list_.window().openLoadPanel(
        {localized(u"TitleLoadURL"_s), localized(u"Execute"_s), QString(), addressFileType()});
}

void FeedListActions::loadURLChosen(const QString &path)
{
    const std::optional<QStringList> addresses = readAddressFile(path);
    if (!addresses) {
        systemLog(logFeeds(), u"File read error."_s);
        list_.window().showStatus(localized(u"FeedFileReadError"_s));
        return;
    }
    const RSSList::Appended appended = list_.appendAddresses(*addresses);
    if (appended.isCancelled)
        list_.window().showStatus(localized(u"ImportCancelled"_s));
    else if (appended.unread == 0)
        list_.window().showStatus(localized(u"ImportDone"_s).arg(appended.count));
    else
        list_.window().showStatus(
            localized(u"ImportDoneUnread"_s).arg(appended.count).arg(appended.unread));
}

void FeedListActions::actImportCancel()
{
    list_.cancelImport();
}

void FeedListActions::actSaveURL()
{
    list_.window().openSavePanel({localized(u"TitleSaveURL"_s), localized(u"Execute"_s),
                                  u"untitled."_s + addressFileType(), addressFileType()});
}

void FeedListActions::saveURLChosen(const QString &path)
{
    QStringList addresses;
    for (const RSSList::Reader &reader : list_.tableReaders())
        addresses << reader->address();
    if (writeAddressFile(path, addresses)) {
        list_.window().showStatus(localized(u"FeedFileSaved"_s).arg(addressFilePath(path)));
        return;
    }
    systemLog(logFeeds(), u"File save error."_s);
    list_.window().showStatus(localized(
        isTooLongForAddressFile(addresses) ? u"FeedFileTooLong"_s : u"FeedFileSaveError"_s));
}

// Drops. --------------------------------------------------------------------------------------

bool FeedListActions::acceptRowDrop(int from, int target)
{
    if (!isRowMove(from, target, list_.tableReaders().size()))
        return false;
    list_.moveRSSReaderFromIndex(from, target);
    list_.renewRSSList();
    return true;
}

bool FeedListActions::acceptAddressDrop(const QString &text, int target)
{
    const DropVerdict verdict = dropVerdict(text);
    if (verdict == DropVerdict::TypeInstead)
        list_.window().showStatus(localized(u"FeedDropTypeInstead"_s));
    if (verdict != DropVerdict::Accepted)
        return false;
    // The application that the link comes from waits for the answer to its drop: fetch afterwards.
    list_.control().whenIdle([&list = list_, address = feedToHttpString(text),
                              below = std::weak_ptr<RSSReader>(list_.readerAt(target))] {
        list.createReaderWithAddress(address, list.rowOf(below), RSSList::AddressMode::Add);
        list.renewRSSList();
    });
    return true;
}

} // namespace qovelmor
