// SPDX-License-Identifier: MIT
#include "messages/RememberedMessages.h"

#include "platform/PlainText.h"
#include "platform/PropertyListWriter.h"

#include <algorithm>
#include <array>
#include <limits>

namespace qovelmor {

namespace {

constexpr qint64 bytesBesideTexts = 320; // tags, keys and indentation of one message
constexpr qsizetype whole = std::numeric_limits<qsizetype>::max();

/// Characters that are left of one text.
struct Lengths
{
    qsizetype description;
    qsizetype other;
};

constexpr std::array steps = {
    Lengths{whole, whole}, Lengths{65'536, whole}, Lengths{16'384, whole}, Lengths{4096, whole},
    Lengths{1024, whole},  Lengths{256, whole},    Lengths{64, whole},     Lengths{16, whole},
    Lengths{16, 16'384},   Lengths{16, 4096},      Lengths{16, 1024},      Lengths{16, 256},
};

qint64 storedBytes(const QString &text, qsizetype length)
{
    return PropertyListWriter::mostBytesOf(QStringView(text).left(std::min(length, text.size())));
}

qint64 storedBytes(const std::optional<QString> &text, qsizetype length)
{
    return text ? storedBytes(*text, length) : 0;
}

qint64 storedBytes(const Message &message, const Lengths &lengths)
{
    return bytesBesideTexts + storedBytes(message.headline, lengths.other) +
           storedBytes(message.date, lengths.other) + storedBytes(message.link, lengths.other) +
           storedBytes(message.siteName, lengths.other) +
           storedBytes(message.description, lengths.description);
}

std::size_t countThatFits(const MessageVector &messages, const Lengths &lengths, qint64 limit)
{
    qint64 bytes = 0;
    for (std::size_t count = 0; count < messages.size(); ++count) {
        bytes += storedBytes(messages[count], lengths);
        if (bytes > limit)
            return count;
    }
    return messages.size();
}

void shorten(std::optional<QString> &text, qsizetype length)
{
    if (text)
        text = beginning(*text, length);
}

MessageVector shortened(const MessageVector &messages, std::size_t count, const Lengths &lengths)
{
    MessageVector kept(messages.begin(), messages.begin() + static_cast<std::ptrdiff_t>(count));
    for (Message &message : kept) {
        message.headline = beginning(message.headline, lengths.other);
        shorten(message.date, lengths.other);
        shorten(message.link, lengths.other);
        shorten(message.siteName, lengths.other);
        shorten(message.description, lengths.description);
    }
    return kept;
}

} // namespace

std::optional<MessageVector> shortenedForStore(const MessageVector &messages, qint64 limit)
{
    const auto fits = [&](const Lengths &lengths) {
        return countThatFits(messages, lengths, limit) == messages.size();
    };
    const auto *const found = std::ranges::find_if(steps, fits);
    if (found == steps.begin())
        return std::nullopt;
    const Lengths &lengths = found == steps.end() ? steps.back() : *found;
    return shortened(messages, countThatFits(messages, lengths, limit), lengths);
}

} // namespace qovelmor
