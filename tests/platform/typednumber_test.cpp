// SPDX-License-Identifier: MIT
#include "platform/TypedNumber.h"

#include <QTest>

#include <limits>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class TypedNumberTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void number_data()
    {
        constexpr int largest = std::numeric_limits<int>::max();
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("nothing") << u""_s << 0;
        QTest::newRow("no number") << u"x1"_s << 0;
        QTest::newRow("digits") << u"20"_s << 20;
        QTest::newRow("blanks around") << u" \t\u300008 "_s << 8;
        QTest::newRow("something behind") << u"20件"_s << 20;
        QTest::newRow("a fraction") << u"3.9"_s << 3;
        QTest::newRow("full-width digits") << u"２０"_s << 20;
        QTest::newRow("digits of both widths") << u"1２3"_s << 123;
        QTest::newRow("plus") << u"+1"_s << 1;
        QTest::newRow("minus") << u"-5"_s << -5;
        QTest::newRow("full-width plus") << u"＋１"_s << 1;
        QTest::newRow("full-width minus") << u"－５"_s << -5;
        QTest::newRow("minus sign of mathematics") << u"−5"_s << -5;
        QTest::newRow("a sign alone") << u"-"_s << 0;
        QTest::newRow("two signs") << u"--5"_s << 0;
        QTest::newRow("far too large") << u"99999999999999999999"_s << largest;
        QTest::newRow("far too small") << u"-99999999999999999999"_s << -largest;
    }

    void number()
    {
        QFETCH(QString, text);
        QTEST(typedInteger(text), "number");
    }
};

QTEST_APPLESS_MAIN(TypedNumberTest)
#include "typednumber_test.moc"
