// SPDX-License-Identifier: MIT
#include "SettingsTab.h"
#include "platform/Localization.h"
#include "settings/views/BrowserPanel.h"

#include <QAbstractItemView>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// What opens from the settings tab: alerts, panels, the log; and the menus of ports and sounds.
class SettingsPanelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The port.
    void ports_followPluggedDevices();
    void ports_openOneStaysChosenByName();
    void ports_withoutABoard_areTheSystems();
    void ports_problemStandsBesideThem();
    void ports_oneThatOpens_isForThisRun();
    void ports_none();
    void comTest_alerts_data();
    void comTest_alerts();

    // Sounds.
    void sounds_areHeardOnceWhenChosen_data();
    void sounds_areHeardOnceWhenChosen();
    void sounds_menusFollowTheirSwitches();
    void sounds_unknownName_isShown();

    // Colour, log, browser.
    void color_isTakenFromThePanel();
    void color_panelCancelled_changesNothing();
    void log_showButtonFollowsTheLog();
    void log_failureIsNoted();
    void log_pathIsPlainTextInItsTooltip();
    void log_fileIsChosenForThisRun();
    void log_existingFile_isAskedAbout_data();
    void log_existingFile_isAskedAbout();
    void browser_isChosenAmongTheInstalled();
    void browser_isForgotten();
    void browser_noneInstalled();
};

namespace {

void click(QWidget &control)
{
    QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(8, control.height() / 2));
}

void press(QWidget &control, Qt::Key key)
{
    control.setFocus();
    QTest::keyClick(&control, key);
}

/// The button of a message box with this text.
QAbstractButton *buttonOf(const QMessageBox &box, const QString &text)
{
    for (QAbstractButton *button : box.buttons()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

QStringList entriesOf(const QComboBox &menu)
{
    QStringList entries;
    for (int row = 0; row < menu.count(); ++row)
        entries << menu.itemText(row);
    return entries;
}

/// Answers the panel for the log file with this path.
void chooseLogFile(const SettingsTab &tab, const QString &path)
{
    click(tab.control(u"actLogFilePath"_s));
    auto *panel = tab.panel<QFileDialog>(u"logFilePanel"_s);
    QVERIFY(panel != nullptr);
    panel->selectFile(path);
    auto *buttons = panel->findChild<QDialogButtonBox *>(u"buttonBox"_s);
    QTest::mouseClick(buttons->button(QDialogButtonBox::Save), Qt::LeftButton);
}

} // namespace

// The port. -------------------------------------------------------------------------------------

void SettingsPanelsTest::ports_followPluggedDevices()
{
    SettingsTab tab;
    tab.start();
    const auto &menu = tab.control<QComboBox>(u"portNumber"_s);
    QCOMPARE(entriesOf(menu), (QStringList{u"ttyS0"_s, u"ttyS1"_s}));
    tab.systemPorts << u"ttyUSB0"_s;
    QCOMPARE(menu.count(), 2);
    tab.plugOrUnplug();
    QTRY_COMPARE(menu.count(), 3);
    QCOMPARE(menu.currentText(), u"ttyS0"_s);
    tab.systemPorts = {u"ttyS1"_s};
    tab.plugOrUnplug();
    QTRY_COMPARE(menu.count(), 1);
    QVERIFY(!tab.onDisk(u"ComPortNumber"_s)); // nobody has chosen anything
}

void SettingsPanelsTest::ports_openOneStaysChosenByName()
{
    SettingsTab tab;
    tab.defaults->setInteger(1, u"ComPortNumber"_s);
    RecordingBoard &board = tab.withBoard();
    tab.start();
    const auto &menu = tab.control<QComboBox>(u"portNumber"_s);
    QCOMPARE(menu.currentText(), u"ttyUSB1"_s);
    board.ports = {u"ttyUSB1"_s, u"ttyUSB2"_s}; // ttyUSB0 is gone, so the numbers shift
    tab.plugOrUnplug();
    QTRY_COMPARE(menu.itemText(1), u"ttyUSB2"_s);
    QCOMPARE(menu.currentText(), u"ttyUSB1"_s);
    board.ports = {u"ttyUSB2"_s};
    tab.plugOrUnplug();
    QTRY_COMPARE(menu.count(), 1);
    QCOMPARE(menu.currentIndex(), -1);
    QCOMPARE(menu.placeholderText(), localized(u"PortNotThere"_s));
}

void SettingsPanelsTest::ports_withoutABoard_areTheSystems()
{
    SettingsTab tab;
    tab.withBoard().answers = false;
    tab.start();
    const auto &note = tab.control<QLabel>(u"portNote"_s);
    QVERIFY(note.isVisible());
    QCOMPARE(note.text(), (QStringList{localized(u"BoardSilent"_s), localized(u"NoBoardLink"_s),
                                       localized(u"PortNextStart"_s)})
                              .join(u'\n'));
    press(tab.control(u"portNumber"_s), Qt::Key_Down);
    QCOMPARE(tab.control<QComboBox>(u"portNumber"_s).currentText(), u"ttyS1"_s);
    QVERIFY(*tab.onDisk(u"ComPortNumber"_s) == PropertyValue(1));
    QVERIFY(tab.boardCalls.isEmpty());
}

void SettingsPanelsTest::ports_problemStandsBesideThem()
{
    const QString advice = u"グループdialoutに加わってください。"_s;
    SettingsTab dropped;
    RecordingBoard &absent = dropped.withBoard();
    absent.opens = false;
    absent.problem = advice;
    dropped.start();
    QVERIFY(dropped.control<QLabel>(u"portNote"_s).text().startsWith(advice));

    SettingsTab tab;
    RecordingBoard &board = tab.withBoard();
    tab.start();
    const auto &note = tab.control<QLabel>(u"portNote"_s);
    QVERIFY(!note.isVisible());
    board.opens = false;
    board.problem = advice;
    press(tab.control(u"portNumber"_s), Qt::Key_Down);
    QVERIFY(note.isVisible());
    QCOMPARE(note.text(), advice + u'\n' + localized(u"PortNextStart"_s));
}

void SettingsPanelsTest::ports_oneThatOpens_isForThisRun()
{
    SettingsTab tab;
    tab.withBoard();
    tab.start();
    press(tab.control(u"portNumber"_s), Qt::Key_Down);
    QCOMPARE(tab.boardCalls, QStringList{u"open 1"_s});
    QVERIFY(!tab.onDisk(u"ComPortNumber"_s)); // a port that opens is not kept, on purpose
    QCOMPARE(tab.control<QLabel>(u"portNote"_s).text(), localized(u"PortThisRun"_s));
    tab.view->renewalControls();
    QCOMPARE(tab.control<QComboBox>(u"portNumber"_s).currentText(), u"ttyUSB1"_s);
}

void SettingsPanelsTest::ports_none()
{
    SettingsTab tab;
    tab.systemPorts.clear();
    tab.start();
    QCOMPARE(tab.control<QComboBox>(u"portNumber"_s).placeholderText(), localized(u"NoPorts"_s));
}

void SettingsPanelsTest::comTest_alerts_data()
{
    QTest::addColumn<bool>("answers");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informative");
    QTest::newRow("answers") << true << u"Communication test to LED board is succeed."_s << u""_s;
    QTest::newRow("silent")
        << false << u"Communication test to LED board is failed."_s
        << u"Confirm LED board power and connection, port setting and farmware version."_s;
}

void SettingsPanelsTest::comTest_alerts()
{
    QFETCH(bool, answers);
    SettingsTab tab;
    RecordingBoard &board = tab.withBoard();
    tab.start();
    board.answers = answers;
    click(tab.control(u"actComPortTest"_s));
    QCOMPARE(tab.boardCalls, QStringList{u"comTest"_s});
    auto *alert = tab.panel<QMessageBox>(u"alert"_s);
    QVERIFY(alert != nullptr);
    QTEST(alert->text(), "message");
    QTEST(alert->informativeText(), "informative");
    QCOMPARE(alert->buttons().size(), 1);
    QCOMPARE(alert->buttons().constFirst()->text(), localized(u"Understand"_s));
    QTest::keyClick(alert, Qt::Key_Return);
    QTRY_VERIFY(tab.panel<QMessageBox>(u"alert"_s) == nullptr);
}

// Sounds. ---------------------------------------------------------------------------------------

void SettingsPanelsTest::sounds_areHeardOnceWhenChosen_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("switchKey");
    QTest::addColumn<QString>("key");
    QTest::newRow("finish") << u"finishSoundName"_s << u"PlayFinishSound"_s << u"FinishSoundName"_s;
    QTest::newRow("arrival") << u"arrivalSoundName"_s << u"PlayArrivalSound"_s
                             << u"ArrivalSoundName"_s;
}

void SettingsPanelsTest::sounds_areHeardOnceWhenChosen()
{
    QFETCH(QString, menu);
    QFETCH(QString, switchKey);
    QFETCH(QString, key);
    SettingsTab tab;
    tab.defaults->setBool(true, switchKey);
    tab.defaults->setString(u"Blow"_s, key);
    tab.start();
    auto &box = tab.control<QComboBox>(menu);
    press(box, Qt::Key_Down);
    QCOMPARE(tab.sounds.played, QStringList{u"Basso 0.5"_s});
    QCOMPARE(tab.defaults->stringForKey(key), u"Basso"_s);

    // The present one again: how a person hears it once more.
    press(box, Qt::Key_Space);
    auto *list = box.view();
    QTRY_VERIFY(list->isVisible());
    QTest::keyClick(list, Qt::Key_Return);
    QTRY_COMPARE(tab.sounds.played.size(), 2);
}

void SettingsPanelsTest::sounds_menusFollowTheirSwitches()
{
    SettingsTab tab;
    tab.start();
    QVERIFY(!tab.control(u"finishSoundName"_s).isEnabled());
    click(tab.control(u"playFinishSound"_s));
    QVERIFY(tab.control(u"finishSoundName"_s).isEnabled());
    QVERIFY(!tab.control(u"arrivalSoundName"_s).isEnabled());
    click(tab.control(u"playArrivalSound"_s));
    click(tab.control(u"playFinishSound"_s));
    QVERIFY(tab.control(u"arrivalSoundName"_s).isEnabled());
    QVERIFY(!tab.control(u"finishSoundName"_s).isEnabled());
}

void SettingsPanelsTest::sounds_unknownName_isShown()
{
    SettingsTab tab;
    tab.defaults->setString(u"Gone"_s, u"FinishSoundName"_s);
    tab.start();
    const auto &menu = tab.control<QComboBox>(u"finishSoundName"_s);
    QCOMPARE(menu.currentIndex(), -1);
    QCOMPARE(menu.placeholderText(), u"Gone"_s);
}

// Colour. ---------------------------------------------------------------------------------------

void SettingsPanelsTest::color_isTakenFromThePanel()
{
    SettingsTab tab;
    tab.start();
    click(tab.control(u"lightLEDColor"_s));
    auto *panel = tab.panel<QColorDialog>(u"lightLEDColorPanel"_s);
    QVERIFY(panel != nullptr);
    QCOMPARE(panel->currentColor(), QColor(Qt::red));
    panel->setCurrentColor(QColor(0, 200, 30));
    QTest::keyClick(panel, Qt::Key_Return);
    QCOMPARE(tab.setup->lightLEDColor(), QColor(0, 200, 30));
    QVERIFY(tab.onDisk(u"LightLEDColor"_s));
    QCOMPARE(tab.control<QPushButton>(u"lightLEDColor"_s).text(), u"#00c81e"_s);
}

void SettingsPanelsTest::color_panelCancelled_changesNothing()
{
    SettingsTab tab;
    tab.start();
    click(tab.control(u"lightLEDColor"_s));
    auto *panel = tab.panel<QColorDialog>(u"lightLEDColorPanel"_s);
    panel->setCurrentColor(QColor(0, 200, 30));
    QTest::keyClick(panel, Qt::Key_Escape);
    QCOMPARE(tab.setup->lightLEDColor(), QColor(Qt::red));
    QVERIFY(!tab.onDisk(u"LightLEDColor"_s));
}

// The log. --------------------------------------------------------------------------------------

void SettingsPanelsTest::log_showButtonFollowsTheLog()
{
    SettingsTab tab;
    tab.start();
    const QWidget &show = tab.control(u"actDispLog"_s);
    QVERIFY(!show.isEnabled());
    click(tab.control(u"logRSSRead"_s));
    click(tab.control(u"logTimer"_s));
    QVERIFY(show.isEnabled());
    click(tab.control(u"logRSSRead"_s));
    QVERIFY(show.isEnabled());
    click(tab.control(u"logTimer"_s));
    QVERIFY(!show.isEnabled());
}

void SettingsPanelsTest::log_failureIsNoted()
{
    SettingsTab tab;
    QFile blocked(tab.home.filePath(u"Documents"_s)); // a file where the folder should be
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    tab.start();
    const auto &note = tab.control<QLabel>(u"logNote"_s);
    QVERIFY(!note.isVisible());
    click(tab.control(u"logSystem"_s));
    QVERIFY(note.isVisible());
    QCOMPARE(note.text(), localized(u"LogFileOpenError"_s));
}

void SettingsPanelsTest::log_pathIsPlainTextInItsTooltip()
{
    SettingsTab tab;
    tab.start();
    chooseLogFile(tab, tab.home.filePath(u"<b>&.txt"_s));
    const QString tip = tab.control(u"logFilePath"_s).toolTip();
    QVERIFY2(tip.endsWith(u"/&lt;b&gt;&amp;.txt</p>"_s), qPrintable(tip));
}

void SettingsPanelsTest::log_fileIsChosenForThisRun()
{
    SettingsTab tab;
    QVERIFY(QDir().mkpath(tab.home.filePath(u"Documents"_s)));
    tab.start();
    click(tab.control(u"actLogFilePath"_s));
    auto *panel = tab.panel<QFileDialog>(u"logFilePanel"_s);
    QVERIFY(panel != nullptr);
    QCOMPARE(panel->windowTitle(), localized(u"TitleSetLogFile"_s));
    QCOMPARE(panel->labelText(QFileDialog::Accept), localized(u"Setup"_s));
    // The log's folder is made with the first log.
    QCOMPARE(panel->directory().path(), tab.home.filePath(u"Documents"_s));
    QCOMPARE(panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"Logbook.txt"_s);
    QTest::keyClick(panel, Qt::Key_Escape);
    QTRY_VERIFY(tab.panel<QFileDialog>(u"logFilePanel"_s) == nullptr);

    chooseLogFile(tab, tab.home.filePath(u"other.txt"_s));
    QCOMPARE(tab.setup->logFilePath(), tab.home.filePath(u"other.txt"_s));
    QCOMPARE(tab.control<QLineEdit>(u"logFilePath"_s).text(), tab.setup->logFilePath());
    QVERIFY(!tab.onDisk(u"LogFilePath"_s)); // holds for this run only
    QCOMPARE(tab.control<QLabel>(u"logNote"_s).text(), localized(u"LogFileLater"_s));
}

void SettingsPanelsTest::log_existingFile_isAskedAbout_data()
{
    QTest::addColumn<QString>("answerKey");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("replace it") << u"Replace"_s << true;
    QTest::newRow("leave it") << u"Cancel"_s << false;
}

void SettingsPanelsTest::log_existingFile_isAskedAbout()
{
    QFETCH(QString, answerKey);
    QFETCH(bool, isTaken);
    SettingsTab tab;
    const QString path = tab.home.filePath(u"letter.txt"_s);
    QFile letter(path);
    QVERIFY(letter.open(QIODevice::WriteOnly));
    tab.start();
    const QString before = tab.setup->logFilePath();

    chooseLogFile(tab, path);
    auto *question = tab.panel<QMessageBox>(u"logFileExistsAlert"_s);
    QVERIFY(question != nullptr);
    QCOMPARE(tab.setup->logFilePath(), before);
    QAbstractButton *answer = buttonOf(*question, localized(answerKey));
    QVERIFY(answer != nullptr);
    QTest::mouseClick(answer, Qt::LeftButton);
    QCOMPARE(tab.setup->logFilePath(), isTaken ? path : before);
}

// The browser. ----------------------------------------------------------------------------------

void SettingsPanelsTest::browser_isChosenAmongTheInstalled()
{
    SettingsTab tab;
    const QString applications = tab.home.filePath(u"data/applications"_s);
    QVERIFY(QDir().mkpath(applications));
    for (const auto &name : {u"alpha"_s, u"beta"_s}) {
        QFile entry(applications + u'/' + name + u".desktop"_s);
        QVERIFY(entry.open(QIODevice::WriteOnly));
        entry.write("[Desktop Entry]\nType=Application\nExec=true %u\n"
                    "MimeType=x-scheme-handler/http;\nName=" +
                    name.toUtf8() + "\n");
    }
    qputenv("XDG_DATA_HOME", tab.home.filePath(u"data"_s).toLocal8Bit());
    qputenv("XDG_DATA_DIRS", tab.home.path().toLocal8Bit());
    tab.start();

    click(tab.control(u"actSelectBrowser"_s));
    auto *panel = tab.panel(u"browserPanel"_s);
    QVERIFY(panel != nullptr);
    QCOMPARE(panel->windowTitle(), u"指定ブラウザの選択"_s);
    QCOMPARE(panel->findChild<QPushButton *>(u"browserSelect"_s)->text(), u"選択"_s);
    auto *list = panel->findChild<QListWidget *>(u"browserList"_s);
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(1)->text(), u"beta"_s);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    const QString chosen = applications + u"/beta.desktop"_s;
    QCOMPARE(tab.setup->desigBrowser(), chosen);
    QVERIFY(*tab.onDisk(u"DesignateBrowser"_s) == PropertyValue(chosen));
    QCOMPARE(tab.control<QLineEdit>(u"desigBrowser"_s).text(), chosen);
}

void SettingsPanelsTest::browser_isForgotten()
{
    SettingsTab tab;
    tab.defaults->setString(u"/a.desktop"_s, u"DesignateBrowser"_s);
    tab.start();
    click(tab.control(u"actDefaultBrowser"_s));
    QVERIFY(*tab.onDisk(u"DesignateBrowser"_s) == PropertyValue(u""_s));
    const auto &field = tab.control<QLineEdit>(u"desigBrowser"_s);
    QCOMPARE(field.text(), u""_s);
    QCOMPARE(field.placeholderText(), localized(u"DefaultBrowserInUse"_s));
}

void SettingsPanelsTest::browser_noneInstalled()
{
    BrowserPanel panel({u"title"_s, u"選択"_s, {}, {}, u"desktop"_s}, {}, nullptr);
    panel.setAttribute(Qt::WA_DeleteOnClose, false);
    QVERIFY(!panel.findChild<QPushButton *>(u"browserSelect"_s)->isEnabled());
    QVERIFY(panel.findChild<QPushButton *>(u"browserFromFile"_s)->isEnabled());
    QCOMPARE(panel.findChild<QLabel *>(u"browserLabel"_s)->text(), localized(u"NoBrowsers"_s));
}

QTEST_MAIN(SettingsPanelsTest)
#include "settingspanels_test.moc"
