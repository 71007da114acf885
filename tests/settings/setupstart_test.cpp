// SPDX-License-Identifier: MIT
#include "SetupParts.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The start of the settings: the board link, and what the window is told.
class SetupStartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void start_configuresTheBoard();
    void start_portThatFails_dropsTheBoard();
    void start_boardThatIsSilent_dropsTheBoard();
    void start_withoutABoard();
    void start_fillsTheWindow();
    void portNames_comeFromTheLinkWhileItStands();
};

void SetupStartTest::start_configuresTheBoard()
{
    SetupParts parts;
    parts.defaults.setInteger(1, u"ComPortNumber"_s);
    parts.defaults.setInteger(9, u"ScrollSpeed"_s);
    parts.defaults.setBool(true, u"RotationLeft90"_s);
    parts.makeWithBoard();
    const Setup &setup = parts.start();

    QVERIFY(setup.hasLedSystem());
    const QStringList expected{u"open 1"_s,    u"comTest"_s,   u"speed 9"_s,  u"modules 4"_s,
                               u"bright 10"_s, u"reverse 0"_s, u"scroll 1"_s, u"async 0"_s,
                               u"fontx 1"_s,   u"rotation 1"_s};
    QCOMPARE(parts.boardCalls, expected);
    QVERIFY(parts.output.lines.isEmpty());
}

void SetupStartTest::start_portThatFails_dropsTheBoard()
{
    SetupParts parts;
    parts.makeWithBoard().opens = false;
    const Setup &setup = parts.start();

    QVERIFY(!setup.hasLedSystem());
    QCOMPARE(parts.boardCalls, QStringList{u"open 0"_s});
    QCOMPARE(parts.output.lines, QStringList{u"シリアルポートのオープンに失敗"_s});
    QVERIFY(!setup.ledSystem().comTest());
}

void SetupStartTest::start_boardThatIsSilent_dropsTheBoard()
{
    SetupParts parts;
    parts.makeWithBoard().answers = false;
    const Setup &setup = parts.start();

    QVERIFY(!setup.hasLedSystem());
    QCOMPARE(parts.boardCalls, (QStringList{u"open 0"_s, u"comTest"_s}));
    QCOMPARE(parts.output.lines, QStringList{u"LED電光掲示板がないのでモニター画面に出力"_s});
    QVERIFY(!setup.ledSystem().openSerialPortWithNumber(0));
}

void SetupStartTest::start_withoutABoard()
{
    SetupParts parts;
    const Setup &setup = parts.startWithoutBoard();
    QVERIFY(!setup.hasLedSystem());
    QCOMPARE(parts.output.lines, QStringList{u"シリアルポートのオープンに失敗"_s});
    QCOMPARE(setup.ledSystem().waitBefore(), 0);
}

void SetupStartTest::start_fillsTheWindow()
{
    SetupParts parts;
    parts.defaults.setBool(true, u"LogSystem"_s);
    parts.startWithoutBoard();
    const QStringList expected{u"fill finish Blow,Basso"_s, u"fill arrival Blow,Basso"_s,
                               u"show log 1"_s, u"renewal"_s};
    QCOMPARE(parts.window.calls, expected);
}

void SetupStartTest::portNames_comeFromTheLinkWhileItStands()
{
    SetupParts parts;
    RecordingBoard &board = parts.makeWithBoard();
    QCOMPARE(parts.setup->portNames(), QStringList{u"port of the link"_s});
    board.opens = false;
    QCOMPARE(parts.start().portNames(), QStringList{u"port of the system"_s});
}

QTEST_GUILESS_MAIN(SetupStartTest)
#include "setupstart_test.moc"
