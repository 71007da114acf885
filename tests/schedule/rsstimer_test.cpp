// SPDX-License-Identifier: MIT
#include "ScheduleParts.h"
#include "platform/Localization.h"

#include <QRandomGenerator>
#include <QTest>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

/// The list of timers: what is stored, the dialog, deleting and moving.
class RSSTimerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstRun();
    void start_readsTimersInOrder();
    void start_skipsWhatIsNoTimer();
    void setUseTimer_isStoredAndStartsTheTimer();
    void columnWidths();
    void newTimer_data();
    void newTimer();
    void editedTimer_isReplaced();
    void editedTimer_isFoundAfterAMove();
    void editedTimer_thatIsGone_changesNothing();
    void editWithoutSelection_isLogged_data();
    void editWithoutSelection_isLogged();
    void cancel_closesTheDialog();
    void deletion();
    void deletion_ofATimerThatMoved();
    void checkBox_invertsAndSaves();
    void drop_data();
    void drop();
    void moves_areAPermutation();
    void controls_followTheSelection();
};

namespace {

TMRData namedTimer(const QString &name)
{
    return dailyTimer(0, TimerOperation::StartDisplay, name);
}

QStringList namesOf(const std::vector<TMRData> &timers)
{
    QStringList names;
    for (const TMRData &timer : timers)
        names << timer.address();
    return names;
}

std::vector<TMRData> timersABCD()
{
    return {namedTimer(u"a"_s), namedTimer(u"b"_s), namedTimer(u"c"_s), namedTimer(u"d"_s)};
}

} // namespace

void RSSTimerTest::firstRun()
{
    ScheduleParts parts;
    parts.schedule.awakeFromNibx();
    QVERIFY(parts.schedule.useTimer());
    QVERIFY(parts.schedule.timerList().empty());
    QVERIFY(parts.minuteTimer.isRunning());
    QCOMPARE(parts.window.calls, QStringList{u"controls 1 0"_s});
}

void RSSTimerTest::start_readsTimersInOrder()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    QVERIFY(parts.timers() == timersABCD());
}

void RSSTimerTest::start_skipsWhatIsNoTimer()
{
    ScheduleParts parts;
    parts.defaults.setArray({5, toDictionary(namedTimer(u"a"_s)), u"text"_s, PropertyArray()},
                            u"TimerList"_s);
    parts.schedule.awakeFromNibx();
    QCOMPARE(namesOf(parts.timers()), QStringList{u"a"_s});
}

void RSSTimerTest::setUseTimer_isStoredAndStartsTheTimer()
{
    ScheduleParts parts;
    parts.schedule.awakeFromNibx();
    parts.schedule.actUseTimerCheck(false);
    QVERIFY(!parts.schedule.useTimer());
    QVERIFY(!parts.minuteTimer.isRunning());
    QCOMPARE(UserDefaults(parts.storePath()).valueForKey(u"UseRSSTimer"_s), PropertyValue(false));

    parts.schedule.awakeFromNibx();
    QVERIFY(!parts.minuteTimer.isRunning());
    parts.schedule.actUseTimerCheck(true);
    QVERIFY(parts.minuteTimer.isRunning());
    QCOMPARE(UserDefaults(parts.storePath()).valueForKey(u"UseRSSTimer"_s), PropertyValue(true));
}

void RSSTimerTest::columnWidths()
{
    ScheduleParts parts;
    parts.schedule.setColumnWidths({10.5, 20, 30, 40, 50, 60});
    QTest::ignoreMessage(QtWarningMsg, "columnWidths: index error"); // there are five columns
    parts.schedule.awakeFromNibx();
    QCOMPARE(parts.window.calls.mid(0, 5),
             (QStringList{u"width 0 10.5"_s, u"width 1 20"_s, u"width 2 30"_s, u"width 3 40"_s,
                          u"width 4 50"_s}));
    QCOMPARE(parts.window.calls.size(), 6);
}

void RSSTimerTest::newTimer_data()
{
    QTest::addColumn<int>("selectedRow");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("no row selected: at the end") << -1 << QStringList{u"a"_s, u"b"_s, u"new"_s};
    QTest::newRow("the first row: before it") << 0 << QStringList{u"new"_s, u"a"_s, u"b"_s};
    QTest::newRow("the last row: before it") << 1 << QStringList{u"a"_s, u"new"_s, u"b"_s};
    QTest::newRow("a row that is gone: at the end") << 2 << QStringList{u"a"_s, u"b"_s, u"new"_s};
}

void RSSTimerTest::newTimer()
{
    QFETCH(int, selectedRow);
    ScheduleParts parts;
    parts.start({namedTimer(u"a"_s), namedTimer(u"b"_s)});
    parts.window.calls.clear();
    parts.window.selected = selectedRow;

    parts.schedule.actCreateTimer();
    QVERIFY(parts.window.draft == TimerDraft());
    parts.window.draft.address = u"new"_s;
    parts.schedule.actEditExecute(parts.window.draft);
    QTEST(namesOf(parts.timers()), "names");
    QTEST(namesOf(parts.storedTimers()), "names");
    QCOMPARE(parts.window.calls,
             (QStringList{u"dialog "_s + localized(u"New Timer"_s), u"close"_s}));
}

void RSSTimerTest::editedTimer_isReplaced()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.window.selected = 1;
    parts.schedule.actDoubleClickTimerView();
    QVERIFY(parts.window.calls.contains(u"dialog "_s + localized(u"Edit Timer"_s)));
    QVERIFY(parts.window.draft == draftFrom(namedTimer(u"b"_s)));

    parts.window.draft.address = u"edited"_s;
    parts.schedule.actEditExecute(parts.window.draft);
    QCOMPARE(namesOf(parts.storedTimers()), (QStringList{u"a"_s, u"edited"_s, u"c"_s, u"d"_s}));
}

void RSSTimerTest::editedTimer_isFoundAfterAMove()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.window.selected = 1;
    parts.schedule.actEditTimer();
    parts.schedule.acceptRowDrop(1, 4); // the dialog is still open
    parts.window.draft.address = u"edited"_s;
    parts.schedule.actEditExecute(parts.window.draft);
    QCOMPARE(namesOf(parts.timers()), (QStringList{u"a"_s, u"c"_s, u"d"_s, u"edited"_s}));
}

void RSSTimerTest::editedTimer_thatIsGone_changesNothing()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.window.selected = 1;
    parts.schedule.actEditTimer();
    parts.schedule.actDeleteTimer();
    parts.schedule.deleteTimerAnswered(true);
    parts.schedule.actEditExecute(parts.window.draft);
    QCOMPARE(namesOf(parts.timers()), (QStringList{u"a"_s, u"c"_s, u"d"_s}));
    QCOMPARE(parts.window.calls.last(), u"close"_s);
}

void RSSTimerTest::editWithoutSelection_isLogged_data()
{
    QTest::addColumn<int>("selectedRow");
    QTest::newRow("no row") << -1;
    QTest::newRow("a row past the list") << 4;
}

void RSSTimerTest::editWithoutSelection_isLogged()
{
    QFETCH(int, selectedRow);
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.window.calls.clear();
    parts.window.selected = selectedRow;
    QTest::ignoreMessage(QtWarningMsg, "timerDialog: index error");
    parts.schedule.actEditTimer();
    parts.schedule.actDeleteTimer();
    QVERIFY(parts.window.calls.isEmpty());
    QVERIFY(parts.window.alerts.empty());
}

void RSSTimerTest::cancel_closesTheDialog()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.schedule.actCreateTimer();
    parts.schedule.actEditCancel();
    QCOMPARE(parts.window.calls.last(), u"close"_s);
    QVERIFY(parts.timers() == timersABCD());
}

void RSSTimerTest::deletion()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.window.selected = 2;
    parts.schedule.actDeleteTimer();
    QCOMPARE(parts.window.alerts.size(), std::size_t{1});
    const TimerAlert &alert = parts.window.alerts.front();
    QCOMPARE(alert.title, localized(u"DeleteTimer"_s));
    QCOMPARE(alert.informative, localized(u"DeleteTimerInfo"_s));
    QCOMPARE(alert.deleteButton, localized(u"Delete"_s));
    QCOMPARE(alert.cancelButton, u"Cancel"_s); // literal, not localized

    parts.schedule.deleteTimerAnswered(false);
    QCOMPARE(parts.window.calls.last(), u"close"_s);
    QVERIFY(parts.timers() == timersABCD());
    parts.schedule.actDeleteTimer();
    parts.schedule.deleteTimerAnswered(true);
    QCOMPARE(namesOf(parts.storedTimers()), (QStringList{u"a"_s, u"b"_s, u"d"_s}));
}

void RSSTimerTest::deletion_ofATimerThatMoved()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.window.selected = 0;
    parts.schedule.actDeleteTimer();
    parts.schedule.acceptRowDrop(0, 3);
    parts.schedule.deleteTimerAnswered(true);
    QCOMPARE(namesOf(parts.timers()), (QStringList{u"b"_s, u"c"_s, u"d"_s}));
}

void RSSTimerTest::checkBox_invertsAndSaves()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    QVERIFY(parts.schedule.shouldEditTableColumn(3));
    QCOMPARE(parts.storedTimers()[3].validate(), false);
    QVERIFY(parts.schedule.shouldEditTableColumn(3));
    QCOMPARE(parts.storedTimers()[3].validate(), true);

    for (int row : {-1, 4}) {
        QTest::ignoreMessage(QtWarningMsg, "shouldEditTableColumn: index error");
        QVERIFY(!parts.schedule.shouldEditTableColumn(row));
    }
}

void RSSTimerTest::drop_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<QStringList>("names");

    const QStringList same{u"a"_s, u"b"_s, u"c"_s, u"d"_s};
    QTest::newRow("onto itself") << 1 << 1 << false << same;
    QTest::newRow("just below itself") << 1 << 2 << false << same;
    QTest::newRow("one up") << 1 << 0 << true << QStringList{u"b"_s, u"a"_s, u"c"_s, u"d"_s};
    QTest::newRow("one down") << 1 << 3 << true << QStringList{u"a"_s, u"c"_s, u"b"_s, u"d"_s};
    QTest::newRow("to the end") << 0 << 4 << true << QStringList{u"b"_s, u"c"_s, u"d"_s, u"a"_s};
    QTest::newRow("to the top") << 3 << 0 << true << QStringList{u"d"_s, u"a"_s, u"b"_s, u"c"_s};
    QTest::newRow("the last one below itself") << 3 << 4 << false << same;
    QTest::newRow("from nowhere") << -1 << 0 << false << same;
    QTest::newRow("from past the list") << 4 << 0 << false << same;
    QTest::newRow("to past the end") << 0 << 5 << false << same;
    QTest::newRow("to before the top") << 2 << -1 << false << same;
}

void RSSTimerTest::drop()
{
    QFETCH(int, from);
    QFETCH(int, target);
    ScheduleParts parts;
    parts.start(timersABCD());
    QTEST(parts.schedule.acceptRowDrop(from, target), "isAccepted");
    QTEST(namesOf(parts.timers()), "names");
}

void RSSTimerTest::moves_areAPermutation()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    ScheduleParts parts;
    std::vector<TMRData> timers;
    timers.reserve(12);
    for (int i = 0; i < 12; ++i)
        timers.push_back(namedTimer(QString::number(i)));
    parts.start(timers);
    QStringList expected = namesOf(timers);
    for (int i = 0; i < 200; ++i) {
        const int from = random.bounded(12);
        const int target = random.bounded(13);
        parts.schedule.moveTimerFromIndex(from, target);
        // Taking the row out first moves the place below it up by one.
        const QString moved = expected.takeAt(from);
        expected.insert(target > from ? target - 1 : target, moved);
        QCOMPARE(namesOf(parts.timers()), expected);
    }
}

void RSSTimerTest::controls_followTheSelection()
{
    ScheduleParts parts;
    parts.start(timersABCD());
    parts.window.selected = 0;
    parts.schedule.renewControls();
    QCOMPARE(parts.window.calls.last(), u"controls 1 1"_s);
    parts.schedule.setUseTimer(false);
    parts.window.selected = -1;
    parts.schedule.renewControls();
    QCOMPARE(parts.window.calls.last(), u"controls 0 0"_s);
}

QTEST_GUILESS_MAIN(RSSTimerTest)
#include "rsstimer_test.moc"
