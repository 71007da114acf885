// SPDX-License-Identifier: MIT
#include "SettingsTab.h"
#include "platform/Localization.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// What each control of the settings tab does, by mouse and keyboard.
class SettingsViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void control_actsAtOnce_data();
    void control_actsAtOnce();
    void control_showsTheStoredValue_data();
    void control_showsTheStoredValue();
    void renewal_writesNothing();
    void useBitmapFont_renewsTheControls();
    void narrowFont_reachesTheMessageList();

    void number_actsWhenItIsTypedToTheEnd();
    void number_beyondTheRange_isShownAsItIs();
    void word_halfTyped_countsWhenTheTabIsLeft();
    void volume_isStoredOnceWhenTheDragEnds();
    void wheel_overAControl_changesNothing();

    // The page.
    void controls_haveNamesAndAnOrder();
    void addedGroup_standsAfterTheDisplay();
    void mnemonics_areUnique();
    void columns_followTheWidth_data();
    void columns_followTheWidth();
};

namespace {

using Gesture = std::function<void(QWidget &)>;

void click(QWidget &control)
{
    QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(8, control.height() / 2));
}

/// Types a text over what a field holds and leaves the field.
Gesture typing(const QString &text)
{
    return [text](QWidget &control) {
        control.setFocus();
        QTest::keyClick(&control, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&control, text);
        QTest::keyClick(&control, Qt::Key_Tab);
    };
}

Gesture pressing(Qt::Key key)
{
    return [key](QWidget &control) {
        control.setFocus();
        QTest::keyClick(&control, key);
    };
}

struct Expected
{
    PropertyValue stored;
    QStringList boardCalls;
};

void addControl(const QString &name, const Gesture &gesture, const QString &key, Expected expected)
{
    QTest::newRow(qPrintable(name))
        << name << gesture << key << std::make_shared<Expected>(std::move(expected));
}

} // namespace

// Each control. ---------------------------------------------------------------------------------

void SettingsViewTest::control_actsAtOnce_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Gesture>("gesture");
    QTest::addColumn<QString>("key");
    QTest::addColumn<std::shared_ptr<Expected>>("expected");

    // The board does not open a port here: only such a port is kept, on purpose.
    addControl(u"portNumber"_s, pressing(Qt::Key_Down), u"ComPortNumber"_s, {1, {u"open 1"_s}});
    addControl(u"scrollSpeed"_s, typing(u"7"_s), u"ScrollSpeed"_s, {7, {u"speed 7"_s}});
    addControl(u"moduleCount"_s, typing(u"6"_s), u"LEDModuleCount"_s, {6, {u"modules 6"_s}});
    addControl(u"brightness"_s, typing(u"2"_s), u"LEDBrightness"_s, {2, {u"bright 2"_s}});
    addControl(u"reverse180"_s, click, u"Reverse180"_s, {true, {u"reverse 1"_s}});
    addControl(u"rotation"_s, click, u"RotationLeft90"_s, {true, {u"rotation 1"_s}});
    addControl(u"useBitmapFont"_s, click, u"UseBitmapFont"_s, {false, {u"fontx 0"_s}});

    addControl(u"dispAuto"_s, click, u"DisplayAuto"_s, {true, {}});
    addControl(u"isScroll"_s, click, u"ScrollToMessage"_s, {false, {}});
    addControl(u"dispProgress"_s, click, u"DispProgress"_s, {false, {}});
    addControl(u"virtualLED"_s, click, u"VirtualLED"_s, {false, {}});
    addControl(u"useNarrowFont"_s, click, u"UseNarrowFont"_s, {true, {}});

    addControl(u"dontShowOlder"_s, click, u"DontShowOlder"_s, {true, {}});
    addControl(u"olderHours"_s, typing(u"5"_s), u"OlderHours"_s, {5, {}});
    addControl(u"skipCMMode"_s, click, u"SkipCommercialMode"_s, {true, {}});
    for (int word = 1; word <= 8; ++word)
        addControl(u"skipCMWord%1"_s.arg(word), typing(u"WORD%1"_s.arg(word)),
                   u"SkipCommercialWord%1"_s.arg(word), {u"WORD%1"_s.arg(word), {}});

    addControl(u"logRSSRead"_s, click, u"LogRSSRead"_s, {true, {}});
    addControl(u"logRSSDisp"_s, click, u"LogRSSDisp"_s, {true, {}});
    addControl(u"logTimer"_s, click, u"LogTimer"_s, {true, {}});
    addControl(u"logSystem"_s, click, u"LogSystem"_s, {true, {}});

    addControl(u"playFinishSound"_s, click, u"PlayFinishSound"_s, {true, {}});
    addControl(u"playArrivalSound"_s, click, u"PlayArrivalSound"_s, {true, {}});
    addControl(u"playSoundVolume"_s, pressing(Qt::Key_End), u"PlaySoundVolume"_s, {1.0, {}});
}

void SettingsViewTest::control_actsAtOnce()
{
    QFETCH(QString, name);
    QFETCH(Gesture, gesture);
    QFETCH(QString, key);
    QFETCH(std::shared_ptr<Expected>, expected);

    SettingsTab tab;
    RecordingBoard &board = tab.withBoard();
    tab.start();
    board.opens = false;
    gesture(tab.control(name));
    const auto stored = tab.onDisk(key);
    QVERIFY(stored.has_value());
    QVERIFY(*stored == expected->stored);
    QCOMPARE(tab.boardCalls, expected->boardCalls);
}

void SettingsViewTest::control_showsTheStoredValue_data()
{
    using Value = std::shared_ptr<PropertyValue>;
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("key");
    QTest::addColumn<Value>("stored");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("shown");

    const auto add = [](const QString &name, const QString &key, PropertyValue stored,
                        const char *property, const QVariant &shown) {
        QTest::newRow(qPrintable(name))
            << name << key << std::make_shared<PropertyValue>(std::move(stored))
            << QByteArray(property) << shown;
    };
    add(u"portNumber"_s, u"ComPortNumber"_s, 1, "currentText", u"ttyUSB1"_s);
    add(u"scrollSpeed"_s, u"ScrollSpeed"_s, 9, "value", 9);
    add(u"moduleCount"_s, u"LEDModuleCount"_s, 2, "value", 2);
    add(u"brightness"_s, u"LEDBrightness"_s, 0, "value", 0);
    for (const auto &[name, key] : std::initializer_list<std::pair<const char *, const char *>>{
             {"reverse180", "Reverse180"},
             {"rotation", "RotationLeft90"},
             {"dispAuto", "DisplayAuto"},
             {"useNarrowFont", "UseNarrowFont"},
             {"dontShowOlder", "DontShowOlder"},
             {"skipCMMode", "SkipCommercialMode"},
             {"logRSSRead", "LogRSSRead"},
             {"logRSSDisp", "LogRSSDisp"},
             {"logTimer", "LogTimer"},
             {"logSystem", "LogSystem"},
             {"playFinishSound", "PlayFinishSound"},
             {"playArrivalSound", "PlayArrivalSound"}})
        add(QString::fromLatin1(name), QString::fromLatin1(key), true, "checked", true);
    for (const auto &[name, key] : std::initializer_list<std::pair<const char *, const char *>>{
             {"useBitmapFont", "UseBitmapFont"},
             {"isScroll", "ScrollToMessage"},
             {"dispProgress", "DispProgress"},
             {"virtualLED", "VirtualLED"}})
        add(QString::fromLatin1(name), QString::fromLatin1(key), false, "checked", false);
    add(u"olderHours"_s, u"OlderHours"_s, 24, "value", 24);
    for (int word = 1; word <= 8; ++word)
        add(u"skipCMWord%1"_s.arg(word), u"SkipCommercialWord%1"_s.arg(word), u"広告"_s, "text",
            u"広告"_s);
    add(u"logFilePath"_s, u"LogFilePath"_s, u"/tmp/a.txt"_s, "text", u"/tmp/a.txt"_s);
    add(u"finishSoundName"_s, u"FinishSoundName"_s, u"Blow"_s, "currentText", u"Blow"_s);
    add(u"arrivalSoundName"_s, u"ArrivalSoundName"_s, u"Basso"_s, "currentText", u"Basso"_s);
    add(u"playSoundVolume"_s, u"PlaySoundVolume"_s, 0.25, "value", 25);
    add(u"desigBrowser"_s, u"DesignateBrowser"_s, u"/a.desktop"_s, "text", u"/a.desktop"_s);
}

void SettingsViewTest::control_showsTheStoredValue()
{
    QFETCH(QString, name);
    QFETCH(QString, key);
    QFETCH(std::shared_ptr<PropertyValue>, stored);
    QFETCH(QByteArray, property);

    SettingsTab tab;
    tab.defaults->setString(tab.home.filePath(u"log.txt"_s), u"LogFilePath"_s);
    tab.defaults->setValue(*stored, key);
    tab.withBoard();
    tab.start();
    QTEST(tab.control(name).property(property), "shown");
}

void SettingsViewTest::renewal_writesNothing()
{
    SettingsTab tab;
    tab.withBoard();
    tab.start();
    tab.view->renewalControls();
    QVERIFY(!tab.onDisk(u"ScrollSpeed"_s));
    QVERIFY(!tab.onDisk(u"PlaySoundVolume"_s));
    QVERIFY(tab.boardCalls.isEmpty());
    QVERIFY(tab.sounds.played.isEmpty());
}

void SettingsViewTest::useBitmapFont_renewsTheControls()
{
    SettingsTab tab;
    tab.start();
    tab.setup->setOlderHours(11); // by another way than its control
    QCOMPARE(tab.control<QSpinBox>(u"olderHours"_s).value(), 72);
    click(tab.control(u"useBitmapFont"_s));
    QCOMPARE(tab.control<QSpinBox>(u"olderHours"_s).value(), 11);
}

void SettingsViewTest::narrowFont_reachesTheMessageList()
{
    SettingsTab tab;
    tab.start();
    click(tab.control(u"useNarrowFont"_s));
    click(tab.control(u"useNarrowFont"_s));
    QVERIFY((tab.output.expansions == std::vector<float>{-0.2F, 0.0F}));
}

// How values are entered. -----------------------------------------------------------------------

void SettingsViewTest::number_actsWhenItIsTypedToTheEnd()
{
    SettingsTab tab;
    tab.withBoard();
    tab.start();
    typing(u"12"_s)(tab.control(u"scrollSpeed"_s));
    QCOMPARE(tab.boardCalls, QStringList{u"speed 12"_s});
    QTest::keyClick(&tab.control(u"scrollSpeed"_s), Qt::Key_Up);
    QCOMPARE(tab.boardCalls.last(), u"speed 13"_s);
}

void SettingsViewTest::number_beyondTheRange_isShownAsItIs()
{
    SettingsTab tab;
    tab.defaults->setInteger(100, u"LEDModuleCount"_s);
    tab.defaults->setInteger(-5, u"OlderHours"_s);
    tab.start();
    QCOMPARE(tab.control<QSpinBox>(u"moduleCount"_s).value(), 100);
    QCOMPARE(tab.control<QSpinBox>(u"olderHours"_s).value(), -5);
    QCOMPARE(tab.setup->moduleCount(), 100);
}

void SettingsViewTest::word_halfTyped_countsWhenTheTabIsLeft()
{
    SettingsTab tab;
    tab.start();
    auto &word = tab.control<QLineEdit>(u"skipCMWord4"_s);
    word.setFocus();
    QTest::keyClicks(&word, u"SALE"_s);
    QVERIFY(!tab.onDisk(u"SkipCommercialWord4"_s));
    tab.view->hide();
    QVERIFY(*tab.onDisk(u"SkipCommercialWord4"_s) == PropertyValue(u"SALE"_s));
}

void SettingsViewTest::volume_isStoredOnceWhenTheDragEnds()
{
    SettingsTab tab;
    tab.start();
    auto &slider = tab.control<QSlider>(u"playSoundVolume"_s);
    const QPoint handle(slider.width() / 2, slider.height() / 2);
    QTest::mousePress(&slider, Qt::LeftButton, {}, handle);
    for (int step = 1; step <= 10; ++step)
        QTest::mouseMove(&slider, handle + QPoint(5 * step, 0));
    QVERIFY(slider.sliderPosition() > 50);
    QVERIFY(!tab.onDisk(u"PlaySoundVolume"_s));
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, handle + QPoint(50, 0));
    QVERIFY(tab.onDisk(u"PlaySoundVolume"_s)->toDouble() > 0.5);
}

void SettingsViewTest::wheel_overAControl_changesNothing()
{
    SettingsTab tab;
    tab.start();
    for (const auto &name : {u"scrollSpeed"_s, u"portNumber"_s, u"playSoundVolume"_s}) {
        QWidget &control = tab.control(name);
        tab.control(u"dispAuto"_s).setFocus();
        const QPointF middle = control.rect().center();
        QWheelEvent turn(middle, control.mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&control, &turn);
        QVERIFY(!turn.isAccepted()); // left to the page
    }
    QVERIFY(!tab.onDisk(u"ScrollSpeed"_s));
    QVERIFY(!tab.onDisk(u"ComPortNumber"_s));
    QVERIFY(!tab.onDisk(u"PlaySoundVolume"_s));
}

// The page. -------------------------------------------------------------------------------------

// Every control that takes the keyboard is reached with Tab, group by group, and says what it is.
void SettingsViewTest::controls_haveNamesAndAnOrder()
{
    SettingsTab tab;
    tab.defaults->setBool(true, u"PlayFinishSound"_s);
    tab.defaults->setBool(true, u"PlayArrivalSound"_s);
    tab.defaults->setBool(true, u"LogSystem"_s);
    tab.start();
    QStringList order;
    QWidget *at = tab.view.get();
    do {
        at = at->nextInFocusChain();
        if ((at->focusPolicy() & Qt::TabFocus) == 0 || at->focusProxy() != nullptr ||
            !at->isVisible() || qobject_cast<QSpinBox *>(at->parentWidget()) != nullptr)
            continue;
        QVERIFY2(!at->objectName().isEmpty(), at->metaObject()->className());
        const QString spoken = QAccessible::queryAccessibleInterface(at)->text(QAccessible::Name);
        QVERIFY2(!spoken.isEmpty(), qPrintable(at->objectName()));
        QVERIFY2(!spoken.contains(u'&'), qPrintable(spoken));
        order << at->objectName();
    } while (at != tab.view.get());
    const QStringList expected{
        u"portNumber"_s,      u"actComPortTest"_s,  u"scrollSpeed"_s,      u"moduleCount"_s,
        u"brightness"_s,      u"reverse180"_s,      u"rotation"_s,         u"useBitmapFont"_s,
        u"dispAuto"_s,        u"isScroll"_s,        u"dispProgress"_s,     u"virtualLED"_s,
        u"useNarrowFont"_s,   u"lightLEDColor"_s,   u"dontShowOlder"_s,    u"olderHours"_s,
        u"skipCMMode"_s,      u"skipCMWord1"_s,     u"skipCMWord2"_s,      u"skipCMWord3"_s,
        u"skipCMWord4"_s,     u"skipCMWord5"_s,     u"skipCMWord6"_s,      u"skipCMWord7"_s,
        u"skipCMWord8"_s,     u"logRSSRead"_s,      u"logRSSDisp"_s,       u"logTimer"_s,
        u"logSystem"_s,       u"logFilePath"_s,     u"actLogFilePath"_s,   u"actDispLog"_s,
        u"playFinishSound"_s, u"finishSoundName"_s, u"playArrivalSound"_s, u"arrivalSoundName"_s,
        u"playSoundVolume"_s, u"desigBrowser"_s,    u"actSelectBrowser"_s, u"actDefaultBrowser"_s};
    QCOMPARE(order, expected);
}

void SettingsViewTest::addedGroup_standsAfterTheDisplay()
{
    SettingsTab tab;
    tab.start();
    auto *group = new QGroupBox;
    auto *layout = new QVBoxLayout(group);
    auto *first = new QCheckBox(u"1"_s);
    auto *second = new QCheckBox(u"2"_s);
    layout->addWidget(first);
    layout->addWidget(second);
    tab.view->addGroup(group);
    QTRY_VERIFY(first->isVisible());

    tab.control(u"lightLEDColor"_s).setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), first);
    QTest::keyClick(first, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), second);
    QTest::keyClick(second, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"dontShowOlder"_s);
}

void SettingsViewTest::mnemonics_areUnique()
{
    SettingsTab tab;
    tab.start();
    QStringList keys;
    for (const QWidget *widget : tab.view->findChildren<QWidget *>()) {
        const QString key = QKeySequence::mnemonic(widget->property("text").toString()).toString();
        if (key.isEmpty())
            continue;
        QVERIFY2(!keys.contains(key), qPrintable(key + widget->objectName()));
        keys << key;
    }
    QVERIFY(keys.size() > 10);
    // The menus and the buttons of the main window stand beside every tab.
    for (const auto &taken :
         {u"F"_s, u"E"_s, u"V"_s, u"D"_s, u"W"_s, u"H"_s, u"S"_s, u"T"_s, u"R"_s, u"L"_s, u"I"_s})
        QVERIFY2(!keys.contains(u"Alt+"_s + taken), qPrintable(taken));
}

void SettingsViewTest::columns_followTheWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("sideBySide");
    QTest::newRow("a wide window") << 1600 << true;
    QTest::newRow("half a small screen") << 480 << false;
}

void SettingsViewTest::columns_followTheWidth()
{
    QFETCH(int, width);
    QFETCH(bool, sideBySide);
    SettingsTab tab;
    tab.start();
    tab.view->resize(width, 500);
    const QWidget &first = tab.control(u"portNumber"_s);
    const QWidget &last = tab.control(u"actDefaultBrowser"_s);
    const auto left = [&tab](const QWidget &control) {
        return control.mapTo(tab.view.get(), QPoint()).x();
    };
    QTRY_COMPARE(left(last) > left(first) + first.width(), sideBySide);
    // What does not fit is scrolled, downwards only.
    const auto &page = tab.control<QScrollArea>(u"settingsPage"_s);
    QTRY_COMPARE(page.horizontalScrollBar()->maximum(), 0);
}

QTEST_MAIN(SettingsViewTest)
#include "settingsview_test.moc"
