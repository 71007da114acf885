// SPDX-License-Identifier: MIT
#include "platform/TypedNumber.h"

#include <algorithm>
#include <limits>

namespace qovelmor {

namespace {

bool isMinus(QChar character)
{
    return character == u'-' || character == u'－' || character == u'−';
}

bool isPlus(QChar character)
{
    return character == u'+' || character == u'＋';
}

} // namespace

int typedInteger(const QString &text)
{
    constexpr qint64 largest = std::numeric_limits<int>::max();
    const QString trimmed = text.trimmed();
    const bool isNegative = !trimmed.isEmpty() && isMinus(trimmed.front());
    const bool hasSign = isNegative || (!trimmed.isEmpty() && isPlus(trimmed.front()));
    qint64 value = 0;
    for (const QChar character : trimmed.mid(hasSign ? 1 : 0)) {
        const int digit = character.digitValue(); // also of full-width digits
        if (digit < 0)
            break;
        value = std::min(value * 10 + digit, largest);
    }
    return static_cast<int>(isNegative ? -value : value);
}

} // namespace qovelmor
