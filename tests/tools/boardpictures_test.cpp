// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardWindow.h"
#include "tools/qovelmorboard/BraillePicture.h"
#include "tools/qovelmorboard/FontGlyphs.h"
#include "tools/qovelmorboard/FrameWriter.h"
#include "tools/qovelmorboard/LedPainter.h"
#include "tools/qovelmorboard/TerminalPicture.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace qovelmor::simboard;
using namespace Qt::Literals::StringLiterals;

namespace {

/// The letter A with a dot in each corner of its 8 columns.
const std::vector<std::string> letterA{
    "#......#", "........", "........", "........", "...##...", "...##...", "..#..#..", "..#..#..",
    "..#..#..", ".######.", ".#....#.", "#......#", "#......#", "........", "........", "#......#",
};

BoardPicture pictureOfA(int brightness = 255)
{
    return {columnsOfDotLines(letterA), brightness};
}

bool isLitAt(const QImage &image, int cell, int x, int y)
{
    return qRed(image.pixel(x * cell + cell / 2, y * cell + cell / 2)) > 60;
}

} // namespace

class BoardPicturesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dotLines_areTheColumnsAndBack();
    void braille_showsTwoByFourDots();
    void braille_hasEachDotAtItsPlace();
    void oddColumn_standsAlone();
    void terminal_showsFrameDotsAndState();
    void wideBoard_isShownInStrips();
    void terminal_writesOnlyWhatChanges();
    void painter_lightsTheRightCells();
    void painter_followsTheBrightness();
    void frames_areWrittenOnceAndBounded();
    void frames_sayWhenTheyCannotBeWritten();
    void window_showsThePicture();
    void text_isDrawnWithTheFonts();
};

void BoardPicturesTest::dotLines_areTheColumnsAndBack()
{
    const std::vector<ColumnWord> columns = columnsOfDotLines(letterA);
    QCOMPARE(columns.size(), std::size_t{8});
    QCOMPARE(columns.front(), ColumnWord{0x8019});
    QCOMPARE(dotLines(columns), letterA);
    QVERIFY(columnsOfDotLines({}).empty());
}

void BoardPicturesTest::braille_showsTwoByFourDots()
{
    const std::vector<std::string> expected{"⠁⠀⠀⠈", "⠀⡜⢣⠀", "⡰⠓⠚⢆", "⡁⠀⠀⢈"};
    QCOMPARE(brailleLines(columnsOfDotLines(letterA)), expected);
}

void BoardPicturesTest::braille_hasEachDotAtItsPlace()
{
    // The numbers of the eight dots of a braille character, as Unicode counts them.
    const char *const places[2][4] = {{"⠁", "⠂", "⠄", "⡀"}, {"⠈", "⠐", "⠠", "⢀"}};
    for (int x = 0; x < 2; ++x) {
        for (unsigned y = 0; y < 16; ++y) {
            std::vector<ColumnWord> columns(2, 0);
            columns[std::size_t(x)] = ColumnWord(0x8000U >> y);
            const std::vector<std::string> lines = brailleLines(columns);
            QCOMPARE(lines.size(), std::size_t{4});
            for (unsigned line = 0; line < 4; ++line)
                QCOMPARE(lines[line], std::string(line == y / 4 ? places[x][y % 4] : "⠀"));
        }
    }
}

void BoardPicturesTest::oddColumn_standsAlone()
{
    const std::vector<ColumnWord> columns{0, 0, 0xF000};
    QCOMPARE(brailleLines(columns).front(), std::string("⠀⡇"));
}

void BoardPicturesTest::terminal_showsFrameDotsAndState()
{
    BoardView view;
    view.path = "/dev/pts/9";
    view.picture = pictureOfA(128);
    view.mode = DisplayMode::Scrolling;
    view.roomColumns = 77;
    view.scrollDivider = 3;
    const std::vector<std::string> expected{
        "╭────╮",
        "│⠁⠀⠀⠈│",
        "│⠀⡜⢣⠀│",
        "│⡰⠓⠚⢆│",
        "│⡁⠀⠀⢈│",
        "╰────╯",
        "/dev/pts/9  scrolling  speed 3  brightness 50 %  room 77",
    };
    QCOMPARE(terminalLines(view, 80), expected);
}

void BoardPicturesTest::wideBoard_isShownInStrips()
{
    BoardView view;
    view.picture.columns = std::vector<ColumnWord>(20, 0xFFFF);
    const std::vector<std::string> lines = terminalLines(view, 8);
    // Six characters fit: twelve columns, then the other eight.
    const std::vector<std::string> expected{
        "╭──────╮", "│⣿⣿⣿⣿⣿⣿│", "│⣿⣿⣿⣿⣿⣿│", "│⣿⣿⣿⣿⣿⣿│", "│⣿⣿⣿⣿⣿⣿│", "│⣿⣿⣿⣿  │",
        "│⣿⣿⣿⣿  │", "│⣿⣿⣿⣿  │", "│⣿⣿⣿⣿  │", "╰──────╯", "hung up ",
    };
    QCOMPARE(lines, expected);
    QCOMPARE(terminalLines(BoardView(), 1).size(), std::size_t{3});
}

void BoardPicturesTest::terminal_writesOnlyWhatChanges()
{
    TerminalPicture terminal;
    QCOMPARE(terminal.finish(), std::string());
    QCOMPARE(terminal.update({"one", "two"}), std::string("\x1b[?25lone\x1b[K\ntwo\x1b[K\n\x1b[J"));
    QCOMPARE(terminal.update({"one", "two"}), std::string());
    QCOMPARE(terminal.update({"one", "six"}),
             std::string("\x1b[?25l\x1b[2A\rone\x1b[K\nsix\x1b[K\n\x1b[J"));
    QCOMPARE(terminal.finish(), std::string("\x1b[?25h"));
}

void BoardPicturesTest::painter_lightsTheRightCells()
{
    constexpr int cell = 6;
    LedPainter painter(cell);
    const QImage image = painter.paint(pictureOfA());
    QCOMPARE(image.size(), QSize(8 * cell, 16 * cell));
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 8; ++x)
            QCOMPARE(isLitAt(image, cell, x, y), letterA[std::size_t(y)][std::size_t(x)] == '#');
    }
    QCOMPARE(painter.paint(BoardPicture()).size(), QSize(cell, 16 * cell));
}

void BoardPicturesTest::painter_followsTheBrightness()
{
    LedPainter painter(6);
    const int bright = qRed(painter.paint(pictureOfA(255)).pixel(3, 3));
    const int dim = qRed(painter.paint(pictureOfA(0)).pixel(3, 3));
    QCOMPARE(bright, 255);
    QVERIFY(dim > 40 && dim < 128);
}

void BoardPicturesTest::frames_areWrittenOnceAndBounded()
{
    const QTemporaryDir folder;
    FrameWriter writer(folder.filePath(u"frames"_s), 3);
    for (int brightness : {1, 1, 2, 3, 4, 4, 5})
        QVERIFY(writer.write(pictureOfA(brightness)));
    QCOMPARE(writer.written(), 5);
    const QStringList names = QDir(folder.filePath(u"frames"_s)).entryList(QDir::Files);
    const QStringList expected{u"frame-000003.png"_s, u"frame-000004.png"_s, u"frame-000005.png"_s};
    QCOMPARE(names, expected);
    const QImage last(folder.filePath(u"frames/frame-000005.png"_s));
    QCOMPARE(last, LedPainter(6).paint(pictureOfA(5)));
}

void BoardPicturesTest::frames_sayWhenTheyCannotBeWritten()
{
    FrameWriter writer(u"/proc/no-such-folder"_s, 3);
    QVERIFY(!writer.write(pictureOfA()));
}

void BoardPicturesTest::window_showsThePicture()
{
    BoardWindow window;
    window.setPicture(pictureOfA());
    QCOMPARE(window.size(), QSize(8 * 7, 16 * 7));
    const QImage shown = window.grab().toImage();
    QVERIFY(isLitAt(shown, 7, 3, 4));
    QVERIFY(!isLitAt(shown, 7, 2, 4));
    window.setPicture({std::vector<ColumnWord>(8, 0), 255});
    QVERIFY(!isLitAt(window.grab().toImage(), 7, 3, 4));
}

void BoardPicturesTest::text_isDrawnWithTheFonts()
{
    // A single-byte font whose glyph 'a' has its left column lit, and a double-byte one with one
    // block that holds 889F alone: its first row is lit.
    QByteArray single = QByteArray("FONTX2TEST    \x08\x10", 16) + QByteArray(1, 0);
    for (int code = 0; code < 256; ++code)
        single += QByteArray(16, code == 'a' ? '\x80' : '\0');
    const QByteArray pair = QByteArray("FONTX2TEST    \x10\x10\x01\x01\x9f\x88\x9f\x88", 22) +
                            QByteArray(2, '\xff') + QByteArray(30, '\0');
    const qovelmor::FontxFile singleByte(qovelmor::FontxFile::Kind::SingleByte, single);
    const qovelmor::FontxFile doubleByte(qovelmor::FontxFile::Kind::DoubleByte, pair);

    std::vector<ColumnWord> expected(8 + 16 + 8, 0);
    expected[0] = 0xFFFF;
    std::fill(expected.begin() + 8, expected.begin() + 24, ColumnWord{0x8000});
    QCOMPARE(fontColumns(singleByte, doubleByte, "a\x88\x9f "), expected);
    // A first byte with nothing behind it is a character of its own.
    QCOMPARE(fontColumns(singleByte, doubleByte, "\x88").size(), std::size_t{8});
    QCOMPARE(fontColumns(qovelmor::FontxFile(), qovelmor::FontxFile(), "a"),
             std::vector<ColumnWord>(8, 0));
}

QTEST_MAIN(BoardPicturesTest)
#include "boardpictures_test.moc"
