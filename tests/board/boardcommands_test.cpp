// SPDX-License-Identifier: MIT
#include "tests/board/BoardBench.h"
#include "tests/board/WireBench.h"

#include <QRegularExpression>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

/// What an operation gave, as text, so that all of them fit one table.
QString shown(int value)
{
    return QString::number(value);
}
QString shown(bool value)
{
    return value ? u"YES"_s : u"NO"_s;
}
QString shown(const std::optional<QString> &value)
{
    return value ? u'"' + *value + u'"' : u"nil"_s;
}
QString shown(const QByteArray &value)
{
    return QString::fromLatin1(value.toHex(' '));
}
QString shown(const std::optional<QByteArray> &value)
{
    return value ? shown(*value) : u"nil"_s;
}

using Call = std::function<QString(VelmorSystem &)>;

/// An operation whose result is compared.
template <typename Operation>
Call asking(Operation operation)
{
    return [operation](VelmorSystem &board) { return shown(operation(board)); };
}

/// An operation that gives nothing back.
template <typename Operation>
Call ordering(Operation operation)
{
    return [operation](VelmorSystem &board) {
        operation(board);
        return QString();
    };
}

struct Row
{
    const char *name;
    Call call;
    QList<QByteArray> lines; ///< what arrives on the line
    QByteArray answer;       ///< the tagged lines, given to each of them
    QString value;
};

#define ASK(call, line, answer, value)                                                             \
    Row                                                                                            \
    {                                                                                              \
#call, asking([](VelmorSystem &b) { return b.call; }), {line }, answer, value              \
    }
#define ORDER(call, ...)                                                                           \
    Row                                                                                            \
    {                                                                                              \
#call, ordering([](VelmorSystem &b) { b.call; }), {__VA_ARGS__ }, "", QString()            \
    }

QList<Row> questions()
{
    return {
        ASK(echo(), "echo", "D echo 1\r\n", u"1"_s),
        ASK(echo(0), "echo 0", "D echo 0\r\n", u"0"_s),
        ASK(ver(), "ver", "V board 1.0\r\n", u"\"board 1.0\""_s),
        ASK(sync(), "sync", "D sync 12\r\n", u"\"sync 12\""_s),
        ASK(lm_pget({3, 5}), "lm_pget 3 5", "D 1\r\n", u"1"_s),
        ASK(lm_pget({-1, 5}), "lm_pget", "E -2 bad argument\r\n", u"-2"_s),
        ASK(rcir(), "rcir", "D run:1\r\n", u"1"_s),
        ASK(rcir(0), "rcir 0", "D run:0\r\n", u"0"_s),
        ASK(rcir_data(), "rcir_data", "D abc\r\n", u"\"abc\""_s),
        ASK(rcir_data_detail(), "rcir_data detail", "D 1 61\r\n", u"\"1 61\""_s),
        ASK(rcir_stat(), "rcir_stat", "D run:1 held:0\r\n", u"\"run:1 held:0\""_s),
        ASK(rom_dread(10, 31), "rom_dread A 1F", "D 8000 0001\r\n", u"80 00 00 01"_s),
        ASK(rom_dread(8), "rom_dread 8 F", "D 1\r\n", u"00 01"_s),
        ASK(rom_dread(), "rom_dread 0 7", "D ffff\r\n", u"ff ff"_s),
        ASK(rom_format(512), "rom_format 512", "D romsize = 512\r\n", u"512"_s),
        ASK(rom_format(), "rom_format", "D romsize = 4096\r\n", u"4096"_s),
        ASK(rom_state(), "rom_state", "D size 4096\r\n", u"\"size 4096\""_s),
        ASK(rr(10, 48), "rr A 30", "D rom data 000A: 01 ff\r\n", u"01 ff"_s),
        ASK(rr(16), "rr 10 20", "D rom data 0010: 10\r\n", u"10"_s),
        ASK(rr(), "rr 0 10", "D rom data 0000: 00\r\n", u"00"_s),
        ASK(sc_data(), "sc_data", "D 48\r\n", u"48"_s),
        ASK(sc_mode(), "sc_mode", "D 2\r\n", u"2"_s),
        ASK(cmodule(), "set cmodule", "D cmodule 4\r\n", u"4"_s),
        ASK(led_reverse(), "set led_reverse", "D led_reverse 1\r\n", u"1"_s),
        ASK(rom_verbose(), "set rom_verbose", "D rom_verbose 1\r\n", u"1"_s),
        ASK(scmode_div(), "set scmode_div", "D scmode_div 3\r\n", u"3"_s),
        ASK(scmode_wait1(), "set scmode_wait1", "D scmode_wait1 10\r\n", u"10"_s),
        ASK(scmode_wait2(), "set scmode_wait2", "D scmode_wait2 11\r\n", u"11"_s),
        ASK(scmode_verbose(), "set scmode_verbose", "D scmode_verbose 0\r\n", u"0"_s),
        ASK(sw_enable(), "set sw_enable", "D sw_enable 1\r\n", u"1"_s),
        ASK(dump_ir(), "set dump_ir", "D dump_ir 0\r\n", u"0"_s),
        ASK(moduleCount(), "set cmodule", "D cmodule 8\r\n", u"8"_s),
        ASK(speed(), "set scmode_div", "D scmode_div 5\r\n", u"5"_s),
        ASK(waitBefore(), "set scmode_wait1", "D scmode_wait1 1\r\n", u"1"_s),
        ASK(waitAfter(), "set scmode_wait2", "D scmode_wait2 2\r\n", u"2"_s),
        ASK(reverse(), "set led_reverse", "D led_reverse 0\r\n", u"NO"_s),
        ASK(romVerbose(), "set rom_verbose", "D rom_verbose 1\r\n", u"YES"_s),
        ASK(scrollVerbose(), "set scmode_verbose", "D scmode_verbose 7\r\n", u"YES"_s),
        ASK(messageSwitchEnable(), "set sw_enable", "D sw_enable 0\r\n", u"NO"_s),
        ASK(dumpIRMessage(), "set dump_ir", "D dump_ir -1\r\n", u"YES"_s),
    };
}

QList<Row> orders()
{
    return {
        ORDER(lm_bright(-1)),
        ORDER(lm_bright(0), "lm_bright 0"),
        ORDER(lm_bright(10), "lm_bright 10"),
        ORDER(lm_bright(11)),
        ORDER(lm_bright0(-1)),
        ORDER(lm_bright0(255), "lm_bright0 255"),
        ORDER(lm_bright0(256)),
        ORDER(lm_clear(), "lm_clear"),
        ORDER(lm_on(), "lm_on"),
        ORDER(lm_off(), "lm_off"),
        ORDER(lm_pset({3, 5}), "lm_pset 3 5"),
        ORDER(lm_pset({-1, 5}), "lm_pset"),
        ORDER(lm_preset({0, 15}), "lm_preset 0 15"),
        ORDER(lm_pexor({127.9, 0}), "lm_pexor 127 0"),
        ORDER(lm_puts(u"ア b"_s), "lm_puts \x83\x41 b"),
        ORDER(lm_puts2(u"c"_s), "lm_puts2 c"),
        ORDER(txir(u"hello"_s), "txir hello"),
        ORDER(rcir_free(), "rcir_free"),
        ORDER(rcir_free_all(), "rcir_free all"),
        ORDER(rom_cwrite(u"sc_show"_s), "rom_cwrite sc_show"),
        ORDER(rom_dclose(), "rom_dclose"),
        ORDER(rom_dwrite("\x80\x00\x00\x01\x77"_ba), "rom_dwrite 8000 1 "),
        ORDER(rom_dwrite(QByteArray(34, '\1')), "rom_dwrite " + QByteArray("101 ").repeated(16),
              "rom_dwrite 101 "),
        ORDER(rom_dwrite({})),
        ORDER(rom_scroll(0), "rom_scroll 0"),
        ORDER(rom_scroll(), "rom_scroll 1"),
        ORDER(rom_set_bright(10), "rom_set bright 10"),
        ORDER(rom_set_speed(3), "rom_set speed 3"),
        ORDER(rom_set_led_reverse(1), "rom_set led_reverse 1"),
        ORDER(rw(26, "\x01\xff"_ba), "rw 1a 1 ff "),
        ORDER(rw(0, QByteArray(17, '\2')), "rw 0 " + QByteArray("2 ").repeated(16), "rw 10 2 "),
        ORDER(rw(0, {}), "rw 0 "),
        ORDER(sc_clear(), "sc_clear"),
        ORDER(sc_clear(1), "sc_clear 1"),
        ORDER(sc_end(), "sc_end"),
        ORDER(sc_end(0), "sc_end 0"),
        ORDER(sc_end(-1), "sc_end -1"),
        ORDER(sc_loop(), "sc_loop"),
        ORDER(sc_scroll(), "sc_scroll"),
        ORDER(sc_show(), "sc_show"),
        ORDER(sc_stop(), "sc_stop"),
        ORDER(cmodule(4), "set cmodule 4"),
        ORDER(led_reverse(1), "set led_reverse 1"),
        ORDER(rom_verbose(1), "set rom_verbose 1"),
        ORDER(scmode_div(3), "set scmode_div 3"),
        ORDER(scmode_wait1(10), "set scmode_wait1 10"),
        ORDER(scmode_wait2(10), "set scmode_wait2 10"),
        ORDER(scmode_verbose(0), "set scmode_verbose 0"),
        ORDER(sw_enable(0), "set sw_enable 0"),
        ORDER(dump_ir(1), "set dump_ir 1"),
        ORDER(setModuleCount(2), "set cmodule 2"),
        ORDER(setSpeed(5), "set scmode_div 5"),
        ORDER(setWaitBefore(1), "set scmode_wait1 1"),
        ORDER(setWaitAfter(2), "set scmode_wait2 2"),
        ORDER(setReverse(true), "set led_reverse 1"),
        ORDER(setRomVerbose(false), "set rom_verbose 0"),
        ORDER(setScrollVerbose(true), "set scmode_verbose 1"),
        ORDER(setMessageSwitchEnable(true), "set sw_enable 1"),
        ORDER(setDumpIRMessage(false), "set dump_ir 0"),
        ORDER(setBright(7), "lm_bright 7"),
        ORDER(setBright(11)),
        ORDER(dsenum()),
        ORDER(dsconvt()),
        ORDER(dsconvt(1)),
        ORDER(dispStateName()),
        ORDER(errorMessage()),
        ORDER(repeat()),
        ORDER(scrollOut()),
        ORDER(throwError()),
        ORDER(cancel()),
    };
}

} // namespace

class BoardCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void questions_sendTheirLineAndReadTheirAnswer_data();
    void questions_sendTheirLineAndReadTheirAnswer();
    void orders_sendTheirLine_data();
    void orders_sendTheirLine();
    void romQuestions_waitForTheSecondMark();
    void scData_sendsSixteenColumnsToALine();
    void scData_readsTheLastAnswerOnly();
    void scData_ofAbsentAndEmptyData();
    void scData_atTheEndOfTheProgram_leavesTheRest();
    void help_isReadAfterASecond();
    void bright_isRemembered();
    void noReply_data();
    void noReply();
    void operationsWithoutACommand();
    void unsupportedOperations_saySo();
};

void BoardCommandsTest::questions_sendTheirLineAndReadTheirAnswer_data()
{
    QTest::addColumn<bool>("quiet");
    QTest::newRow("board that says Ok. after every command") << false;
    QTest::newRow("board that answers questions only") << true;
}

void BoardCommandsTest::questions_sendTheirLineAndReadTheirAnswer()
{
    QFETCH(bool, quiet);
    BoardBench b({.kind = quiet ? ScriptedBoard::Kind::Quiet : ScriptedBoard::Kind::Talkative});
    for (const Row &row : questions()) {
        b.far.setScript([&row](const QByteArray &) { return row.answer; });
        const QString value = row.call(b.system);
        QVERIFY2(value == row.value,
                 qPrintable(QString::fromLatin1(row.name) + u" gave "_s + value));
        QCOMPARE(b.far.takeLines(), row.lines);
    }
    QVERIFY(b.log.lines().isEmpty());
}

void BoardCommandsTest::orders_sendTheirLine_data()
{
    questions_sendTheirLineAndReadTheirAnswer_data();
}

void BoardCommandsTest::orders_sendTheirLine()
{
    QFETCH(bool, quiet);
    BoardBench b({.kind = quiet ? ScriptedBoard::Kind::Quiet : ScriptedBoard::Kind::Talkative});
    QList<QByteArray> expected;
    for (const Row &row : orders()) {
        row.call(b.system);
        expected += row.lines;
    }
    QCOMPARE(b.system.ver(), std::optional(u"test board"_s));
    expected += "ver";
    const QList<QByteArray> lines = b.far.takeLines();
    for (qsizetype i = 0; i < qMin(lines.size(), expected.size()); ++i)
        QCOMPARE(lines[i], expected[i]);
    QCOMPARE(lines.size(), expected.size());
    QVERIFY(b.log.lines().isEmpty());
}

void BoardCommandsTest::romQuestions_waitForTheSecondMark()
{
    WireBench b;
    b.setScript([](const QByteArray &) { return "D sum 1\r\nOk.\r\n"; });
    QCOMPARE(b.system.rom_check(), std::optional(u"sum 1"_s));
    QCOMPARE(b.system.rom_cread(), std::optional(u"sum 1"_s));
    QCOMPARE(b.takeLines(), (QList<QByteArray>{"rom_check", "rom_cread"}));

    b.setScript([](const QByteArray &) { return "D sum 1\r\n"; }); // one mark only
    QCOMPARE(b.system.rom_check(), std::nullopt);
}

void BoardCommandsTest::scData_sendsSixteenColumnsToALine()
{
    BoardBench b;
    QByteArray columns;
    for (int i = 0; i < 33; ++i)
        columns += QByteArray("\x80", 1) + static_cast<char>(i);
    QCOMPARE(b.system.sc_data(columns), 256);
    const QList<QByteArray> lines = b.far.takeLines();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], "sc_data 8000 8001 8002 8003 8004 8005 8006 8007 8008 8009 800a 800b 800c "
                       "800d 800e 800f "_ba);
    QCOMPARE(lines[2], "sc_data 8020 "_ba);
    for (const QByteArray &line : lines)
        QVERIFY(line.size() <= 100); // what a board takes
}

void BoardCommandsTest::scData_readsTheLastAnswerOnly()
{
    BoardBench b;
    b.far.setScript(
        [n = 0](const QByteArray &) mutable { return "D " + QByteArray::number(++n) + "\r\n"; });
    QCOMPARE(b.system.sc_data(QByteArray(96, '\0')), 3);
}

void BoardCommandsTest::scData_ofAbsentAndEmptyData()
{
    BoardBench b;
    QCOMPARE(b.system.sc_data(std::nullopt), -1);
    QCOMPARE(b.system.sc_data(QByteArray()), 0);
    QVERIFY(b.linesSoFar().isEmpty());
}

// An image as wide as a board can lie itself to be takes half a minute on the line.
void BoardCommandsTest::scData_atTheEndOfTheProgram_leavesTheRest()
{
    BoardBench b;
    b.clock.endSleeps();
    QCOMPARE(b.system.sc_data(QByteArray(64, '\1')), -1);
    QCOMPARE(b.system.sc_data(QByteArray(32, '\1')), 256); // one line is one exchange
    QCOMPARE(b.far.takeLines(), QList<QByteArray>{"sc_data " + QByteArray("0101 ").repeated(16)});
}

void BoardCommandsTest::help_isReadAfterASecond()
{
    WireBench b;
    b.setScript([](const QByteArray &) { return "V echo [n]\r\nV ver\r\n"; });
    const auto start = b.clock.steadyNow();
    QCOMPARE(b.system.h(), std::optional(u"help\r\necho [n]\r\nver\r"_s));
    QVERIFY(b.clock.steadyNow() - start >= 1s);
    QCOMPARE(b.takeLines(), QList<QByteArray>{"help"});

    b.setScript([](const QByteArray &) { return std::nullopt; });
    QCOMPARE(b.system.help(), std::nullopt);
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveStringMorethan"_s));
}

void BoardCommandsTest::bright_isRemembered()
{
    BoardBench b;
    QCOMPARE(b.system.bright(), 10);
    b.system.setBright(99); // not sent, but remembered
    QCOMPARE(b.system.bright(), 99);
    QVERIFY(b.linesSoFar().isEmpty());
}

void BoardCommandsTest::noReply_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("value");
    QTest::newRow("number") << 0 << u"-1"_s;
    QTest::newRow("number after a key") << 1 << u"-1"_s;
    QTest::newRow("text") << 2 << u"nil"_s;
    QTest::newRow("words") << 3 << u""_s;
    QTest::newRow("memory") << 4 << u"nil"_s;
    QTest::newRow("property") << 5 << u"YES"_s;
}

void BoardCommandsTest::noReply()
{
    QFETCH(int, operation);
    QFETCH(QString, value);
    WireBench b;
    b.setScript([](const QByteArray &) { return std::nullopt; });
    const QList<Call> calls{asking([](VelmorSystem &s) { return s.sc_data(); }),
                            asking([](VelmorSystem &s) { return s.cmodule(); }),
                            asking([](VelmorSystem &s) { return s.ver(); }),
                            asking([](VelmorSystem &s) { return s.rom_dread(); }),
                            asking([](VelmorSystem &s) { return s.rr(); }),
                            asking([](VelmorSystem &s) { return s.reverse(); })};
    QCOMPARE(calls[operation](b.system), value);
    QCOMPARE(b.log.lines(), QStringList(u"watch CocoaSerialPort:receiveStringUntilEOSWithSkip"_s));
    QVERIFY(b.system.isPortOpen()); // opened again

    b.setScript(ScriptedBoard::defaultAnswer);
    QCOMPARE(b.system.sc_data(), 256);
}

void BoardCommandsTest::operationsWithoutACommand()
{
    BoardBench b;
    const LocalTime now = localTime(b.clock.calendarNow());
    QCOMPARE(b.system.date().year, now.year);
    QCOMPARE(b.system.date(1).year, now.year);
    QCOMPARE(b.system.dsgett(), -999.0);
    QCOMPARE(b.system.dsgett(1), -999.0);
    QCOMPARE(b.system.dispState(), 0);
    QVERIFY(b.linesSoFar().isEmpty());
}

void BoardCommandsTest::unsupportedOperations_saySo()
{
    BoardBench b;
    QTest::ignoreMessage(QtWarningMsg, "isFailed is not supported.");
    QVERIFY(!b.system.isFailed());
    QTest::ignoreMessage(QtWarningMsg, "aboutBox is no supported.");
    b.system.aboutBox();
}

QTEST_GUILESS_MAIN(BoardCommandsTest)
#include "boardcommands_test.moc"
