// SPDX-License-Identifier: MIT
#pragma once

#include "messages/Message.h"

#include <algorithm>
#include <optional>

namespace qovelmor {

/// What so many remembered messages may take of the store's file. The user's own lists stand in the
/// same file, which ends at 96 MiB, and it is written whole after every edit: no feed may make it
/// slow to write, let alone larger than it can be. An ordinary message takes some 650 bytes: a
/// hundred thousand of them are remembered whole.
constexpr qint64 rememberedBytes(std::size_t messages)
{
    constexpr qint64 mebibyte = 1024 * 1024;
    constexpr qint64 bytesOfMessage = 1000;
    return std::clamp(static_cast<qint64>(messages) * bytesOfMessage, 16 * mebibyte, 80 * mebibyte);
}

/// The list as the store remembers it where it would take more than `limit` bytes there; nothing
/// where it fits and is remembered as it is. Of a list that does not fit the longest descriptions
/// are cut, all to one length; where that is not enough (headlines as long as books), the other
/// texts too; and in the end the last messages are left out.
std::optional<MessageVector> shortenedForStore(const MessageVector &messages, qint64 limit);

} // namespace qovelmor
