// SPDX-License-Identifier: MIT
#include "BoardPictures.h"
#include "RunningProgram.h"
#include "platform/TextEncoding.h"
#include "tests/support/HttpServer.h"

#include <QGuiApplication>
#include <QTest>

using namespace qovelmor;
using namespace qovelmor::simboard;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto endsAlone = 30s;       // one pass over a short list
constexpr auto endsWithoutBoard = 2s; // after SIGTERM
constexpr auto endsWithBoard = 4s;    // a run may have to finish its present exchange
constexpr int happensSoon = 20'000;   // ms, on a busy machine

std::unique_ptr<SimulatedBoard> makeBoard(BoardKind kind)
{
    SimulatedBoardOptions options;
    options.throttled = false;
    options.firmware.kind = kind;
    options.firmware.speedFactor = 1000.0;
    std::string error;
    auto board = SimulatedBoard::create(options, error);
    if (!board)
        qWarning("%s", error.c_str());
    return board;
}

QByteArray townFeed()
{
    return u"<?xml version='1.0' encoding='UTF-8'?><rss version='2.0'><channel>"
           "<title>町の知らせ</title>"
           "<item><title>祭りの花火</title><link>http://town/1</link><description>夜</description>"
           "<pubDate>Sat, 21 Nov 2026 09:30:00 +0900</pubDate></item>"
           "<item><title>図書館 open</title><link>http://town/2</link><description>朝</description>"
           "<pubDate>Sat, 21 Nov 2026 08:15:00 +0900</pubDate></item>"
           "</channel></rss>"_s.toUtf8();
}

// In Shift_JIS, with a headline that the town has too.
QByteArray shopFeed()
{
    const QString item = u"<item rdf:about='http://shop/%1'><title>%2</title>"
                         "<link>http://shop/%1</link><description>品</description>"
                         "<dc:date>%3+09:00</dc:date></item>"_s;
    return encodeShiftJisLossy(
        u"<?xml version='1.0' encoding='Shift_JIS'?>"
        "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' "
        "xmlns='http://purl.org/rss/1.0/' xmlns:dc='http://purl.org/dc/elements/1.1/'>"
        "<channel><title>商店街</title></channel>"_s +
        item.arg(u"1"_s, u"大安売り"_s, u"2026-11-20T18:00:00"_s) +
        item.arg(u"2"_s, u"祭りの花火"_s, u"2026-11-20T17:30:00"_s) +
        item.arg(u"3"_s, u"新茶ﾆｭｳｶ"_s, u"2026-11-20T17:00:00"_s) + u"</rdf:RDF>"_s);
}

QByteArray stationFeed()
{
    return u"<?xml version='1.0' encoding='UTF-8'?><feed xmlns='http://www.w3.org/2005/Atom'>"
           "<title>駅</title><entry><title>電車は10分遅れ</title><link href='http://station/1'/>"
           "<summary>雪</summary><published>2026-11-20T22:00:00Z</published>"
           "<updated>2026-11-20T22:00:00Z</updated></entry></feed>"_s.toUtf8();
}

QStringList linesBySite()
{
    return {u"図書館 open 11/21 08:15【町の知らせ】"_s, u"祭りの花火 11/21 09:30【町の知らせ】"_s,
            u"新茶ﾆｭｳｶ 11/20 17:00【商店街】"_s, u"大安売り 11/20 18:00【商店街】"_s,
            u"電車は10分遅れ 11/21 07:00【駅】"_s};
}

QStringList newestFirst()
{
    return {u"祭りの花火 11/21 09:30【町の知らせ】"_s, u"図書館 open 11/21 08:15【町の知らせ】"_s,
            u"電車は10分遅れ 11/21 07:00【駅】"_s, u"大安売り 11/20 18:00【商店街】"_s,
            u"新茶ﾆｭｳｶ 11/20 17:00【商店街】"_s};
}

void use(RunningProgram &program, const LineFont &font)
{
    program.set(u"UseBitmapFont"_s, font.useBitmapFont);
    program.set(u"LEDViewFontName"_s, font.name);
    program.set(u"FontBoarderValue"_s, font.boarder);
    program.set(u"UseNarrowFont"_s, font.isNarrow);
}

} // namespace

class EndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void board_getsTheRenderingOfTheLinesInOrder_data();
    void board_getsTheRenderingOfTheLinesInOrder();
    void board_showsHowFarTheReadIs();
    void board_showsTheTitleFirstAndTheInformationInBetween();

    void signal_endsTheProgram_data();
    void signal_endsTheProgram();

    void withoutABoard_oncePassesOverTheList();
    void nothingReadable_isStatus1();
    void noDisplay_isOneLineAndStatus1();
    void unknownOption_isStatus2();

private:
    void addThreeFeeds(RunningProgram &program) const;

    HttpServer server_;
};

void EndToEndTest::initTestCase()
{
    server_.route("/town", HttpServer::document(townFeed()));
    server_.route("/shop", HttpServer::document(shopFeed(), "text/xml"));
    server_.route("/station", HttpServer::document(stationFeed()));
    HttpServer::Reply silent;
    silent.holdsOpen = true;
    server_.route("/silent", silent);
}

void EndToEndTest::addThreeFeeds(RunningProgram &program) const
{
    program.addFeed(server_.address("/town"), u"町の知らせ"_s, 2);
    program.addFeed(server_.address("/shop"), u"商店街"_s, 1);
    program.addFeed(server_.address("/station"), u"駅"_s, 3);
}

// The board.
// ---------------------------------------------------------------------------------------

void EndToEndTest::board_getsTheRenderingOfTheLinesInOrder_data()
{
    QTest::addColumn<bool>("talks");
    QTest::addColumn<bool>("newest");
    QTest::addColumn<bool>("dotFonts");
    QTest::addColumn<int>("boarder");
    QTest::addColumn<bool>("narrow");
    QTest::newRow("dot fonts, talkative board, by site") << true << false << true << 72 << false;
    QTest::newRow("dot fonts, quiet board, newest first") << false << true << true << 72 << false;
    QTest::newRow("outline font, talkative board, newest first")
        << true << true << false << 72 << false;
    QTest::newRow("narrow outline font, quiet board, by site")
        << false << false << false << 104 << true;
}

void EndToEndTest::board_getsTheRenderingOfTheLinesInOrder()
{
    QFETCH(bool, talks);
    QFETCH(bool, newest);
    QFETCH(bool, dotFonts);
    QFETCH(int, boarder);
    QFETCH(bool, narrow);
    const LineFont font{dotFonts, u"HiraMinPro-W3"_s, boarder, narrow};
    const auto board = makeBoard(talks ? BoardKind::Talkative : BoardKind::Quiet);
    QVERIFY(board);
    RunningProgram program;
    addThreeFeeds(program);
    use(program, font);
    program.setBoard(board->path());
    program.set(u"DispProgress"_s, false);
    program.set(u"DispMessageOrder"_s, newest ? 1 : 0);
    program.set(u"DispEachRSS"_s, !newest);
    QVERIFY(program.start({u"--once"_s}));
    const auto status = program.waitForEnd(endsAlone);
    QVERIFY2(status == 0, qPrintable(program.logBook()));

    const QStringList lines = newest ? newestFirst() : linesBySite();
    const std::vector<ColumnRun> runs = board->runs();
    QCOMPARE(firstDifference(shownPictures(runs, true), linePictures(lines, font)), QString());
    QCOMPARE(shownPictures(runs, false).size(), std::size_t{0});
    for (const ColumnRun &run : runs)
        QVERIFY2(run.wentThrough, qPrintable(lines.value(run.number - 1)));
    for (const QString &line : lines)
        QVERIFY2(program.logBook().contains(u" RSS表示:"_s + line + u'\n'), qPrintable(line));
    QVERIFY(program.logBook().contains(u" RSS読込終了:6\n"_s));
    QVERIFY(program.isStoreWhole());
}

void EndToEndTest::board_showsHowFarTheReadIs()
{
    const auto board = makeBoard(BoardKind::Talkative);
    QVERIFY(board);
    RunningProgram program;
    addThreeFeeds(program);
    program.setBoard(board->path());
    QVERIFY(program.start({u"--once"_s}));
    const auto status = program.waitForEnd(endsAlone);
    QVERIFY2(status == 0, qPrintable(program.logBook()));

    // The next read begins while the program is told that the pass is over.
    const std::vector<ColumnRun> runs = board->runs();
    const auto lines =
        std::find_if(runs.begin(), runs.end(), [](const ColumnRun &run) { return run.scrolling; });
    QCOMPARE(firstDifference(shownPictures({runs.begin(), lines}, false), progressPictures(3, {})),
             QString());
    QCOMPARE(firstDifference(shownPictures(runs, true), linePictures(linesBySite(), {})),
             QString());
}

void EndToEndTest::board_showsTheTitleFirstAndTheInformationInBetween()
{
    const auto board = makeBoard(BoardKind::Talkative);
    QVERIFY(board);
    // The first site answers when the title has gone by: from then on the board is free for the
    // bar.
    server_.route("/slow", [&board](const HttpServer::Request &) {
        std::optional<std::size_t> linesAtTheEnd;
        board->waitUntil(
            [&linesAtTheEnd](const BoardView &view) {
                if (view.mode != DisplayMode::Ended)
                    return false;
                if (!linesAtTheEnd)
                    linesAtTheEnd = view.linesReceived;
                return view.linesReceived > *linesAtTheEnd; // the program has asked and knows it
            },
            5s);
        return HttpServer::document(townFeed());
    });
    RunningProgram program;
    program.addFeed(server_.address("/slow"), u"町の知らせ"_s, 2);
    program.addFeed(server_.address("/station"), u"駅"_s, 3);
    program.setBoard(board->path());
    program.set(u"DispInfoMessages"_s, true);
    program.writeInformation(u"題\n雨\n雪"_s);
    QVERIFY(program.start({u"--once"_s}));
    const auto status = program.waitForEnd(endsAlone);
    QVERIFY2(status == 0, qPrintable(program.logBook()));

    const std::vector<ColumnRun> runs = board->runs();
    QVERIFY(!runs.empty());
    QVERIFY(runs.front().scrolling);
    QCOMPARE(firstDifference(
                 shownPictures(runs, true),
                 linePictures({u"【QoVelmorRSS】題"_s, u"【お知らせ】雨"_s,
                               u"図書館 open 11/21 08:15【町の知らせ】"_s, u"【お知らせ】雪"_s,
                               u"祭りの花火 11/21 09:30【町の知らせ】"_s, u"【お知らせ】雨"_s,
                               u"電車は10分遅れ 11/21 07:00【駅】"_s},
                              {})),
             QString());
    const auto bar = shownPictures(runs, false);
    const std::vector<BoardColumns> expectedBar = progressPictures(2, {});
    QVERIFY(bar.size() >= expectedBar.size()); // the next read may have begun
    QCOMPARE(firstDifference({bar.begin(), bar.begin() + 3}, expectedBar), QString());
}

// The way out.
// -------------------------------------------------------------------------------------

void EndToEndTest::signal_endsTheProgram_data()
{
    QTest::addColumn<bool>("withBoard");
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("automatic");
    QTest::addColumn<QString>("sign"); // in the log book
    for (const bool board : {false, true}) {
        const char *where = board ? "board" : "screen";
        QTest::addRow("while idle, %s", where)
            << board << u"/town"_s << false << u"QoVelmarRSS開始"_s;
        QTest::addRow("during a read, %s", where) << board << u"/silent"_s << true << QString();
        QTest::addRow("during a line, %s", where) << board << u"/town"_s << true << u"RSS表示:"_s;
    }
}

void EndToEndTest::signal_endsTheProgram()
{
    QFETCH(bool, withBoard);
    QFETCH(QString, address);
    QFETCH(bool, automatic);
    QFETCH(QString, sign);
    const auto board = makeBoard(BoardKind::Talkative);
    QVERIFY(board);
    RunningProgram program;
    program.addFeed(server_.address(address.toLatin1()), u"町の知らせ"_s, 2);
    program.set(u"DisplayAuto"_s, automatic);
    program.set(u"DispProgress"_s, false);
    if (withBoard)
        program.setBoard(board->path());
    const int hits = server_.hits("/silent");
    QVERIFY(program.start());
    if (sign.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(server_.hits("/silent") > hits, happensSoon);
    else
        QTRY_VERIFY_WITH_TIMEOUT(program.logBook().contains(sign), happensSoon);

    QCOMPARE(program.terminate(withBoard ? endsWithBoard : endsWithoutBoard), 0);
    QVERIFY2(program.logBook().endsWith(u" システム:QoVelmarRSS終了\n"_s),
             qPrintable(program.logBook()));
    QVERIFY(program.isStoreWhole());
}

void EndToEndTest::withoutABoard_oncePassesOverTheList()
{
    RunningProgram program;
    program.addFeed(server_.address("/station"), u"駅"_s, 3);
    QVERIFY(program.start({u"--once"_s}));
    const auto status = program.waitForEnd(endsAlone);
    QVERIFY2(status == 0, qPrintable(program.logBook()));
    QVERIFY(program.logBook().contains(u" RSS表示:電車は10分遅れ 11/21 07:00【駅】\n"_s));
    QVERIFY(program.logBook().contains(u" システム:シリアルポートのオープンに失敗\n"_s));
}

void EndToEndTest::nothingReadable_isStatus1()
{
    RunningProgram program;
    program.addFeed(server_.address("/nowhere"), u"町の知らせ"_s, 2);
    QVERIFY(program.start({u"--once"_s}));
    QCOMPARE(program.waitForEnd(endsAlone), 1);
    QVERIFY2(program.errors().contains("qovelmorrss: no headline could be read.\n"),
             program.errors().constData());
}

void EndToEndTest::noDisplay_isOneLineAndStatus1()
{
    RunningProgram program;
    for (const auto &name : {u"QT_QPA_PLATFORM"_s, u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s})
        program.removeVariable(name);
    QVERIFY(program.start());
    QCOMPARE(program.waitForEnd(endsAlone), 1);
    QVERIFY2(program.errors().startsWith("qovelmorrss: no display"), program.errors().constData());
    QCOMPARE(program.errors().count('\n'), 1);
}

void EndToEndTest::unknownOption_isStatus2()
{
    RunningProgram program;
    QVERIFY(program.start({u"--twice"_s}));
    QCOMPARE(program.waitForEnd(endsAlone), 2);
    QVERIFY2(program.errors().contains("twice"), program.errors().constData());
    QVERIFY(program.output().isEmpty());
}

QTEST_MAIN(EndToEndTest)
#include "endtoend_test.moc"
