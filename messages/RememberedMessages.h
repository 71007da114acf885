// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"

#include <optional>

namespace qovelmor {

/// What all remembered messages may take of the store's file. The user's own lists stand in the
/// same file, and it is written whole after every edit: no feed may make it slow to write, let
/// alone larger than it can be. Ten thousand messages of 1,500 bytes fit.
constexpr qint64 rememberedBytes = 16 * 1024 * 1024;

/// The list as the store remembers it where it would take more than `limit` bytes there; nothing
/// where it fits and is remembered as it is. Of a list that does not fit the longest descriptions
/// are cut, all to one length; where that is not enough (headlines as long as books), the other
/// texts too; and in the end the last messages are left out.
std::optional<MessageVector> shortenedForStore(const MessageVector &messages,
                                               qint64 limit = rememberedBytes);

} // namespace qovelmor
