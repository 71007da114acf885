// SPDX-License-Identifier: MIT
#include "tests/tools/FirmwareBench.h"
#include "tools/qovelmorboard/Misbehaviour.h"

#include <QTest>

using namespace qovelmor::simboard;
using std::chrono::milliseconds;

class MisbehaviourTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void orders_areReadFromText_data();
    void orders_areReadFromText();
    void nonsense_isRefusedWhole_data();
    void nonsense_isRefusedWhole();
    void orderedLines_areCounted();
    void mute_obeysButSaysNothing();
    void noOk_leavesTheMarkOut();
    void late_answersAfterTheDelay();
    void bytewise_sendsSingleBytes();
    void noise_addsBytesAndRepeatsWithItsSeed();
    void refuse_answersBelowZero();
    void stuck_neverDrains();
    void endless_neverEnds();
    void restart_forgetsTheScroll();
    void twice_answersTwice();
    void wrong_answersAnotherQuestion();
    void hangUp_isTakenOnce();
    void hangUp_isNotForgottenForTheNextLine();
    void behave_endsAllFaults();

private:
    static void order(FirmwareBench &bench, const char *text);
};

void MisbehaviourTest::order(FirmwareBench &bench, const char *text)
{
    const auto orders = Misbehaviour::parse(text);
    QVERIFY(orders);
    for (const FaultOrder &each : *orders)
        bench.firmware().misbehaviour().order(each);
}

void MisbehaviourTest::orders_areReadFromText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("fault");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("times");

    QTest::newRow("name") << QByteArray("mute") << int(Fault::Mute) << 0 << 0 << 0;
    QTest::newRow("default value") << QByteArray("late") << int(Fault::Late) << 1500 << 0 << 0;
    QTest::newRow("value") << QByteArray("late=20") << int(Fault::Late) << 20 << 0 << 0;
    QTest::newRow("line") << QByteArray("no-ok@3") << int(Fault::NoOk) << 0 << 3 << 0;
    QTest::newRow("times") << QByteArray("twice*2") << int(Fault::Twice) << 0 << 0 << 2;
    QTest::newRow("all") << QByteArray("hangup=50@4*1") << int(Fault::HangUp) << 50 << 4 << 1;
}

void MisbehaviourTest::orders_areReadFromText()
{
    QFETCH(QByteArray, text);
    QFETCH(int, fault);
    QFETCH(int, value);
    QFETCH(int, from);
    QFETCH(int, times);
    const auto orders = Misbehaviour::parse(text.constData());
    QVERIFY(orders);
    QCOMPARE(orders->size(), std::size_t{1});
    const FaultOrder expected{Fault(fault), value, from, times};
    QVERIFY(orders->front() == expected);
}

void MisbehaviourTest::nonsense_isRefusedWhole_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"", "mute,", "unknown", "late=", "late=-1", "late=x", "mute@",
                             "mute*a", "mute,,stuck", "late=1=2", "late=99999999999"})
        QTest::newRow(*text ? text : "nothing") << QByteArray(text);
}

void MisbehaviourTest::nonsense_isRefusedWhole()
{
    QFETCH(QByteArray, text);
    QVERIFY(!Misbehaviour::parse(text.constData()));
}

void MisbehaviourTest::orderedLines_areCounted()
{
    FirmwareBench bench;
    order(bench, "no-ok@2*2");
    QVERIFY(bench.say("sc_mode").endsWith("Ok.\r\n"));
    QVERIFY(!bench.say("sc_mode").endsWith("Ok.\r\n"));
    QVERIFY(!bench.say("sc_mode").endsWith("Ok.\r\n"));
    QVERIFY(bench.say("sc_mode").endsWith("Ok.\r\n"));
    order(bench, "no-ok*1");
    QVERIFY(!bench.say("sc_mode").endsWith("Ok.\r\n"));
    QVERIFY(bench.say("sc_mode").endsWith("Ok.\r\n"));
}

void MisbehaviourTest::mute_obeysButSaysNothing()
{
    FirmwareBench bench;
    order(bench, "mute");
    QCOMPARE(bench.say("set cmodule 7"), "");
    bench.firmware().misbehaviour().behave();
    QVERIFY(bench.say("set cmodule").contains("D cmodule 7\r\n"));
}

void MisbehaviourTest::noOk_leavesTheMarkOut()
{
    FirmwareBench bench;
    order(bench, "no-ok");
    QCOMPARE(bench.say("sc_mode"), "sc_mode\r\nD 0\r\n");
    QCOMPARE(bench.say("rom_check"), "rom_check\r\nD sum 0000 words 0\r\n");
}

void MisbehaviourTest::late_answersAfterTheDelay()
{
    FirmwareBench bench;
    order(bench, "late=100");
    QCOMPARE(bench.say("sc_mode"), "");
    QVERIFY(bench.firmware().nextEvent() == bench.now() + milliseconds(100));
    bench.wait(milliseconds(99));
    QCOMPARE(bench.hear(), "");
    bench.wait(milliseconds(1));
    QCOMPARE(bench.hear(), "sc_mode\r\nD 0\r\nOk.\r\n");
}

void MisbehaviourTest::bytewise_sendsSingleBytes()
{
    FirmwareBench bench;
    bench.say("echo 0");
    order(bench, "bytewise=10");
    QByteArray heard = bench.say("sc_mode");
    QCOMPARE(heard, "D");
    for (int i = 0; i < 9; ++i) {
        bench.wait(milliseconds(10));
        heard += bench.hear();
        QCOMPARE(heard.size(), qsizetype(i + 2));
    }
    QCOMPARE(heard, "D 0\r\nOk.\r\n");
}

void MisbehaviourTest::noise_addsBytesAndRepeatsWithItsSeed()
{
    FirmwareBench one;
    FirmwareBench two;
    order(one, "noise=50");
    order(two, "noise=50");
    const QByteArray heard = one.say("ver");
    QVERIFY(heard.size() > qsizetype(sizeof "ver\r\nV QoVelmor LED board 1.0\r\nOk.\r\n"));
    QCOMPARE(two.say("ver"), heard);
}

void MisbehaviourTest::refuse_answersBelowZero()
{
    FirmwareBench bench;
    order(bench, "refuse*1");
    QCOMPARE(bench.say("sc_data 1 "), "sc_data 1 \r\nE -1 no room\r\nOk.\r\n");
    QCOMPARE(bench.say("sc_data 1 "), "sc_data 1 \r\nD 254\r\nOk.\r\n");
}

void MisbehaviourTest::stuck_neverDrains()
{
    FirmwareBench bench;
    order(bench, "stuck");
    bench.say("sc_scroll");
    bench.say("sc_data 1 2 3 ");
    bench.wait(std::chrono::seconds(30));
    QVERIFY(bench.say("sc_data").contains("D 250\r\n"));
    bench.firmware().misbehaviour().behave();
    bench.wait(std::chrono::seconds(1));
    QVERIFY(bench.say("sc_data").contains("D 256\r\n"));
}

void MisbehaviourTest::endless_neverEnds()
{
    FirmwareBench bench;
    order(bench, "endless");
    bench.say("sc_scroll");
    bench.say("sc_end 1");
    bench.wait(std::chrono::seconds(30));
    QVERIFY(bench.say("sc_mode").contains("D 2\r\n"));
}

void MisbehaviourTest::restart_forgetsTheScroll()
{
    FirmwareBench bench;
    bench.say("set cmodule 2");
    bench.say("sc_scroll");
    bench.say("sc_data 1 ");
    order(bench, "restart");
    QCOMPARE(bench.say("sc_data 2 "), "V QoVelmor LED board 1.0\r\nOk.\r\n");
    QVERIFY(bench.say("sc_mode").contains("D 0\r\n"));
    QVERIFY(bench.say("set cmodule").contains("D cmodule 4\r\n"));
    QVERIFY(bench.record().runs().back().finished);
    FirmwareBench quiet(BoardKind::Quiet);
    order(quiet, "restart");
    QCOMPARE(quiet.say("ver"), "");
}

void MisbehaviourTest::twice_answersTwice()
{
    FirmwareBench bench;
    bench.say("echo 0");
    order(bench, "twice");
    QCOMPARE(bench.say("sc_mode"), "D 0\r\nOk.\r\nD 0\r\nOk.\r\n");
}

void MisbehaviourTest::wrong_answersAnotherQuestion()
{
    FirmwareBench bench;
    order(bench, "wrong");
    QCOMPARE(bench.say("sc_data"), "sc_data\r\nD cmodule 4\r\nOk.\r\n");
    QCOMPARE(bench.say("set cmodule"), "set cmodule\r\nD run:1\r\nOk.\r\n");
}

void MisbehaviourTest::hangUp_isTakenOnce()
{
    FirmwareBench bench;
    order(bench, "hangup=70@2");
    bench.say("ver");
    QVERIFY(!bench.firmware().takeHangUp());
    bench.say("ver");
    QCOMPARE(bench.firmware().takeHangUp(), std::optional<int>(70));
    QVERIFY(!bench.firmware().takeHangUp());
}

// Two lines may come in one read.
void MisbehaviourTest::hangUp_isNotForgottenForTheNextLine()
{
    FirmwareBench bench;
    order(bench, "hangup=70");
    bench.send("ver\rsc_mode\r");
    QCOMPARE(bench.firmware().takeHangUp(), std::optional<int>(70));
    QVERIFY(!bench.hear().contains("Ok."));
}

void MisbehaviourTest::behave_endsAllFaults()
{
    FirmwareBench bench;
    order(bench, "mute,twice,wrong,refuse,endless,noise,late,bytewise,no-ok");
    bench.firmware().misbehaviour().behave();
    QCOMPARE(bench.say("sc_mode"), "sc_mode\r\nD 0\r\nOk.\r\n");
}

QTEST_APPLESS_MAIN(MisbehaviourTest)
#include "misbehaviour_test.moc"
