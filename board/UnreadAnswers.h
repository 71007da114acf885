// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace qovelmor {

/// Counts the commands whose answer nobody has read yet, and the marks "Ok." that have come since.
/// Learns from that which of the two kinds of board is there.
class UnreadAnswers
{
public:
    void commandSent() { ++missing_; }
    /// Bytes that arrived; a mark may be cut in two.
    void saw(const QByteArray &bytes);
    /// Whether the board answers orders too, going by the last wait; taken for granted at first.
    bool boardTalks() const { return boardTalks_; }
    /// The wait for the missing answers is over, and what is missing will not come: some boards
    /// give no answer where none is read.
    void settled();
    void forget();
    bool isMissing() const { return missing_ > 0; }

private:
    int missing_ = 0;
    bool boardTalks_ = true;
    QByteArray tail_;
};

} // namespace qovelmor
