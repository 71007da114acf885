// SPDX-License-Identifier: MIT
#include "messages/DiodeBoard.h"
#include "messages/LineStrip.h"
#include "messages/OnScreenBoard.h"
#include "platform/QueueMainThread.h"
#include "platform/SimulatedClock.h"
#include "render/FontSettings.h"
#include "tests/messages/ScreenSettings.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QTest>

#include <cmath>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr Clock::CalendarTime someDay{};
constexpr Clock::Duration step = 24ms; // at speed 3

// A board with all that it stands on.
struct Desk
{
    SimulatedClock clock{someDay};
    QueueMainThread mainThread;
    ScreenSettings settings;
    OnScreenBoard board{settings, clock, mainThread};

    // Steps that the line needs from its start until the state is 0 again.
    int stepsUntilIdle()
    {
        const auto start = clock.steadyNow();
        while (board.execShowString() != 0)
            clock.sleepFor(1ms);
        return int((clock.steadyNow() - start) / step);
    }
    QImage picture() const { return *board.ledImage(); }
    bool isEmpty() const
    {
        return picture() ==
               emptyDiodeBoard(DiodeGeometry::of(settings.modules, board.pixelsPerPoint()));
    }
};

// The columns of dots in which some pixel differs from the empty board, first and last.
struct LitColumns
{
    int first = -1;
    int last = -1;
};

LitColumns litColumns(const QImage &picture)
{
    const auto geometry = DiodeGeometry::of(
        int(picture.width() / (128 * picture.devicePixelRatio())), picture.devicePixelRatio());
    const QImage empty = emptyDiodeBoard(geometry);
    LitColumns lit;
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (picture.pixel(x, y) == empty.pixel(x, y))
                continue;
            if (lit.first < 0)
                lit.first = x / geometry.cell;
            lit.last = x / geometry.cell;
            break;
        }
    }
    return lit;
}

// The width of the text in points, measured with nothing of the board's own.
double measuredWidth(const QString &text, const QString &family = defaultFontName())
{
    return QFontMetricsF(screenBoardFont(family)).horizontalAdvance(text);
}

} // namespace

class OnScreenBoardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyBoardIsAGreyFieldWithAGrid();
    void gridStandsAtTheLeftAndLowerEdgeOfEachDot();
    void gridPalesOnAShrunkBoard();
    void pictureHas128By64PointsForEachModule_data();
    void pictureHas128By64PointsForEachModule();
    void runLengthIsTextPlusBoard_data();
    void runLengthIsTextPlusBoard();
    void textEntersAtTheRightAndMovesByOneDot();
    void textStandsSixPointsAboveTheLowerEdge();
    void emptyTextStillRunsAcrossTheBoard();
    void boardWithoutModulesStillWaitsTheSteps();
    void boardWaitsCount_data();
    void boardWaitsCount();
    void stopLeavesTheEmptyBoard();
    void styleIsTakenWhenALineStarts();
    void densityIsTakenAtTheNextStep();
    void defaultFontIsAMincho();
    void expansionIsAPowerOfE();
    void lineBreaksAreBlanks_data();
    void lineBreaksAreBlanks();
    void marksThatTurnTheDirection_areLeftOut();
    void longLineScrollsToItsEnd();
    void tilesJoinWithoutASeam();
    void oneNoticeIsPendingHoweverManySteps();
    void everyStepMakesANewPicture();
};

void OnScreenBoardTest::emptyBoardIsAGreyFieldWithAGrid()
{
    Desk desk;
    QVERIFY(desk.board.ledImage() != nullptr);
    QVERIFY(desk.picture().isNull());
    desk.board.drawDiodeBoard();
    const QImage picture = desk.picture();
    const QRgb grey = qRgb(51, 51, 51);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool line = x % 4 == 0 || y % 4 == 3; // y runs upward from the lower edge
            if (line)
                QVERIFY(qRed(picture.pixel(x, y)) <= 26);
            else
                QCOMPARE(picture.pixel(x, y), grey);
        }
    }
}

// Half a point is as wide as two pixels here.
void OnScreenBoardTest::gridStandsAtTheLeftAndLowerEdgeOfEachDot()
{
    const QImage picture = emptyDiodeBoard(DiodeGeometry::of(1, 4));
    constexpr int cell = 16;
    QCOMPARE(picture.height(), 16 * cell);
    for (int i = 0; i < cell; ++i) {
        QCOMPARE(qRed(picture.pixel(cell + i, 8)) < 51, i < 2);
        QCOMPARE(qRed(picture.pixel(8, cell + i)) < 51, i >= cell - 2);
    }
}

void OnScreenBoardTest::gridPalesOnAShrunkBoard()
{
    const QImage tiny = emptyDiodeBoard(DiodeGeometry::of(4, 0.25));
    QVERIFY(qRed(tiny.pixel(5, 5)) >= 38); // one pixel for each dot: all grid, and still grey
    const QImage half = emptyDiodeBoard(DiodeGeometry::of(4, 0.5));
    QCOMPARE(qRed(half.pixel(1, 0)), 51);
    QVERIFY(qRed(half.pixel(0, 0)) < 51 && qRed(half.pixel(0, 0)) >= 36);
}

void OnScreenBoardTest::pictureHas128By64PointsForEachModule_data()
{
    QTest::addColumn<int>("modules");
    QTest::addColumn<double>("pixelsPerPoint");
    QTest::addColumn<QSize>("points");
    QTest::addColumn<int>("cell");
    QTest::newRow("one module") << 1 << 1.0 << QSize(128, 64) << 4;
    QTest::newRow("four modules") << 4 << 1.0 << QSize(512, 64) << 4;
    QTest::newRow("four modules, dense screen") << 4 << 2.0 << QSize(512, 64) << 8;
    QTest::newRow("density between two whole dots takes the larger")
        << 4 << 1.3 << QSize(512, 64) << 6;
    QTest::newRow("a dot of 5 pixels stays one of 5") << 4 << 1.25 << QSize(512, 64) << 5;
    QTest::newRow("shrunk") << 4 << 0.5 << QSize(512, 64) << 2;
    QTest::newRow("no density at all") << 4 << 0.0 << QSize(512, 64) << 1;
    QTest::newRow("absurd density") << 1 << 1000.0 << QSize(128, 64) << 32;
}

void OnScreenBoardTest::pictureHas128By64PointsForEachModule()
{
    QFETCH(int, modules);
    QFETCH(double, pixelsPerPoint);
    QFETCH(QSize, points);
    QFETCH(int, cell);
    Desk desk;
    desk.settings.modules = modules;
    desk.board.setPixelsPerPoint(pixelsPerPoint);
    desk.board.drawDiodeBoard();
    QCOMPARE(desk.picture().deviceIndependentSize().toSize(), points);
    QCOMPARE(desk.picture().size(), points / 4 * cell);
}

void OnScreenBoardTest::runLengthIsTextPlusBoard_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("one character") << u"漢"_s;
    QTest::newRow("a headline") << u"駅前の広場で朝市がひらかれました"_s;
    QTest::newRow("mixed scripts") << u"QoVelmorRSS 2.0 を公開 11/14 10:30【お知らせ】"_s;
    QTest::newRow("blanks at the end count") << u"おわり   "_s;
    QTest::newRow("longer than one piece") << u"青い空と白い雲。"_s.repeated(40);
    QTest::newRow("one endless word") << u"abcdefghij"_s.repeated(40);
}

void OnScreenBoardTest::runLengthIsTextPlusBoard()
{
    QFETCH(QString, text);
    Desk desk;
    desk.settings.board.before = -1; // no waits: only the steps are counted
    desk.settings.board.after = -1;
    desk.board.showString(text);
    const int runLength = int(measuredWidth(text)) + 512;
    const int steps = (runLength + 3) / 4;
    // Pieces are measured apart: a point of rounding may lie between.
    QVERIFY2(std::abs(desk.stepsUntilIdle() - steps) <= 1, qPrintable(QString::number(steps)));
}

void OnScreenBoardTest::textEntersAtTheRightAndMovesByOneDot()
{
    Desk desk;
    desk.settings.board.before = -1;
    desk.board.showString(u"■■■■"_s);
    desk.clock.sleepFor(1ms);
    QVERIFY(desk.isEmpty()); // at offset 0 the text stands just outside
    int last = 128;
    for (int i = 1; i <= 60; ++i) {
        desk.clock.sleepFor(step);
        const auto lit = litColumns(desk.picture());
        if (lit.first < 0) {
            QVERIFY(i < 4); // the blank at the glyph's own edge
            continue;
        }
        if (last < 128)
            QCOMPARE(lit.first, last - 1);
        last = lit.first;
    }
    QVERIFY(last < 75);
}

void OnScreenBoardTest::textStandsSixPointsAboveTheLowerEdge()
{
    Desk desk;
    desk.settings.modules = 1;
    desk.settings.board.before = -1;
    desk.board.showString(u"漢字漢字"_s);
    desk.clock.sleepFor(35 * step);
    const QImage picture = desk.picture();
    const QImage empty = emptyDiodeBoard(DiodeGeometry::of(1, 1));
    int top = 64;
    int bottom = 0;
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 128; ++x) {
            if (picture.pixel(x, y) != empty.pixel(x, y)) {
                top = std::min(top, y);
                bottom = y;
            }
        }
    }
    // The lower edge of the text's own box stands at 58; tilesJoinWithoutASeam() pins the base
    // line.
    QVERIFY2(bottom >= 45 && bottom < 58, qPrintable(QString::number(bottom)));
    QVERIFY2(top >= 6 && top <= 20, qPrintable(QString::number(top)));
}

void OnScreenBoardTest::emptyTextStillRunsAcrossTheBoard()
{
    Desk desk;
    desk.settings.board.before = -1;
    desk.settings.board.after = -1;
    desk.board.showString(QString());
    QCOMPARE(desk.stepsUntilIdle(), 128);
    QVERIFY(desk.isEmpty());
}

void OnScreenBoardTest::boardWithoutModulesStillWaitsTheSteps()
{
    Desk desk;
    desk.settings.modules = 0;
    desk.settings.board.before = -1;
    desk.settings.board.after = -1;
    desk.board.showString(u"漢字"_s);
    QCOMPARE(desk.stepsUntilIdle(), int(std::ceil(int(measuredWidth(u"漢字"_s)) / 4.0)));
    QVERIFY(desk.picture().isNull());
    desk.settings.modules = -3;
    desk.board.drawDiodeBoard();
    QVERIFY(desk.picture().isNull());
}

void OnScreenBoardTest::boardWaitsCount_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<int>("steps");
    QTest::newRow("no board: 0 counts 10") << 0 << 0 << 20;
    QTest::newRow("the board's own waits") << 3 << 4 << 7;
    QTest::newRow("no answer is no wait") << -1 << -1 << 0;
    QTest::newRow("no answer after the line") << 5 << -1 << 5;
}

void OnScreenBoardTest::boardWaitsCount()
{
    QFETCH(int, before);
    QFETCH(int, after);
    QFETCH(int, steps);
    Desk desk;
    desk.settings.board.before = before;
    desk.settings.board.after = after;
    desk.board.showString(QString());
    QCOMPARE(desk.stepsUntilIdle(), 128 + steps);
}

void OnScreenBoardTest::stopLeavesTheEmptyBoard()
{
    Desk desk;
    desk.board.showString(u"漢字"_s.repeated(30));
    desk.clock.sleepFor(3s);
    QVERIFY(!desk.isEmpty());
    const auto asked = desk.clock.steadyNow();
    desk.board.stopShowString();
    QCOMPARE(desk.board.execShowString(), 0);
    QVERIFY(desk.isEmpty());
    QVERIFY(desk.clock.steadyNow() - asked <= 100ms); // the caller looks every 0.1 s
}

void OnScreenBoardTest::styleIsTakenWhenALineStarts()
{
    Desk desk;
    desk.settings.board.before = -1;
    desk.settings.light = 0xffff0000;
    desk.board.showString(u"■■■■■■"_s);
    desk.clock.sleepFor(20 * step);
    desk.settings.light = 0xff00ff00;
    desk.settings.modules = 2;
    desk.clock.sleepFor(40 * step);

    const auto has = [&](QRgb color) {
        const QImage picture = desk.picture();
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixel(x, y) == color)
                    return true;
        return false;
    };
    QVERIFY(has(0xffff0000));
    QVERIFY(!has(0xff00ff00));
    QCOMPARE(desk.picture().size(), QSize(512, 64));

    desk.board.stopShowString();
    desk.board.showString(u"■■■■■■"_s);
    desk.clock.sleepFor(40 * step);
    QVERIFY(has(0xff00ff00));
    QVERIFY(!has(0xffff0000));
    QCOMPARE(desk.picture().size(), QSize(256, 64));
}

// A window that grows or moves to a denser screen has a sharp picture at the next step, in which
// the line stands where it stood.
void OnScreenBoardTest::densityIsTakenAtTheNextStep()
{
    Desk desk;
    desk.settings.board.before = -1;
    desk.board.showString(u"■■■■■■"_s);
    desk.clock.sleepFor(60 * step + 1ms); // between two steps
    const auto before = litColumns(desk.picture());
    desk.board.setPixelsPerPoint(2);
    QCOMPARE(desk.picture().size(), QSize(512, 64));
    desk.clock.sleepFor(step);
    QCOMPARE(desk.picture().size(), QSize(1024, 128));
    QCOMPARE(desk.picture().devicePixelRatio(), 2.0);
    QCOMPARE(litColumns(desk.picture()).first, before.first - 1);
}

void OnScreenBoardTest::defaultFontIsAMincho()
{
    QCOMPARE(QFontInfo(screenBoardFont(u"HiraMinPro-W3"_s)).family(), u"IPAexMincho"_s);
    QCOMPARE(QFontInfo(screenBoardFont(u"Noto Sans CJK JP"_s)).family(), u"Noto Sans CJK JP"_s);
    QCOMPARE(QFontInfo(screenBoardFont(u"HiraMinPro-W3"_s)).pixelSize(), 44);
}

void OnScreenBoardTest::expansionIsAPowerOfE()
{
    const QString text = u"電光掲示板の文字"_s;
    const LineStyle plain{screenBoardFont(defaultFontName()), Qt::red, 0};
    const LineStyle narrow{screenBoardFont(defaultFontName()), Qt::red, -0.2f};
    LineStrip wideStrip(text, plain, 4);
    LineStrip narrowStrip(text, narrow, 4);
    const double width = measuredWidth(text);
    QVERIFY(wideStrip.isWiderThan(int(width) - 2));
    QVERIFY(!wideStrip.isWiderThan(int(width) + 1));
    const int narrowed = int(width * std::exp(-0.2));
    QVERIFY(narrowStrip.isWiderThan(narrowed - 2));
    QVERIFY(!narrowStrip.isWiderThan(narrowed + 1));
}

void OnScreenBoardTest::lineBreaksAreBlanks_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("line feed") << u"上\n下"_s;
    QTest::newRow("line separator") << u"上\u2028下"_s;
    QTest::newRow("paragraph separator") << u"上\u2029下"_s;
    QTest::newRow("tabulator") << u"上\t下"_s;
    QTest::newRow("bell") << u"上\u0007下"_s;
}

void OnScreenBoardTest::lineBreaksAreBlanks()
{
    QFETCH(QString, text);
    const LineStyle style{screenBoardFont(defaultFontName()), Qt::white, 0};
    const auto geometry = DiodeGeometry::of(2, 1);
    QImage got = emptyDiodeBoard(geometry);
    QImage wanted = got.copy();
    LineStrip(text, style, 4).copyTo(got, 0);
    LineStrip(u"上 下"_s, style, 4).copyTo(wanted, 0);
    QCOMPARE(got, wanted);
}

void OnScreenBoardTest::marksThatTurnTheDirection_areLeftOut()
{
    const LineStyle style{screenBoardFont(defaultFontName()), Qt::white, 0};
    const auto geometry = DiodeGeometry::of(2, 1);
    QImage got = emptyDiodeBoard(geometry);
    QImage wanted = got.copy();
    LineStrip(u"\u202e12\u202c\u2067 AB\u2069"_s, style, 4).copyTo(got, 0);
    LineStrip(u"12 AB"_s, style, 4).copyTo(wanted, 0);
    QCOMPARE(got, wanted);
}

// 10,000 characters at speed 0: all of it is drawn, the last character included.
void OnScreenBoardTest::longLineScrollsToItsEnd()
{
    const QString text = u"長い文章もさいごまで読めます。"_s.repeated(667) + u"■"_s;
    const LineStyle style{screenBoardFont(defaultFontName()), Qt::white, 0};
    LineStrip strip(text, style, 4);
    const auto geometry = DiodeGeometry::of(4, 1);
    const QImage empty = emptyDiodeBoard(geometry);
    QImage picture;
    int offset = 0;
    for (; strip.isWiderThan(offset - 512); offset += 32) {
        picture = empty.copy();
        strip.copyTo(picture, (512 - offset) / 4);
    }
    const double wanted = measuredWidth(text) + 512;
    QVERIFY2(std::abs(offset - wanted) < 36, qPrintable(u"%1 %2"_s.arg(offset).arg(wanted)));
    // The last picture shows what is left of the last character at the left edge.
    const auto lit = litColumns(picture);
    QVERIFY2(lit.last <= 8, qPrintable(QString::number(lit.last)));

    LineStrip again(text, style, 4);
    const int beforeTheEnd = int(measuredWidth(text)) - 2 * 44;
    QVERIFY(again.isWiderThan(beforeTheEnd));
    picture = empty.copy();
    again.copyTo(picture, -(beforeTheEnd / 4));
    QVERIFY(litColumns(picture).last >= 16 && litColumns(picture).last <= 22);
}

// What the band shows in tiles is what one painting of the whole text shows.
void OnScreenBoardTest::tilesJoinWithoutASeam()
{
    const QString text = u"ここは継ぎ目のないことを確かめる文章です。ABCfiAVTo"_s;
    const LineStyle style{screenBoardFont(defaultFontName()), QColor(255, 140, 0), 0};
    const auto geometry = DiodeGeometry::of(12, 1);
    QImage whole(geometry.pixels(), QImage::Format_RGB32);
    whole.fill(diodeBoardGrey());
    {
        QPainter painter(&whole);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        painter.setPen(style.color);
        painter.setFont(style.font);
        painter.drawText(QPointF(0, 58 - QFontMetricsF(style.font).descent()), text);
    }
    paintDiodeGrid(whole, 4);

    QImage tiled = emptyDiodeBoard(geometry);
    LineStrip(text, style, 4).copyTo(tiled, 0);
    int different = 0;
    for (int y = 0; y < whole.height(); ++y) {
        for (int x = 0; x < whole.width(); ++x) {
            if (std::abs(qRed(whole.pixel(x, y)) - qRed(tiled.pixel(x, y))) > 40)
                ++different;
        }
    }
    QVERIFY2(different < 50, qPrintable(QString::number(different)));
}

void OnScreenBoardTest::oneNoticeIsPendingHoweverManySteps()
{
    Desk desk;
    int notices = 0;
    desk.board.frameChanged().listen([&] { ++notices; });
    desk.board.showString(u"漢字"_s);
    desk.clock.sleepFor(50 * step);
    QCOMPARE(desk.mainThread.drain(), 1);
    QCOMPARE(notices, 1);
    desk.clock.sleepFor(2 * step);
    QCOMPARE(desk.mainThread.drain(), 1);
    QCOMPARE(notices, 2);
}

// A picture that was handed over is never drawn on again.
void OnScreenBoardTest::everyStepMakesANewPicture()
{
    Desk desk;
    desk.settings.board.before = -1;
    desk.board.showString(u"漢字漢字漢字"_s);
    desk.clock.sleepFor(30 * step);
    const auto held = desk.board.ledImage();
    const QImage copy = held->copy();
    desk.clock.sleepFor(30 * step);
    QCOMPARE(*held, copy);
    QVERIFY(*desk.board.ledImage() != copy);
}

QTEST_MAIN(OnScreenBoardTest)
#include "onscreenboard_test.moc"
