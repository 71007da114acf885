// SPDX-License-Identifier: MIT
#include "WindowedProgram.h"
#include "messages/views/MessageSwitchesView.h"
#include "messages/views/RSSView.h"
#include "platform/Localization.h"
#include "schedule/views/TimerView.h"
#include "settings/views/SerialDeviceNotifier.h"
#include "settings/views/SettingsView.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

/// What a person does with a control, and on what it acts.
enum class Use {
    Click, ///< a click changes the store's key
    Step,  ///< the arrow keys change the store's key
    Type,  ///< a text and Return change the store's key
    Opens, ///< a click opens the window of this name
    Calls, ///< it makes this call, or shows something; the tests of its view prove that
};

struct Control
{
    const char *window;
    const char *name;
    Use use;
    const char *target;
};

const Control controls[] = {
    {"mainWindow", "startDispButton", Use::Calls, "actStartDisp"},
    {"mainWindow", "stopDispButton", Use::Calls, "actStopDisp"},
    {"mainWindow", "getRSSButton", Use::Calls, "actGetRSS"},
    {"mainWindow", "drawerButton", Use::Click, "LEDButtonState"},
    {"mainWindow", "descriptionButton", Use::Click, "DescButtonState"},
    {"mainWindow", "mainTab", Use::Calls, "tabView:didSelectTabViewItem:"},
    {"mainWindow", "descriptionDrawer", Use::Calls, "shows the description"},
    {"mainWindow", "rssListView", Use::Calls, "actDoubleClickListView"},
    {"mainWindow", "createButton", Use::Opens, "addressPanel"},
    {"mainWindow", "editButton", Use::Calls, "actEditRSSURL"},
    {"mainWindow", "deleteButton", Use::Calls, "actDeleteRSSURL"},
    {"mainWindow", "accessButton", Use::Calls, "actDoubleClickListView"},
    {"mainWindow", "msgListView", Use::Calls, "actDoubleClickListView"},
    // The settings, group by group.
    {"mainWindow", "portNumber", Use::Calls, "actPortNumber"},
    {"mainWindow", "actComPortTest", Use::Opens, "alert"},
    {"mainWindow", "scrollSpeed", Use::Step, "ScrollSpeed"},
    {"mainWindow", "moduleCount", Use::Step, "LEDModuleCount"},
    {"mainWindow", "brightness", Use::Step, "LEDBrightness"},
    {"mainWindow", "reverse180", Use::Click, "Reverse180"},
    {"mainWindow", "rotation", Use::Click, "RotationLeft90"},
    {"mainWindow", "useBitmapFont", Use::Click, "UseBitmapFont"},
    {"mainWindow", "dispAuto", Use::Click, "DisplayAuto"},
    {"mainWindow", "isScroll", Use::Click, "ScrollToMessage"},
    {"mainWindow", "dispProgress", Use::Click, "DispProgress"},
    {"mainWindow", "virtualLED", Use::Click, "VirtualLED"},
    {"mainWindow", "useNarrowFont", Use::Click, "UseNarrowFont"},
    {"mainWindow", "lightLEDColor", Use::Calls, "actLightLEDColor"},
    {"mainWindow", "actDispLineCheck", Use::Click, "DispLineNumber"},
    {"mainWindow", "actDispNameCheck", Use::Click, "DispSiteName"},
    {"mainWindow", "actDispDateCheck", Use::Click, "DispTitleDate"},
    {"mainWindow", "actDispDescCheck", Use::Click, "DispDescription"},
    {"mainWindow", "dispOrderRandom", Use::Click, "DispMessageOrder"},
    {"mainWindow", "dispOrderNewest", Use::Click, "DispMessageOrder"},
    {"mainWindow", "dispOrderOldest", Use::Click, "DispMessageOrder"},
    {"mainWindow", "actDispEachRSSCheck", Use::Click, "DispEachRSS"},
    {"mainWindow", "actUseMaxMsgCheck", Use::Click, "UseMaxMessages"},
    {"mainWindow", "actMaxMessagesText", Use::Type, "MaxSiteMessages"},
    {"mainWindow", "actDispInfoCheck", Use::Click, "DispInfoMessages"},
    {"mainWindow", "actShowCalendarCheck", Use::Click, "ShowCalendarDate"},
    {"mainWindow", "dontShowOlder", Use::Click, "DontShowOlder"},
    {"mainWindow", "olderHours", Use::Step, "OlderHours"},
    {"mainWindow", "skipCMMode", Use::Click, "SkipCommercialMode"},
    {"mainWindow", "skipCMWord1", Use::Type, "SkipCommercialWord1"},
    {"mainWindow", "skipCMWord2", Use::Type, "SkipCommercialWord2"},
    {"mainWindow", "skipCMWord3", Use::Type, "SkipCommercialWord3"},
    {"mainWindow", "skipCMWord4", Use::Type, "SkipCommercialWord4"},
    {"mainWindow", "skipCMWord5", Use::Type, "SkipCommercialWord5"},
    {"mainWindow", "skipCMWord6", Use::Type, "SkipCommercialWord6"},
    {"mainWindow", "skipCMWord7", Use::Type, "SkipCommercialWord7"},
    {"mainWindow", "skipCMWord8", Use::Type, "SkipCommercialWord8"},
    {"mainWindow", "logRSSRead", Use::Click, "LogRSSRead"},
    {"mainWindow", "logRSSDisp", Use::Click, "LogRSSDisp"},
    {"mainWindow", "logTimer", Use::Click, "LogTimer"},
    {"mainWindow", "logSystem", Use::Click, "LogSystem"},
    {"mainWindow", "logFilePath", Use::Calls, "shows the path"},
    {"mainWindow", "actLogFilePath", Use::Calls, "actLogFilePath"},
    {"mainWindow", "actDispLog", Use::Calls, "actDispLog"},
    {"mainWindow", "playFinishSound", Use::Click, "PlayFinishSound"},
    {"mainWindow", "finishSoundName", Use::Calls, "actFinishSoundNamePopUp"},
    {"mainWindow", "playArrivalSound", Use::Click, "PlayArrivalSound"},
    {"mainWindow", "arrivalSoundName", Use::Calls, "actArrivalSoundNamePopUp"},
    {"mainWindow", "playSoundVolume", Use::Step, "PlaySoundVolume"},
    {"mainWindow", "desigBrowser", Use::Calls, "shows the browser"},
    {"mainWindow", "actSelectBrowser", Use::Calls, "actSelectBrowser"},
    {"mainWindow", "actDefaultBrowser", Use::Calls, "actDefaultBrowser"},
    {"ledWindow", "scrollView", Use::Calls, "actDoubleClickRSSView"},
    {"ledWindow", "ledDrawer", Use::Calls, "shows the description"},
    {"timerWindow", "timerView", Use::Calls, "actDoubleClickTimer"},
    {"timerWindow", "useTimerCheck", Use::Click, "UseRSSTimer"},
    {"timerWindow", "createButton", Use::Opens, "timerPanel"},
    {"timerWindow", "editButton", Use::Calls, "actEditTimer"},
    {"timerWindow", "deleteButton", Use::Calls, "actDeleteTimer"},
};

bool isControl(const QWidget *widget)
{
    if (widget->objectName().startsWith(u"qt_"_s) || qobject_cast<const QScrollBar *>(widget) ||
        qobject_cast<const QHeaderView *>(widget) ||
        qobject_cast<const QTabBar *>(widget->parentWidget()) ||
        qobject_cast<const QTableView *>(widget->parentWidget()) || // the corner of its headers
        qobject_cast<const QComboBox *>(widget->parentWidget()) ||
        widget->parentWidget()->inherits("QComboBoxPrivateContainer"))
        return false;
    return qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QAbstractSpinBox *>(widget) ||
           qobject_cast<const QAbstractSlider *>(widget) ||
           qobject_cast<const QAbstractItemView *>(widget) ||
           qobject_cast<const QComboBox *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QPlainTextEdit *>(widget) ||
           qobject_cast<const QTabWidget *>(widget) || dynamic_cast<const RSSView *>(widget);
}

QSet<QString> localizedTexts()
{
    QFile file(u":/localization/ja.json"_s);
    QSet<QString> texts;
    if (file.open(QIODevice::ReadOnly)) {
        const QJsonObject table = QJsonDocument::fromJson(file.readAll()).object();
        for (const QJsonValue &text : table)
            texts.insert(text.toString());
    }
    return texts;
}

/// Texts that do not come from the table: the two that the drawer's item changes between.
const QSet<QString> literalTexts = {u"詳細記事画面を開く"_s, u"詳細記事画面を閉じる"_s};

/// All windows of the program.
struct AllWindows : WindowedProgram
{
    AllWindows()
    {
        auto *settingsView = new SettingsView(setup, devices);
        settingsView->addGroup(new MessageSwitchesView(msgList));
        mainWindow.addTab(settingsView, tab::setup, u"TabSetup"_s, u"MenuShowTabSetup"_s);
        mainWindow.resize(1000, 900);
    }

    QList<QWidget *> windows() { return {&mainWindow, &ledWindow, &timerWindow}; }
    QWidget *window(const QString &name)
    {
        for (QWidget *one : windows())
            if (one->objectName() == name)
                return one;
        return nullptr;
    }
    QList<QWidget *> controlsOf(const QWidget *parent)
    {
        QList<QWidget *> found = parent->findChildren<QWidget *>();
        found.removeIf([](const QWidget *widget) { return !isControl(widget); });
        found.removeIf([parent](const QWidget *widget) { return widget->window() != parent; });
        return found;
    }
    /// The tab that holds it comes to the front.
    void bringToFront(const QWidget *widget)
    {
        for (const QString &identifier : {tab::list, tab::message, tab::setup}) {
            if (widget->isVisible() || widget->window() != &mainWindow)
                return;
            mainWindow.selectTab(identifier);
        }
    }

    SerialDeviceNotifier devices{-1, [] { return false; }};
    TimerView timerWindow{rssTimer};
};

} // namespace

/// Every control of every window stands in one table and keeps to it.
class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyControlIsInTheTable();
    void everyControlSaysWhatItIs();
    void everyMenuItemSaysWhatItIs();
    void keysAreUnique_data();
    void keysAreUnique();
    void controlsDoWhatTheTableSays_data();
    void controlsDoWhatTheTableSays();
};

void ControlsTest::everyControlIsInTheTable()
{
    AllWindows p;
    p.launch();
    QStringList present;
    for (QWidget *window : p.windows())
        for (const QWidget *control : p.controlsOf(window))
            present << window->objectName() + u'/' + control->objectName();
    QStringList listed;
    for (const Control &control : controls)
        listed << QString::fromLatin1(control.window) + u'/' + QString::fromLatin1(control.name);
    present.sort();
    listed.sort();
    for (const QString &name : present)
        QVERIFY2(listed.contains(name), qPrintable(name));
    QCOMPARE(present, listed); // none is there twice, none is missing
}

void ControlsTest::everyControlSaysWhatItIs()
{
    AllWindows p;
    p.launch();
    const QSet<QString> texts = localizedTexts();
    for (QWidget *window : p.windows()) {
        for (QWidget *control : p.controlsOf(window)) {
            const QByteArray name = control->objectName().toUtf8();
            QVERIFY2(!name.isEmpty(), control->metaObject()->className());
            auto *spoken = QAccessible::queryAccessibleInterface(control);
            QVERIFY2(spoken && !spoken->text(QAccessible::Name).isEmpty(), name);
            QVERIFY2(control->focusPolicy() != Qt::NoFocus || dynamic_cast<RSSView *>(control) ||
                         qobject_cast<QTabWidget *>(control),
                     name);
            const auto *button = qobject_cast<QAbstractButton *>(control);
            if (button && name != "lightLEDColor") // that one shows the number of its colour
                QVERIFY2(texts.contains(button->text()), name);
        }
    }
}

void ControlsTest::everyMenuItemSaysWhatItIs()
{
    AllWindows p;
    p.launch();
    const QSet<QString> texts = localizedTexts();
    int items = 0;
    for (const QAction *top : p.mainWindow.menuBar()->actions()) {
        QVERIFY(texts.contains(top->text()));
        for (const QAction *item : top->menu()->actions()) {
            if (item->isSeparator())
                continue;
            ++items;
            const QByteArray text = item->text().toUtf8();
            const bool isNamed = !item->objectName().isEmpty() ||
                                 (item->menu() && !item->menu()->objectName().isEmpty());
            QVERIFY2(isNamed, text);
            QVERIFY2(texts.contains(item->text()) || literalTexts.contains(item->text()), text);
        }
    }
    QVERIFY(items >= 20);
}

void ControlsTest::keysAreUnique_data()
{
    QTest::addColumn<QString>("tab");
    for (const QString &identifier : {tab::list, tab::message, tab::setup})
        QTest::newRow(qPrintable(identifier)) << identifier;
}

// Alt and a letter means one thing on each tab.
void ControlsTest::keysAreUnique()
{
    QFETCH(QString, tab);
    AllWindows p;
    p.launchOnTab(tab, false);
    QMap<QString, QStringList> users;
    const auto add = [&users](const QString &text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty())
            users[key.toString()] << text;
    };
    for (const QAction *top : p.mainWindow.menuBar()->actions())
        add(top->text());
    for (const auto *button : p.mainWindow.findChildren<QAbstractButton *>())
        if (button->isVisible())
            add(button->text());
    for (const auto *label : p.mainWindow.findChildren<QLabel *>())
        if (label->isVisible() && label->buddy())
            add(label->text());
    QVERIFY(users.size() >= 11);
    for (const QStringList &texts : users)
        QVERIFY2(texts.size() == 1, qPrintable(texts.join(u", "_s)));
}

void ControlsTest::controlsDoWhatTheTableSays_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < int(std::size(controls)); ++row) {
        if (controls[row].use != Use::Calls)
            QTest::addRow("%s/%s", controls[row].window, controls[row].name) << row;
    }
}

void ControlsTest::controlsDoWhatTheTableSays()
{
    QFETCH(int, row);
    const Control &control = controls[row];
    const QString target = QString::fromLatin1(control.target);
    AllWindows p;
    p.defaults.setInteger(1, u"DispMessageOrder"_s);
    if (qstrcmp(control.name, "dispOrderNewest") == 0)
        p.defaults.setInteger(2, u"DispMessageOrder"_s);
    p.launchOnTab(tab::message, false);
    QWidget *window = p.window(QString::fromLatin1(control.window));
    window->show();
    auto *widget = window->findChild<QWidget *>(QString::fromLatin1(control.name));
    QVERIFY(widget);
    p.bringToFront(widget);
    QVERIFY(widget->isVisible() && widget->isEnabled());
    const auto value = [&] {
        const UserDefaults store(p.defaults.path()); // what is on the disk, at once
        return store.hasKey(target)
                   ? store.stringForKey(target) + QString::number(store.floatForKey(target))
                   : u"unset"_s;
    };
    const QString before = value();
    widget->setFocus();
    switch (control.use) {
    case Use::Click:
    case Use::Opens:
        QTest::keyClick(widget, Qt::Key_Space);
        break;
    case Use::Step:
        QTest::keyClick(widget, Qt::Key_Down);
        break;
    case Use::Type:
        QTest::keyClicks(widget, u"7"_s);
        QTest::keyClick(widget, Qt::Key_Return);
        break;
    case Use::Calls:
        break;
    }
    p.settle();
    if (control.use == Use::Opens)
        QVERIFY(p.find(target)->isVisible());
    else
        QTRY_VERIFY(value() != before);
}

QTEST_MAIN(ControlsTest)
#include "controls_test.moc"
