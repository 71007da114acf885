// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"

#include <memory>
#include <mutex>

namespace qovelmor {

/// Everything of the message list that a window shows, at one moment.
struct MessagePresentation
{
    MessageSnapshot messages = std::make_shared<const MessageVector>();
    int messageIndex = 0;    ///< the message on display
    QString statusText;      ///< the status line
    int progressMaximum = 0; ///< sites to read
    int progressValue = 0;   ///< sites read so far
    bool progressRunning = false;
    QString messageNumber;       ///< "3/15", or empty while nothing is shown
    QString description;         ///< of the message on display
    int scrollToRow = 0;         ///< the row to make visible …
    unsigned scrollRequests = 0; ///< … whenever this has changed
};

using PresentationSnapshot = std::shared_ptr<const MessagePresentation>;

/// Holds the presentation: workers change it, the window takes it whole. Any thread.
class PresentationState
{
public:
    PresentationSnapshot snapshot() const
    {
        const std::lock_guard lock(mutex_);
        return presentation_;
    }

    /// `edit` gets a copy to change; it must not call back.
    template <typename Edit>
    void change(const Edit &edit)
    {
        const std::lock_guard lock(mutex_);
        auto changed = std::make_shared<MessagePresentation>(*presentation_);
        edit(*changed);
        presentation_ = std::move(changed);
    }

private:
    mutable std::mutex mutex_;
    PresentationSnapshot presentation_ = std::make_shared<const MessagePresentation>();
};

} // namespace qovelmor
