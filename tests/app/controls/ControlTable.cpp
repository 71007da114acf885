// SPDX-License-Identifier: MIT
#include "ControlTable.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QHeaderView>
#include <QTabWidget>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

void clickOn(QWidget &control)
{
    // The text of a check box may end before its middle.
    const bool isButton = qobject_cast<QAbstractButton *>(&control) != nullptr;
    const QPoint middle = control.rect().center();
    QTest::mouseClick(&control, Qt::LeftButton, {}, isButton ? QPoint(10, middle.y()) : middle);
}

void typeInto(QWidget &field, const QString &text)
{
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, text);
}

/// Where keys arrive that are meant for the control.
QWidget &keyTarget(QWidget &control)
{
    auto *tabs = qobject_cast<QTabWidget *>(&control);
    return tabs ? *tabs->findChild<QWidget *>(u"qt_tabwidget_tabbar"_s) : control;
}

void pressKey(QWidget &control, QKeyCombination key)
{
    QTest::keyClick(&keyTarget(control), key.key(), key.keyboardModifiers());
}

QString visibility(const QString &window)
{
    return AllWindows::shown(window) ? u"shown"_s : u"not there"_s;
}

} // namespace

// Gestures. ---------------------------------------------------------------------------------------

std::vector<Gesture> press()
{
    std::vector<Gesture> both = keys({Qt::Key_Space});
    both.push_back(click().front());
    return both;
}

std::vector<Gesture> click()
{
    return {{u"click"_s, [](AllWindows &, QWidget &control) { clickOn(control); }}};
}

std::vector<Gesture> keys(const std::vector<QKeyCombination> &all)
{
    std::vector<Gesture> gestures;
    gestures.reserve(all.size());
    for (const QKeyCombination key : all) {
        gestures.push_back({QKeySequence(key).toString(),
                            [key](AllWindows &, QWidget &control) { pressKey(control, key); }});
    }
    return gestures;
}

std::vector<Gesture> type(const QString &text)
{
    return {{u"type"_s, [text](AllWindows &, QWidget &control) {
                 typeInto(control, text);
                 pressKey(control, Qt::Key_Return);
             }}};
}

std::vector<Gesture> keyThenClick(Qt::Key key, const QString &other)
{
    return {{QKeySequence(key).toString(), [key, other](AllWindows &p, QWidget &control) {
                 pressKey(control, key);
                 p.click(control.window()->objectName(), other);
             }}};
}

std::vector<Gesture> typeThenClick(const QString &text, const QString &other)
{
    return {{u"type"_s, [text, other](AllWindows &p, QWidget &control) {
                 typeInto(control, text);
                 p.click(control.window()->objectName(), other);
             }}};
}

std::vector<Gesture> openRow()
{
    std::vector<Gesture> both = keys({Qt::Key_Return});
    both.push_back({u"double click"_s, [](AllWindows &, QWidget &control) {
                        auto *table = qobject_cast<QTableView *>(&control);
                        const QPoint place = AllWindows::cell(table, 0);
                        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, place);
                        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, place);
                    }});
    return both;
}

std::vector<Gesture> doubleClick()
{
    return {{u"double click"_s, [](AllWindows &, QWidget &control) {
                 QTest::mouseClick(&control, Qt::LeftButton);
                 QTest::mouseDClick(&control, Qt::LeftButton);
             }}};
}

std::vector<Gesture> clickHeader()
{
    return {{u"click on the header"_s, [](AllWindows &, QWidget &control) {
                 QTest::mouseClick(
                     qobject_cast<QTableView *>(&control)->horizontalHeader()->viewport(),
                     Qt::LeftButton, {}, QPoint(12, 8));
             }}};
}

std::vector<Gesture> copyText()
{
    return {{u"copy"_s, [](AllWindows &, QWidget &control) {
                 pressKey(control, Qt::CTRL | Qt::Key_A);
                 pressKey(control, Qt::CTRL | Qt::Key_C);
             }}};
}

// Effects. ----------------------------------------------------------------------------------------

Effect stores(const QString &key)
{
    return changes(key, [key](AllWindows &p) { return p.stored(key); });
}

Effect opens(const QString &window)
{
    return becomes(window, u"shown"_s, [window](AllWindows &) { return visibility(window); });
}

Effect closes(const QString &window, const QString &untouchedKey)
{
    // What the key held when the window was open is what it has to hold afterwards.
    auto held = std::make_shared<QString>();
    return becomes(window, u"not there"_s, [window, untouchedKey, held](AllWindows &p) {
        const QString now = untouchedKey.isEmpty() ? QString() : p.stored(untouchedKey);
        if (AllWindows::shown(window))
            *held = now;
        return visibility(window) + (now == *held ? QString() : u", but the store changed"_s);
    });
}

Effect closesAndStores(const QString &window, const QString &key)
{
    auto held = std::make_shared<QString>();
    return becomes(window, u"not there, stored"_s, [window, key, held](AllWindows &p) {
        const QString now = p.stored(key);
        if (AllWindows::shown(window))
            *held = now;
        return visibility(window) + (now == *held ? QString() : u", stored"_s);
    });
}

Effect becomes(const QString &on, const QString &wanted, std::function<QString(AllWindows &)> state)
{
    return {on, std::move(state), wanted};
}

Effect changes(const QString &on, std::function<QString(AllWindows &)> state)
{
    return {on, std::move(state), QString()};
}

Effect requests(const QString &address)
{
    return changes(address,
                   [address](AllWindows &p) { return QString::number(p.loader.loadsOf(address)); });
}

Effect browses(const QString &address)
{
    return becomes(u"the browser"_s, address,
                   [](AllWindows &p) { return p.opener.opened.join(u' '); });
}

Effect browses()
{
    return changes(u"the browser"_s, [](AllWindows &p) { return p.opener.opened.join(u' '); });
}

Effect copies(const QString &text)
{
    return becomes(u"the clipboard"_s, text,
                   [](AllWindows &) { return QGuiApplication::clipboard()->text(); });
}

Effect copies()
{
    return changes(u"the clipboard"_s,
                   [](AllWindows &) { return QGuiApplication::clipboard()->text(); });
}

Effect displays(bool isRunning)
{
    const auto word = [](bool runs) { return runs ? u"runs"_s : u"rests"_s; };
    return becomes(u"the display"_s, word(isRunning),
                   [word](AllWindows &p) { return word(p.control.isDisplayActive()); });
}

std::vector<Control> alsoThere(const QStringList &names)
{
    std::vector<Control> rows;
    rows.reserve(size_t(names.size()));
    for (const QString &name : names)
        rows.push_back({name, {}, {}});
    return rows;
}

// Deeds. ------------------------------------------------------------------------------------------

Deed clicked(const QString &window, const QString &name)
{
    return [window, name](AllWindows &p) { p.click(window, name); };
}

Deed selected(const QString &window, const QString &table)
{
    return [window, table](AllWindows &p) { p.selectRow(window, table); };
}

Deed inTurn(const std::vector<Deed> &deeds)
{
    return [deeds](AllWindows &p) {
        for (const Deed &deed : deeds)
            deed(p);
    };
}

void startDisplay(AllWindows &program)
{
    program.click(u"mainWindow"_s, u"startDispButton"_s);
    program.sleep(std::chrono::milliseconds(500));
}

} // namespace qovelmor
