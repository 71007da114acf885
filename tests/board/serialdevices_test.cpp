// SPDX-License-Identifier: MIT
#include "board/SerialDeviceWatcher.h"
#include "board/SerialDevices.h"

#include <QTest>

#include <fcntl.h>

#include <algorithm>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class SerialDevicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { qunsetenv("QOVELMORRSS_SERIAL_DEVICES"); }

    void onlyDevicesWithDriverAndChipCount_data();
    void onlyDevicesWithDriverAndChipCount();
    void order_isByNameAndNumber();
    void environmentNamesStandFirst_onceEach();
    void environmentNamesStandInEveryKindOfList();
    void systemList_isTheSameEachTime();
    void name_data();
    void name();
    void portNames_areTheNamesOfTheList();
    void watcher_isQuietAndCloseOnExec();
    void modemList_holdsWhatIsMarkedAsAModem();
};

void SerialDevicesTest::onlyDevicesWithDriverAndChipCount_data()
{
    QTest::addColumn<QByteArray>("driver");
    QTest::addColumn<QByteArray>("uartType");
    QTest::addColumn<bool>("counts");
    QTest::newRow("USB adapter") << "ftdi_sio"_ba << QByteArray() << true;
    QTest::newRow("USB modem class") << "cdc_acm"_ba << QByteArray() << true;
    QTest::newRow("socket with a chip") << "serial8250"_ba
                                        << "4"_ba << true;
    QTest::newRow("socket without a chip") << "serial8250"_ba
                                           << "0"_ba << false;
    QTest::newRow("console without a driver") << QByteArray() << QByteArray() << false;
}

void SerialDevicesTest::onlyDevicesWithDriverAndChipCount()
{
    QFETCH(QByteArray, driver);
    QFETCH(QByteArray, uartType);
    QFETCH(bool, counts);
    QCOMPARE(isSerialDevice({"/dev/ttyX0", driver, uartType, false}), counts);
}

void SerialDevicesTest::order_isByNameAndNumber()
{
    QList<QByteArray> paths{"/dev/ttyUSB10", "/dev/ttyUSB2", "/dev/ttyS1",   "/dev/ttyACM0",
                            "/dev/ttyUSB",   "/dev/ttyS0",   "/dev/ttyUSB02"};
    std::sort(paths.begin(), paths.end(), standsBefore);
    QCOMPARE(paths, (QList<QByteArray>{"/dev/ttyACM0", "/dev/ttyS0", "/dev/ttyS1", "/dev/ttyUSB",
                                       "/dev/ttyUSB02", "/dev/ttyUSB2", "/dev/ttyUSB10"}));
}

void SerialDevicesTest::environmentNamesStandFirst_onceEach()
{
    qputenv("QOVELMORRSS_SERIAL_DEVICES", "/tmp/board::/dev/pts/9:/tmp/board:");
    const SerialLookup lookup = findSerialDevices(SerialDeviceType::Rs232);
    QVERIFY(lookup.paths.size() >= 2);
    QCOMPARE(lookup.paths[0], "/tmp/board"_ba);
    QCOMPARE(lookup.paths[1], "/dev/pts/9"_ba);
    QCOMPARE(lookup.paths.count("/tmp/board"), 1);
}

void SerialDevicesTest::environmentNamesStandInEveryKindOfList()
{
    qputenv("QOVELMORRSS_SERIAL_DEVICES", "/tmp/board");
    for (const auto type : {SerialDeviceType::Any, SerialDeviceType::Modem})
        QCOMPARE(findSerialDevices(type).paths.value(0), "/tmp/board"_ba);
}

void SerialDevicesTest::systemList_isTheSameEachTime()
{
    const SerialLookup first = findSerialDevices(SerialDeviceType::Any);
    const SerialLookup second = findSerialDevices(SerialDeviceType::Rs232);
    QCOMPARE(first.paths, second.paths);
    QVERIFY(std::is_sorted(first.paths.begin(), first.paths.end(), standsBefore));
    for (const QByteArray &path : first.paths)
        QVERIFY2(path.startsWith("/dev/") && path != "/dev/tty" && path != "/dev/console",
                 path.constData());
}

void SerialDevicesTest::name_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("after the dot") << "/dev/cu.usbserial-A1"_ba << u"usbserial-A1"_s;
    QTest::newRow("after the last dot") << "/dev/cu.a.b"_ba << u"b"_s;
    QTest::newRow("no dot") << "/dev/ttyUSB0"_ba << u"ttyUSB0"_s;
    QTest::newRow("dot in the folder only") << "/tmp/run.d/board"_ba << u"board"_s;
    QTest::newRow("dot at the end") << "/dev/odd."_ba << u"odd."_s;
}

void SerialDevicesTest::name()
{
    QFETCH(QByteArray, path);
    QTEST(serialPortName(path), "name");
}

void SerialDevicesTest::portNames_areTheNamesOfTheList()
{
    qputenv("QOVELMORRSS_SERIAL_DEVICES", "/tmp/led.board:/dev/pts/9");
    QCOMPARE(serialPortNames().first(2), (QStringList{u"board"_s, u"9"_s}));
}

void SerialDevicesTest::watcher_isQuietAndCloseOnExec()
{
    SerialDeviceWatcher watcher;
    QVERIFY(!watcher.takeChange());
    if (watcher.descriptor() >= 0)
        QVERIFY((fcntl(watcher.descriptor(), F_GETFD) & FD_CLOEXEC) != 0);
}

void SerialDevicesTest::modemList_holdsWhatIsMarkedAsAModem()
{
    const TerminalFacts adapter{"/dev/ttyUSB0", "ftdi_sio", {}, false};
    const TerminalFacts modem{"/dev/ttyACM0", "cdc_acm", {}, true};
    const TerminalFacts console{"/dev/tty1", {}, {}, true};
    for (const auto type : {SerialDeviceType::Any, SerialDeviceType::Rs232}) {
        QVERIFY(isListed(adapter, type));
        QVERIFY(isListed(modem, type));
        QVERIFY(!isListed(console, type));
    }
    QVERIFY(!isListed(adapter, SerialDeviceType::Modem));
    QVERIFY(isListed(modem, SerialDeviceType::Modem));
    QVERIFY(!isListed(console, SerialDeviceType::Modem));
}

QTEST_GUILESS_MAIN(SerialDevicesTest)
#include "serialdevices_test.moc"
