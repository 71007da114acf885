// SPDX-License-Identifier: MIT
#include "WindowedProgram.h"
#include "messages/views/RSSTextField.h"
#include "platform/Localization.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto feedA = u"http://town/a"_s;

} // namespace

/// The tables in the main window, above all that of the messages: copying, sizes, opening an
/// article, and what a row shows.
class TableCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copy_isOfferedForASelectedRow_data();
    void copy_isOfferedForASelectedRow();
    void copyKey_putsTheRowOnTheClipboard_data();
    void copyKey_putsTheRowOnTheClipboard();
    void copyKey_writesAnAbsentDescription();
    void copyKeyInTheDrawer_copiesItsText();
    void sizeKeys_changeTheTableOfTheTab_data();
    void sizeKeys_changeTheTableOfTheTab();
    void sizes_haveNoBounds();
    void sizeKeys_doNothingOnOtherTabs();
    void description_isPlainTextWithoutDirectionMarks();
    void doubleClick_opensTheArticle();
    void altDoubleClick_showsFromThatRow();
    void returnKeys_doWhatDoubleClicksDo();
    void refusedLink_raisesTheAlert();
    void numberField_opensTheArticleOnDisplay();
    void displayedRow_carriesTheMark();
    void newMessages_areBold();
    void firstSeenTimes_areSavedAfterDrawing();
    void columnWidths_areStored();
    void emptyTable_saysWhatToDo();
};

void TableCommandsTest::copy_isOfferedForASelectedRow_data()
{
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QString>("table");
    QTest::newRow("feeds") << tab::list << u"rssListView"_s;
    QTest::newRow("messages") << tab::message << u"msgListView"_s;
}

void TableCommandsTest::copy_isOfferedForASelectedRow()
{
    QFETCH(QString, tab);
    QFETCH(QString, table);
    WindowedProgram p;
    p.addFeed(feedA, {u"一"_s, u"二"_s});
    p.launchOnTab(tab);
    QVERIFY(!p.item(u"actCopyRow"_s)->isEnabled());
    p.selectRow(p.find<QTableView>(table), 0);
    QVERIFY(p.item(u"actCopyRow"_s)->isEnabled());
    QCOMPARE(p.item(u"actDisplayFromSelection"_s)->isEnabled(), tab == tab::message);
    p.mainWindow.selectTab(tab == tab::list ? tab::message : tab::list); // nothing selected there
    QVERIFY(!p.item(u"actCopyRow"_s)->isEnabled());
}

void TableCommandsTest::copyKey_putsTheRowOnTheClipboard_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("copied");
    QTest::newRow("all parts") << u"<title>見出し</title><description>本文</description>"
                                  "<pubDate>Sat, 21 Nov 2026 09:30:00 +0900</pubDate>"_s
                               << u"11/21 09:30 見出し＊＊＊本文"_s;
    QTest::newRow("no date") << u"<title>見出し</title><description>本文</description>"_s
                             << u"日時不明 見出し＊＊＊本文"_s;
}

void TableCommandsTest::copyKey_putsTheRowOnTheClipboard()
{
    QFETCH(QString, item);
    QFETCH(QString, copied);
    WindowedProgram p;
    p.addFeed(feedA, {});
    p.loader.serveDocument(feedA, u"<rss version='2.0'><channel><title>町</title><item>"_s + item +
                                      u"<link>http://town/x</link></item></channel></rss>"_s);
    p.launchOnTab(tab::message);
    p.selectRow(p.find<QTableView>(u"msgListView"_s), 0);
    p.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), copied);
}

void TableCommandsTest::copyKey_writesAnAbsentDescription()
{
    WindowedProgram p;
    p.launchOnTab(tab::message, false);
    Message message;
    message.headline = u"見出し"_s;
    p.msgList.randomAddObject(message);
    p.settle();
    p.selectRow(p.find<QTableView>(u"msgListView"_s), 0);
    p.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"日時不明 見出し(null)"_s);
}

void TableCommandsTest::copyKeyInTheDrawer_copiesItsText()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launchOnTab(tab::message);
    p.selectRow(p.find<QTableView>(u"msgListView"_s), 0);
    p.control.actDrawerButton(); // shut: the description belongs to the main window
    p.click(u"descriptionButton"_s);
    auto *drawer = p.find<QPlainTextEdit>(u"descriptionDrawer"_s);
    drawer->setPlainText(u"詳しい本文"_s);
    drawer->setFocus();
    QTest::keyClick(drawer, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(drawer, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"詳しい本文"_s);
}

void TableCommandsTest::sizeKeys_changeTheTableOfTheTab_data()
{
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("heightKey");
    QTest::addColumn<QString>("sizeKey");
    QTest::newRow("feeds") << tab::list << u"rssListView"_s << u"RSSRowHeight"_s
                           << u"RSSFontSize"_s;
    QTest::newRow("messages") << tab::message << u"msgListView"_s << u"MSGRowHeight"_s
                              << u"MSGFontSize"_s;
}

void TableCommandsTest::sizeKeys_changeTheTableOfTheTab()
{
    QFETCH(QString, tab);
    QFETCH(QString, table);
    QFETCH(QString, heightKey);
    QFETCH(QString, sizeKey);
    WindowedProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launchOnTab(tab);
    auto *view = p.find<QTableView>(table);
    const auto compare = [&](double height, double size) {
        QCOMPARE(p.defaults.floatForKey(heightKey), height);
        QCOMPARE(p.defaults.floatForKey(sizeKey), size);
        QCOMPARE(view->rowHeight(0), int(height));
        QCOMPARE(view->font().pixelSize(), int(size));
    };
    p.press(Qt::Key_Plus, Qt::ControlModifier);
    compare(21, 14);
    p.press(Qt::Key_Plus, Qt::ControlModifier);
    compare(25, 16);
    p.press(Qt::Key_Minus, Qt::ControlModifier);
    compare(21, 14);
    p.press(Qt::Key_0, Qt::ControlModifier);
    compare(17, 12);
}

// What is stored goes on below zero; only what is drawn has a least size.
void TableCommandsTest::sizes_haveNoBounds()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"一"_s});
    p.launchOnTab(tab::message);
    for (int times = 0; times < 7; ++times)
        p.press(Qt::Key_Minus, Qt::ControlModifier);
    QCOMPARE(p.defaults.floatForKey(u"MSGRowHeight"_s), -11.0);
    QCOMPARE(p.defaults.floatForKey(u"MSGFontSize"_s), -2.0);
    QCOMPARE(p.find<QTableView>(u"msgListView"_s)->rowHeight(0), 1);
    for (int times = 0; times < 40; ++times)
        p.item(u"actSizeBigger"_s)->trigger();
    QCOMPARE(p.defaults.floatForKey(u"MSGRowHeight"_s), 149.0);
    QCOMPARE(p.find<QTableView>(u"msgListView"_s)->rowHeight(0), 149);
}

void TableCommandsTest::sizeKeys_doNothingOnOtherTabs()
{
    WindowedProgram p;
    p.mainWindow.addTab(new QWidget, tab::setup, u"Setup"_s, u"MenuShowTabSetup"_s);
    p.launchOnTab(tab::setup, false);
    p.press(Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(p.defaults.floatForKey(u"MSGRowHeight"_s), 17.0);
    QCOMPARE(p.defaults.floatForKey(u"RSSRowHeight"_s), 17.0);
    QVERIFY(!p.item(u"actCopyRow"_s)->isEnabled());
}

void TableCommandsTest::description_isPlainTextWithoutDirectionMarks()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"<![CDATA[a\u202Eb &lt;b&gt;]]>"_s});
    p.launchOnTab(tab::message);
    p.control.startDispRSS();
    p.sleep(500ms);
    p.click(u"descriptionButton"_s);
    const QString text = p.find<QPlainTextEdit>(u"ledDrawer"_s)->toPlainText();
    QVERIFY2(text == u"ab"_s, qPrintable(text));
    p.control.actDrawerButton(); // shut: the description belongs to the main window
    QCOMPARE(p.find<QPlainTextEdit>(u"descriptionDrawer"_s)->toPlainText(), text);
}

void TableCommandsTest::doubleClick_opensTheArticle()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s, u"2"_s, u"3"_s});
    p.launchOnTab(tab::message);
    auto *table = p.find<QTableView>(u"msgListView"_s);
    p.selectRow(table, 1);
    QVERIFY(p.opener.opened.isEmpty());
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, WindowedProgram::cell(table, 1));
    QCOMPARE(p.opener.opened, QStringList{u"http://town/2"_s});
    QVERIFY(!p.control.isDisplayActive());
}

void TableCommandsTest::altDoubleClick_showsFromThatRow()
{
    WindowedProgram p;
    QStringList headlines;
    for (int number = 1; number <= 8; ++number)
        headlines << QString::number(number);
    p.addFeed(feedA, headlines);
    p.launchOnTab(tab::message);
    p.control.startDispRSS();
    p.sleep(500ms);
    QVERIFY(p.screen.takeShown().constFirst().startsWith(u"1"_s));
    auto *table = p.find<QTableView>(u"msgListView"_s);
    p.selectRow(table, 5);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::AltModifier,
                       WindowedProgram::cell(table, 5));
    p.sleep(500ms);
    QCOMPARE(p.msgList.messageIndex(), 5);
    QVERIFY(p.screen.takeShown().constFirst().startsWith(u"6"_s));
    QVERIFY(p.opener.opened.isEmpty());
}

void TableCommandsTest::returnKeys_doWhatDoubleClicksDo()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s, u"2"_s, u"3"_s});
    p.launchOnTab(tab::message);
    auto *table = p.find<QTableView>(u"msgListView"_s);
    p.selectRow(table, 2);
    QTest::keyClick(table, Qt::Key_Return);
    QCOMPARE(p.opener.opened, QStringList{u"http://town/3"_s});
    p.press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(p.opener.opened.size(), 2);
    p.press(Qt::Key_Return, Qt::AltModifier);
    p.sleep(500ms);
    QVERIFY(p.control.isDisplayActive());
    QCOMPARE(p.msgList.messageIndex(), 2);
}

void TableCommandsTest::refusedLink_raisesTheAlert()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::message);
    p.opener.takes = false;
    auto *table = p.find<QTableView>(u"msgListView"_s);
    p.selectRow(table, 0);
    QTest::keyClick(table, Qt::Key_Return);
    auto *alert = p.find<QMessageBox>(u"alert"_s);
    QCOMPARE(alert->text(), localized(u"OpenURLError"_s));
    QCOMPARE(alert->informativeText(), localized(u"OpenURLErrInfo"_s));
    QCOMPARE(alert->buttons().constFirst()->text(), localized(u"Understand"_s));
    QTest::keyClick(alert, Qt::Key_Return);
    QTRY_COMPARE(p.mainWindow.findChildren<QMessageBox *>().size(), 0);
}

void TableCommandsTest::numberField_opensTheArticleOnDisplay()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s, u"2"_s});
    p.launchOnTab(tab::message);
    auto *field = p.find<RSSTextField>(u"messageNumberText"_s);
    QTest::mouseDClick(field, Qt::LeftButton);
    QVERIFY(p.opener.opened.isEmpty()); // nothing is on display
    p.control.startDispRSS();
    p.sleep(500ms);
    QCOMPARE(field->text(), u"1/2"_s);
    QTest::mouseClick(field, Qt::LeftButton);
    QVERIFY(p.opener.opened.isEmpty());
    QTest::mouseDClick(field, Qt::LeftButton);
    QCOMPARE(p.opener.opened, QStringList{u"http://town/1"_s});
}

void TableCommandsTest::displayedRow_carriesTheMark()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s, u"2"_s});
    p.launchOnTab(tab::message);
    const auto *model = p.find<QTableView>(u"msgListView"_s)->model();
    const auto marks = [model] {
        return QStringList{model->index(0, 0).data().toString(),
                           model->index(1, 0).data().toString()};
    };
    QCOMPARE(marks(), (QStringList{u"1"_s, u"2"_s}));
    p.control.startDispRSS();
    p.sleep(500ms);
    QCOMPARE(marks(), (QStringList{u"▶"_s, u"2"_s}));
    p.sleep(2s);
    QCOMPARE(marks(), (QStringList{u"1"_s, u"▶"_s}));
    p.click(u"stopDispButton"_s);
    QCOMPARE(marks(), (QStringList{u"1"_s, u"2"_s}));
}

void TableCommandsTest::newMessages_areBold()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::message);
    const auto *table = p.find<QTableView>(u"msgListView"_s);
    QVERIFY(table->model()->index(0, 3).data(Qt::FontRole).value<QFont>().bold());
    p.control.startReadRSS();
    p.settle();
    QVERIFY(!table->model()->index(0, 3).data(Qt::FontRole).value<QFont>().bold());
}

void TableCommandsTest::firstSeenTimes_areSavedAfterDrawing()
{
    WindowedProgram p;
    p.launchOnTab(tab::message, false);
    Message message;
    message.headline = u"日時のない見出し"_s;
    message.date = QString();
    p.msgList.randomAddObject(message);
    p.mainThread.drain();
    p.find(u"msgListView"_s)->grab(); // drawn, in this turn of the event loop
    const auto stored = [&p] {
        const UserDefaults store(p.defaults.path());
        const auto past = store.arrayForKey(u"NoDateMessages"_s);
        return past && past->size() == 1;
    };
    QVERIFY(!stored());
    QTRY_VERIFY(stored());
    const auto *model = p.find<QTableView>(u"msgListView"_s)->model();
    QVERIFY(model->index(0, 1).data().toString().startsWith(u'*'));
}

void TableCommandsTest::columnWidths_areStored()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::message);
    auto *header = p.find<QTableView>(u"msgListView"_s)->horizontalHeader();
    const QPoint edge(header->sectionViewportPosition(1) - 1, header->height() / 2);
    const int width = header->sectionSize(0);
    QTest::mousePress(header->viewport(), Qt::LeftButton, {}, edge);
    QTest::mouseMove(header->viewport(), edge + QPoint(10, 0));
    QTest::mouseMove(header->viewport(), edge + QPoint(30, 0));
    QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, edge + QPoint(30, 0));
    QTRY_COMPARE(p.msgList.viewSettings().columnWidths().size(), std::size_t(4));
    QCOMPARE(p.msgList.viewSettings().columnWidths().front(), double(width + 30));
}

void TableCommandsTest::emptyTable_saysWhatToDo()
{
    WindowedProgram p;
    p.addFeed(feedA, {u"1"_s});
    p.launchOnTab(tab::message, false);
    auto *text = p.find<QLabel>(u"noMessagesText"_s);
    QVERIFY(text->isVisible());
    QCOMPARE(text->text(), localized(u"NoMessagesYet"_s));
    p.press(Qt::Key_F5); // as it says
    QVERIFY(!text->isVisible());
}

QTEST_MAIN(TableCommandsTest)
#include "tablecommands_test.moc"
