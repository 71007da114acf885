// SPDX-License-Identifier: MIT
#include "tests/tools/FirmwareBench.h"
#include "tools/qovelmorboard/BraillePicture.h"

#include <QTest>

using namespace qovelmor::simboard;
using std::chrono::milliseconds;

namespace {

/// The speed that a board starts with: 3 steps of 8 ms for each column.
constexpr milliseconds columnTime{24};

/// One data line of 16 equal columns.
const char *const sixteenColumns =
    "sc_data ffff ffff ffff ffff ffff ffff ffff ffff ffff ffff ffff ffff ffff ffff ffff ffff ";

int numberIn(const QByteArray &answer)
{
    const auto tag = answer.indexOf("\nD ") >= 0 ? answer.indexOf("\nD ") : answer.indexOf("\nE ");
    return answer.mid(tag + 3).split('\r').first().split(' ').first().toInt();
}

int mode(FirmwareBench &bench)
{
    return numberIn(bench.say("sc_mode"));
}

int room(FirmwareBench &bench)
{
    return numberIn(bench.say("sc_data"));
}

} // namespace

class SignDisplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buffer_takesAllOrNothing();
    void buffer_keepsOrderWhileItWraps();
    void scroll_waitsMovesAndEnds();
    void scroll_withoutColumns_waitsForMore();
    void fullBuffer_refusesUntilItHasDrained();
    void cutOffScroll_standsStill();
    void clearInMidScroll_goesOnWithTheRest();
    void clearAfterTheEnd_isIdle();
    void standingPicture_startsAtTheLeftEdge();
    void standingPictureOverTheBuffer_losesWhatIsTooMuch();
    void progressPictures_followEachOther();
    void loop_goesRoundUntilItIsEnded();
    void romScroll_showsTheWordsOnce();
    void speed_isReadAtEachColumn();
    void longSleep_isNotCaughtUp();
    void runs_areRecordedColumnByColumn();
};

void SignDisplayTest::buffer_takesAllOrNothing()
{
    ColumnBuffer buffer(3);
    const std::vector<ColumnWord> two{1, 2};
    QVERIFY(buffer.append(two));
    QVERIFY(!buffer.append(two));
    QCOMPARE(buffer.count(), std::size_t{2});
    QCOMPARE(buffer.appendWhatFits(two), std::size_t{1});
    QCOMPARE(buffer.room(), std::size_t{0});
    QCOMPARE(buffer.take(), ColumnWord{1});
    buffer.clear();
    QCOMPARE(buffer.take(), ColumnWord{0});
}

void SignDisplayTest::buffer_keepsOrderWhileItWraps()
{
    ColumnBuffer buffer(5);
    ColumnWord next = 0;
    ColumnWord expected = 0;
    for (int turn = 0; turn < 1000; ++turn) {
        while (buffer.room() > 0) {
            const std::vector<ColumnWord> one{next++};
            QVERIFY(buffer.append(one));
        }
        for (int i = 0; i < turn % 5; ++i)
            QCOMPARE(buffer.take(), expected++);
    }
}

void SignDisplayTest::scroll_waitsMovesAndEnds()
{
    FirmwareBench bench;
    bench.say("set cmodule 1");
    bench.say("sc_clear");
    bench.say("sc_scroll");
    bench.say("sc_data 8000 0001 ");
    bench.say("sc_end 1");
    QCOMPARE(mode(bench), 3);

    bench.wait(10 * columnTime);
    QCOMPARE(bench.firmware().picture().columns.back(), ColumnWord{0});
    bench.wait(columnTime);
    QCOMPARE(bench.firmware().picture().columns.back(), ColumnWord{0x8000});
    QCOMPARE(mode(bench), 2);
    bench.wait(columnTime);
    QCOMPARE(bench.firmware().picture().columns[30], ColumnWord{0x8000});
    QCOMPARE(bench.firmware().picture().columns[31], ColumnWord{0x0001});

    // 32 columns until the last dot has left, 10 column times after that and one to say so.
    bench.wait(31 * columnTime);
    QCOMPARE(bench.firmware().picture().columns.front(), ColumnWord{0x0001});
    bench.wait(columnTime);
    QCOMPARE(bench.firmware().picture().columns.front(), ColumnWord{0});
    bench.wait(10 * columnTime);
    QCOMPARE(mode(bench), 2);
    bench.wait(columnTime);
    QCOMPARE(mode(bench), 1);
    QCOMPARE(mode(bench), 1);
    QVERIFY(!bench.firmware().nextEvent());
}

void SignDisplayTest::scroll_withoutColumns_waitsForMore()
{
    FirmwareBench bench;
    bench.say("sc_scroll");
    bench.say("sc_data ffff ");
    bench.wait(50 * columnTime);
    QCOMPARE(mode(bench), 3);
    // The dots stand still until more comes.
    QCOMPARE(bench.firmware().picture().columns.back(), ColumnWord{0xFFFF});
    bench.say("sc_data 0001 ");
    bench.wait(columnTime);
    QCOMPARE(bench.firmware().picture().columns[126], ColumnWord{0xFFFF});
    QCOMPARE(mode(bench), 2);
}

void SignDisplayTest::fullBuffer_refusesUntilItHasDrained()
{
    FirmwareBench bench(BoardKind::Talkative, 40);
    bench.say("set cmodule 1");
    bench.say("set scmode_wait1 0");
    bench.say("sc_scroll");
    QCOMPARE(numberIn(bench.say(sixteenColumns)), 48);
    QCOMPARE(numberIn(bench.say(sixteenColumns)), 16);
    QCOMPARE(numberIn(bench.say(sixteenColumns)), -1);
    QCOMPARE(room(bench), 16);
    bench.wait(7 * columnTime);
    QCOMPARE(numberIn(bench.say(sixteenColumns)), -1);
    bench.wait(columnTime);
    QCOMPARE(room(bench), 32);
    QCOMPARE(numberIn(bench.say(sixteenColumns)), 0);
    bench.wait(40 * columnTime);
    QCOMPARE(room(bench), 80);
    QCOMPARE(bench.record().runs().back().columns.size(), std::size_t{48});
}

void SignDisplayTest::cutOffScroll_standsStill()
{
    FirmwareBench bench;
    bench.say("set scmode_wait1 0");
    bench.say("sc_scroll");
    bench.say(sixteenColumns);
    bench.wait(4 * columnTime);
    bench.say("sc_end 0");
    QCOMPARE(mode(bench), 0);
    QCOMPARE(room(bench), 256);
    bench.wait(4 * columnTime);
    QCOMPARE(bench.firmware().picture().columns[124], ColumnWord{0xFFFF});
    QCOMPARE(bench.firmware().picture().columns[123], ColumnWord{0});
    QVERIFY(!bench.record().runs().back().wentThrough);
}

void SignDisplayTest::clearInMidScroll_goesOnWithTheRest()
{
    FirmwareBench bench;
    bench.say("set scmode_wait1 0");
    bench.say("sc_scroll");
    bench.say(sixteenColumns);
    bench.wait(4 * columnTime);
    bench.say("sc_clear");
    QCOMPARE(room(bench), 256);
    QCOMPARE(bench.firmware().picture().columns.back(), ColumnWord{0});
    bench.say("sc_data 1234 ");
    bench.wait(columnTime);
    QCOMPARE(bench.firmware().picture().columns.back(), ColumnWord{0x1234});
}

void SignDisplayTest::clearAfterTheEnd_isIdle()
{
    FirmwareBench bench;
    bench.say("sc_scroll");
    bench.say(sixteenColumns);
    bench.say("sc_end 1");
    bench.wait(20 * columnTime);
    bench.say("sc_clear");
    QCOMPARE(mode(bench), 0);
}

void SignDisplayTest::standingPicture_startsAtTheLeftEdge()
{
    FirmwareBench bench;
    bench.say("lm_pset 100 3");
    bench.say("sc_stop");
    bench.say("sc_data 8000 4000 ");
    QCOMPARE(bench.firmware().picture().columns[0], ColumnWord{0});
    bench.say("sc_show");
    QCOMPARE(bench.firmware().picture().columns[0], ColumnWord{0x8000});
    QCOMPARE(bench.firmware().picture().columns[1], ColumnWord{0x4000});
    QCOMPARE(bench.firmware().picture().columns[100], ColumnWord{0});
    QCOMPARE(mode(bench), 0);
    QCOMPARE(room(bench), 256);
    bench.say("sc_show");
    QCOMPARE(bench.firmware().picture().columns[0], ColumnWord{0});
}

void SignDisplayTest::standingPictureOverTheBuffer_losesWhatIsTooMuch()
{
    FirmwareBench bench(BoardKind::Talkative, 24);
    bench.say("set cmodule 1");
    bench.say("sc_stop");
    QCOMPARE(numberIn(bench.say(sixteenColumns)), 32);
    QCOMPARE(numberIn(bench.say(sixteenColumns)), 32);
    QCOMPARE(numberIn(bench.say(sixteenColumns)), 32);
    bench.say("sc_show");
    QCOMPARE(bench.firmware().picture().columns, std::vector<ColumnWord>(32, 0xFFFF));
}

void SignDisplayTest::progressPictures_followEachOther()
{
    FirmwareBench bench;
    bench.say("sc_clear");
    bench.say("sc_data 0001 0001 0001 ");
    bench.say("sc_show");
    bench.say("sc_data ffff 0001 0001 ");
    bench.say("sc_show");
    const std::vector<ColumnWord> &columns = bench.firmware().picture().columns;
    QCOMPARE(columns[0], ColumnWord{0xFFFF});
    QCOMPARE(columns[1], ColumnWord{0x0001});
    QCOMPARE(columns[3], ColumnWord{0});
    QCOMPARE(bench.record().runs().size(), std::size_t{2});
}

void SignDisplayTest::loop_goesRoundUntilItIsEnded()
{
    FirmwareBench bench;
    bench.say("set cmodule 1");
    bench.say("set scmode_wait1 0");
    bench.say("sc_loop");
    bench.say("sc_data 8001 ");
    bench.wait(columnTime);
    QCOMPARE(mode(bench), 4);
    QCOMPARE(bench.firmware().picture().columns[31], ColumnWord{0x8001});
    bench.wait(34 * columnTime);
    QCOMPARE(bench.firmware().picture().columns[31], ColumnWord{0x8001});
    bench.say("sc_end 1");
    bench.wait(60 * columnTime);
    QCOMPARE(mode(bench), 1);
    QCOMPARE(room(bench), 256);
}

void SignDisplayTest::romScroll_showsTheWordsOnce()
{
    FirmwareBench bench;
    bench.say("rom_dwrite f00f ffff");
    bench.say("rom_scroll 1");
    bench.wait(200 * columnTime);
    QCOMPARE(mode(bench), 1);
    const std::vector<ColumnWord> expected{0xF00F, 0xFFFF};
    QCOMPARE(bench.record().runs().back().columns, expected);
    bench.say("rom_scroll 1");
    bench.say("rom_scroll 0");
    QCOMPARE(mode(bench), 0);
}

void SignDisplayTest::speed_isReadAtEachColumn()
{
    FirmwareBench bench;
    bench.say("set scmode_wait1 0");
    bench.say("set scmode_div 10");
    bench.say("sc_scroll");
    bench.say(sixteenColumns);
    bench.wait(milliseconds(79));
    QCOMPARE(bench.record().runs().back().columns.size(), std::size_t{0});
    bench.wait(milliseconds(1));
    QCOMPARE(bench.record().runs().back().columns.size(), std::size_t{1});
    bench.say("set scmode_div 0");
    bench.wait(milliseconds(80));
    QCOMPARE(bench.record().runs().back().columns.size(), std::size_t{2});
    bench.wait(milliseconds(8));
    QCOMPARE(bench.record().runs().back().columns.size(), std::size_t{3});
}

void SignDisplayTest::longSleep_isNotCaughtUp()
{
    FirmwareBench bench;
    bench.say("set scmode_wait1 0");
    bench.say("sc_scroll");
    bench.say(sixteenColumns);
    bench.wait(std::chrono::hours(8));
    QVERIFY(bench.record().runs().back().columns.size() <= 1);
    bench.wait(20 * columnTime);
    QCOMPARE(bench.record().runs().back().columns.size(), std::size_t{16});
}

void SignDisplayTest::runs_areRecordedColumnByColumn()
{
    FirmwareBench bench;
    bench.say("sc_data 0001 ");
    bench.say("sc_show");
    bench.say("sc_scroll");
    bench.say("sc_data 0002 0003 ");
    bench.say("sc_end 1");
    bench.wait(std::chrono::seconds(20));
    QCOMPARE(bench.record().runs().size(), std::size_t{2});
    const ColumnRun &standing = bench.record().runs().front();
    const ColumnRun &scrolled = bench.record().runs().back();
    QVERIFY(!standing.scrolling && standing.finished);
    QCOMPARE(standing.columns, std::vector<ColumnWord>{1});
    QVERIFY(scrolled.scrolling && scrolled.finished && scrolled.wentThrough);
    const std::vector<ColumnWord> expected{2, 3};
    QCOMPARE(scrolled.columns, expected);
    QCOMPARE(scrolled.number, 2);
}

QTEST_APPLESS_MAIN(SignDisplayTest)
#include "signdisplay_test.moc"
