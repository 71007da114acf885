// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace qovelmor {

// Bytes as the board's command lines carry them.

/// 16-bit words, high byte first, each as four lower-case digits and a blank; 16 words to a text.
/// An odd last byte is two digits and a blank.
QStringList wordStringsWithData(const QByteArray &bytes);

/// Each byte without padding and with a blank; 16 bytes to a text. Empty input gives one empty
/// text.
QStringList byteStringsWithData(const QByteArray &bytes);

/// 16-bit words without padding, each with a blank, in one text. An odd last byte is dropped.
QString hexStringWithData(const QByteArray &bytes);

/// The value of hexadecimal digits. Only "0"-"9" and "a"-"f" count: any other character, upper-case
/// digits too, is a digit of value 0. More than eight digits: the last eight count.
int intValueWithHexString(QStringView text);

} // namespace qovelmor
