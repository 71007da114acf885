// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"

#include <vector>

namespace qovelmor {

/// The order in which messages are shown; the numbers are the stored ones.
enum class MessageOrder { OldestFirst = 0, NewestFirst = 1, Random = 2 };

/// The cap that counts when none is set.
inline constexpr int noSiteCap = 1000;

/// How many messages one site may give: `maxMessages` when the cap is used and positive.
int perSiteCap(bool useMaxMessages, int maxMessages);

/// Sorts by the date text as plain text, descending or ascending; equal texts keep their order. An
/// absent text counts as an empty one and so stands before all dates when ascending.
void sortNewestFirst(MessageVector &messages);
void sortOldestFirst(MessageVector &messages);

/// One site's block: its newest `cap` messages, in the given order (not Random).
void arrangeSite(MessageVector &messages, int cap, MessageOrder order);

/// Removes messages whose headline stood before, as two nested passes over the list would: for each
/// message the later ones are compared in turn, and the one that moves into the place of a removed
/// message is passed over, so three equal headlines in a row leave two. Near-linear. Gives the
/// place of each removed message at the time of its removal.
std::vector<int> removeDuplicates(MessageVector &messages);

/// Marks the messages whose headline is not in `previous` as new.
void markNew(MessageVector &messages, const MessageVector &previous);

} // namespace qovelmor
