// SPDX-License-Identifier: MIT
#include "TimerParts.h"
#include "platform/Localization.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The timer window by mouse and keyboard.
class TimerViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The table.
    void emptyTable_saysWhatToDo();
    void columns_followTheStore();
    void columnWidths_areStoredOnceWhenTheDragEnds();
    void checkBox_invertsOneTimer();
    void spaceBar_invertsTheSelectedTimer();
    void buttons_followTheSelection();
    void useTimer_startsAndStopsTheSchedule();

    // The dialog.
    void newTimer_beginsWithItsDefaults();
    void newTimer_isStoredAsEntered_data();
    void newTimer_isStoredAsEntered();
    void newTimer_goesBeforeTheSelectedRow();
    void timeOutsideTheDay_isSaidAndKept();
    void edit_showsAndReplacesTheTimer_data();
    void edit_showsAndReplacesTheTimer();
    void cancel_changesNothing_data();
    void cancel_changesNothing();

    // Deleting and moving.
    void deletion_isConfirmed();
    void deletion_isRefused_data();
    void deletion_isRefused();
    void drop_movesTheRow_data();
    void drop_movesTheRow();
    void keys_moveTheRow();

    void timers_fireWhileADialogIsOpen();
    void closing_hidesTheWindow();
    void controls_haveNamesAndAnOrder();
};

namespace {

void type(QWidget &field, const QString &text)
{
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
}

const QStringList abc{u"a"_s, u"b"_s, u"c"_s};

} // namespace

// The table. ------------------------------------------------------------------------------------

void TimerViewTest::emptyTable_saysWhatToDo()
{
    TimerParts parts;
    const auto &sentence = parts.control<QLabel>(u"noTimersText"_s);
    QVERIFY(sentence.isVisible());
    QCOMPARE(sentence.text(), localized(u"NoTimersYet"_s));

    parts.click(u"createButton"_s);
    parts.click(u"actEditExecute"_s);
    parts.mainThread.drain();
    QVERIFY(!sentence.isVisible());
}

void TimerViewTest::columns_followTheStore()
{
    ScheduleParts stored;
    stored.schedule.setColumnWidths({60, 61, 62, 63});
    TimerView view(stored.schedule);
    stored.schedule.awakeFromNibx();
    const auto &table = *view.findChild<ListTable *>(u"timerView"_s);
    for (int column = 0; column < 4; ++column)
        QCOMPARE(table.columnWidth(column), 60 + column);
}

void TimerViewTest::columnWidths_areStoredOnceWhenTheDragEnds()
{
    TimerParts parts(namedTimers(abc));
    QHeaderView &header = *parts.table().horizontalHeader();
    const int width = header.sectionSize(1);
    const QPoint edge(header.sectionViewportPosition(1) + width - 2, header.height() / 2);
    QTest::mouseMove(header.viewport(), edge);
    QTest::mousePress(header.viewport(), Qt::LeftButton, {}, edge);
    for (int step = 1; step <= 5; ++step)
        QTest::mouseMove(header.viewport(), edge + QPoint(4 * step, 0));
    QVERIFY(header.sectionSize(1) > width);
    QVERIFY(!parts.defaults.hasKey(u"TimerListColumnWidths"_s));
    QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, edge + QPoint(20, 0));

    QTRY_VERIFY(parts.defaults.hasKey(u"TimerListColumnWidths"_s));
    const auto widths = UserDefaults(parts.storePath()).arrayForKey(u"TimerListColumnWidths"_s);
    QCOMPARE(widths->size(), std::size_t{5});
    QCOMPARE(static_cast<int>(widths->at(1).toDouble()), header.sectionSize(1));
}

void TimerViewTest::checkBox_invertsOneTimer()
{
    TimerParts parts(namedTimers(abc));
    const QRect cell = parts.table().visualRect(parts.table().model()->index(1, 0));
    QTest::mouseClick(parts.table().viewport(), Qt::LeftButton, {},
                      QPoint(cell.left() + 10, cell.center().y()));
    QCOMPARE(parts.storedTimers()[0].validate(), true);
    QCOMPARE(parts.storedTimers()[1].validate(), false);
    QCOMPARE(parts.storedTimers()[2].validate(), true);
}

void TimerViewTest::spaceBar_invertsTheSelectedTimer()
{
    TimerParts parts(namedTimers(abc));
    parts.clickCell(2, 2);
    parts.press(Qt::Key_Space);
    QCOMPARE(parts.storedTimers()[2].validate(), false);
    parts.press(Qt::Key_Space);
    QCOMPARE(parts.storedTimers()[2].validate(), true);
}

void TimerViewTest::buttons_followTheSelection()
{
    TimerParts parts(namedTimers(abc));
    QVERIFY(parts.control(u"createButton"_s).isEnabled());
    QVERIFY(!parts.control(u"editButton"_s).isEnabled());
    QVERIFY(!parts.control(u"deleteButton"_s).isEnabled());
    parts.clickCell(0, 2);
    QVERIFY(parts.control(u"createButton"_s).isEnabled());
    QVERIFY(parts.control(u"editButton"_s).isEnabled());
    QVERIFY(parts.control(u"deleteButton"_s).isEnabled());
    parts.press(Qt::Key_Escape);
    QVERIFY(!parts.control(u"editButton"_s).isEnabled());
}

void TimerViewTest::useTimer_startsAndStopsTheSchedule()
{
    TimerParts parts;
    const auto &check = parts.control<QCheckBox>(u"useTimerCheck"_s);
    QVERIFY(check.isChecked());
    parts.click(u"useTimerCheck"_s);
    QVERIFY(!parts.minuteTimer.isRunning());
    QCOMPARE(UserDefaults(parts.storePath()).valueForKey(u"UseRSSTimer"_s), PropertyValue(false));
    parts.click(u"useTimerCheck"_s);
    QVERIFY(parts.minuteTimer.isRunning());
}

// The dialog. -----------------------------------------------------------------------------------

void TimerViewTest::newTimer_beginsWithItsDefaults()
{
    const TimerParts parts;
    parts.click(u"createButton"_s);
    QVERIFY(parts.dialog().isVisible());
    QCOMPARE(parts.dialog().windowTitle(), localized(u"New Timer"_s));
    for (const auto &name :
         {u"validateCheck"_s, u"sundayCheck"_s, u"mondayCheck"_s, u"tuesdayCheck"_s,
          u"wednesdayCheck"_s, u"thursdayCheck"_s, u"fridayCheck"_s, u"saturdayCheck"_s})
        QVERIFY(parts.control<QCheckBox>(name).isChecked());
    QCOMPARE(parts.control<QLineEdit>(u"fireHourText"_s).text(), u"0"_s);
    QCOMPARE(parts.control<QLineEdit>(u"fireMinuteText"_s).text(), u"0"_s);
    QVERIFY(parts.control<QRadioButton>(u"actionRadioStart"_s).isChecked());
    QCOMPARE(parts.control<QLineEdit>(u"urlText"_s).text(), u""_s);
}

void TimerViewTest::newTimer_isStoredAsEntered_data()
{
    using Entry = std::function<void(const TimerParts &)>;
    using Expected = std::shared_ptr<TMRData>;
    QTest::addColumn<Entry>("entry");
    QTest::addColumn<Expected>("expected");
    const auto add = [](const char *title, const Entry &entry, const TMRData &expected) {
        QTest::newRow(title) << entry << std::make_shared<TMRData>(expected);
    };
    const TMRData factory = dailyTimer(0, TimerOperation::StartDisplay);
    const auto with = [factory](auto change) {
        TMRData timer = factory;
        change(timer);
        return timer;
    };

    add(
        "nothing entered", [](const TimerParts &) {}, factory);
    add(
        "not enabled", [](const TimerParts &p) { p.click(u"validateCheck"_s); },
        with([](TMRData &t) { t.setValidate(false); }));
    const std::array days{u"sundayCheck"_s,    u"mondayCheck"_s,   u"tuesdayCheck"_s,
                          u"wednesdayCheck"_s, u"thursdayCheck"_s, u"fridayCheck"_s,
                          u"saturdayCheck"_s};
    for (std::size_t day = 0; day < days.size(); ++day)
        add(
            qPrintable(u"without "_s + days[day]),
            [name = days[day]](const TimerParts &p) { p.click(name); },
            with([day](TMRData &t) { t.setFireDay(127 - (1 << day)); }));
    add(
        "half past eight",
        [](const TimerParts &p) {
            type(p.control(u"fireHourText"_s), u"8"_s);
            type(p.control(u"fireMinuteText"_s), u"30"_s);
        },
        with([](TMRData &t) { t.setFireTime(510); }));
    add(
        "an hour of 25", [](const TimerParts &p) { type(p.control(u"fireHourText"_s), u"25"_s); },
        with([](TMRData &t) { t.setFireTime(1500); }));
    add(
        "a minute of 99",
        [](const TimerParts &p) { type(p.control(u"fireMinuteText"_s), u"99"_s); },
        with([](TMRData &t) { t.setFireTime(99); }));
    add(
        "stop", [](const TimerParts &p) { p.click(u"actionRadioStop"_s); },
        with([](TMRData &t) { t.setOperation(2); }));
    add(
        "nothing to do", [](const TimerParts &p) { p.click(u"actionRadioNothing"_s); },
        with([](TMRData &t) { t.setOperation(0); }));
    add(
        "an address",
        [](const TimerParts &p) { type(p.control(u"urlText"_s), u" http://a.jp/ "_s); },
        with([](TMRData &t) { t.setAddress(u" http://a.jp/ "_s); })); // as typed
}

void TimerViewTest::newTimer_isStoredAsEntered()
{
    QFETCH(std::function<void(const TimerParts &)>, entry);
    QFETCH(std::shared_ptr<TMRData>, expected);
    TimerParts parts;
    parts.click(u"createButton"_s);
    entry(parts);
    parts.click(u"actEditExecute"_s);
    QVERIFY(!parts.dialog().isVisible());
    QCOMPARE(parts.storedTimers().size(), std::size_t{1});
    QVERIFY(parts.storedTimers().front() == *expected);
}

void TimerViewTest::newTimer_goesBeforeTheSelectedRow()
{
    TimerParts parts(namedTimers(abc));
    const auto addNamed = [&](const QString &name) {
        parts.click(u"createButton"_s);
        type(parts.control(u"urlText"_s), name);
        QTest::keyClick(&parts.dialog(), Qt::Key_Return);
        parts.mainThread.drain();
    };
    addNamed(u"last"_s); // no row is selected
    QCOMPARE(parts.storedNames(), (QStringList{u"a"_s, u"b"_s, u"c"_s, u"last"_s}));
    parts.clickCell(1, 2);
    addNamed(u"new"_s);
    QCOMPARE(parts.storedNames(), (QStringList{u"a"_s, u"new"_s, u"b"_s, u"c"_s, u"last"_s}));
    QCOMPARE(parts.shownNames(), parts.storedNames());
    QCOMPARE(parts.view->selectedRow(), 2); // still the row that was selected
}

void TimerViewTest::timeOutsideTheDay_isSaidAndKept()
{
    TimerParts parts;
    parts.click(u"createButton"_s);
    const auto &hint = parts.control<QLabel>(u"timeHint"_s);
    QVERIFY(!hint.isVisible());
    type(parts.control(u"fireHourText"_s), u"24"_s);
    QVERIFY(hint.isVisible());
    type(parts.control(u"fireHourText"_s), u"23"_s);
    QVERIFY(!hint.isVisible());
    type(parts.control(u"fireMinuteText"_s), u"60"_s);
    QVERIFY(hint.isVisible());
    parts.click(u"actEditExecute"_s);
    QCOMPARE(parts.storedTimers().front().fireTime(), 1440);
}

void TimerViewTest::edit_showsAndReplacesTheTimer_data()
{
    using Way = std::function<void(TimerParts &)>;
    QTest::addColumn<Way>("way");
    QTest::newRow("button") << Way([](TimerParts &p) {
        p.clickCell(1, 2);
        p.click(u"editButton"_s);
    });
    QTest::newRow("double click") << Way([](TimerParts &p) { p.doubleClickCell(1, 3); });
    QTest::newRow("Return") << Way([](TimerParts &p) {
        p.clickCell(1, 2);
        p.press(Qt::Key_Return);
    });
}

void TimerViewTest::edit_showsAndReplacesTheTimer()
{
    QFETCH(std::function<void(TimerParts &)>, way);
    std::vector<TMRData> timers = namedTimers(abc);
    timers[1].setFireDay(34);
    timers[1].setFireTime(510);
    timers[1].setOperation(2);
    TimerParts parts(timers);
    way(parts);

    QVERIFY(parts.dialog().isVisible());
    QCOMPARE(parts.dialog().windowTitle(), localized(u"Edit Timer"_s));
    QVERIFY(parts.dialog().draft() == draftFrom(timers[1]));
    QVERIFY(parts.control<QRadioButton>(u"actionRadioStop"_s).isChecked());
    type(parts.control(u"fireMinuteText"_s), u"45"_s);
    parts.click(u"actEditExecute"_s);
    parts.mainThread.drain();
    QCOMPARE(parts.storedTimers()[1].fireTime(), 525);
    QCOMPARE(parts.text(1, 2), u"08:45"_s);
    QCOMPARE(parts.text(1, 1), u"　月　　　金　"_s);
    QCOMPARE(parts.view->selectedRow(), 1);
}

void TimerViewTest::cancel_changesNothing_data()
{
    using Way = std::function<void(TimerParts &)>;
    QTest::addColumn<Way>("way");
    QTest::newRow("button") << Way([](TimerParts &p) { p.click(u"actEditCancel"_s); });
    QTest::newRow("Escape") << Way(
        [](TimerParts &p) { QTest::keyClick(&p.dialog(), Qt::Key_Escape); });
    QTest::newRow("closing it") << Way([](TimerParts &p) { p.dialog().close(); });
}

void TimerViewTest::cancel_changesNothing()
{
    QFETCH(std::function<void(TimerParts &)>, way);
    TimerParts parts(namedTimers(abc));
    parts.clickCell(0, 2);
    parts.click(u"editButton"_s);
    type(parts.control(u"urlText"_s), u"other"_s);
    way(parts);
    QVERIFY(!parts.dialog().isVisible());
    QCOMPARE(parts.storedNames(), abc);
}

// Deleting and moving. --------------------------------------------------------------------------

void TimerViewTest::deletion_isConfirmed()
{
    TimerParts parts(namedTimers(abc));
    parts.clickCell(1, 2);
    parts.press(Qt::Key_Delete);
    QVERIFY(parts.alert() != nullptr);
    QCOMPARE(parts.storedNames(), abc); // nothing before the answer
    QCOMPARE(parts.control<QPushButton>(u"deleteTimerAlertAccept"_s).text(),
             localized(u"Delete"_s));
    QCOMPARE(parts.control<QPushButton>(u"deleteTimerAlertCancel"_s).text(), u"Cancel"_s);
    QTest::keyClick(parts.alert(), Qt::Key_Return);
    parts.mainThread.drain();
    QCOMPARE(parts.storedNames(), (QStringList{u"a"_s, u"c"_s}));
    QCOMPARE(parts.shownNames(), parts.storedNames());
}

void TimerViewTest::deletion_isRefused_data()
{
    using Way = std::function<void(TimerParts &)>;
    QTest::addColumn<Way>("way");
    QTest::newRow("button") << Way([](TimerParts &p) { p.click(u"deleteTimerAlertCancel"_s); });
    QTest::newRow("Escape") << Way(
        [](TimerParts &p) { QTest::keyClick(p.alert(), Qt::Key_Escape); });
}

void TimerViewTest::deletion_isRefused()
{
    QFETCH(std::function<void(TimerParts &)>, way);
    TimerParts parts(namedTimers(abc));
    parts.clickCell(1, 2);
    parts.click(u"deleteButton"_s);
    QVERIFY(parts.alert() != nullptr);
    way(parts);
    QVERIFY(parts.alert() == nullptr);
    QCOMPARE(parts.storedNames(), abc);
}

void TimerViewTest::drop_movesTheRow_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("row"); // the row at whose upper edge the drop is, 3: below the last
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("selected");
    QTest::newRow("up") << 2 << 0 << QStringList{u"c"_s, u"a"_s, u"b"_s} << 0;
    QTest::newRow("down") << 0 << 2 << QStringList{u"b"_s, u"a"_s, u"c"_s} << 1;
    QTest::newRow("to the end") << 0 << 3 << QStringList{u"b"_s, u"c"_s, u"a"_s} << 2;
    QTest::newRow("onto itself") << 1 << 1 << abc << 1;
    QTest::newRow("just below itself") << 1 << 2 << abc << 1;
}

void TimerViewTest::drop_movesTheRow()
{
    QFETCH(int, from);
    QFETCH(int, row);
    TimerParts parts(namedTimers(abc));
    parts.clickCell(from, 2);

    ListTable &table = parts.table();
    const std::unique_ptr<QMimeData> dragged(
        table.model()->mimeData({table.model()->index(from, 2)}));
    const QRect last = table.visualRect(table.model()->index(2, 2));
    const QPoint place =
        row < 3 ? table.visualRect(table.model()->index(row, 2)).topLeft() + QPoint(20, 1)
                : last.bottomLeft() + QPoint(20, 20);
    QDragEnterEvent enter(place, Qt::MoveAction, dragged.get(), Qt::LeftButton, {});
    QApplication::sendEvent(table.viewport(), &enter);
    QDragMoveEvent move(place, Qt::MoveAction, dragged.get(), Qt::LeftButton, {});
    QApplication::sendEvent(table.viewport(), &move);
    if (move.isAccepted()) {
        QDropEvent drop(place, Qt::MoveAction, dragged.get(), Qt::LeftButton, {});
        QApplication::sendEvent(table.viewport(), &drop);
    }
    parts.mainThread.drain();
    QTEST(parts.storedNames(), "names");
    QTEST(parts.shownNames(), "names");
    QTEST(parts.view->selectedRow(), "selected");
}

void TimerViewTest::keys_moveTheRow()
{
    TimerParts parts(namedTimers(abc));
    parts.clickCell(0, 2);
    parts.press(Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(parts.storedNames(), (QStringList{u"b"_s, u"a"_s, u"c"_s}));
    QCOMPARE(parts.view->selectedRow(), 1);
    parts.press(Qt::Key_Down, Qt::ControlModifier);
    parts.press(Qt::Key_Down, Qt::ControlModifier); // already the last
    QCOMPARE(parts.storedNames(), (QStringList{u"b"_s, u"c"_s, u"a"_s}));
    parts.press(Qt::Key_Up, Qt::ControlModifier);
    QCOMPARE(parts.storedNames(), (QStringList{u"b"_s, u"a"_s, u"c"_s}));
    QCOMPARE(parts.shownNames(), parts.storedNames());
}

void TimerViewTest::timers_fireWhileADialogIsOpen()
{
    TimerParts parts({dailyTimer(481, TimerOperation::StopDisplay)});
    parts.clickCell(0, 2);
    parts.click(u"deleteButton"_s);
    QVERIFY(parts.alert() != nullptr);
    parts.minuteTimer.run(std::chrono::minutes(1));
    QCOMPARE(parts.actions.calls, (QStringList{u"stop"_s, u"log stop"_s}));
    QVERIFY(parts.alert() != nullptr);
}

void TimerViewTest::closing_hidesTheWindow()
{
    TimerParts parts;
    QVERIFY(parts.view->isVisible());
    QTest::keyClick(parts.view.get(), Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(!parts.view->isVisible());
    parts.view->show();
    QVERIFY(parts.view->isVisible());
}

// Every control that takes the keyboard can be reached with Tab and says what it is.
void TimerViewTest::controls_haveNamesAndAnOrder()
{
    TimerParts parts(namedTimers(abc));
    parts.clickCell(0, 2); // so that the buttons can be used
    parts.click(u"editButton"_s);
    for (QWidget *window :
         {static_cast<QWidget *>(parts.view.get()), static_cast<QWidget *>(&parts.dialog())}) {
        QStringList order;
        QWidget *at = window;
        do {
            at = at->nextInFocusChain();
            if (at->window() != window || (at->focusPolicy() & Qt::TabFocus) == 0 ||
                !at->isVisibleTo(window))
                continue;
            QVERIFY2(!at->objectName().isEmpty(), at->metaObject()->className());
            const QString spoken =
                QAccessible::queryAccessibleInterface(at)->text(QAccessible::Name);
            QVERIFY2(!spoken.isEmpty(), qPrintable(at->objectName()));
            order << at->objectName();
        } while (at != window);
        const QStringList expected =
            window == parts.view.get()
                ? QStringList{u"timerView"_s, u"createButton"_s, u"editButton"_s, u"deleteButton"_s,
                              u"useTimerCheck"_s}
                : QStringList{u"validateCheck"_s,      u"sundayCheck"_s,      u"mondayCheck"_s,
                              u"tuesdayCheck"_s,       u"wednesdayCheck"_s,   u"thursdayCheck"_s,
                              u"fridayCheck"_s,        u"saturdayCheck"_s,    u"fireHourText"_s,
                              u"fireMinuteText"_s,     u"actionRadioStart"_s, u"actionRadioStop"_s,
                              u"actionRadioNothing"_s, u"urlText"_s,          u"actEditExecute"_s,
                              u"actEditCancel"_s};
        QCOMPARE(order, expected);
    }
}

QTEST_MAIN(TimerViewTest)
#include "timerview_test.moc"
