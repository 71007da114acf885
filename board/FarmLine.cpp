// SPDX-License-Identifier: MIT
#include "board/FarmLine.h"

#include <limits>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

int cutToInteger(double value)
{
    constexpr double past = 2147483648.0; // 2^31
    return value > -past - 1.0 && value < past ? static_cast<int>(value)
                                               : std::numeric_limits<int>::min();
}

} // namespace

QString farmLine(const QString &name)
{
    return name + u'\r';
}

QString farmLine(const QString &name, int argument)
{
    return argument < 0 ? farmLine(name) : farmLine(name, QString::number(argument));
}

QString farmLine(const QString &name, QPointF point)
{
    if (point.x() < 0)
        return farmLine(name);
    return farmLine(name, QString::number(cutToInteger(point.x())) + u' ' +
                              QString::number(cutToInteger(point.y())));
}

QString farmLine(const QString &name, const QString &text)
{
    return name + u' ' + text + u'\r';
}

} // namespace qovelmor
