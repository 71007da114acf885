// SPDX-License-Identifier: MIT
#include "platform/TextEncoding.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

class TextEncodingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encodes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QString() << QByteArray();
        QTest::newRow("ASCII with line end") << u"PR: a\r\n"_s << QByteArray("PR: a\r\n");
        QTest::newRow("tilde and backslash stay themselves") << u"~\\"_s << QByteArray("~\\");
        QTest::newRow("kanji and kana")
            << u"新聞ニュース"_s << QByteArray("\x90\x56\x95\xB7\x83\x6A\x83\x85\x81\x5B\x83\x58");
        QTest::newRow("second byte is a backslash") << u"表"_s << QByteArray("\x95\x5C");
        QTest::newRow("half-width katakana")
            << u"ﾆｭｰｽ｡ﾟ"_s << QByteArray("\xC6\xAD\xB0\xBD\xA1\xDF");
        QTest::newRow("NEC row: circled one, company in brackets")
            << u"①㈱"_s << QByteArray("\x87\x40\x87\x8A");
        QTest::newRow("IBM row: tall taka") << u"髙"_s << QByteArray("\xFB\xFC");
        QTest::newRow("square") << u"□"_s << QByteArray("\x81\xA0");
        QTest::newRow("wave dash, both") << u"\u301C\uFF5E"_s << QByteArray("\x81\x60\x81\x60");
        QTest::newRow("dash, both") << u"\u2014\u2015"_s << QByteArray("\x81\x5C\x81\x5C");
        QTest::newRow("double line, both") << u"\u2016\u2225"_s << QByteArray("\x81\x61\x81\x61");
        QTest::newRow("minus, both") << u"\u2212\uFF0D"_s << QByteArray("\x81\x7C\x81\x7C");
        QTest::newRow("cent, both") << u"\u00A2\uFFE0"_s << QByteArray("\x81\x91\x81\x91");
        QTest::newRow("pound, both") << u"\u00A3\uFFE1"_s << QByteArray("\x81\x92\x81\x92");
        QTest::newRow("not, both") << u"\u00AC\uFFE2"_s << QByteArray("\x81\xCA\x81\xCA");
        QTest::newRow("no-break space") << u"a\u00A0b"_s << QByteArray("a b");
        QTest::newRow("zero byte") << u"a\0b"_s << QByteArray("a\0b", 3);
        QTest::newRow("longer than one piece")
            << QString(5001, u'あ') << QByteArray("\x82\xA0").repeated(5001);
    }

    void encodes()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QCOMPARE(encodeShiftJis(text), std::optional(bytes));
        QCOMPARE(encodeShiftJisLossy(text), bytes);
    }

    void whatCannotBeEncoded_becomesOneSquareForEachCodePoint_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("lossy");
        const QByteArray square("\x81\xA0");
        QTest::newRow("hangul") << u"a한국b"_s << "a" + square + square + "b";
        QTest::newRow("emoji beyond the first plane") << u"🗞!"_s << square + "!";
        QTest::newRow("accented letter") << u"caf\u00e9"_s << "caf" + square;
        QTest::newRow("high surrogate alone") << QString(QChar(0xD83D)) + u'x' << square + "x";
        QTest::newRow("high surrogate at the end") << u'x' + QString(QChar(0xD83D)) << "x" + square;
        QTest::newRow("low surrogate alone") << QString(QChar(0xDC00)) + u'x' << square + "x";
        QTest::newRow("two high surrogates")
            << QString(2, QChar(0xD83D)) + u'x' << square + square + "x";
        QTest::newRow("replacement character") << u"\uFFFD"_s << square;
        QTest::newRow("many") << QString(3000, u'한') << square.repeated(3000);
    }

    void whatCannotBeEncoded_becomesOneSquareForEachCodePoint()
    {
        QFETCH(QString, text);
        QVERIFY(!encodeShiftJis(text));
        QTEST(encodeShiftJisLossy(text), "lossy");
    }

    void decodes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        const QString bad(QChar(QChar::ReplacementCharacter));
        QTest::newRow("tilde and backslash") << QByteArray("~\\") << u"~\\"_s;
        QTest::newRow("extensions")
            << QByteArray("\x87\x40\x87\x8A\xFB\xFC\xEE\xE0") << u"①㈱髙髙"_s;
        QTest::newRow("wave dash") << QByteArray("\x81\x60") << u"\uFF5E"_s;
        QTest::newRow("half-width katakana") << QByteArray("\xB1\xDF") << u"ｱﾟ"_s;
        QTest::newRow("cut pair") << QByteArray("a\x82") << u'a' + bad;
        QTest::newRow("pair cut by a line end") << QByteArray("\x82\nb") << bad + u"\nb"_s;
        QTest::newRow("unassigned pair") << QByteArray("\x85\x40z") << bad + u"@z"_s;
        QTest::newRow("UTF-8 instead") << QByteArray("\xFF\xFF") << bad + bad;
        QTest::newRow("zero byte") << QByteArray("a\0b", 3) << u"a\0b"_s;
        QTest::newRow("long rubbish") << QByteArray(4000, '\xFF') << bad.repeated(4000);
    }

    void decodes()
    {
        QFETCH(QByteArray, bytes);
        QTEST(decodeShiftJis(bytes), "text");
    }

    // Every character of the code page comes back as a code of the same character (a few stand in
    // it twice).
    void everyCodeOfThePage_goesThereAndBack()
    {
        int characters = 0;
        for (int code = 0; code <= 0xFFFF; ++code) {
            QByteArray bytes;
            if (code > 0xFF)
                bytes.append(static_cast<char>(code >> 8));
            bytes.append(static_cast<char>(code & 0xFF));
            const QString text = decodeShiftJis(bytes);
            if (text.size() != 1 || text.contains(QChar(QChar::ReplacementCharacter)))
                continue;
            const auto encoded = encodeShiftJis(text);
            QVERIFY2(encoded, qPrintable(QString::number(code, 16)));
            // 0xA0 is not used by the code page and reads as a no-break space.
            if (code != 0xA0)
                QCOMPARE(decodeShiftJis(*encoded), text);
            ++characters;
        }
        QVERIFY2(characters > 7000 + 63 + 128, qPrintable(QString::number(characters)));
    }
};

QTEST_GUILESS_MAIN(TextEncodingTest)
#include "textencoding_test.moc"
