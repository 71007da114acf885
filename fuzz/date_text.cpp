// SPDX-License-Identifier: MIT
// Any text as a date in any of the written forms.
#include "FuzzTarget.h"
#include "feeds/DateConversion.h"

using namespace qovelmor;
using namespace qovelmor::fuzz;

namespace {

int number(const QString &text, qsizetype at)
{
    return text[at].digitValue() * 10 + text[at + 1].digitValue();
}

bool isDate(const QString &text)
{
    if (text.size() != 11 || text[2] != u'/' || text[5] != u' ' || text[8] != u':')
        return false;
    for (const qsizetype at : {0, 1, 3, 4, 6, 7, 9, 10}) {
        if (text[at] < u'0' || text[at] > u'9')
            return false;
    }
    return number(text, 0) <= 12 && number(text, 3) <= 31 && number(text, 6) <= 23 &&
           number(text, 9) <= 59;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(bytesOf(data, size));
    for (const int type : {datetype::w3c, datetype::rfc822, datetype::atomUtc, 0, 4})
        promise(isDate(convertFeedDate(text, type)), "the result is MM/DD hh:mm");
    return 0;
}
