// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/TextCleanup.h"

#include <QString>

namespace qovelmor {

struct Marks
{
    QStringView opening;
    QStringView closing;
};

/// Applies the rules of withoutMarkup() that cut marked pieces out of a text, in place.
///
/// `[0, kept_)` is finished text, `[next_, size)` is still to be looked at, what lies between is
/// gone. A cut moves the finished text only, and once. Afterwards nothing but the joint can hold a
/// mark that was not there before, so only the joint is looked at: the whole takes time in
/// proportion to the text's length, whatever its cuts bring together.
class MarkCutter
{
public:
    MarkCutter(QString &text, const CleanupWatch &watch) : text_(text), watch_(watch) {}

    /// False when the watch ended it, or when the rules would never come to an end.
    bool cut();

    /// Characters looked at and moved so far: what the work costs.
    qsizetype effort() const { return effort_; }

private:
    bool cutPieces(const Marks &marks);
    bool cutSpans();
    bool cutBehind(qsizetype closingEnd);
    bool cutAnchorAtJoint();
    bool endRepetition(qsizetype start);

    QStringView finished() const { return QStringView(text_).first(kept_); }
    bool isAnchorJoined() const;
    bool finishedClosesAnchor();
    qsizetype find(QStringView mark);
    qsizetype endOf(qsizetype closing, const Marks &marks) const;
    void keep(qsizetype end);
    void dropRest() { next_ = text_.size(); }
    void stepBack(qsizetype count);
    void close();

    QString &text_;
    const CleanupWatch &watch_;
    qsizetype kept_ = 0;
    qsizetype next_ = 0;
    qsizetype searched_ = 0; ///< finished text before here has no closing mark of an anchor
    qsizetype effort_ = 0;
};

} // namespace qovelmor
