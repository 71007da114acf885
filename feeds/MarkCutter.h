// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/TextCleanup.h"

#include <QString>

namespace qovelmor {

/// How one of the rules that cut marked pieces out of a text ended.
enum class Cutting {
    Done,     ///< no opening mark is left
    Joined,   ///< text on both sides of a cut has joined: the earlier rule must look again
    Unending, ///< the closing mark stands before the opening one; nothing will change that
    TimeUp    ///< the watch has ended it
};

struct Marks
{
    QStringView opening;
    QStringView closing;
};

/// Applies one rule of withoutMarkup() to a text in place.
///
/// `[0, kept_)` is finished text, `[next_, size)` is still to be looked at, what lies between is
/// gone. A cut moves the finished text only, and once, so the whole takes a single pass.
class MarkCutter
{
public:
    /// `longest` is the size at which a growing text is given up.
    MarkCutter(QString &text, const CleanupWatch &watch, qsizetype longest);

    /// `earlier` is the opening mark of the rule that goes before this one, empty when there is
    /// none that a joint could bring back.
    Cutting apply(const Marks &marks, QStringView earlier);

private:
    qsizetype find(QStringView mark, qsizetype from) const;
    void keep(qsizetype end);
    void stepBack(qsizetype count);
    void close();
    Cutting growOrGiveUp(const Marks &marks, QStringView earlier, qsizetype opening, qsizetype end);

    QString &text_;
    const CleanupWatch &watch_;
    qsizetype longest_;
    qsizetype kept_ = 0;
    qsizetype next_ = 0;
};

} // namespace qovelmor
