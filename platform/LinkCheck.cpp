// SPDX-License-Identifier: MIT
#include "platform/LinkCheck.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype longestLink = 8192; // what browsers and servers take at most

bool isAllowed(QChar character)
{
    return character.isPrint() && !character.isSpace() && character != u'\\' && character != u'"' &&
           character != u'<' && character != u'>' && character != u'`';
}

} // namespace

std::optional<QUrl> checkedLink(const QString &text)
{
    const QString trimmed = text.trimmed(); // feeds put line feeds around their links
    if (trimmed.isEmpty() || trimmed.size() > longestLink ||
        !std::all_of(trimmed.begin(), trimmed.end(), isAllowed))
        return std::nullopt;
    const QUrl url(trimmed, QUrl::StrictMode);
    const QString scheme = url.scheme();
    if (!url.isValid() || (scheme != u"http"_s && scheme != u"https"_s) || url.host().isEmpty() ||
        !url.userInfo(QUrl::FullyEncoded).isEmpty() || url.authority().contains(u'@') ||
        url.toEncoded().size() > longestLink) // a character takes up to twelve bytes on its way
        return std::nullopt;
    return url;
}

} // namespace qovelmor
