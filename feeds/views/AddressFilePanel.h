// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/needs/FeedWindow.h"

#include <functional>

class QWidget;

namespace qovelmor {

/// The file dialogs for the feed list's file. They are opened over the window of `parent` and stay
/// open; `chosen` is called with the path when the user has chosen one.
class AddressFilePanel
{
public:
    using Chosen = std::function<void(const QString &path)>;

    explicit AddressFilePanel(QWidget &parent) : parent_(parent) {}

    void openForLoad(const FeedFilePanel &panel, Chosen chosen);
    /// A file that would be replaced although another name was typed is asked about first: the
    /// file's extension is fixed.
    void openForSave(const FeedFilePanel &panel, Chosen chosen);

private:
    enum class Direction { Load, Save };
    void open(Direction direction, const FeedFilePanel &panel, Chosen chosen);

    QWidget &parent_;
    QString folder_; ///< where the last file was chosen
};

} // namespace qovelmor
