// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace qovelmor {

// Reading the board's answers: pure functions over text. An absent text stands for "no reply".

/// A part of a text, as a search gives it.
struct TextRange
{
    qsizetype location;
    qsizetype length;

    qsizetype end() const { return location + length; }
};

/// What was found in a reply.
struct FarmPayload
{
    std::optional<QString> text; ///< empty when no line is tagged; absent when time was up
    bool timeIsUp = false;
    QStringList faults; ///< texts for the log
};

/// The text after the tag "D ", "V " or "E ", up to the carriage return, of the first line that
/// begins with one; errors count like data. `timeIsUp` is asked before each line.
FarmPayload farmPayload(const QString &reply, const std::function<bool()> &timeIsUp);

// The steps of farmPayload, each with a range fault that no reply can reach there: the ranges come
// from searches in the very text, and a text that begins with a tag has two characters.

/// What follows the range; the text unchanged and a "RangeError1" when the range ends beyond it.
QStringView textAfter(QStringView text, TextRange range, QStringList &faults);
/// Without its first two characters; unchanged and a "LengthError" when there are not that many.
QStringView textWithoutTag(QStringView text, QStringList &faults);
/// What stands before the range; the text unchanged and a "RangeError2" when it begins beyond it.
QStringView textBefore(QStringView text, TextRange range, QStringList &faults);

/// The leading decimal integer of a text, white space before it skipped: 0 when there is none, the
/// nearest integer when it is too large.
int leadingInteger(QStringView text);

/// The payload as a number; -1 without a reply.
int farmInteger(const std::optional<QString> &payload);
/// The number after the first `key`; -1 without a reply, and when nothing follows the key or it is
/// missing.
int farmIntegerAfter(const std::optional<QString> &payload, const QString &key);

/// The payload's hexadecimal words, split at each single blank, as two bytes each, high byte first.
QByteArray farmWords(const std::optional<QString> &payload);

/// The data columns of a memory listing: from every line that holds "D rom data ", the text from
/// character 17 on (the address field has a fixed width) up to the carriage return. Lines without
/// one are skipped.
QStringList romDataLines(const QString &reply);
/// The bytes of these columns: piece j of line i goes to byte i * 16 + j; there are as many bytes
/// as pieces, and a piece whose place lies beyond them is dropped.
QByteArray romDataBytes(const QStringList &lines);

/// The lines of a help answer without the last two, each without everything up to its first "V ".
QString helpText(const QString &reply);

} // namespace qovelmor
