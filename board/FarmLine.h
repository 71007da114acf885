// SPDX-License-Identifier: MIT
#pragma once

// The board's protocol on one screen. 19200 baud, 8N1, Shift_JIS; the board is 16 dots high.
//
//   host   a command line: a name, arguments after single blanks, a carriage return; 100 bytes at
//          most, the board drops the rest
//   board  an echo of the line, any number of text lines, and the mark "Ok."; a line that carries a
//          value is tagged with its first two characters:
//            "D " data or a number     "V " a text for people     "E " an error
//
// One exchange, the host's bytes with >, the board's with <:
//
//   >  73 63 5f 64 61 74 61 0d                          sc_data\r      how much room is left?
//   <  73 63 5f 64 61 74 61 0d 0a                       sc_data\r\n    echo
//   <  44 20 34 38 0d 0a                                D 48\r\n       the payload is "48"
//   <  4f 6b 2e 0d 0a                                   Ok.\r\n        end of the answer
//
// The payload is the text after the tag, up to the carriage return, of the first tagged line. Some
// boards end every command with "Ok.", others answer only the ones that ask something.
//
// An image travels as 16-bit words, one for each column from left to right, the top dot being the
// most significant bit, 16 words to a line in lower-case hexadecimal, each followed by a blank:
//
//   >  sc_data 8000 0001 \r          column 0: top dot lit, column 1: bottom dot lit
//
// A scrolling line: sc_clear, sc_scroll, then "sc_data <16 words>" and "sc_data" (room?) in turn,
// sc_end 1, and sc_mode until it answers 1 (or 0, when asked twice). A standing image: sc_clear,
// sc_stop, all words at once, sc_show.
//
// FarmLine makes the lines; FarmReply reads the answers; HexText and ColumnWords make the words;
// BoardExchange sends and waits; BoardCommands is the table of commands.

#include <QPointF>
#include <QString>

namespace qovelmor {

/// A command without an argument: "name\r".
QString farmLine(const QString &name);
/// "name argument\r"; a negative argument means none.
QString farmLine(const QString &name, int argument);
/// "name x y\r", both cut toward zero; an x below 0 means no argument. An x that is no number
/// counts as one and is sent, as is y beyond the integers, as the least integer.
QString farmLine(const QString &name, QPointF point);
/// "name text\r", the text unchanged.
QString farmLine(const QString &name, const QString &text);

} // namespace qovelmor
