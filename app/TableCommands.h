// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

class AppWindow;
class MessageList;
class RSSList;

/// The commands that act on the table of the selected tab: copying its row, and the size of its
/// rows and text. On any other tab they do nothing. Main thread only.
class TableCommands
{
public:
    TableCommands(RSSList &rssList, MessageList &msgList) : rssList_(rssList), msgList_(msgList) {}

    void setWindow(AppWindow &window) { window_ = &window; }

    void actCopyRow();
    /// The table holds rows and one of them is selected.
    bool canCopyRow() const;

    /// Sizes have no bounds, on purpose: what is stored may go below zero, and a table shows at
    /// least one pixel of it.
    void actSizeBigger();
    void actSizeSmaller();
    void actSizeOriginal();

private:
    void changeSizes(double rowHeightStep, double fontStep);
    void setSizes(double rowHeight, double fontSize);

    RSSList &rssList_;
    MessageList &msgList_;
    AppWindow *window_ = nullptr;
};

} // namespace qovelmor
