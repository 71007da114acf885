// SPDX-License-Identifier: MIT
#include "feeds/MarkCutter.h"

#include <algorithm>

namespace qovelmor {

namespace {

/// Whether `mark` stands across the joint of `before` and `after`.
bool joins(QStringView before, QStringView after, QStringView mark)
{
    for (qsizetype split = 1; split < mark.size(); ++split) {
        if (before.endsWith(mark.first(split)) && after.startsWith(mark.sliced(split)))
            return true;
    }
    return false;
}

} // namespace

MarkCutter::MarkCutter(QString &text, const CleanupWatch &watch, qsizetype longest)
    : text_(text), watch_(watch), longest_(longest)
{}

Cutting MarkCutter::apply(const Marks &marks, QStringView earlier)
{
    kept_ = 0;
    next_ = 0;
    qsizetype closing = -1;
    Cutting result = Cutting::Done;
    while (result == Cutting::Done) {
        const qsizetype opening = find(marks.opening, next_);
        if (opening < 0)
            break;
        if (closing < next_)
            closing = find(marks.closing, next_);
        if (closing < 0) { // the mark takes the rest of the text along
            keep(opening);
            next_ = text_.size();
            break;
        }
        qsizetype end = closing + marks.closing.size();
        if (end < text_.size() && text_.at(end) == u'\n')
            ++end;
        if (closing < opening)
            return growOrGiveUp(marks, earlier, opening, end);
        keep(opening);
        next_ = end;
        if (joins(QStringView(text_).first(kept_), QStringView(text_).sliced(next_), earlier))
            result = Cutting::Joined;
        stepBack(std::max(marks.opening.size(), marks.closing.size()) - 1);
        if (watch_())
            result = Cutting::TimeUp;
    }
    close();
    return result;
}

qsizetype MarkCutter::find(QStringView mark, qsizetype from) const
{
    const QStringView text(text_);
    for (;;) {
        const qsizetype found = text.indexOf(mark.front(), from);
        if (found < 0 || text.sliced(found).startsWith(mark))
            return found;
        from = found + 1;
    }
}

/// Moves `[next_, end)` to the finished text.
void MarkCutter::keep(qsizetype end)
{
    QChar *data = text_.data();
    if (kept_ != next_)
        std::copy(data + next_, data + end, data + kept_);
    kept_ += end - next_;
    next_ = end;
}

/// Takes the last finished characters back to the rest: at the joint they may make a mark.
void MarkCutter::stepBack(qsizetype count)
{
    count = std::min({count, kept_, next_ - kept_});
    QChar *data = text_.data();
    std::copy_backward(data + kept_ - count, data + kept_, data + next_);
    kept_ -= count;
    next_ -= count;
}

/// Puts finished text and rest together.
void MarkCutter::close()
{
    keep(text_.size());
    text_.truncate(kept_);
}

/// The closing mark stands before the opening one: the rule repeats what lies between them, which
/// leaves both where they are, unless the joint makes a mark of its own.
Cutting MarkCutter::growOrGiveUp(const Marks &marks, QStringView earlier, qsizetype opening,
                                 qsizetype end)
{
    const qsizetype gone = next_ - kept_;
    close();
    const QStringView before = QStringView(text_).first(opening - gone);
    const QStringView after = QStringView(text_).sliced(end - gone);
    const bool isJoined = joins(before, after, earlier) ||
                          (!earlier.isEmpty() && joins(before, after, marks.opening));
    const qsizetype size = before.size() + after.size();
    if (!isJoined || size == text_.size() || size > longest_)
        return Cutting::Unending;
    QString grown;
    grown.reserve(size);
    grown.append(before).append(after);
    text_ = grown;
    return watch_() ? Cutting::TimeUp : Cutting::Joined;
}

} // namespace qovelmor
