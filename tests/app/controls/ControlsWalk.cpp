// SPDX-License-Identifier: MIT
#include "ControlsWalk.h"

#include "WindowControls.h"
#include "messages/views/RSSTextField.h"
#include "messages/views/RSSView.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSet>
#include <QTabWidget>

#include <algorithm>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Texts that stand in the program as they are, because a user of other systems knows them so.
const QSet<QString> literalTexts = {u"QoVelmorRSS"_s, u"Cancel"_s, u"選択"_s,
                                    u"指定ブラウザの選択"_s};

bool isKnownText(const QString &text)
{
    return isLocalized(text) || literalTexts.contains(text);
}

/// The name of the control that has the keys, or of the one that it is a part of.
QString nameOfFocus(const QWidget &window)
{
    const QWidget *widget = window.focusWidget();
    while (widget && (widget->objectName().isEmpty() || widget->objectName().startsWith(u"qt_"_s)))
        widget = widget->parentWidget();
    return widget ? widget->objectName() : QString();
}

/// What a screen reader says first.
QString spokenNameOf(QWidget &control)
{
    if (qobject_cast<QComboBox *>(&control))
        return control.accessibleName(); // the toolkit's own answer is what has been chosen
    auto *spoken = QAccessible::queryAccessibleInterface(&control);
    return spoken ? spoken->text(QAccessible::Name) : QString();
}

const QWidget *defaultButtonOf(const QWidget &window)
{
    for (const auto *button : window.findChildren<QPushButton *>()) {
        if (button->isDefault())
            return button;
    }
    return nullptr;
}

bool takesTab(const QWidget &control)
{
    if (const auto *tabs = qobject_cast<const QTabWidget *>(&control))
        return tabs->isVisible();
    const auto *radio = qobject_cast<const QRadioButton *>(&control);
    return control.isVisible() && control.isEnabled() && (control.focusPolicy() & Qt::TabFocus) &&
           (!radio || radio->isChecked()); // of a group, the one that is chosen
}

void scrollTo(QWidget &control)
{
    for (QWidget *parent = control.parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto *page = qobject_cast<QScrollArea *>(parent))
            page->ensureWidgetVisible(&control);
    }
    QCoreApplication::processEvents();
}

/// Whether the mouse finds the control where it is drawn.
bool isOnTop(QWidget &control)
{
    QWidget *window = control.window();
    const QPoint place(std::min(10, control.width() / 2), control.height() / 2);
    const QWidget *there = window->childAt(control.mapTo(window, place));
    return there && (there == &control || control.isAncestorOf(there));
}

} // namespace

ControlsWalk::ControlsWalk(std::vector<Stage> stages) : stages_(std::move(stages)) {}

void ControlsWalk::initTestCase()
{
    QApplication::setCursorFlashTime(0); // a cursor is seen whenever somebody looks
}

void ControlsWalk::eachStage() const
{
    QTest::addColumn<int>("stage");
    for (int index = 0; index < int(stages_.size()); ++index)
        QTest::newRow(qPrintable(stages_[size_t(index)].name)) << index;
}

const Stage &ControlsWalk::stage() const
{
    QFETCH(int, stage);
    return stages_[size_t(stage)];
}

QWidget *ControlsWalk::open(AllWindows &program, const Stage &stage) const
{
    program.launchOnTab(tab::list);
    stage.open(program);
    program.settle();
    QWidget *window = AllWindows::shown(stage.window);
    if (!window)
        return nullptr;
    window->activateWindow();
    return QTest::qWaitForWindowActive(window) ? window : nullptr;
}

void ControlsWalk::everyControlIsInTheTable()
{
    AllWindows p(stage().withBoard);
    const QWidget *window = open(p, stage());
    QVERIFY(window);
    QStringList present;
    for (const QWidget *control : controlsOf(*window))
        present << control->objectName();
    QStringList listed; // in the table of any stage of this window: a tab hides those of another
    for (const Stage &other : stages_) {
        if (other.window != window->objectName())
            continue;
        for (const Control &row : other.controls) {
            if (!row.gestures.empty()) // others only say where the Tab key goes
                listed << row.name;
        }
    }
    listed.removeDuplicates();
    for (const QString &name : std::as_const(present))
        QVERIFY2(listed.contains(name), qPrintable(u"not in the table: "_s + name));
    present.sort();
    listed.sort();
    QCOMPARE(present.join(u' '), listed.join(u' ')); // none is there twice, none is missing
}

void ControlsWalk::everyControlSaysWhatItIs()
{
    AllWindows p(stage().withBoard);
    const QWidget *window = open(p, stage());
    QVERIFY(window);
    QVERIFY2(isKnownText(window->windowTitle()), qPrintable(window->windowTitle()));
    for (QWidget *control : controlsOf(*window)) {
        const QByteArray name = control->objectName().toUtf8();
        QVERIFY2(!name.isEmpty(), control->metaObject()->className());
        if (qobject_cast<RSSTextField *>(control))
            continue; // what it shows is what it says
        QVERIFY2(isKnownText(spokenNameOf(*control)), name);
        const auto *button = qobject_cast<QAbstractButton *>(control);
        if (button && name != "lightLEDColor") // that one shows the number of its colour
            QVERIFY2(isKnownText(button->text()), name);
        QVERIFY2(control->focusPolicy() != Qt::NoFocus || qobject_cast<RSSView *>(control) ||
                     qobject_cast<QTabWidget *>(control),
                 name);
    }
    for (const auto *label : window->findChildren<QLabel *>()) {
        if (label->window() == window && label->buddy())
            QVERIFY2(isKnownText(label->text()), qPrintable(label->text()));
    }
}

void ControlsWalk::keysAreUnique()
{
    AllWindows p(stage().withBoard);
    const QWidget *window = open(p, stage());
    QVERIFY(window);
    const auto users = mnemonicsOf(*window);
    for (const QStringList &texts : users)
        QVERIFY2(texts.size() == 1, qPrintable(texts.join(u", "_s)));
}

// Return presses the default button and Escape the one that cancels; others need a key of their
// own.
void ControlsWalk::everyCommandHasAKey()
{
    AllWindows p(stage().withBoard);
    const QWidget *window = open(p, stage());
    QVERIFY(window);
    for (const auto *button : window->findChildren<QPushButton *>()) {
        if (button->window() != window || !button->isVisible())
            continue;
        const bool hasReturn = button->isDefault();
        const bool hasEscape = button->objectName().endsWith(u"Cancel"_s);
        bool hasLetter = !mnemonicOf(button->text()).isEmpty();
        for (const auto *label : window->findChildren<QLabel *>())
            hasLetter =
                hasLetter || (label->buddy() == button && !mnemonicOf(label->text()).isEmpty());
        QVERIFY2(hasLetter || hasEscape || hasReturn, qPrintable(button->objectName()));
    }
}

void ControlsWalk::tabKeyGoesThroughThemAll()
{
    AllWindows p(stage().withBoard);
    QWidget *window = open(p, stage());
    QVERIFY(window);
    QStringList expected;
    for (const Control &row : stage().controls) {
        const auto *control = window->findChild<QWidget *>(row.name);
        if (!expected.contains(row.name) && control && takesTab(*control))
            expected << row.name;
    }
    if (expected.isEmpty())
        return;
    auto *first = window->findChild<QWidget *>(expected.first());
    if (auto *tabs = qobject_cast<QTabWidget *>(first))
        first = tabs->findChild<QWidget *>(u"qt_tabwidget_tabbar"_s);
    first->setFocus();
    if (expected.size() > 1) { // it is the keyboard that makes a window show where it is
        QTest::keyClick(first, Qt::Key_Tab);
        QTest::keyClick(window->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    }
    const QWidget *defaultButton = defaultButtonOf(*window);
    QStringList visited;
    for (int steps = 0; steps <= expected.size(); ++steps) {
        const QString name = nameOfFocus(*window);
        if (visited.contains(name))
            break;
        visited << name;
        QWidget *focus = window->focusWidget();
        scrollTo(*focus);
        const QImage with = focus->grab().toImage();
        QTest::keyClick(focus, Qt::Key_Tab);
        const bool isLit = focus == defaultButton; // also while another control has the keys
        if (expected.size() > 1 && !isLit)
            QVERIFY2(focus->grab().toImage() != with, qPrintable(u"focus not seen: "_s + name));
    }
    QCOMPARE(defaultButtonOf(*window), defaultButton); // Return still does what it did
    QCOMPARE(visited.join(u' '), expected.join(u' '));
}

void ControlsWalk::controlsDoWhatTheTableSays_data()
{
    QTest::addColumn<int>("stage");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("gesture");
    for (int index = 0; index < int(stages_.size()); ++index) {
        const Stage &one = stages_[size_t(index)];
        for (int row = 0; row < int(one.controls.size()); ++row) {
            const Control &control = one.controls[size_t(row)];
            for (int gesture = 0; gesture < int(control.gestures.size()); ++gesture) {
                QTest::addRow("%s/%s, %s: %s", qPrintable(one.name), qPrintable(control.name),
                              qPrintable(control.gestures[size_t(gesture)].name),
                              qPrintable(control.effect.on))
                    << index << row << gesture;
            }
        }
    }
}

void ControlsWalk::controlsDoWhatTheTableSays()
{
    QFETCH(int, row);
    QFETCH(int, gesture);
    const Control &control = stage().controls[size_t(row)];
    AllWindows p(stage().withBoard);
    QWidget *window = open(p, stage());
    QVERIFY(window);
    if (control.before)
        control.before(p);
    p.settle();
    auto *widget = window->findChild<QWidget *>(control.name);
    QVERIFY(widget);
    QVERIFY(widget->isVisible() && widget->isEnabled());
    scrollTo(*widget);
    QVERIFY(isOnTop(*widget));
    widget->setFocus();

    const Effect &effect = control.effect;
    const QString before = effect.state(p);
    if (!effect.wanted.isNull())
        QVERIFY2(before != effect.wanted, qPrintable(before));
    control.gestures[size_t(gesture)].make(p, *widget);
    const auto now = [&] {
        p.settle();
        return effect.state(p);
    };
    if (effect.wanted.isNull())
        QTRY_VERIFY(now() != before);
    else
        QTRY_COMPARE(now(), effect.wanted);
}

} // namespace qovelmor
