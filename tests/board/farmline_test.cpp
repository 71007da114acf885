// SPDX-License-Identifier: MIT
#include "board/FarmLine.h"

#include <QTest>

#include <limits>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class FarmLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameAlone() { QCOMPARE(farmLine(u"sc_clear"_s), u"sc_clear\r"_s); }
    void integer_data();
    void integer();
    void point_data();
    void point();
    void text_isUnchanged();
};

void FarmLineTest::integer_data()
{
    QTest::addColumn<int>("argument");
    QTest::addColumn<QString>("line");
    QTest::newRow("below zero means none") << -1 << u"echo\r"_s;
    QTest::newRow("far below zero") << -1000 << u"echo\r"_s;
    QTest::newRow("zero") << 0 << u"echo 0\r"_s;
    QTest::newRow("large") << 2147483647 << u"echo 2147483647\r"_s;
}

void FarmLineTest::integer()
{
    QFETCH(int, argument);
    QTEST(farmLine(u"echo"_s, argument), "line");
}

void FarmLineTest::point_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QString>("line");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("plain") << QPointF(3, 5) << u"p 3 5\r"_s;
    QTest::newRow("cut toward zero") << QPointF(3.9, -5.9) << u"p 3 -5\r"_s;
    QTest::newRow("x below zero means none") << QPointF(-1, 5) << u"p\r"_s;
    QTest::newRow("x just below zero") << QPointF(-0.1, 5) << u"p\r"_s;
    QTest::newRow("minus zero is zero") << QPointF(-0.0, 0) << u"p 0 0\r"_s;
    QTest::newRow("x is no number") << QPointF(nan, 5) << u"p -2147483648 5\r"_s;
    QTest::newRow("y is no number") << QPointF(3, nan) << u"p 3 -2147483648\r"_s;
    QTest::newRow("beyond the integers")
        << QPointF(1e300, -1e300) << u"p -2147483648 -2147483648\r"_s;
    QTest::newRow("last integers")
        << QPointF(2147483647.5, -2147483648.5) << u"p 2147483647 -2147483648\r"_s;
}

void FarmLineTest::point()
{
    QFETCH(QPointF, point);
    QTEST(farmLine(u"p"_s, point), "line");
}

void FarmLineTest::text_isUnchanged()
{
    QCOMPARE(farmLine(u"lm_puts"_s, u" ア  b "_s), u"lm_puts  ア  b \r"_s);
    QCOMPARE(farmLine(u"txir"_s, u""_s), u"txir \r"_s);
}

QTEST_APPLESS_MAIN(FarmLineTest)
#include "farmline_test.moc"
