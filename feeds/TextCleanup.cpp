// SPDX-License-Identifier: MIT
#include "feeds/TextCleanup.h"

#include "feeds/MarkCutter.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QChar blank = u' ';
constexpr QChar ideographicBlank = u'\u3000';
constexpr QStringView hardBlank = u"&nbsp;";

/// Each "&nbsp;" becomes a blank, which can make no further one.
bool replaceHardBlanks(QString &text, const CleanupWatch &watch)
{
    qsizetype found = text.indexOf(hardBlank);
    if (found < 0)
        return true;
    QString replaced;
    replaced.reserve(text.size());
    qsizetype from = 0;
    for (; found >= 0; found = text.indexOf(hardBlank, from)) {
        replaced.append(QStringView(text).sliced(from, found - from)).append(blank);
        from = found + hardBlank.size();
        if (watch())
            return false;
    }
    text = replaced.append(QStringView(text).sliced(from));
    return true;
}

} // namespace

std::optional<QString> withoutMarkup(QString text, const CleanupWatch &watch)
{
    if (watch())
        return std::nullopt;
    if (text.contains(u'<') && !MarkCutter(text, watch).cut())
        return std::nullopt;
    if (text.contains(u'&')) { // looking for one character is several times faster
        if (!replaceHardBlanks(text, watch))
            return std::nullopt;
        const qsizetype escapedTag = text.indexOf(u"&lt;");
        if (escapedTag >= 0)
            text.truncate(escapedTag);
    }
    const auto isControl = [](QChar c) { return c < blank; };
    if (std::any_of(text.cbegin(), text.cend(), isControl))
        std::replace_if(text.begin(), text.end(), isControl, blank);
    if (text.capacity() / 2 > text.size())
        text.squeeze(); // descriptions are kept, what was cut out of them need not be
    return text;
}

std::optional<QString> withoutHeadSpace(const QString &text, const CleanupWatch &watch)
{
    qsizetype start = 0;
    while (start < text.size()) {
        if (watch())
            return std::nullopt;
        const qsizetype before = start;
        if (text[start] == blank)
            ++start;
        if (start < text.size() && text[start] == ideographicBlank)
            ++start;
        if (start == before)
            break;
    }
    return text.mid(start);
}

std::optional<QString> withoutTailSpace(const QString &text, const CleanupWatch &watch)
{
    qsizetype end = text.size();
    while (end > 0) {
        if (watch())
            return std::nullopt;
        if (text[end - 1] > blank)
            break;
        --end;
    }
    return text.left(end);
}

} // namespace qovelmor
