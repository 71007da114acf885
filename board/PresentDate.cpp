// SPDX-License-Identifier: MIT
#include "board/PresentDate.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

QString stringWithDayOfWeek(int weekday)
{
    const QString names = u"日月火水木金土"_s;
    return weekday >= 0 && weekday < names.size() ? QString(names[weekday]) : QString();
}

QString presentDateString(const LocalTime &time)
{
    return u"%1/%2(%3) %4:%5"_s.arg(time.month)
        .arg(time.day)
        .arg(stringWithDayOfWeek(time.weekday))
        .arg(time.hour, 2, 10, QChar(u'0'))
        .arg(time.minute, 2, 10, QChar(u'0'));
}

} // namespace qovelmor
