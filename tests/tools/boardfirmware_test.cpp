// SPDX-License-Identifier: MIT
#include "tests/tools/FirmwareBench.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/BraillePicture.h"

#include <QTest>

#include <random>

using namespace qovelmor::simboard;

class BoardFirmwareTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachCommand_answersTheseBytes_data();
    void eachCommand_answersTheseBytes();
    void quietBoard_speaksOnlyWhenAsked_data();
    void quietBoard_speaksOnlyWhenAsked();
    void everyVariable_isSetAndReadBack();
    void lineOverTheInputBuffer_losesItsRest();
    void bytesInAnyPieces_areTheSameCommands();
    void help_isShortEnoughToArriveInASecond();
    void echoOff_leavesTheAnswersOnly();
    void romWords_areWrittenAndReadBack();
    void romStartValues_holdAfterARestart();
    void infraredMessages_areHeardWhileListening();
    void memoryDump_putsTheBytesBehindAFixedAddress();
    void dots_areSetClearedInvertedAndRead();
    void textWithoutFont_showsBoxes();
    void brightness_takesBothScales();
    void lightsOff_keepTheDots();
    void turnedBoard_showsThePictureUpsideDown();
    void scrollVerbose_tellsStartAndEnd();
    void anyBytes_leaveAWorkingBoard_data();
    void anyBytes_leaveAWorkingBoard();
};

namespace {

void row(const char *name, const char *line, const char *answer)
{
    QTest::newRow(name) << QByteArray(line) << QByteArray(answer);
}

QByteArray rowsOfDots(const BoardPicture &picture, int rows, int columns)
{
    const std::vector<ColumnWord> part(picture.columns.begin(), picture.columns.begin() + columns);
    QByteArray text;
    for (int y = 0; y < rows; ++y)
        text += QByteArray::fromStdString(dotLines(part)[std::size_t(y)]) + '\n';
    return text;
}

} // namespace

void BoardFirmwareTest::eachCommand_answersTheseBytes_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("answer");

    row("nothing", "", "Ok.\r\n");
    row("what a host sends to see whether it gets through", "x", "E -4 unknown\r\nOk.\r\n");
    row("version", "ver", "V QoVelmor LED board 1.0\r\nOk.\r\n");
    row("sync", "sync", "D sync 0\r\nOk.\r\n");
    row("echo asked", "echo", "D echo 1\r\nOk.\r\n");
    row("echo ordered", "echo 1", "D echo 1\r\nOk.\r\n");
    row("variable asked", "set cmodule", "D cmodule 4\r\nOk.\r\n");
    row("variable set", "set cmodule 5", "Ok.\r\n");
    row("variable over its limit", "set cmodule 33", "E -3 out of range\r\nOk.\r\n");
    row("variable below zero", "set cmodule -1", "E -3 out of range\r\nOk.\r\n");
    row("variable without a number", "set cmodule four", "E -2 bad argument\r\nOk.\r\n");
    row("no such variable", "set colour", "E -4 unknown\r\nOk.\r\n");
    row("set alone", "set", "E -4 unknown\r\nOk.\r\n");
    row("room asked", "sc_data", "D 256\r\nOk.\r\n");
    row("two columns", "sc_data 8000 0001 ", "D 252\r\nOk.\r\n");
    row("last byte of an odd count", "sc_data 8000 01 ", "D 252\r\nOk.\r\n");
    row("no hexadecimal", "sc_data 8000 00g1 ", "E -2 bad argument\r\nOk.\r\n");
    row("five digits", "sc_data 80000 ", "E -2 bad argument\r\nOk.\r\n");
    row("mode", "sc_mode", "D 0\r\nOk.\r\n");
    row("clear", "sc_clear", "Ok.\r\n");
    row("clear the buffer", "sc_clear 1", "Ok.\r\n");
    row("scroll", "sc_scroll", "Ok.\r\n");
    row("loop", "sc_loop", "Ok.\r\n");
    row("show", "sc_show", "Ok.\r\n");
    row("stop", "sc_stop", "Ok.\r\n");
    row("end", "sc_end", "Ok.\r\n");
    row("end at once", "sc_end 0", "Ok.\r\n");
    row("end when out", "sc_end 1", "Ok.\r\n");
    row("brightness", "lm_bright 10", "Ok.\r\n");
    row("too bright", "lm_bright 11", "E -3 out of range\r\nOk.\r\n");
    row("brightness alone", "lm_bright", "E -2 bad argument\r\nOk.\r\n");
    row("fine brightness", "lm_bright0 255", "Ok.\r\n");
    row("fine brightness over a byte", "lm_bright0 256", "E -3 out of range\r\nOk.\r\n");
    row("dots off", "lm_clear", "Ok.\r\n");
    row("lights on", "lm_on", "Ok.\r\n");
    row("lights off", "lm_off", "Ok.\r\n");
    row("dot on", "lm_pset 3 5", "Ok.\r\n");
    row("dot alone", "lm_pset", "E -2 bad argument\r\nOk.\r\n");
    row("dot right of the board", "lm_pset 128 0", "E -3 out of range\r\nOk.\r\n");
    row("dot below the board", "lm_preset 0 16", "E -3 out of range\r\nOk.\r\n");
    row("dot off", "lm_preset 3 5", "Ok.\r\n");
    row("dot inverted", "lm_pexor 3 5", "Ok.\r\n");
    row("dot read", "lm_pget 3 5", "D 0\r\nOk.\r\n");
    row("text", "lm_puts abc", "Ok.\r\n");
    row("more text", "lm_puts2 abc", "Ok.\r\n");
    row("infrared out", "txir abc", "Ok.\r\n");
    row("infrared listens?", "rcir", "D run:0\r\nOk.\r\n");
    row("infrared listen", "rcir 1", "D run:1\r\nOk.\r\n");
    row("infrared message", "rcir_data", "D \r\nOk.\r\n");
    row("infrared bytes", "rcir_data detail", "D 0\r\nOk.\r\n");
    row("infrared free", "rcir_free", "Ok.\r\n");
    row("infrared free all", "rcir_free all", "Ok.\r\n");
    row("infrared state", "rcir_stat", "D run:0 held:0 free:16\r\nOk.\r\n");
    row("rom check, two marks", "rom_check", "D sum 0000 words 0\r\nOk.\r\nOk.\r\n");
    row("rom command, two marks", "rom_cread", "D \r\nOk.\r\nOk.\r\n");
    row("rom command written", "rom_cwrite sc_mode", "Ok.\r\n");
    row("rom closed", "rom_dclose", "Ok.\r\n");
    row("rom read", "rom_dread 0 7", "D ffff ffff ffff ffff ffff ffff ffff ffff\r\nOk.\r\n");
    row("rom read in upper case", "rom_dread F F", "D ffff\r\nOk.\r\n");
    row("rom read backwards", "rom_dread 7 0", "E -3 out of range\r\nOk.\r\n");
    row("rom read alone", "rom_dread", "E -2 bad argument\r\nOk.\r\n");
    row("rom written", "rom_dwrite 1 2 3", "Ok.\r\n");
    row("rom formatted", "rom_format", "D romsize = 4096\r\nOk.\r\n");
    row("rom formatted small", "rom_format 16", "D romsize = 16\r\nOk.\r\n");
    row("rom formatted too large", "rom_format 4097", "E -3 out of range\r\nOk.\r\n");
    row("rom scrolls", "rom_scroll 1", "Ok.\r\n");
    row("rom brightness", "rom_set bright 5", "Ok.\r\n");
    row("rom speed", "rom_set speed 3", "Ok.\r\n");
    row("rom turn", "rom_set led_reverse 1", "Ok.\r\n");
    row("rom turn twice", "rom_set led_reverse 2", "E -3 out of range\r\nOk.\r\n");
    row("rom start value unknown", "rom_set colour 2", "E -4 unknown\r\nOk.\r\n");
    row("rom state", "rom_state", "D size 4096 used 0 bright 10 speed 3 led_reverse 0\r\nOk.\r\n");
    row("memory", "rr 0 10",
        "D rom data 0000: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\r\nOk.\r\n");
    row("memory behind the end", "rr FF8 1001", "E -3 out of range\r\nOk.\r\n");
    row("memory too much at once", "rr 0 101", "E -3 out of range\r\nOk.\r\n");
    row("memory written", "rw 10 a b ff ", "Ok.\r\n");
    row("memory written with no byte", "rw 10 100 ", "E -2 bad argument\r\nOk.\r\n");
    row("memory written behind the end", "rw fff 1 2", "E -3 out of range\r\nOk.\r\n");
}

void BoardFirmwareTest::eachCommand_answersTheseBytes()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, answer);
    FirmwareBench bench;
    QCOMPARE(bench.say(line.constData()), line + "\r\n" + answer);
}

void BoardFirmwareTest::quietBoard_speaksOnlyWhenAsked_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("speaks");

    const QList<QByteArray> questions{
        "ver",       "help",      "sync",      "echo",        "echo 1",        "set cmodule",
        "sc_data",   "sc_data 1", "sc_mode",   "lm_pget 0 0", "rcir",          "rcir 1",
        "rcir_data", "rcir_stat", "rom_check", "rom_cread",   "rom_dread 0 7", "rom_format",
        "rom_state", "rr 0 10",   "set colour"};
    const QList<QByteArray> orders{"",
                                   "x",
                                   "set cmodule 4",
                                   "set cmodule 99",
                                   "sc_clear",
                                   "sc_scroll",
                                   "sc_loop",
                                   "sc_show",
                                   "sc_stop",
                                   "sc_end 1",
                                   "lm_bright 5",
                                   "lm_bright0 5",
                                   "lm_clear",
                                   "lm_on",
                                   "lm_off",
                                   "lm_pset 1 1",
                                   "lm_preset 1 1",
                                   "lm_pexor 1 1",
                                   "lm_puts a",
                                   "lm_puts2 a",
                                   "txir a",
                                   "rcir_free",
                                   "rom_cwrite a",
                                   "rom_dclose",
                                   "rom_dwrite 1",
                                   "rom_scroll 1",
                                   "rom_set bright 3",
                                   "rw 0 1"};
    for (const QByteArray &line : questions)
        QTest::newRow(line.constData()) << line << true;
    for (const QByteArray &line : orders)
        QTest::newRow(line.isEmpty() ? "an empty line" : line.constData()) << line << false;
}

void BoardFirmwareTest::quietBoard_speaksOnlyWhenAsked()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, speaks);
    FirmwareBench quiet(BoardKind::Quiet);
    FirmwareBench talkative(BoardKind::Talkative);
    const QByteArray expected = talkative.say(line.constData());
    QCOMPARE(quiet.say(line.constData()), speaks ? expected : QByteArray());
}

void BoardFirmwareTest::everyVariable_isSetAndReadBack()
{
    FirmwareBench bench;
    for (const VariableRule &rule : BoardVariables::rules()) {
        const QByteArray name(rule.name.data(), qsizetype(rule.name.size()));
        const int value = rule.initial == rule.maximum ? 0 : rule.initial + 1;
        bench.say("set " + name + " " + QByteArray::number(value));
        const QByteArray answer = bench.say("set " + name);
        const QByteArray payload = "D " + name + " " + QByteArray::number(value) + "\r\n";
        QVERIFY2(answer.contains(payload), answer.constData());
    }
}

void BoardFirmwareTest::lineOverTheInputBuffer_losesItsRest()
{
    FirmwareBench bench;
    const std::string blanks(100 - 11, ' ');
    QCOMPARE(bench.send("set cmodule" + blanks + "5\r").right(20), "\r\nD cmodule 4\r\nOk.\r\n");
    // One byte fewer and the number is the last byte that is taken.
    bench.send("set cmodule" + blanks.substr(1) + "5\r");
    QVERIFY(bench.say("set cmodule").contains("D cmodule 5\r\n"));
    bench.send(std::string(100000, 'a') + "\r");
    QVERIFY(bench.say("ver").contains("V QoVelmor"));
}

void BoardFirmwareTest::bytesInAnyPieces_areTheSameCommands()
{
    FirmwareBench whole;
    FirmwareBench pieces;
    const std::string traffic = "ver\r\nset cmodule 2\rset cmodule\rsc_data 8000 \r";
    const QByteArray expected = whole.send(traffic);
    QByteArray heard;
    for (const char byte : traffic)
        heard += pieces.send(std::string(1, byte));
    QCOMPARE(heard, expected);
}

void BoardFirmwareTest::help_isShortEnoughToArriveInASecond()
{
    FirmwareBench bench;
    const QByteArray answer = bench.say("help");
    QVERIFY2(answer.size() < 1500, qPrintable(QString::number(answer.size())));
    QVERIFY(answer.startsWith("help\r\nV echo [0|1]\r\n"));
    QVERIFY(answer.endsWith("\r\nOk.\r\n"));
    QCOMPARE(answer.count("V "), 41);
    QVERIFY(!findBoardCommand("date"));
}

void BoardFirmwareTest::echoOff_leavesTheAnswersOnly()
{
    FirmwareBench bench;
    QCOMPARE(bench.say("echo 0"), "echo 0\r\nD echo 0\r\nOk.\r\n");
    QCOMPARE(bench.say("sc_mode"), "D 0\r\nOk.\r\n");
    FirmwareBench quiet(BoardKind::Quiet);
    quiet.say("echo 0");
    QCOMPARE(quiet.say("sc_mode"), "D 0\r\nOk.\r\n");
}

void BoardFirmwareTest::romWords_areWrittenAndReadBack()
{
    FirmwareBench bench;
    bench.say("rom_dwrite 1 20 300");
    bench.say("rom_dwrite abcd");
    QVERIFY(bench.say("rom_dread 0 4").contains("D 0001 0020 0300 abcd ffff\r\n"));
    QVERIFY(bench.say("rom_check").contains("D sum aeee words 4\r\n"));
    bench.say("rom_dclose");
    bench.say("rom_dwrite 7");
    QVERIFY(bench.say("rom_dread 0 1").contains("D 0007 ffff\r\n"));
    bench.say("rom_format 1");
    bench.say("rom_dwrite 1");
    QVERIFY(bench.say("rom_dwrite 2").contains("E -1 no room\r\n"));
    bench.say("rom_cwrite sc_show  twice");
    QVERIFY(bench.say("rom_cread").contains("D sc_show  twice\r\n"));
    bench.say("set rom_verbose 1");
    QVERIFY(bench.say("rom_check").contains("\r\nrom: adding up\r\nD sum 0001 words 1\r\n"));
}

void BoardFirmwareTest::romStartValues_holdAfterARestart()
{
    FirmwareBench bench;
    bench.say("rom_set speed 9");
    bench.say("rom_set led_reverse 1");
    bench.say("rom_set bright 0");
    bench.say("set cmodule 2");
    QVERIFY(bench.say("set scmode_div").contains("D scmode_div 3\r\n"));
    bench.firmware().restart(bench.now());
    QCOMPARE(bench.hear(), "V QoVelmor LED board 1.0\r\nOk.\r\n");
    QVERIFY(bench.say("set scmode_div").contains("D scmode_div 9\r\n"));
    QVERIFY(bench.say("set led_reverse").contains("D led_reverse 1\r\n"));
    QVERIFY(bench.say("set cmodule").contains("D cmodule 4\r\n"));
    QCOMPARE(bench.firmware().picture().brightness, 0);
}

void BoardFirmwareTest::infraredMessages_areHeardWhileListening()
{
    FirmwareBench bench;
    bench.say("txir lost");
    bench.say("rcir 1");
    bench.say("txir one");
    bench.say("set dump_ir 1");
    QCOMPARE(bench.say("txir two"), "txir two\r\nir: two\r\nOk.\r\n");
    QVERIFY(bench.say("rcir_stat").contains("D run:1 held:2 free:14\r\n"));
    QVERIFY(bench.say("rcir_data").contains("D one\r\n"));
    QVERIFY(bench.say("rcir_data detail").contains("D 3 6f 6e 65\r\n"));
    bench.say("rcir_free");
    QVERIFY(bench.say("rcir_data").contains("D two\r\n"));
    bench.say("rcir_free all");
    QVERIFY(bench.say("rcir_stat").contains("D run:1 held:0 free:16\r\n"));
}

void BoardFirmwareTest::memoryDump_putsTheBytesBehindAFixedAddress()
{
    FirmwareBench bench;
    bench.say("rw 8 1 2 3 a ");
    bench.say("rw 10 ff ");
    const QByteArray answer = bench.say("rr 8 1A");
    const QByteArrayList lines = answer.split('\n');
    QCOMPARE(lines.at(1), "D rom data 0008: 01 02 03 0a 00 00 00 00 ff 00 00 00 00 00 00 00\r");
    QCOMPARE(lines.at(2), "D rom data 0018: 00 00\r");
    QCOMPARE(lines.at(1).mid(17, 5), "01 02");
}

void BoardFirmwareTest::dots_areSetClearedInvertedAndRead()
{
    FirmwareBench bench;
    bench.say("lm_pset 0 0");
    bench.say("lm_pset 127 15");
    bench.say("lm_pexor 1 1");
    bench.say("lm_pset 2 0");
    bench.say("lm_preset 2 0");
    bench.say("lm_pset 3 1");
    bench.say("lm_pexor 3 1");
    QCOMPARE(rowsOfDots(bench.firmware().picture(), 2, 4), "#...\n.#..\n");
    QVERIFY(bench.say("lm_pget 127 15").contains("D 1\r\n"));
    QVERIFY(bench.say("lm_pget 126 15").contains("D 0\r\n"));
    QVERIFY(bench.say("lm_pget 128 0").contains("E -3 out of range\r\n"));
    bench.say("lm_clear");
    QVERIFY(bench.say("lm_pget 0 0").contains("D 0\r\n"));
}

void BoardFirmwareTest::textWithoutFont_showsBoxes()
{
    FirmwareBench bench;
    bench.say("lm_puts A");
    QCOMPARE(rowsOfDots(bench.firmware().picture(), 3, 8), "........\n.######.\n.#....#.\n");
    bench.say("lm_puts2 \x8a\xbf");
    QCOMPARE(rowsOfDots(bench.firmware().picture(), 2, 24),
             "........................\n.######..##############.\n");
    bench.firmware().setGlyphs([](std::string_view text) {
        return std::vector<ColumnWord>(text.size(), ColumnWord{0xFFFF});
    });
    bench.say("lm_puts ab");
    QCOMPARE(rowsOfDots(bench.firmware().picture(), 1, 4), "##..\n");
}

void BoardFirmwareTest::brightness_takesBothScales()
{
    FirmwareBench bench;
    QCOMPARE(bench.firmware().picture().brightness, 255);
    bench.say("lm_bright 4");
    QCOMPARE(bench.firmware().picture().brightness, 102);
    bench.say("lm_bright 11");
    QCOMPARE(bench.firmware().picture().brightness, 102);
    bench.say("lm_bright0 17");
    QCOMPARE(bench.firmware().picture().brightness, 17);
}

void BoardFirmwareTest::lightsOff_keepTheDots()
{
    FirmwareBench bench;
    bench.say("lm_pset 0 0");
    bench.say("lm_off");
    QCOMPARE(bench.firmware().picture().columns.front(), ColumnWord{0});
    bench.say("lm_on");
    QCOMPARE(bench.firmware().picture().columns.front(), ColumnWord{0x8000});
}

void BoardFirmwareTest::turnedBoard_showsThePictureUpsideDown()
{
    FirmwareBench bench;
    bench.say("lm_pset 0 0");
    bench.say("lm_pset 1 3");
    bench.say("set led_reverse 1");
    const BoardPicture picture = bench.firmware().picture();
    QCOMPARE(picture.columns[127], ColumnWord{0x0001});
    QCOMPARE(picture.columns[126], ColumnWord{0x0008});
    QCOMPARE(picture.columns[0], ColumnWord{0});
}

void BoardFirmwareTest::scrollVerbose_tellsStartAndEnd()
{
    FirmwareBench bench;
    bench.say("set scmode_verbose 1");
    bench.say("set cmodule 1");
    QCOMPARE(bench.say("sc_scroll"), "sc_scroll\r\nscroll start\r\nOk.\r\n");
    bench.say("sc_data ffff ");
    bench.say("sc_end 1");
    bench.wait(std::chrono::seconds(3));
    QCOMPARE(bench.hear(), "scroll end\r\n");
}

void BoardFirmwareTest::anyBytes_leaveAWorkingBoard_data()
{
    QTest::addColumn<bool>("quiet");
    QTest::addRow("talkative") << false;
    QTest::addRow("quiet") << true;
}

/// Known commands with all sorts of arguments, and now and then rubbish.
void BoardFirmwareTest::anyBytes_leaveAWorkingBoard()
{
    QFETCH(bool, quiet);
    const unsigned seed = std::random_device()();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    const auto below = [&random](int limit) {
        return std::uniform_int_distribution<int>(0, limit - 1)(random);
    };
    std::vector<std::string> names{"x", "", "set"};
    for (const auto group : {generalCommands(), displayCommands(), panelCommands(), romCommands(),
                             infraredCommands()}) {
        for (const BoardCommand &command : group)
            names.emplace_back(command.name);
    }
    const std::vector<std::string> words{"0",    "1",  "-1",     "4096",        "ffff",   "fff",
                                         "127",  "16", "10",     "99999999999", "all",    "detail",
                                         "8000", "  ", "bright", "scmode_div",  "cmodule"};
    FirmwareBench bench(quiet ? BoardKind::Quiet : BoardKind::Talkative, 16);
    for (int turn = 0; turn < 4000; ++turn) {
        std::string line = names[std::size_t(below(int(names.size())))];
        for (int count = below(18); count > 0; --count)
            line += " " + words[std::size_t(below(int(words.size())))];
        for (int count = below(10) == 0 ? below(150) : 0; count > 0; --count)
            line.push_back(char(below(256)));
        const QByteArray answer = bench.send(line + "\r");
        QVERIFY(answer.size() < 3000);
        bench.wait(std::chrono::milliseconds(below(100)));
        QVERIFY(bench.firmware().state().buffer.count() <= 4096);
    }
    bench.say("echo 1");
    QVERIFY(bench.say("ver").endsWith("ver\r\nV QoVelmor LED board 1.0\r\nOk.\r\n"));
}

QTEST_APPLESS_MAIN(BoardFirmwareTest)
#include "boardfirmware_test.moc"
