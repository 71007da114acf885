// SPDX-License-Identifier: MIT
#include "messages/DiodeBoard.h"
#include "messages/LineStrip.h"
#include "messages/TerminalBoard.h"

#include <QImage>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

// Lights whole dots of a board: the rows of the picture are text, '#' is a lit dot.
QImage boardWith(const QStringList &picture, int modules = 1, double pixelsPerPoint = 1,
                 QColor color = Qt::red)
{
    const auto geometry = DiodeGeometry::of(modules, pixelsPerPoint);
    QImage board = emptyDiodeBoard(geometry);
    for (int row = 0; row < picture.size(); ++row) {
        for (int column = 0; column < picture[row].size(); ++column) {
            if (picture[row][column] != u'#')
                continue;
            for (int y = 0; y < geometry.cell; ++y)
                for (int x = 0; x < geometry.cell; ++x)
                    board.setPixelColor(column * geometry.cell + x, row * geometry.cell + y, color);
        }
    }
    return board;
}

// Braille back to rows of '#' and '.'.
QStringList dotRows(const QStringList &lines)
{
    static constexpr int bitOf[4][2] = {{0, 3}, {1, 4}, {2, 5}, {6, 7}};
    QStringList rows;
    for (const QString &line : lines) {
        for (const auto &bits : bitOf) {
            QString row;
            for (const QChar c : line)
                for (const int bit : bits)
                    row += ((c.unicode() >> bit) & 1) != 0 ? u'#' : u'.';
            rows += row;
        }
    }
    return rows;
}

const QStringList arrow{
    u"................"_s, u".......#........"_s, u".......##......."_s, u".......###......"_s,
    u"...########....."_s, u"...#########...."_s, u"...########....."_s, u".......###......"_s,
    u".......##......."_s, u".......#........"_s,
};

} // namespace

class TerminalBoardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dotsBecomeBraille();
    void eachDotIsOneDot_data();
    void eachDotIsOneDot();
    void sizeFollowsTheTerminal_data();
    void sizeFollowsTheTerminal();
    void boardWithoutLightIsBlank();
    void nullPictureGivesNoLines();
    void headlineCanBeRead();
};

void TerminalBoardTest::dotsBecomeBraille()
{
    const QStringList lines = terminalBoard(
        boardWith({u"##......"_s, u".#......"_s, u"........"_s, u"#......."_s, u"....####"_s}), 16);
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[0], u"⡙"_s + QString(15, QChar(0x2800)));
    QCOMPARE(lines[1], QString(2, QChar(0x2800)) + u"⠉⠉"_s + QString(12, QChar(0x2800)));
    QCOMPARE(lines[3], QString(16, QChar(0x2800)));
}

void TerminalBoardTest::eachDotIsOneDot_data()
{
    QTest::addColumn<double>("pixelsPerPoint");
    QTest::addColumn<QColor>("color");
    QTest::newRow("red") << 1.0 << QColor(Qt::red);
    QTest::newRow("dense screen") << 2.0 << QColor(Qt::green);
    QTest::newRow("dots of 5 pixels") << 1.25 << QColor(255, 140, 0);
    QTest::newRow("one pixel for each dot") << 0.25 << QColor(Qt::white);
    QTest::newRow("dim colour") << 1.0 << QColor(110, 60, 60);
    QTest::newRow("darker than the board") << 1.0 << QColor(0, 0, 0);
}

void TerminalBoardTest::eachDotIsOneDot()
{
    QFETCH(double, pixelsPerPoint);
    QFETCH(QColor, color);
    const auto rows = dotRows(terminalBoard(boardWith(arrow, 1, pixelsPerPoint, color), 31));
    QCOMPARE(rows.size(), 16);
    for (int row = 0; row < arrow.size(); ++row)
        QCOMPARE(rows[row], arrow[row] + QString(16, u'.'));
    QCOMPARE(rows[15], QString(32, u'.'));
}

void TerminalBoardTest::sizeFollowsTheTerminal_data()
{
    QTest::addColumn<int>("modules");
    QTest::addColumn<int>("places");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("four modules in 80 places") << 4 << 80 << 64 << 4;
    QTest::newRow("one place too few for the fine picture") << 4 << 127 << 64 << 4;
    QTest::newRow("just room for the fine picture") << 4 << 128 << 128 << 8;
    QTest::newRow("two modules are fine in 80 places") << 2 << 80 << 64 << 8;
    QTest::newRow("cut at the terminal's edge") << 8 << 80 << 80 << 4;
    QTest::newRow("no place at all") << 1 << 0 << 0 << 4;
}

void TerminalBoardTest::sizeFollowsTheTerminal()
{
    QFETCH(int, modules);
    QFETCH(int, places);
    QFETCH(int, width);
    QFETCH(int, height);
    const auto lines = terminalBoard(emptyDiodeBoard(DiodeGeometry::of(modules, 1)), places);
    QCOMPARE(lines.size(), height);
    for (const QString &line : lines)
        QCOMPARE(line.size(), width);
}

void TerminalBoardTest::boardWithoutLightIsBlank()
{
    for (const QString &line : terminalBoard(emptyDiodeBoard(DiodeGeometry::of(4, 1)), 200))
        QCOMPARE(line, QString(128, QChar(0x2800)));
}

void TerminalBoardTest::nullPictureGivesNoLines()
{
    QVERIFY(terminalBoard(QImage(), 80).isEmpty());
}

// Three characters of simple shape, as the program draws them on its board.
void TerminalBoardTest::headlineCanBeRead()
{
    const auto geometry = DiodeGeometry::of(1, 1);
    QImage board = emptyDiodeBoard(geometry);
    LineStrip(u"工口■"_s, {screenBoardFont(u"IPAexMincho"_s), QColor(255, 140, 0), 0},
              geometry.cell)
        .copyTo(board, 0);
    const auto rows = dotRows(terminalBoard(board, 31));
    // The horizontal strokes are thinner than a dot and still there.
    const QStringList wanted{
        u"................................"_s, u"................................"_s,
        u"................................"_s, u"........#..........#...#########"_s,
        u".#########...########..#########"_s, u".....#.......#.....#...#########"_s,
        u".....#.......#.....#...#########"_s, u".....#.......#.....#...#########"_s,
        u".....#.......#.....#...#########"_s, u".....#.......#.....#...#########"_s,
        u".....#...#...#######...#########"_s, u".####.####...#.....#....#######."_s,
    };
    const auto text = [](const QStringList &picture) { return u'\n' + picture.join(u'\n'); };
    const auto got = rows.first(wanted.size());
    QVERIFY2(got == wanted, qPrintable(text(got)));
}

QTEST_MAIN(TerminalBoardTest)
#include "terminalboard_test.moc"
