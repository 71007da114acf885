// SPDX-License-Identifier: MIT
#include "messages/DisplayLine.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

// Texts are joined, never formatted: a headline may hold place marks of its own.
QString displayLine(const Message &message, int number, int count, const QString &date,
                    const DisplaySwitches &switches)
{
    QString line = message.headline;
    if (switches.isDispDesc && message.description && !message.description->isEmpty())
        line += u"＊＊＊"_s + *message.description;
    if (switches.isDispLine)
        line += u" #"_s + QString::number(number) + u'/' + QString::number(count);
    if (switches.isDispDate && !date.isEmpty())
        line += u' ' + date;
    if (switches.isDispName && message.siteName && !message.siteName->isEmpty())
        line += u'【' + *message.siteName + u'】';
    return line;
}

} // namespace qovelmor
