// SPDX-License-Identifier: MIT
#include "render/VelmorMessage.h"
#include "tests/support/bitmapastext.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class VelmorMessageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newMessage_isEmptyWithoutFlags();
    void emptyText_hasNoColumns();
    void fromABitmap_copiesItsDots();
    void appendString_joinsRenderings();
    void setBitmapWithString_replacesEverything();
    void appendString_takesAnotherFont();
    void size_doesNotCount();
    void settings_reachTheRendering();
    void setRotation_saysSoAndTurnsLaterTexts();
    void flagsAreKept();
};

void VelmorMessageTest::newMessage_isEmptyWithoutFlags()
{
    const VelmorMessage message;
    QCOMPARE(message.width(), 0);
    QCOMPARE(message.height(), 16);
    QVERIFY(!message.scrollMessage());
    QVERIFY(!message.repeatEndless());
    QVERIFY(!message.waitScrollEnd());
    QVERIFY(!message.rotation());
}

void VelmorMessageTest::emptyText_hasNoColumns()
{
    const VelmorMessage message{QString()};
    QCOMPARE(message.width(), 0);
    QCOMPARE(message.height(), 16);
}

void VelmorMessageTest::fromABitmap_copiesItsDots()
{
    VelmorBitmap bitmap;
    drawText(bitmap, {u"#.#"_s, u".#."_s});
    VelmorMessage message(bitmap);
    QCOMPARE(asText(message), asText(bitmap));
    message.resetBit(0, 0);
    QCOMPARE(int(bitmap.bit(0, 0)), 1);
}

void VelmorMessageTest::appendString_joinsRenderings()
{
    VelmorMessage message;
    message.setBitmapWithString(u"AB"_s);
    message.appendString(u"C"_s);
    QCOMPARE(message.width(), 24);
    QCOMPARE(asText(message), asText(VelmorMessage(u"ABC"_s)));
}

void VelmorMessageTest::setBitmapWithString_replacesEverything()
{
    VelmorMessage message(u"漢字漢字"_s);
    message.setBitmapWithString(u"A"_s);
    QCOMPARE(asText(message), asText(VelmorMessage(u"A"_s)));
}

void VelmorMessageTest::appendString_takesAnotherFont()
{
    VelmorMessage message;
    message.setUseFontx(false);
    message.setBitmapWithString(u"漢"_s);
    const int first = message.width();
    message.appendString(u"漢"_s, u"Noto Sans CJK JP"_s);
    VelmorFont gothic(u"Noto Sans CJK JP"_s, 0.0F, 0.0F, 0.0F, false);
    const auto expected = gothic.bitmapWithString(u"漢"_s);
    QCOMPARE(message.width(), first + expected->width());
    VelmorBitmap joined;
    VelmorFont ownFont(message.fontName(), 0.0F, 0.0F, 0.0F, false);
    joined.appendBitmap(*ownFont.bitmapWithString(u"漢"_s));
    joined.appendBitmap(*expected);
    QCOMPARE(asText(message), asText(joined));
    // The message's own font stays what it was.
    QCOMPARE(message.fontName(), u"HiraMinPro-W3"_s);
}

void VelmorMessageTest::size_doesNotCount()
{
    VelmorMessage large;
    large.setUseFontx(false);
    large.setSize(40.0F);
    large.setBitmapWithString(u"漢字"_s);
    VelmorMessage plain;
    plain.setUseFontx(false);
    plain.setBitmapWithString(u"漢字"_s);
    QCOMPARE(asText(large), asText(plain));
}

void VelmorMessageTest::settings_reachTheRendering()
{
    VelmorMessage message;
    message.setUseFontx(false);
    message.setBoarder(140);
    message.setExpansion(-0.2F);
    message.setItalic(0.2F);
    message.setBitmapWithString(u"漢字"_s);
    FontSettings expected;
    expected.useFontx = false;
    expected.boarder = 140;
    expected.expansion = -0.2F;
    expected.italic = 0.2F;
    QCOMPARE(asText(message), asText(*renderOutlineText(u"漢字"_s, expected)));
}

void VelmorMessageTest::setRotation_saysSoAndTurnsLaterTexts()
{
    VelmorMessage message(u"漢"_s);
    const QStringList upright = asText(message);
    QTest::ignoreMessage(QtWarningMsg, "---VelmorMessage:setRotation:1---");
    message.setRotation(true);
    QVERIFY(message.rotation());
    QCOMPARE(asText(message), upright);
    const auto turned = message.rotateLeft90();
    message.setBitmapWithString(u"漢"_s);
    QCOMPARE(asText(message), asText(*turned));
    QTest::ignoreMessage(QtWarningMsg, "---VelmorMessage:setRotation:0---");
    message.setRotation(false);
    message.setBitmapWithString(u"漢"_s);
    QCOMPARE(asText(message), upright);
}

void VelmorMessageTest::flagsAreKept()
{
    VelmorMessage message;
    message.setScrollMessage(true);
    message.setRepeatEndress(true);
    message.setWaitScrollEnd(true);
    QVERIFY(message.scrollMessage());
    QVERIFY(message.repeatEndless());
    QVERIFY(message.waitScrollEnd());
}

QTEST_MAIN(VelmorMessageTest)
#include "velmormessage_test.moc"
