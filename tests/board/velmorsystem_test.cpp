// SPDX-License-Identifier: MIT
#include "board/ColumnWords.h"
#include "board/PresentDate.h"
#include "render/VelmorFont.h"
#include "tests/board/BoardBench.h"
#include "tests/board/WireBench.h"

#include <QGuiApplication>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

/// The columns that the lines carried, as the bytes of their words.
QByteArray columnsOf(const QList<QByteArray> &lines)
{
    QByteArray bytes;
    for (const QByteArray &line : lines) {
        if (line.startsWith("sc_data "))
            bytes += QByteArray::fromHex(line.sliced(8));
    }
    return bytes;
}

QByteArray columnsOf(const VelmorSystem &system, const VelmorBitmap &bitmap)
{
    return system.dataWithBitmap(bitmap);
}

} // namespace

class VelmorSystemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initialValues();
    void showString_isTheRenderingOfTheText_data();
    void showString_isTheRenderingOfTheText();
    void rotation_comesFromTheSettings();
    void setBitmapWithString_holdsTheImage();
    void presentDate_standsCentred();
    void presentDate_onABoardOfNoKnownWidth_startsAtItsEdge_data();
    void presentDate_onABoardOfNoKnownWidth_startsAtItsEdge();
    void presentDate_withoutSeconds_scrollsAndClearsAtOnce();
    void asABoardLink_everySettingReachesTheBoard();
    void asAProgressBoard_itAnswers();
    void portNames_areTheSystems();
};

void VelmorSystemTest::initialValues()
{
    SystemClock clock;
    const VelmorSystem system(clock);
    QCOMPARE(system.bright(), 10);
    QCOMPARE(system.scroll(), false);
    QCOMPARE(system.async(), true);
    QCOMPARE(system.showStatus(), 0);
    QVERIFY(!system.isRunning());
    QVERIFY(!system.isPaused());
    QVERIFY(system.bitmapData() == nullptr);
    QVERIFY(system.serial() == nullptr);
    QVERIFY(system.useFontx());
}

void VelmorSystemTest::showString_isTheRenderingOfTheText_data()
{
    QTest::addColumn<bool>("useFontx");
    QTest::newRow("dot fonts") << true;
    QTest::newRow("outline font") << false;
}

void VelmorSystemTest::showString_isTheRenderingOfTheText()
{
    QFETCH(bool, useFontx);
    BoardBench b;
    BoardLink &link = b.system;
    link.setScroll(true);
    link.setAsync(true);
    link.setUseFontx(useFontx);
    link.setBoarder(100);
    link.setExpansion(-0.2F);
    link.showString(u"LED 電光掲示板"_s);
    QVERIFY(!link.isRunning());

    VelmorFont font(b.system.fontName(), 0, 0, -0.2F, useFontx);
    font.setBoarder(100);
    const auto image = font.bitmapWithString(u"LED 電光掲示板"_s);
    QVERIFY(image->width() > 0);
    QCOMPARE(columnsOf(b.far.lines()), columnsOf(b.system, *image));
}

void VelmorSystemTest::rotation_comesFromTheSettings()
{
    BoardBench b;
    VelmorFont font;
    b.system.setBitmapWithString(u"漢"_s);
    QCOMPARE(columnsOf(b.system, *b.system.bitmapData()),
             columnsOf(b.system, *font.bitmapWithString(u"漢"_s)));
    b.settings.rotation_ = true;
    b.system.setRotation(false); // this object's own rendering, not the lines'
    b.system.setBitmapWithString(u"漢"_s);
    font.setRotation(true);
    QCOMPARE(columnsOf(b.system, *b.system.bitmapData()),
             columnsOf(b.system, *font.bitmapWithString(u"漢"_s)));
}

void VelmorSystemTest::setBitmapWithString_holdsTheImage()
{
    BoardBench b;
    b.system.setBitmapWithString(u"ab"_s);
    QCOMPARE(b.system.bitmapData()->width(), 16);
    QVERIFY(b.linesSoFar().isEmpty());
}

void VelmorSystemTest::presentDate_standsCentred()
{
    WireBench b; // whose clock stands at the beginning of a minute
    b.system.setScroll(true);
    b.system.setAsync(true);
    const QString date = b.system.presentDateString();
    b.system.showPresentDate(3.0);
    QVERIFY(b.system.scroll());
    QVERIFY(b.system.async());

    VelmorFont font;
    const auto image = font.bitmapWithString(date);
    const QByteArray gap((128 - image->width()) / 2 * 2, '\0');
    QByteArray expected = gap + columnsOf(b.system, *image);
    expected.truncate(expected.size() / 4 * 4);
    const QList<QByteArray> lines = b.takeLines();
    QCOMPARE(columnsOf(lines), expected);
    QCOMPARE(lines.first(3), (QList<QByteArray>{"set cmodule", "sc_clear", "sc_stop"}));
    QCOMPARE(lines.last(2), (QList<QByteArray>{"sc_show", "sc_clear"}));
}

void VelmorSystemTest::presentDate_onABoardOfNoKnownWidth_startsAtItsEdge_data()
{
    QTest::addColumn<QByteArray>("modules");
    QTest::newRow("narrower than the date") << "1"_ba;
    QTest::newRow("no number") << ""_ba;
    QTest::newRow("less than nothing") << "-99999999"_ba;
    QTest::newRow("wider than any image") << "313"_ba; // 10,016 columns
    QTest::newRow("more columns than can be counted") << "99999999"_ba;
}

void VelmorSystemTest::presentDate_onABoardOfNoKnownWidth_startsAtItsEdge()
{
    QFETCH(QByteArray, modules);
    WireBench b;
    b.setScript([modules](const QByteArray &line) {
        return line == "set cmodule" ? std::optional<QByteArray>("D cmodule " + modules + "\r\n")
                                     : ScriptedBoard::defaultAnswer(line);
    });
    b.system.showPresentDate(3.0);
    VelmorFont font;
    const auto image = font.bitmapWithString(b.system.presentDateString());
    QVERIFY(image->width() > 32);
    QByteArray expected = columnsOf(b.system, *image);
    expected.truncate(expected.size() / 4 * 4);
    QCOMPARE(columnsOf(b.takeLines()), expected);
}

void VelmorSystemTest::presentDate_withoutSeconds_scrollsAndClearsAtOnce()
{
    BoardBench b;
    b.system.showPresentDate(0);
    QVERIFY(!b.system.scroll());
    QVERIFY(b.system.async());
    QVERIFY(b.waitForLine("sc_scroll")); // the run scrolls although the setting is back
    QTRY_COMPARE(b.system.showStatus(), 0);
    QCOMPARE(b.linesSoFar().count("sc_clear"), 2);
}

void VelmorSystemTest::asABoardLink_everySettingReachesTheBoard()
{
    BoardBench b;
    BoardLink &link = b.system;
    // On a busy machine the first answer may take longer than the test of the line waits.
    QVERIFY(QTest::qWaitFor([&link] { return link.comTest(); }));
    QVERIFY(b.linesSoFar().contains("ver"));
    link.setSpeed(3);
    link.setModuleCount(4);
    link.setBright(10);
    link.setReverse(true);
    QCOMPARE(link.moduleCount(), 4);
    b.far.setScript([](const QByteArray &) { return "D scmode_wait1 5 scmode_wait2 6\r\n"; });
    QCOMPARE(link.waitBefore(), 5);
    QCOMPARE(link.waitAfter(), 6);
    QCOMPARE(b.linesSoFar(), (QList<QByteArray>{"set scmode_div 3", "set cmodule 4", "lm_bright 10",
                                                "set led_reverse 1", "set cmodule",
                                                "set scmode_wait1", "set scmode_wait2"}));
    link.setFontName(u"Any"_s);
    link.setRotation(true);
    QCOMPARE(b.system.fontName(), u"Any"_s);
    QVERIFY(b.system.rotation());
    QVERIFY(!link.isLost());
    QVERIFY(link.openProblem().isEmpty());
}

void VelmorSystemTest::asAProgressBoard_itAnswers()
{
    BoardBench b;
    ProgressBoard &board = b.system;
    const auto title = board.bitmapWithString(u"ab"_s);
    QCOMPARE(title->width(), 16);
    QCOMPARE(board.cmodule(), 4);
    board.cmodule(4);
    board.sc_clear();
    board.sendBufferBitmap(*title);
    board.sc_show();
    const QList<QByteArray> lines = b.linesSoFar();
    QCOMPARE(columnsOf(lines), columnsOf(b.system, *title));
    QCOMPARE(lines.first(3), (QList<QByteArray>{"set cmodule", "set cmodule 4", "sc_clear"}));
    QCOMPARE(lines.last(), "sc_show"_ba);
}

void VelmorSystemTest::portNames_areTheSystems()
{
    qputenv("QOVELMORRSS_SERIAL_DEVICES", "/tmp/led.board");
    SystemClock clock;
    const VelmorSystem system(clock);
    QCOMPARE(system.portNames().value(0), u"board"_s);
    qunsetenv("QOVELMORRSS_SERIAL_DEVICES");
}

QTEST_MAIN(VelmorSystemTest)
#include "velmorsystem_test.moc"
