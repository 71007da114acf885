// SPDX-License-Identifier: MIT
#include "board/HexText.h"

#include <QTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class HexTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words_ofNothing_areNone() { QVERIFY(wordStringsWithData({}).isEmpty()); }
    void words_areFourDigitsAndABlank();
    void words_sixteenToAText_data();
    void words_sixteenToAText();
    void bytes_startANewTextBeforeEverySixteenth();
    void hex_dropsPaddingAndAnOddByte();
    void value_data();
    void value();
    void wordsReadBack_givesTheBytes();
};

void HexTextTest::words_areFourDigitsAndABlank()
{
    QCOMPARE(wordStringsWithData("\x80\x00\x00\x01"_ba), QStringList(u"8000 0001 "_s));
    QCOMPARE(wordStringsWithData("\xab\xcd\xef"_ba), QStringList(u"abcd ef "_s));
}

void HexTextTest::words_sixteenToAText_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QList<int>>("lengths");
    QTest::newRow("one byte") << 1 << QList<int>{3};
    QTest::newRow("31 bytes") << 31 << QList<int>{15 * 5 + 3};
    QTest::newRow("32 bytes") << 32 << QList<int>{80};
    QTest::newRow("33 bytes") << 33 << QList<int>{80, 3};
    QTest::newRow("34 bytes") << 34 << QList<int>{80, 5};
    QTest::newRow("64 bytes") << 64 << QList<int>{80, 80};
}

void HexTextTest::words_sixteenToAText()
{
    QFETCH(int, bytes);
    QFETCH(QList<int>, lengths);
    QList<int> found;
    for (const QString &text : wordStringsWithData(QByteArray(bytes, '\x5a')))
        found.append(static_cast<int>(text.size()));
    QCOMPARE(found, lengths);
}

void HexTextTest::bytes_startANewTextBeforeEverySixteenth()
{
    QCOMPARE(byteStringsWithData({}), QStringList(u""_s));
    QCOMPARE(byteStringsWithData("\x00\x0f\xff"_ba), QStringList(u"0 f ff "_s));
    QCOMPARE(byteStringsWithData(QByteArray(16, '\1')), QStringList(u"1 "_s.repeated(16)));
    QCOMPARE(byteStringsWithData(QByteArray(17, '\1')),
             (QStringList{u"1 "_s.repeated(16), u"1 "_s}));
    QCOMPARE(byteStringsWithData(QByteArray(33, '\1')).size(), 3);
}

void HexTextTest::hex_dropsPaddingAndAnOddByte()
{
    QCOMPARE(hexStringWithData("\x00\x01\xab\xcd\x00\x00\x77"_ba), u"1 abcd 0 "_s);
    QCOMPARE(hexStringWithData("\x77"_ba), u""_s);
}

void HexTextTest::value_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("empty") << u""_s << 0;
    QTest::newRow("lower case") << u"ff"_s << 255;
    QTest::newRow("upper case counts as 0") << u"1F"_s << 16;
    QTest::newRow("other characters count as 0") << u"1g2"_s << 0x102;
    QTest::newRow("blank counts as 0") << u"1 "_s << 16;
    QTest::newRow("character below 'a'") << u"1`"_s << 16;
    QTest::newRow("full-width digit counts as 0") << u"１"_s << 0;
    QTest::newRow("four digits") << u"8000"_s << 0x8000;
    QTest::newRow("eight digits") << u"ffffffff"_s << -1;
    QTest::newRow("more than eight digits") << u"123456789"_s << 0x23456789;
}

void HexTextTest::value()
{
    QFETCH(QString, text);
    QTEST(intValueWithHexString(text), "value");
}

void HexTextTest::wordsReadBack_givesTheBytes()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random() % 100) * 2, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random());
        QByteArray back;
        for (const QString &text : wordStringsWithData(bytes)) {
            for (const QString &word : text.split(u' ', Qt::SkipEmptyParts)) {
                const int number = intValueWithHexString(word);
                back += static_cast<char>(number >> 8);
                back += static_cast<char>(number);
            }
        }
        QCOMPARE(back, bytes);
    }
}

QTEST_APPLESS_MAIN(HexTextTest)
#include "hextext_test.moc"
