// SPDX-License-Identifier: MIT
#include "WindowedProgram.h"
#include "platform/Localization.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto feedA = u"http://town/a"_s;

void closeAsUser(QWidget &window)
{
    QCloseEvent event;
    QCoreApplication::sendEvent(&window, &event);
}

} // namespace

/// The main window as a person uses it: keys, clicks, menus.
class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void menuHasEveryCommand_data();
    void menuHasEveryCommand();
    void mnemonicsAreUniqueInTheWindow();
    void tabKeys_selectTabs();
    void tabKeys_moveTheFocusIntoTheTab();
    void descriptionButton_restsOffTheMessageTab();
    void descriptionItem_carriesWhatItWillDo();
    void ledWindow_opensAndClosesDuringADisplay();
    void ledItem_isEnabledWhileTheWindowIsShut();
    void ledDrawer_takesTheDescriptionOver();
    void readButton_readsAndShowsTheMessages();
    void startAndStopButtons_followTheState();
    void fontItems_chooseTheFont();
    void boarderItems_chooseTheThreshold();
    void textMenus_restWithoutUse_data();
    void textMenus_restWithoutUse();
    void statusLine_saysThatTheStoreCannotBeSaved();
    void statusLine_countsFailedFeeds();
    void statusLine_forgetsFailuresOfDeletedFeeds();
    void statusLine_saysThatThereIsNothingToRead();
    void statusLine_saysThatTheInformationFileIsNotRead();
    void closing_hidesWhereThereIsATray();
    void closing_quitsWhereThereIsNone();
    void secondLaunch_bringsUpAHiddenWindow();
    void placeOfALargerScreen_isFitted();
    void startupWindow_isGoneAfterTheLaunch();
    void about_opensAndCloses();
    void iconsFollowTheTheme();
};

void MainWindowTest::menuHasEveryCommand_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QKeySequence>("keys");
    const auto row = [](const char *name, const QString &text, const QKeySequence &keys = {}) {
        QTest::newRow(name) << text << keys;
    };
    row("actGetRSS", u"RSS を読み込む(&R)"_s, Qt::Key_F5);
    row("actLoadURL", u"RSS リストの読み込み(&I)…"_s);
    row("actSaveURL", u"RSS リストの書き出し(&E)…"_s);
    row("actQuit", u"QoVelmorRSS を終了(&Q)"_s, Qt::CTRL | Qt::Key_Q);
    row("actCopyRow", u"行をコピー(&C)"_s, Qt::CTRL | Qt::Key_C);
    row("actPreferences", u"設定(&P)…"_s, Qt::CTRL | Qt::Key_Comma);
    row("actShowTab_list", u"RSSリスト(&1)"_s, Qt::CTRL | Qt::Key_1);
    row("actShowTab_message", u"メッセージ(&2)"_s, Qt::CTRL | Qt::Key_2);
    row("actSizeBigger", u"文字を大きく(&B)"_s, Qt::CTRL | Qt::Key_Plus);
    row("actSizeSmaller", u"文字を小さく(&S)"_s, Qt::CTRL | Qt::Key_Minus);
    row("actSizeOriginal", u"元の大きさ(&O)"_s, Qt::CTRL | Qt::Key_0);
    row("actDescriptionDrawer", u"詳細記事画面を開く"_s, Qt::CTRL | Qt::Key_I);
    row("actStartDisp", u"表示開始(&S)"_s, Qt::CTRL | Qt::Key_D);
    row("actStopDisp", u"表示停止(&T)"_s, Qt::CTRL | Qt::Key_Period);
    row("actOpenSelectedMessage", u"選択した記事を開く(&A)"_s, Qt::CTRL | Qt::Key_Return);
    row("actDisplayFromSelection", u"選択した行から表示(&R)"_s, Qt::ALT | Qt::Key_Return);
    row("actOpenMainWindow", u"メイン画面を開く(&M)"_s);
    row("actOpenLEDWindow", u"LED 画面を開く(&L)"_s, Qt::CTRL | Qt::Key_L);
    row("actGuide", u"使い方(&G)"_s, Qt::Key_F1);
    row("actAbout", u"QoVelmorRSS について(&A)"_s);
}

void MainWindowTest::menuHasEveryCommand()
{
    QFETCH(QString, text);
    QFETCH(QKeySequence, keys);
    WindowedProgram p;
    p.launch();
    QAction *item = p.item(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(item);
    QCOMPARE(item->text(), text);
    QCOMPARE(item->shortcut(), keys);
    int places = 0;
    for (const QAction *top : p.mainWindow.menuBar()->actions())
        places += int(top->menu()->actions().count(item));
    QCOMPARE(places, 1);
}

void MainWindowTest::mnemonicsAreUniqueInTheWindow()
{
    WindowedProgram p;
    p.launch();
    QStringList keys;
    const auto add = [&keys](const QString &text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty())
            keys << key.toString();
    };
    for (const QAction *top : p.mainWindow.menuBar()->actions())
        add(top->text());
    for (const auto *button : p.mainWindow.findChildren<QAbstractButton *>())
        add(button->text());
    QVERIFY(keys.size() >= 11);
    QStringList once = keys;
    once.removeDuplicates();
    QCOMPARE(keys, once);
}

void MainWindowTest::tabKeys_selectTabs()
{
    WindowedProgram p;
    p.mainWindow.addTab(new QWidget, tab::setup, u"Setup"_s, u"MenuShowTabSetup"_s);
    p.launchOnTab(tab::list, false);
    p.press(Qt::Key_2, Qt::ControlModifier);
    QCOMPARE(p.mainWindow.selectedTab(), tab::message);
    p.press(Qt::Key_1, Qt::ControlModifier);
    QCOMPARE(p.mainWindow.selectedTab(), tab::list);
    p.press(Qt::Key_Comma, Qt::ControlModifier); // the settings
    QCOMPARE(p.mainWindow.selectedTab(), tab::setup);
}

void MainWindowTest::tabKeys_moveTheFocusIntoTheTab()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launchOnTab(tab::list);
    QCOMPARE(p.mainWindow.focusWidget(), p.find(u"rssListView"_s)); // from the start
    p.find(u"getRSSButton"_s)->setFocus();
    p.press(Qt::Key_2, Qt::ControlModifier);
    QCOMPARE(p.mainWindow.focusWidget(), p.find(u"msgListView"_s));
    p.press(Qt::Key_1, Qt::ControlModifier);
    QCOMPARE(p.mainWindow.focusWidget(), p.find(u"rssListView"_s));
    p.find(u"createButton"_s)->setFocus();
    p.press(Qt::Key_1, Qt::ControlModifier); // is there already: the focus stays
    QCOMPARE(p.mainWindow.focusWidget(), p.find(u"createButton"_s));
}

void MainWindowTest::descriptionButton_restsOffTheMessageTab()
{
    WindowedProgram p(true);
    p.launchOnTab(tab::message);
    p.click(u"descriptionButton"_s);
    auto *button = p.find<QToolButton>(u"descriptionButton"_s);
    auto *drawer = p.find(u"descriptionDrawer"_s);
    QVERIFY(button->isChecked() && drawer->isVisible());
    QCOMPARE(p.defaults.integerForKey(u"DescButtonState"_s), 1);
    p.mainWindow.selectTab(tab::list);
    QVERIFY(!button->isEnabled() && drawer->isHidden());
    p.mainWindow.selectTab(tab::message);
    QVERIFY(button->isEnabled() && drawer->isVisible());
    p.click(u"descriptionButton"_s);
    QVERIFY(!button->isChecked() && drawer->isHidden());
    QCOMPARE(p.defaults.integerForKey(u"DescButtonState"_s), 0);
}

void MainWindowTest::descriptionItem_carriesWhatItWillDo()
{
    WindowedProgram p(true);
    p.launchOnTab(tab::message);
    QAction *item = p.item(u"actDescriptionDrawer"_s);
    QCOMPARE(item->text(), u"詳細記事画面を開く"_s);
    p.press(Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(item->text(), u"詳細記事画面を閉じる"_s);
    QVERIFY(item->isEnabled());
    p.press(Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(item->text(), u"詳細記事画面を開く"_s);
    p.mainWindow.selectTab(tab::list);
    QVERIFY(item->isEnabled()); // always, unlike the button
}

void MainWindowTest::ledWindow_opensAndClosesDuringADisplay()
{
    WindowedProgram p(true);
    p.addFeed(feedA, {u"一"_s, u"二"_s});
    p.launchOnTab(tab::message);
    p.click(u"startDispButton"_s);
    p.sleep(500ms);
    QVERIFY(!p.ledWindow.isVisible());
    p.click(u"drawerButton"_s);
    QVERIFY(p.ledWindow.isVisible());
    QVERIFY(p.find<QToolButton>(u"drawerButton"_s)->isChecked());
    QVERIFY(p.control.isDisplayActive() && !p.control.isOutputLED());
    QCOMPARE(p.defaults.integerForKey(u"LEDButtonState"_s), 1);
    p.click(u"drawerButton"_s);
    QVERIFY(!p.ledWindow.isVisible());
    QVERIFY(!p.find<QToolButton>(u"drawerButton"_s)->isChecked());
    QVERIFY(p.control.isDisplayActive() && p.control.isOutputLED());
    QCOMPARE(p.defaults.integerForKey(u"LEDButtonState"_s), 0);
}

void MainWindowTest::ledItem_isEnabledWhileTheWindowIsShut()
{
    WindowedProgram p(true);
    p.launchOnTab(tab::list);
    QVERIFY(p.item(u"actOpenLEDWindow"_s)->isEnabled());
    QVERIFY(!p.item(u"actOpenMainWindow"_s)->isEnabled());
    p.press(Qt::Key_L, Qt::ControlModifier);
    QVERIFY(p.ledWindow.isVisible());
    QVERIFY(!p.item(u"actOpenLEDWindow"_s)->isEnabled());
    p.mainWindow.hideMainWindow();
    QVERIFY(p.item(u"actOpenMainWindow"_s)->isEnabled());
    p.item(u"actOpenMainWindow"_s)->trigger();
    QVERIFY(p.mainWindow.isVisible());
}

void MainWindowTest::ledDrawer_takesTheDescriptionOver()
{
    WindowedProgram p(true);
    p.launchOnTab(tab::message);
    p.click(u"descriptionButton"_s);
    p.click(u"drawerButton"_s);
    QVERIFY(p.find(u"descriptionDrawer"_s)->isHidden());
    QVERIFY(p.find(u"ledDrawer"_s)->isVisible());
    p.click(u"descriptionButton"_s); // the one that is open is meant
    QVERIFY(p.find(u"ledDrawer"_s)->isHidden());
    QVERIFY(!p.find<QToolButton>(u"descriptionButton"_s)->isChecked());
    p.click(u"descriptionButton"_s);
    p.click(u"drawerButton"_s);
    QVERIFY(p.find(u"descriptionDrawer"_s)->isVisible());
}

void MainWindowTest::readButton_readsAndShowsTheMessages()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s, u"2"_s});
    p.launchOnTab(tab::list, false);
    QStringList shown;
    p.loader.onLoad = [&] {
        p.mainThread.drain();
        shown << p.find<QLabel>(u"statusText"_s)->text();
    };
    p.click(u"getRSSButton"_s);
    QCOMPARE(shown, QStringList{feedA}); // what is being read stands in the status line
    QCOMPARE(p.mainWindow.selectedTab(), tab::message);
    QCOMPARE(p.find<QTableView>(u"msgListView"_s)->model()->rowCount(), 2);
}

void MainWindowTest::startAndStopButtons_followTheState()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s, u"2"_s});
    p.launchOnTab(tab::message, false);
    const auto *start = p.find<QPushButton>(u"startDispButton"_s);
    const auto *stop = p.find<QPushButton>(u"stopDispButton"_s);
    QVERIFY(!start->isEnabled() && !stop->isEnabled()); // nothing to show
    p.click(u"getRSSButton"_s);
    QVERIFY(start->isEnabled() && !stop->isEnabled());
    p.click(u"startDispButton"_s);
    p.sleep(100ms);
    QVERIFY(!start->isEnabled() && stop->isEnabled());
    p.click(u"stopDispButton"_s);
    QVERIFY(start->isEnabled() && !stop->isEnabled());
    p.press(Qt::Key_D, Qt::ControlModifier);
    p.sleep(100ms);
    QVERIFY(p.control.isDisplayActive());
    p.press(Qt::Key_Period, Qt::ControlModifier);
    QVERIFY(!p.control.isDisplayActive());
}

void MainWindowTest::fontItems_chooseTheFont()
{
    WindowedProgram p;
    p.launchOnTab(tab::message, false);
    const auto items = p.find<QMenu>(u"fontMenu"_s)->actions();
    QVERIFY2(items.size() >= 2, "the package list brings more than two fonts with kanji");
    for (QAction *item : {items.at(1), items.at(0)}) {
        item->trigger();
        QCOMPARE(p.defaults.stringForKey(u"LEDViewFontName"_s), item->data().toString());
        QVERIFY(item->isChecked());
    }
    QVERIFY(!items.at(1)->isChecked());
}

void MainWindowTest::boarderItems_chooseTheThreshold()
{
    WindowedProgram p(true);
    p.setup.setUseBitmapFont(false);
    p.launchOnTab(tab::message, false);
    const auto items = p.find<QMenu>(u"boarderMenu"_s)->actions();
    QCOMPARE(items.size(), 31);
    QCOMPARE(items.first()->text(), u"8"_s);
    QCOMPARE(items.last()->text(), u"248"_s);
    QVERIFY(items.at(8)->isChecked()); // 72, with which everybody starts
    Q_EMIT p.find<QMenu>(u"boarderMenu"_s)->aboutToShow();
    items.at(30)->trigger();
    QCOMPARE(p.defaults.integerForKey(u"FontBoarderValue"_s), 248);
    QVERIFY(items.at(30)->isChecked() && !items.at(8)->isChecked());
}

void MainWindowTest::textMenus_restWithoutUse_data()
{
    QTest::addColumn<bool>("withBoard");
    QTest::addColumn<bool>("bitmapFont");
    QTest::addColumn<bool>("fonts");
    QTest::addColumn<bool>("boarders");
    QTest::newRow("board, bitmap font") << true << true << false << false;
    QTest::newRow("board, outline font") << true << false << true << true;
    QTest::newRow("no board, bitmap font") << false << true << true << false;
    QTest::newRow("no board, outline font") << false << false << true << false;
}

void MainWindowTest::textMenus_restWithoutUse()
{
    QFETCH(bool, withBoard);
    QFETCH(bool, bitmapFont);
    QFETCH(bool, fonts);
    QFETCH(bool, boarders);
    WindowedProgram p(withBoard);
    p.launchOnTab(tab::message, false);
    p.setup.setUseBitmapFont(bitmapFont);
    for (const auto &[name, enabled] :
         {std::pair{u"fontMenu"_s, fonts}, std::pair{u"boarderMenu"_s, boarders}}) {
        auto *menu = p.find<QMenu>(name);
        Q_EMIT menu->aboutToShow();
        for (const QAction *item : menu->actions())
            QCOMPARE(item->isEnabled(), enabled);
    }
}

void MainWindowTest::statusLine_saysThatTheStoreCannotBeSaved()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::message, false);
    const auto *status = p.find<QLabel>(u"statusText"_s);
    QCOMPARE(status->text(), QString());
    QVERIFY(!p.find(u"statusWarning"_s)->isVisible());
    QVERIFY(QDir(p.folder.path()).removeRecursively());
    QFile inTheWay(p.folder.path());
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    p.press(Qt::Key_Plus, Qt::ControlModifier);
    QVERIFY(!p.defaults.lastError().isEmpty());
    QTRY_COMPARE(status->text(), p.defaults.lastError());
    QVERIFY(p.find(u"statusWarning"_s)->isVisible());
    QVERIFY(inTheWay.remove());
    p.press(Qt::Key_Plus, Qt::ControlModifier);
    QTRY_COMPARE(status->text(), QString()); // mended
}

void MainWindowTest::statusLine_countsFailedFeeds()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.addFeed(u"http://town/b"_s, {});
    p.loader.remove(u"http://town/b"_s);
    p.launchOnTab(tab::message);
    QVERIFY(p.find<QLabel>(u"statusText"_s)->text().startsWith(u"1 件の RSS"_s));
    p.loader.serve(u"http://town/b"_s, {u"2"_s});
    p.press(Qt::Key_F5);
    QCOMPARE(p.find<QLabel>(u"statusText"_s)->text(), QString());
}

void MainWindowTest::statusLine_forgetsFailuresOfDeletedFeeds()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.addFeed(u"http://town/b"_s, {});
    p.loader.remove(u"http://town/b"_s);
    p.launchOnTab(tab::list);
    const auto *status = p.find<QLabel>(u"statusText"_s);
    QVERIFY(status->text().startsWith(u"1 件の RSS"_s));
    p.rssList.removeReader(p.rssList.readerCount() - 1);
    QTRY_COMPARE(status->text(), QString());
}

void MainWindowTest::statusLine_saysThatThereIsNothingToRead()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::list);
    p.rssList.shouldEditTableColumn(0); // switched off
    p.press(Qt::Key_F5);
    QCOMPARE(p.find<QLabel>(u"statusText"_s)->text(), localized(u"NoFeedsToRead"_s));
    QVERIFY(!p.find(u"progressIndi"_s)->isVisible());
}

void MainWindowTest::statusLine_saysThatTheInformationFileIsNotRead()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    const QString documents = p.folder.filePath(u"docs"_s);
    QVERIFY(QDir().mkpath(documents));
    QFile file(documents + u"/Information.txt"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(u"本日休業"_s.toUtf8());
    file.close();
    p.defaults.setBool(true, u"DispInfoMessages"_s);
    p.launchOnTab(tab::message); // the read at launch has other things to say first
    const auto *status = p.find<QLabel>(u"statusText"_s);
    QCOMPARE(status->text(), localized(u"InformationFileError"_s));
    QVERIFY(p.find(u"statusWarning"_s)->isVisible());
    p.msgList.setDispInfo(false);
    QVERIFY(file.remove());
    p.msgList.setDispInfo(true); // begins with the program's own text
    QTRY_COMPARE(status->text(), QString());
}

void MainWindowTest::closing_hidesWhereThereIsATray()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::message);
    p.control.startDispRSS();
    p.mainWindow.setHidesWhenClosed([] { return true; });
    closeAsUser(p.mainWindow);
    QVERIFY(!p.mainWindow.isVisible());
    p.sleep(500ms);
    QVERIFY(p.control.isDisplayActive()); // the sign goes on
    p.control.applicationShouldHandleReopen();
    QVERIFY(p.mainWindow.isVisible());
    p.control.applicationShouldHandleReopen();
    QVERIFY(!p.mainWindow.isVisible());
}

void MainWindowTest::closing_quitsWhereThereIsNone()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::message);
    p.control.startDispRSS();
    p.mainWindow.setHidesWhenClosed([] { return false; });
    closeAsUser(p.mainWindow);
    QVERIFY(!p.control.isDisplayActive());
    QVERIFY(p.clock.sleepsEnded());
    QVERIFY(!p.mainWindow.isVisible() && !p.ledWindow.isVisible());
}

void MainWindowTest::secondLaunch_bringsUpAHiddenWindow()
{
    WindowedProgram p;
    p.launchOnTab(tab::message, false);
    p.mainWindow.showMinimized();
    p.control.secondLaunch();
    QVERIFY(p.mainWindow.isVisible() && !p.mainWindow.isMinimized());
    p.mainWindow.hide();
    p.control.secondLaunch();
    QVERIFY(p.mainWindow.isVisible());
}

void MainWindowTest::placeOfALargerScreen_isFitted()
{
    WindowedProgram p;
    QWidget before;
    before.setGeometry(300, 200, 3000, 2500);
    p.defaults.setData(before.saveGeometry(), u"MainWindowGeometry"_s);
    const MainWindow again({p.control, p.msgList, p.setup, p.defaults}, new FeedListView(p.rssList),
                           new MessageListView(p.msgList), p.ledWindow);
    const QRect screen = again.screen()->availableGeometry();
    QVERIFY(screen.contains(again.geometry()));
    QVERIFY(again.height() > screen.height() / 2);
}

void MainWindowTest::startupWindow_isGoneAfterTheLaunch()
{
    WindowedProgram p;
    p.mainWindow.showStartupWindow();
    auto *startup = p.find(u"startupWindow"_s);
    QVERIFY(startup->isVisible());
    const QPoint middle = startup->screen()->availableGeometry().center();
    QVERIFY((startup->geometry().center() - middle).manhattanLength() <= 8);
    p.mainWindow.closeStartupWindow();
    QVERIFY(p.mainWindow.isHidden());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QWidget *window : QApplication::topLevelWidgets())
        QVERIFY(window->objectName() != u"startupWindow"_s);
}

void MainWindowTest::about_opensAndCloses()
{
    WindowedProgram p;
    p.launchOnTab(tab::list, false);
    p.item(u"actAbout"_s)->trigger();
    auto *about = p.find<QMessageBox>(u"aboutDialog"_s);
    QVERIFY(about->isVisible());
    QVERIFY(about->text().startsWith(u"QoVelmorRSS"_s));
    QTest::keyClick(about, Qt::Key_Return);
    QTRY_COMPARE(p.mainWindow.findChildren<QMessageBox *>().size(), 0);
}

void MainWindowTest::iconsFollowTheTheme()
{
    WindowedProgram p;
    p.launch();
    const auto *button = p.find<QPushButton>(u"stopDispButton"_s);
    const auto middle = [button](QIcon::Mode mode) {
        return button->icon().pixmap(QSize(16, 16), 1.0, mode).toImage().pixelColor(8, 8);
    };
    QPalette palette = p.mainWindow.palette();
    QCOMPARE(middle(QIcon::Normal), palette.color(QPalette::Active, QPalette::ButtonText));
    palette.setColor(QPalette::ButtonText, Qt::white); // a dark theme
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
    p.mainWindow.setPalette(palette);
    QCOMPARE(middle(QIcon::Normal), QColor(Qt::white));
    QCOMPARE(middle(QIcon::Disabled), QColor(Qt::gray));
}

QTEST_MAIN(MainWindowTest)
#include "mainwindow_test.moc"
