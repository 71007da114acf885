// SPDX-License-Identifier: MIT
#include "feeds/MarkCutter.h"

#include <algorithm>

namespace qovelmor {

namespace {

constexpr Marks anchorMarks{u"<a", u"/a>"};
constexpr Marks spanMarks{u"<span", u"/span>"};
constexpr Marks tagMarks{u"<", u">"};

} // namespace

bool MarkCutter::cut()
{
    return cutPieces(anchorMarks) && cutSpans() && cutPieces(tagMarks);
}

/// The rule of anchors or that of tags: a cut of theirs makes marks of their own only.
bool MarkCutter::cutPieces(const Marks &marks)
{
    for (qsizetype opening = 0; (opening = find(marks.opening)) >= 0;) {
        const qsizetype closing = find(marks.closing);
        if (closing >= 0 && closing < opening)
            return false; // what lies between is repeated for ever: no joint makes another mark
        keep(opening);
        if (closing < 0)
            dropRest(); // the mark takes the rest of the text along
        else if (!cutBehind(endOf(closing, marks)))
            return false;
        stepBack(std::max(marks.opening.size(), marks.closing.size()) - 1);
    }
    close();
    return true;
}

/// The rule of spans, with that of anchors wherever "<" and "a" have met: no other anchor is left.
bool MarkCutter::cutSpans()
{
    searched_ = 0;
    qsizetype repetition = -1; // behind a closing mark that stands before every opening one
    for (qsizetype opening = 0; (opening = find(spanMarks.opening)) >= 0;) {
        const qsizetype closing = repetition < 0 ? find(spanMarks.closing) : -1;
        if (closing >= 0 && closing < opening) {
            keep(endOf(closing, spanMarks));
            repetition = kept_;
        }
        keep(opening);
        if (repetition >= 0) {
            if (!endRepetition(repetition))
                return false;
        } else if (closing < 0) {
            dropRest();
        } else if (!cutBehind(endOf(closing, spanMarks))) {
            return false;
        }
        while (isAnchorJoined()) {
            if (!cutAnchorAtJoint())
                return false;
        }
        stepBack(std::max(spanMarks.opening.size(), spanMarks.closing.size()) - 1);
    }
    close();
    return true;
}

bool MarkCutter::cutBehind(qsizetype closingEnd)
{
    next_ = closingEnd;
    return !watch_();
}

/// The finished text ends with the "<" of an anchor.
bool MarkCutter::cutAnchorAtJoint()
{
    --kept_;
    if (finishedClosesAnchor())
        return false; // before the opening mark
    const qsizetype closing = find(anchorMarks.closing);
    if (closing >= 0)
        return cutBehind(endOf(closing, anchorMarks));
    dropRest();
    return true;
}

/// The closing mark of spans stands before the opening one: the rule puts `[start, kept_)`, which
/// lies between, once more before itself, and does so for ever unless a joint makes another mark.
///
/// - "<" and "a" meet: the rule of anchors then cuts from that "<" to behind a closing mark that
///   stands farther on, and with it all that was repeated.
/// - "<sp" and "an" meet: the piece from there on is repeated without that "<sp". Other halves of
///   the mark meet too, but no "<" and "a" can come of what begins with "s", "p" or "n".
bool MarkCutter::endRepetition(qsizetype start)
{
    const QStringView repeated = finished().sliced(start);
    if (!repeated.startsWith(u'a'))
        return false;
    if (repeated.startsWith(u"an")) {
        while (finished().endsWith(u"<sp")) {
            kept_ -= 3;
            if (watch_())
                return false;
        }
    }
    return finished().endsWith(u'<') && !watch_() && cutAnchorAtJoint();
}

bool MarkCutter::isAnchorJoined() const
{
    return finished().endsWith(anchorMarks.opening.front()) && next_ < text_.size() &&
           text_.at(next_) == anchorMarks.opening.back();
}

bool MarkCutter::finishedClosesAnchor()
{
    const qsizetype margin = anchorMarks.closing.size() - 1; // a mark may lie across the border
    const qsizetype from = std::max<qsizetype>(std::min(searched_, kept_) - margin, 0);
    effort_ += kept_ - from;
    searched_ = kept_;
    return finished().sliced(from).contains(anchorMarks.closing);
}

/// The first `mark` of the text that is still to be looked at.
qsizetype MarkCutter::find(QStringView mark)
{
    const QStringView text(text_);
    qsizetype found = text.indexOf(mark.front(), next_);
    while (found >= 0 && !text.sliced(found).startsWith(mark))
        found = text.indexOf(mark.front(), found + 1);
    effort_ += (found < 0 ? text.size() : found) - next_;
    return found;
}

/// One line feed behind a closing mark belongs to it.
qsizetype MarkCutter::endOf(qsizetype closing, const Marks &marks) const
{
    const qsizetype end = closing + marks.closing.size();
    return end < text_.size() && text_.at(end) == u'\n' ? end + 1 : end;
}

/// Moves `[next_, end)` to the finished text.
void MarkCutter::keep(qsizetype end)
{
    QChar *data = text_.data();
    if (kept_ != next_)
        std::copy(data + next_, data + end, data + kept_);
    effort_ += end - next_;
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
    searched_ = std::min(searched_, kept_);
}

/// Puts finished text and rest together, for the next rule to begin with.
void MarkCutter::close()
{
    keep(text_.size());
    text_.truncate(kept_);
    kept_ = 0;
    next_ = 0;
}

} // namespace qovelmor
