// SPDX-License-Identifier: MIT
#include "board/UnreadAnswers.h"

#include <algorithm>

namespace qovelmor {

void UnreadAnswers::saw(const QByteArray &bytes)
{
    const QByteArray mark("Ok.");
    tail_ += bytes;
    qsizetype read = 0;
    for (qsizetype at = tail_.indexOf(mark); at >= 0; at = tail_.indexOf(mark, read)) {
        missing_ = std::max(missing_ - 1, 0);
        read = at + mark.size();
    }
    tail_ = tail_.sliced(read).right(mark.size() - 1);
}

void UnreadAnswers::settled()
{
    boardTalks_ = !isMissing();
    forget();
}

void UnreadAnswers::forget()
{
    missing_ = 0;
    tail_.clear();
}

} // namespace qovelmor
