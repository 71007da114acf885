// SPDX-License-Identifier: MIT
#include "messages/OnScreenBoard.h"
#include "messages/views/LEDWindow.h"
#include "messages/views/OnScreenBoardView.h"
#include "platform/QueueMainThread.h"
#include "platform/SimulatedClock.h"
#include "platform/UserDefaults.h"
#include "tests/messages/ScreenSettings.h"

#include <QAction>
#include <QCloseEvent>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtTest/qtestspontaneevent.h>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

// A board, a store and room for the windows that show them.
struct Desk
{
    QTemporaryDir folder;
    SimulatedClock clock{Clock::CalendarTime{}};
    QueueMainThread mainThread;
    ScreenSettings settings;
    OnScreenBoard board{settings, clock, mainThread};
    UserDefaults defaults{folder.filePath(u"store.plist"_s)};

    std::unique_ptr<LEDWindow> shownWindow()
    {
        auto window = std::make_unique<LEDWindow>(board, defaults);
        window->show();
        (void)QTest::qWaitForWindowExposed(window.get());
        return window;
    }
};

// What the window system sends when the user closes a window.
void closeAsUser(QWidget &window)
{
    QCloseEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&window, &event); // sendEvent() would take the mark away
}

bool showsColor(QWidget &widget, QColor color)
{
    const QImage picture = widget.grab().toImage();
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) == color)
                return true;
    return false;
}

} // namespace

class LEDWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partsHaveTheirNames();
    void startsAsAWholeSign();
    void dotsLieOnWholePixels_data();
    void dotsLieOnWholePixels();
    void idleBoardIsDrawnAnewForANewSize();
    void runningLineReachesTheWindow();
    void doubleClickBecomesASignal();
    void userCloseBecomesASignal();
    void programCloseCloses();
    void drawerGrowsTheWindow();
    void drawerStaysOnTheScreen();
    void keysDoWhatTheMouseDoes();
    void descriptionIsPlainText();
    void placeIsRemembered_data();
    void placeIsRemembered();
    void placeOfALargerScreenIsFittedIn();
    void absurdStoredPlaceDoesNoHarm();
    void aDragIsStoredOnce();
    void boardWithoutModulesIsAnEmptyHousing();
};

void LEDWindowTest::partsHaveTheirNames()
{
    Desk desk;
    const auto window = desk.shownWindow();
    QCOMPARE(window->objectName(), u"ledWindow"_s);
    QVERIFY(window->findChild<OnScreenBoardView *>(u"scrollView"_s) == &window->boardView());
    QVERIFY(window->findChild<QPlainTextEdit *>(u"ledDrawer"_s) != nullptr);
    QCOMPARE(window->windowTitle(), u"LED 電光掲示板"_s);
    QVERIFY(!window->boardView().accessibleName().isEmpty());
}

void LEDWindowTest::startsAsAWholeSign()
{
    Desk desk;
    const auto window = desk.shownWindow();
    QVERIFY(!window->isDrawerOpen());
    const QRectF field = window->boardView().fieldRect();
    QCOMPARE(field.size(), QSizeF(768, 96)); // 128 by 16 dots of 6 points
    QVERIFY(window->boardView().rect().contains(field.toAlignedRect()));
}

void LEDWindowTest::dotsLieOnWholePixels_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<int>("cell");
    QTest::newRow("just too narrow for 6") << QSize(799, 400) << 5;
    QTest::newRow("just wide enough for 6") << QSize(800, 400) << 6;
    QTest::newRow("wide and low") << QSize(1600, 128) << 6;
    QTest::newRow("tiny") << QSize(170, 60) << 1;
}

void LEDWindowTest::dotsLieOnWholePixels()
{
    QFETCH(QSize, window);
    QFETCH(int, cell);
    Desk desk;
    const auto shown = desk.shownWindow();
    shown->resize(window);
    QCoreApplication::processEvents();
    const QRectF field = shown->boardView().fieldRect();
    QCOMPARE(field.size(), QSizeF(128 * cell, 16 * cell));
    QCOMPARE(field.topLeft(), QPointF(field.topLeft().toPoint()));
    QCOMPARE(desk.board.ledImage()->size(), QSize(128 * cell, 16 * cell));
}

void LEDWindowTest::idleBoardIsDrawnAnewForANewSize()
{
    Desk desk;
    const auto window = desk.shownWindow();
    QCOMPARE(desk.board.ledImage()->size(), QSize(768, 96));
    window->resize(1200, 300);
    QCoreApplication::processEvents();
    QCOMPARE(desk.board.ledImage()->size(), QSize(1152, 144));
    QCOMPARE(desk.board.ledImage()->deviceIndependentSize(), QSizeF(512, 64));
}

void LEDWindowTest::runningLineReachesTheWindow()
{
    Desk desk;
    desk.settings.board.before = -1;
    desk.settings.light = 0xffff8c00;
    const auto window = desk.shownWindow();
    QVERIFY(!showsColor(window->boardView(), QColor(0xff, 0x8c, 0x00)));
    desk.board.showString(u"■■■■"_s);
    desk.clock.sleepFor(60 * 24ms);
    QVERIFY(desk.mainThread.drain() > 0);
    QVERIFY(showsColor(window->boardView(), QColor(0xff, 0x8c, 0x00)));
    desk.settings.modules = 2; // the next line has a smaller board, and the window follows
    desk.board.stopShowString();
    desk.board.showString(u"■"_s);
    desk.clock.sleepFor(24ms);
    desk.mainThread.drain();
    QCOMPARE(window->boardView().fieldRect().height() * 4, window->boardView().fieldRect().width());
}

void LEDWindowTest::doubleClickBecomesASignal()
{
    Desk desk;
    const auto window = desk.shownWindow();
    QSignalSpy asked(window.get(), &LEDWindow::boardDoubleClicked);
    QTest::mouseClick(&window->boardView(), Qt::LeftButton);
    QCOMPARE(asked.count(), 0);
    QTest::mouseDClick(&window->boardView(), Qt::LeftButton);
    QCOMPARE(asked.count(), 1);
    QTest::mouseDClick(&window->boardView(), Qt::RightButton);
    QCOMPARE(asked.count(), 1);
}

void LEDWindowTest::userCloseBecomesASignal()
{
    Desk desk;
    const auto window = desk.shownWindow();
    QSignalSpy asked(window.get(), &LEDWindow::closeRequested);
    closeAsUser(*window);
    QCOMPARE(asked.count(), 1);
    QVERIFY(window->isVisible());
}

void LEDWindowTest::programCloseCloses()
{
    Desk desk;
    const auto window = desk.shownWindow();
    QSignalSpy asked(window.get(), &LEDWindow::closeRequested);
    QVERIFY(window->close());
    QCOMPARE(asked.count(), 0);
    QVERIFY(!window->isVisible());
}

void LEDWindowTest::drawerGrowsTheWindow()
{
    Desk desk;
    const auto window = desk.shownWindow();
    const QSize before = window->size();
    const QSize board = window->boardView().size();
    window->setDrawerOpen(true);
    QCoreApplication::processEvents();
    QVERIFY(window->isDrawerOpen());
    QVERIFY(window->height() > before.height() + 48);
    QCOMPARE(window->boardView().size(), board);
    window->setDrawerOpen(true);
    window->setDrawerOpen(false);
    QCoreApplication::processEvents();
    QCOMPARE(window->size(), before);
    QCOMPARE(window->boardView().size(), board);
}

void LEDWindowTest::drawerStaysOnTheScreen()
{
    Desk desk;
    const auto window = desk.shownWindow();
    const QRect screen = window->screen()->availableGeometry();
    window->move(0, screen.bottom() - window->height() - 80); // less room than the panel wants
    QCoreApplication::processEvents();
    window->setDrawerOpen(true);
    QCoreApplication::processEvents();
    QVERIFY(window->geometry().bottom() <= screen.bottom());
    QVERIFY(window->height() >= 128 + 48);
}

void LEDWindowTest::keysDoWhatTheMouseDoes()
{
    Desk desk;
    const auto window = desk.shownWindow();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QSignalSpy article(window.get(), &LEDWindow::boardDoubleClicked);
    QSignalSpy closing(window.get(), &LEDWindow::closeRequested);
    QTest::keyClick(window.get(), Qt::Key_Return);
    QCOMPARE(article.count(), 1);
    QTest::keyClick(window.get(), Qt::Key_W, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(closing.count(), 2);
    QCOMPARE(window->boardView().contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(window->boardView().actions().size(), 2);
}

void LEDWindowTest::descriptionIsPlainText()
{
    Desk desk;
    const auto window = desk.shownWindow();
    const auto *drawer = window->findChild<QPlainTextEdit *>(u"ledDrawer"_s);
    window->setDrawerOpen(true);
    window->setDescription(u"<b>太字</b> &amp; <script>x</script>"_s);
    QCOMPARE(drawer->toPlainText(), u"<b>太字</b> &amp; <script>x</script>"_s);
    QVERIFY(drawer->isReadOnly());
    window->setDescription(QString());
    QCOMPARE(drawer->toPlainText(), QString());
}

void LEDWindowTest::placeIsRemembered_data()
{
    QTest::addColumn<bool>("drawerOpen");
    QTest::newRow("drawer shut") << false;
    QTest::newRow("drawer open") << true;
}

void LEDWindowTest::placeIsRemembered()
{
    QFETCH(bool, drawerOpen);
    Desk desk;
    QSize board;
    {
        const auto window = desk.shownWindow();
        window->resize(700, 180);
        window->setDrawerOpen(drawerOpen);
        QCoreApplication::processEvents();
        board = window->boardView().size();
        window->hide();
    }
    UserDefaults reread(desk.defaults.path());
    LEDWindow window(desk.board, reread);
    window.setDrawerOpen(drawerOpen); // the controller opens it again before the window shows
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.boardView().size(), board);
    QCOMPARE(board.width(), 700);
}

void LEDWindowTest::placeOfALargerScreenIsFittedIn()
{
    Desk desk;
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget elsewhere;
    elsewhere.setGeometry(
        QRect(screen.bottomRight() + QPoint(500, 500), screen.size() + QSize(400, 400)));
    desk.defaults.setData(elsewhere.saveGeometry(), u"LEDWindowGeometry"_s);
    const auto window = desk.shownWindow();
    QVERIFY(screen.contains(window->geometry()));
}

void LEDWindowTest::absurdStoredPlaceDoesNoHarm()
{
    Desk desk;
    desk.defaults.setData("no geometry at all", u"LEDWindowGeometry"_s);
    desk.defaults.setInteger(1000000, u"LEDWindowDrawerHeight"_s);
    desk.defaults.setBool(true, u"LEDWindowDrawerOpen"_s);
    const auto window = desk.shownWindow();
    QCOMPARE(window->boardView().fieldRect().size(), QSizeF(768, 96));
}

void LEDWindowTest::aDragIsStoredOnce()
{
    Desk desk;
    const auto window = desk.shownWindow();
    for (int width = 700; width < 720; ++width)
        window->resize(width, 200);
    QVERIFY(!desk.defaults.hasKey(u"LEDWindowGeometry"_s));
    QTRY_VERIFY_WITH_TIMEOUT(desk.defaults.hasKey(u"LEDWindowGeometry"_s), 3000);
    UserDefaults reread(desk.defaults.path());
    QVERIFY(reread.hasKey(u"LEDWindowGeometry"_s));
}

void LEDWindowTest::boardWithoutModulesIsAnEmptyHousing()
{
    Desk desk;
    desk.settings.modules = 0;
    const auto window = desk.shownWindow();
    QVERIFY(window->boardView().fieldRect().width() == 0);
    QVERIFY(!window->boardView().grab().isNull());
    QVERIFY(window->width() > 100);
}

QTEST_MAIN(LEDWindowTest)
#include "ledwindow_test.moc"
