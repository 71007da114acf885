// SPDX-License-Identifier: MIT
#include "feeds/WebAddress.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto httpScheme = u"http://"_s;
const auto feedScheme = u"feed://"_s;

} // namespace

bool isWebAddressString(const QString &text)
{
    return text.startsWith(httpScheme) || text.startsWith(feedScheme);
}

QString feedToHttpString(const QString &text)
{
    return text.startsWith(feedScheme) ? httpScheme + text.mid(feedScheme.size()) : text;
}

DropVerdict dropVerdict(const QString &text)
{
    if (isWebAddressString(text))
        return DropVerdict::Accepted;
    return text.startsWith(u"https://"_s) ? DropVerdict::TypeInstead : DropVerdict::Refused;
}

} // namespace qovelmor
