// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace qovelmor {

/// Counts the commands whose answer nobody has read yet, and the marks "Ok." that have come since.
class UnreadAnswers
{
public:
    void commandSent() { ++missing_; }
    /// Bytes that arrived; a mark may be cut in two.
    void saw(const QByteArray &bytes);
    /// Stops waiting: some boards give no answer where none is read.
    void forget();
    bool isMissing() const { return missing_ > 0; }

private:
    int missing_ = 0;
    QByteArray tail_;
};

} // namespace qovelmor
