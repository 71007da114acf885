// SPDX-License-Identifier: MIT
#include "board/LineSettings.h"

#include <QTest>

using namespace qovelmor;

class LineSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void raw_is8N1WithoutFlowControl();
    void raw_keepsReceiverAndOddParityFlag();
    void baudRate_setsBothDirections_data();
    void baudRate_setsBothDirections();
    void unknownSpeed_isRememberedWithoutEffect();
    void characterSize_data();
    void characterSize();
    void parity_data();
    void parity();
    void oddFlagAlone_readsAsOdd();
    void stopBits_data();
    void stopBits();
    void rtscts_isAFlagOfTheRecord();
    void flagsThatTheSystemLacks_areRemembered();
};

void LineSettingsTest::raw_is8N1WithoutFlowControl()
{
    LineSettings settings;
    settings.record().c_cflag = CS5 | CSTOPB | PARENB | CRTSCTS;
    settings.record().c_lflag = ICANON | ECHO;
    settings.record().c_iflag = IXON | ICRNL;
    settings.record().c_oflag = OPOST;
    settings.makeRaw19200();
    QCOMPARE(settings.characterSize(), 8);
    QCOMPARE(settings.parityBit(), 0);
    QCOMPARE(settings.stopBits(), 1);
    QCOMPARE(settings.rtscts(), false);
    QCOMPARE(settings.baudRate(), 19200);
    QCOMPARE(cfgetospeed(&settings.record()), speed_t(B19200));
    QCOMPARE(settings.record().c_cc[VMIN], cc_t(1));
    QCOMPARE(settings.record().c_cc[VTIME], cc_t(10));
    QCOMPARE(settings.record().c_lflag & (ICANON | ECHO), tcflag_t(0));
    QCOMPARE(settings.record().c_iflag & (IXON | ICRNL), tcflag_t(0));
    QCOMPARE(settings.record().c_oflag & OPOST, tcflag_t(0));
    QCOMPARE(settings.record().c_cflag & (CLOCAL | HUPCL), tcflag_t(CLOCAL | HUPCL));
}

void LineSettingsTest::raw_keepsReceiverAndOddParityFlag()
{
    LineSettings settings;
    settings.record().c_cflag = CREAD | PARODD;
    settings.makeRaw19200();
    QCOMPARE(settings.record().c_cflag & (CREAD | PARODD), tcflag_t(CREAD | PARODD));
    settings.record().c_cflag = 0;
    settings.makeRaw19200();
    QCOMPARE(settings.record().c_cflag & (CREAD | PARODD), tcflag_t(0));
}

void LineSettingsTest::baudRate_setsBothDirections_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<unsigned>("code");
    QTest::newRow("slowest common") << 300 << unsigned(B300);
    QTest::newRow("the board's") << 19200 << unsigned(B19200);
    QTest::newRow("fast") << 115200 << unsigned(B115200);
}

void LineSettingsTest::baudRate_setsBothDirections()
{
    QFETCH(int, bits);
    QFETCH(unsigned, code);
    LineSettings settings;
    settings.setBaudRate(bits);
    QCOMPARE(settings.baudRate(), bits);
    QCOMPARE(cfgetispeed(&settings.record()), speed_t(code));
    QCOMPARE(cfgetospeed(&settings.record()), speed_t(code));
}

void LineSettingsTest::unknownSpeed_isRememberedWithoutEffect()
{
    LineSettings settings;
    settings.setBaudRate(9600);
    settings.setBaudRate(12345);
    QCOMPARE(settings.baudRate(), 12345);
    QCOMPARE(cfgetispeed(&settings.record()), speed_t(B9600));
    settings.setBaudRate(19200);
    QCOMPARE(settings.baudRate(), 19200);
}

void LineSettingsTest::characterSize_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<int>("read");
    QTest::newRow("4 counts as 5") << 4 << 5;
    QTest::newRow("5") << 5 << 5;
    QTest::newRow("6") << 6 << 6;
    QTest::newRow("7") << 7 << 7;
    QTest::newRow("8") << 8 << 8;
    QTest::newRow("9 counts as 5") << 9 << 5;
}

void LineSettingsTest::characterSize()
{
    QFETCH(int, set);
    QFETCH(int, read);
    LineSettings settings;
    settings.setCharacterSize(8);
    settings.setCharacterSize(set);
    QCOMPARE(settings.characterSize(), read);
}

void LineSettingsTest::parity_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<int>("read");
    QTest::addColumn<unsigned>("flags");
    QTest::newRow("none") << 0 << 0 << 0u;
    // Odd sets both flags, which read as neither.
    QTest::newRow("odd") << 1 << 0 << unsigned(PARENB | PARODD);
    QTest::newRow("even") << 2 << 2 << unsigned(PARENB);
    QTest::newRow("anything else") << 3 << 0 << 0u;
}

void LineSettingsTest::parity()
{
    QFETCH(int, set);
    QFETCH(int, read);
    QFETCH(unsigned, flags);
    LineSettings settings;
    settings.setParityBit(set == 0 ? 1 : 0);
    settings.setParityBit(set);
    QCOMPARE(settings.parityBit(), read);
    QCOMPARE(settings.record().c_cflag & (PARENB | PARODD), tcflag_t(flags));
}

void LineSettingsTest::oddFlagAlone_readsAsOdd()
{
    LineSettings settings;
    settings.record().c_cflag = PARODD;
    QCOMPARE(settings.parityBit(), 1);
}

void LineSettingsTest::stopBits_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<int>("read");
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("2") << 2 << 2;
    QTest::newRow("3 counts as 1") << 3 << 1;
}

void LineSettingsTest::stopBits()
{
    QFETCH(int, set);
    QFETCH(int, read);
    LineSettings settings;
    settings.setStopBits(2);
    settings.setStopBits(set);
    QCOMPARE(settings.stopBits(), read);
}

void LineSettingsTest::rtscts_isAFlagOfTheRecord()
{
    LineSettings settings;
    settings.setRTSCTS(true);
    QVERIFY(settings.rtscts());
    QVERIFY((settings.record().c_cflag & CRTSCTS) != 0);
    settings.setRTSCTS(false);
    QVERIFY(!settings.rtscts());
}

void LineSettingsTest::flagsThatTheSystemLacks_areRemembered()
{
    LineSettings settings;
    QVERIFY(!settings.dtrdsr());
    QVERIFY(!settings.dcd());
    const termios before = settings.record();
    settings.setDTRDSR(true);
    settings.setDCD(true);
    QVERIFY(settings.dtrdsr());
    QVERIFY(settings.dcd());
    QCOMPARE(settings.record().c_cflag, before.c_cflag);
    QCOMPARE(settings.record().c_iflag, before.c_iflag);
    settings.setDTRDSR(false);
    settings.setDCD(false);
    QVERIFY(!settings.dtrdsr());
    QVERIFY(!settings.dcd());
}

QTEST_GUILESS_MAIN(LineSettingsTest)
#include "linesettings_test.moc"
