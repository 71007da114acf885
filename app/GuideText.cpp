// SPDX-License-Identifier: MIT
#include "app/GuideText.h"

#include <QRegularExpression>
#include <QStringList>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Headings, tables, pictures, code: lines that end where they end.
bool isWhole(const QString &line)
{
    static const QRegularExpression whole(u"^(#|\\||!\\[|    |\\s*$)"_s);
    return whole.match(line).hasMatch();
}

bool beginsItem(const QString &line)
{
    static const QRegularExpression item(u"^\\s*([-*>]|\\d+\\.)\\s"_s);
    return item.match(line).hasMatch();
}

bool isWide(QChar character)
{
    return character.unicode() >= 0x2e80; // where the scripts that are written without spaces begin
}

// Words in letters stand free on both sides, but not beside a Japanese bracket, comma or full stop.
bool needsSpace(QChar before, QChar after)
{
    const bool isBesideMark =
        (isWide(before) && before.isPunct()) || (isWide(after) && after.isPunct());
    return !(isWide(before) && isWide(after)) && !isBesideMark;
}

void join(QString &text, const QString &line)
{
    const QString rest = line.trimmed();
    if (needsSpace(text.back(), rest.front()))
        text += u' ';
    text += rest;
}

} // namespace

QString withoutLineBreaks(const QString &markdown)
{
    QStringList joined;
    for (const QString &line : markdown.split(u'\n')) {
        const bool goesOn = !joined.isEmpty() && !isWhole(joined.last());
        if (goesOn && !isWhole(line) && !beginsItem(line))
            join(joined.last(), line);
        else
            joined << line;
    }
    return joined.join(u'\n');
}

} // namespace qovelmor
