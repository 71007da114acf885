// SPDX-License-Identifier: MIT
#include "platform/PlainText.h"
#include "platform/SystemLog.h"

#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class PlainTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controlsBecomeBlanks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("plain");
        QTest::newRow("nothing to do") << u"見出し <b>&amp;"_s << u"見出し <b>&amp;"_s;
        QTest::newRow("line ends and tab") << u"a\r\nb\tc"_s << u"a  b c"_s;
        QTest::newRow("NUL and escape") << u"a\0b\x1b[31m"_s << u"a b [31m"_s;
        QTest::newRow("last control") << u"\x1f!"_s << u" !"_s;
        QTest::newRow("delete") << u"\x7f~"_s << u" ~"_s;
        QTest::newRow("C1 controls, then no-break space")
            << u"\u0080\u009f\u00a0"_s << u"  \u00a0"_s;
        QTest::newRow("Unicode line ends") << u"\u2028\u2029\u2027"_s << u"  \u2027"_s;
        QTest::newRow("empty") << u""_s << u""_s;
    }

    void controlsBecomeBlanks()
    {
        QFETCH(QString, text);
        QTEST(withoutControls(text), "plain");
    }

    void forWindow_isOneLine() { QCOMPARE(forWindow(u"a\nb\u0085c\u2028d"_s), u"a b c d"_s); }

    void lineOfAWindowHasAnEnd_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::newRow("short") << u"a\nb\u202ec"_s << u"a bc"_s;
        QTest::newRow("as long as it may be") << QString(1000, u'x') << QString(1000, u'x');
        QTest::newRow("longer") << QString(1001, u'x') << QString(1000, u'x') + u'…';
        QTest::newRow("a character of two halves at the end")
            << QString(999, u'x') + u"😀😀"_s << QString(999, u'x') + u'…';
        QTest::newRow("controls and marks at the end")
            << QString(998, u'x') + u"\n\u202ebc"_s << QString(998, u'x') + u" …"_s;
        QTest::newRow("empty") << QString() << QString();
    }

    void lineOfAWindowHasAnEnd()
    {
        QFETCH(QString, text);
        QTEST(lineForWindow(text), "line");
    }

    void tooltipHasAnEnd()
    {
        QCOMPARE(plainTooltip(QString(1'000'000, u'x')),
                 u"<p>"_s + QString(1000, u'x') + u"…</p>"_s);
    }

    void beginningOfAText()
    {
        QCOMPARE(beginning(u"abc"_s, 3), u"abc"_s);
        QCOMPARE(beginning(u"abc"_s, 2), u"ab"_s);
        QCOMPARE(beginning(u"abc"_s, 0), QString());
        QCOMPARE(beginning(u"😀a"_s, 1), QString());
        QCOMPARE(beginning(u"😀a"_s, 2), u"😀"_s);
    }

    void systemLog_isOneLine()
    {
        QTest::ignoreMessage(QtWarningMsg, "read error of http://a/ 2026 all is well [31m");
        systemLog(logPlatform(), u"read error of http://a/\n2026 all is well\x1b[31m"_s);
    }

    void windowTextCannotTurnDirection()
    {
        QCOMPARE(forWindow(u"a\u202eb\u2066c\u200fd\u061ce\u2069\nf"_s), u"abcde f"_s);
        QCOMPARE(forWindow(u"\u2029\u202f\u2065\u206a"_s), u" \u202f\u2065\u206a"_s);
    }
};

QTEST_APPLESS_MAIN(PlainTextTest)
#include "plaintext_test.moc"
