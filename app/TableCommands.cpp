// SPDX-License-Identifier: MIT
#include "app/TableCommands.h"

#include "app/AppWindow.h"
#include "feeds/FeedListActions.h"
#include "messages/MessageList.h"

namespace qovelmor {

namespace {

constexpr double rowHeightStep = 4.0;
constexpr double fontStep = 2.0;
constexpr double originalRowHeight = 17.0;
constexpr double systemFontSize = 12.0; // what the store is registered with

} // namespace

void TableCommands::actCopyRow()
{
    const QString selected = window_->selectedTab();
    if (selected == tab::list) {
        FeedListActions(rssList_).actCopyRow();
    } else if (selected == tab::message) {
        if (const auto text = msgList_.actCopyRow(window_->selectedRow(tab::message)))
            window_->copyToPasteboard(*text);
    }
}

bool TableCommands::canCopyRow() const
{
    const QString selected = window_->selectedTab();
    if (selected == tab::list)
        return rssList_.readerCount() > 0 && window_->selectedRow(selected) >= 0;
    if (selected == tab::message)
        return msgList_.messageCount() > 0 && window_->selectedRow(selected) >= 0;
    return false;
}

void TableCommands::actSizeBigger()
{
    changeSizes(rowHeightStep, fontStep);
}

void TableCommands::actSizeSmaller()
{
    changeSizes(-rowHeightStep, -fontStep);
}

void TableCommands::actSizeOriginal()
{
    setSizes(originalRowHeight, systemFontSize);
}

void TableCommands::changeSizes(double rowHeight, double font)
{
    if (window_->selectedTab() == tab::list)
        setSizes(rssList_.view().rowHeight() + rowHeight, rssList_.view().fontSize() + font);
    else if (window_->selectedTab() == tab::message)
        setSizes(msgList_.viewSettings().rowHeight() + rowHeight,
                 msgList_.viewSettings().fontSize() + font);
}

void TableCommands::setSizes(double rowHeight, double fontSize)
{
    const QString selected = window_->selectedTab();
    if (selected == tab::list) {
        rssList_._setRowHeight(rowHeight);
        rssList_.setFont(fontSize);
    } else if (selected == tab::message) {
        msgList_._setRowHeight(rowHeight);
        msgList_.setFont(fontSize);
    } else {
        return;
    }
    window_->reloadTable(selected);
}

} // namespace qovelmor
