// SPDX-License-Identifier: MIT
#include "board/FarmReply.h"
#include "platform/TextEncoding.h"

#include <QTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {
bool never()
{
    return false;
}
} // namespace

class FarmReplyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void payload_data();
    void payload();
    void payload_timeIsUp();
    void payload_looksAtTheTimeOncePerLine();
    void rangeFaults_keepTheTextAndAreReported();
    void rangeAtTheVeryEnd_isNoFault();
    void integer_data();
    void integer();
    void farmIntegers();
    void integerAfter_data();
    void integerAfter();
    void words_data();
    void words();
    void romLines_areCutAtFixedPlaces();
    void romBytes_standInRowsOfSixteen();
    void romBytes_ofUnevenLines_stayInside();
    void help_data();
    void help();
    void anyBytes_giveNothingTextOrNumber();
};

void FarmReplyTest::payload_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("text");
    QTest::newRow("echo, data, mark") << u"sc_data\r\nD 48\r\nOk.\r\n"_s << u"48"_s;
    QTest::newRow("text for people") << u"V board 1.0\r\nOk."_s << u"board 1.0"_s;
    QTest::newRow("errors count like data") << u"x\r\nE -1 no room\r\nOk."_s << u"-1 no room"_s;
    QTest::newRow("first tagged line") << u"D 1\r\nD 2\r\nOk."_s << u"1"_s;
    QTest::newRow("no tagged line") << u"sc_show\r\nOk.\r\n"_s << u""_s;
    QTest::newRow("mark alone") << u"Ok."_s << u""_s;
    QTest::newRow("tag without a blank") << u"D\r\nD48\r\nOk."_s << u""_s;
    QTest::newRow("tag inside a line") << u"xD 48\r\nOk."_s << u""_s;
    QTest::newRow("lower-case tag") << u"d 48\r\nOk."_s << u""_s;
    QTest::newRow("no carriage return") << u"D 48Ok."_s << u"48Ok."_s;
    QTest::newRow("line feed before the carriage return") << u"D 48\nOk.\r"_s << u"48\nOk."_s;
    QTest::newRow("empty payload") << u"D \r\nOk."_s << u""_s;
    QTest::newRow("tag at the very end") << u"x\nD "_s << u""_s;
    QTest::newRow("line feed at the end") << u"x\n"_s << u""_s;
    QTest::newRow("rest of an old answer first") << u"\nOk.\r\nD 5\r\nOk."_s << u"5"_s;
}

void FarmReplyTest::payload()
{
    QFETCH(QString, reply);
    QFETCH(QString, text);
    const FarmPayload payload = farmPayload(reply, never);
    QCOMPARE(payload.text, std::optional(text));
    QVERIFY(!payload.timeIsUp);
    QVERIFY(payload.faults.isEmpty());
}

void FarmReplyTest::payload_timeIsUp()
{
    const FarmPayload payload = farmPayload(u"D 1\r\nOk."_s, [] { return true; });
    QVERIFY(payload.timeIsUp);
    QCOMPARE(payload.text, std::nullopt);
}

void FarmReplyTest::payload_looksAtTheTimeOncePerLine()
{
    int looks = 0;
    const FarmPayload payload = farmPayload(u"a\nb\nc\nD 1\r"_s, [&looks] { return ++looks == 3; });
    QVERIFY(payload.timeIsUp);
    QCOMPARE(looks, 3);
}

// No reply reaches these: each range comes from a search in the text that it is used on.
void FarmReplyTest::rangeFaults_keepTheTextAndAreReported()
{
    QStringList faults;
    QCOMPARE(textAfter(u"abc", {3, 1}, faults), QStringView(u"abc"));
    QCOMPARE(textWithoutTag(u"a", faults), QStringView(u"a"));
    QCOMPARE(textBefore(u"abc", {4, 1}, faults), QStringView(u"abc"));
    QCOMPARE(faults, (QStringList{u"RangeError1:stringFarmResult:range={3, 1},length=3"_s,
                                  u"LengthError:stringFarmResult:length=1"_s,
                                  u"RangeError2:stringFarmResult:range={4, 1},length=3"_s}));
}

void FarmReplyTest::rangeAtTheVeryEnd_isNoFault()
{
    QStringList faults;
    QCOMPARE(textAfter(u"abc", {2, 1}, faults), QStringView(u""));
    QCOMPARE(textWithoutTag(u"ab", faults), QStringView(u""));
    QCOMPARE(textBefore(u"abc", {3, 1}, faults), QStringView(u"abc"));
    QVERIFY(faults.isEmpty());
}

void FarmReplyTest::integer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("empty") << u""_s << 0;
    QTest::newRow("plain") << u"48"_s << 48;
    QTest::newRow("rest is ignored") << u"-1 no room"_s << -1;
    QTest::newRow("white space first") << u" \t 7"_s << 7;
    QTest::newRow("plus") << u"+7"_s << 7;
    QTest::newRow("two signs") << u"--7"_s << 0;
    QTest::newRow("no digit") << u"x7"_s << 0;
    QTest::newRow("largest") << u"2147483647"_s << 2147483647;
    QTest::newRow("too large") << u"99999999999999999999999"_s << 2147483647;
    QTest::newRow("too small") << u"-99999999999999999999999"_s << std::numeric_limits<int>::min();
}

void FarmReplyTest::integer()
{
    QFETCH(QString, text);
    QTEST(leadingInteger(text), "number");
}

void FarmReplyTest::farmIntegers()
{
    QCOMPARE(farmInteger(std::nullopt), -1);
    QCOMPARE(farmInteger(u""_s), 0);
    QCOMPARE(farmInteger(u"48"_s), 48);
}

void FarmReplyTest::integerAfter_data()
{
    QTest::addColumn<QString>("payload");
    QTest::addColumn<int>("number");
    QTest::newRow("after the key") << u"cmodule 4"_s << 4;
    QTest::newRow("key in the middle") << u"now cmodule 12 of cmodule 3"_s << 12;
    QTest::newRow("nothing after the key") << u"cmodule"_s << -1;
    QTest::newRow("no number after the key") << u"cmodule x"_s << 0;
    QTest::newRow("no key") << u"4"_s << -1;
    QTest::newRow("empty") << u""_s << -1;
}

void FarmReplyTest::integerAfter()
{
    QFETCH(QString, payload);
    QTEST(farmIntegerAfter(payload, u"cmodule"_s), "number");
    QCOMPARE(farmIntegerAfter(std::nullopt, u"cmodule"_s), -1);
}

void FarmReplyTest::words_data()
{
    QTest::addColumn<QString>("payload");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("words") << u"8000 0001 ff"_s << "\x80\x00\x00\x01\x00\xff"_ba;
    QTest::newRow("empty payload is one piece") << u""_s << "\x00\x00"_ba;
    QTest::newRow("blank at the end is one piece more") << u"12 "_s << "\x00\x12\x00\x00"_ba;
    QTest::newRow("two blanks are one piece more") << u"1  2"_s << "\x00\x01\x00\x00\x00\x02"_ba;
    QTest::newRow("upper case counts as 0") << u"FF"_s << "\x00\x00"_ba;
}

void FarmReplyTest::words()
{
    QFETCH(QString, payload);
    QTEST(farmWords(payload), "bytes");
    QCOMPARE(farmWords(std::nullopt), QByteArray());
}

void FarmReplyTest::romLines_areCutAtFixedPlaces()
{
    const QString reply = u"rr 0 20\r\n"
                          u"D rom data 0000: 01 02\r\n"
                          u"xD rom data 010: 03\r\n"
                          u"D rom data 0020: 04\n"
                          u"D rom data 0\r\n"
                          u"D rom data 0030:\r\n"
                          u"Ok.\r\n"_s;
    // The line without a carriage return and the one that ends before the column are left out.
    QCOMPARE(romDataLines(reply), (QStringList{u"01 02"_s, u"03"_s}));
    QCOMPARE(romDataLines(u"D rom data 0030: \r\n"_s), QStringList(u""_s));
}

void FarmReplyTest::romBytes_standInRowsOfSixteen()
{
    const QString line = u"01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10"_s;
    const QByteArray bytes = romDataBytes({line, u"fe 123"_s});
    QCOMPARE(bytes.size(), 18);
    QCOMPARE(bytes.first(2), "\x01\x02"_ba);
    QCOMPARE(bytes.sliced(15), "\x10\xfe\x23"_ba);
}

void FarmReplyTest::romBytes_ofUnevenLines_stayInside()
{
    QCOMPARE(romDataBytes({u"01"_s, u"02 03"_s}), "\x01\x00\x00"_ba);
    QCOMPARE(romDataBytes({}), QByteArray());
}

void FarmReplyTest::help_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("text");
    QTest::newRow("without the last two lines")
        << u"help\r\nV a b\r\nxV V c\r\nOk.\r\n"_s << u"help\r\na b\r\nV c\r"_s;
    QTest::newRow("two lines only") << u"V a\r\nOk."_s << u""_s;
    QTest::newRow("empty") << u""_s << u""_s;
}

void FarmReplyTest::help()
{
    QFETCH(QString, reply);
    QTEST(helpText(reply), "text");
}

void FarmReplyTest::anyBytes_giveNothingTextOrNumber()
{
    const unsigned seed = std::random_device{}();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    const QList<QByteArray> shapes{"D ",   "V ",  "E ",          "\r",   "\n",
                                   "\r\n", "Ok.", "D rom data ", " 48",  "\x83",
                                   "O",    "k.",  " ",           "ffff", QByteArray(1, '\0')};
    for (int round = 0; round < 20'000; ++round) {
        QByteArray bytes;
        for (auto piece = random() % 30; piece > 0; --piece) {
            if (random() % 2 == 0)
                bytes += static_cast<char>(random());
            else
                bytes += shapes[static_cast<qsizetype>(random()) % shapes.size()];
        }
        const QString reply = decodeShiftJis(bytes);
        int looks = 0;
        const FarmPayload payload = farmPayload(reply, [&looks] {
            ++looks;
            return false;
        });
        QVERIFY(payload.text.has_value());
        QVERIFY(payload.faults.isEmpty());
        QVERIFY(looks <= reply.count(u'\n') + 1);
        QVERIFY(!payload.text->contains(u'\r'));
        farmIntegerAfter(payload.text, u"run:"_s);
        QCOMPARE(farmWords(payload.text).size(), (payload.text->count(u' ') + 1) * 2);
        romDataBytes(romDataLines(reply));
        QVERIFY(helpText(reply).size() <= reply.size());
    }
}

QTEST_APPLESS_MAIN(FarmReplyTest)
#include "farmreply_test.moc"
