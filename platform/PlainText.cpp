// SPDX-License-Identifier: MIT
#include "platform/PlainText.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

// Category Cc of Unicode, and the two separators that count as line ends.
bool isControl(QChar character)
{
    const char16_t code = character.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029;
}

// The marks, embeddings, overrides and isolates of the Unicode bidirectional algorithm (UAX 9).
bool turnsDirection(QChar character)
{
    const char16_t code = character.unicode();
    return code == 0x061c || code == 0x200e || code == 0x200f ||
           (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

} // namespace

QString withoutControls(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), isControl))
        return text;
    QString plain = text;
    std::replace_if(plain.begin(), plain.end(), isControl, QChar(u' '));
    return plain;
}

QString withoutDirectionMarks(const QString &text)
{
    QString plain = text;
    if (std::any_of(text.cbegin(), text.cend(), turnsDirection))
        plain.removeIf(turnsDirection);
    return plain;
}

QString forWindow(const QString &text)
{
    return withoutDirectionMarks(withoutControls(text));
}

QString beginning(const QString &text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    return text.left(length > 0 && text[length - 1].isHighSurrogate() ? length - 1 : length);
}

QString lineForWindow(const QString &text)
{
    return text.size() <= lineCharacters ? forWindow(text)
                                         : forWindow(beginning(text, lineCharacters)) + u'…';
}

QString plainTooltip(const QString &text)
{
    return text.isEmpty() ? QString() : u"<p>"_s + lineForWindow(text).toHtmlEscaped() + u"</p>"_s;
}

} // namespace qovelmor
