// SPDX-License-Identifier: MIT
#include "settings/CommercialFilter.h"

namespace qovelmor {

bool isCommercialMessage(const QString &upperText, const QString &keyword)
{
    if (keyword.isEmpty())
        return false; // indexOf() would find it everywhere
    // The search compares code units, so what it finds is always as long as the keyword.
    const qsizetype start = upperText.indexOf(keyword);
    if (start < 0)
        return false;
    const qsizetype end = start + keyword.size();
    return end < upperText.size() && !upperText.at(end).isLetter();
}

} // namespace qovelmor
