// SPDX-License-Identifier: MIT
#include "ScheduleParts.h"
#include "platform/Localization.h"

#include <QRandomGenerator>
#include <QTest>

#include <map>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

class RSSTimerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    // The store.
    void firstRun();
    void start_readsTimersInOrder();
    void start_skipsWhatIsNoTimer();
    void setUseTimer_isStoredAndStartsTheTimer();
    void columnWidths();

    // Firing.
    void startTimer_callsInOrder_data();
    void startTimer_callsInOrder();
    void stopTimer_callsInOrder();
    void otherOperation_doesNothing();
    void stopThenStart_inOneMinute_leavesTheDisplayRunning();
    void mondayAndFriday_fireOnceEach();
    void disabledTimer_neverFires();
    void clearedUse_neverFires();
    void hour25_neverFires();

    // The minute.
    void lateFire_isRealigned();
    void doubledTick_firesOnce();
    void earlyTick_waitsForItsMinute();
    void startInTheMiddleOfItsMinute_doesNotFire();
    void minuteDuringARead_isLost();
    void minuteWhileTheMainThreadIsBusy_isLost();
    void calendarSetBack_doesNotFireAgain();
    void calendarSetForward_losesTheMinutesBetween();
    void wrongYear_silencesNothing();
    void suspend_firesTheMinuteOfWaking();
    void clockChange_data();
    void clockChange();
    void everyMinuteOfAYear_firesOnce();

    // The list.
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

constexpr auto startDisplay = TimerOperation::StartDisplay;
constexpr auto stopDisplay = TimerOperation::StopDisplay;
constexpr int halfPastEight = 510;

void setZone(const char *zone)
{
    qputenv("TZ", zone);
}

TMRData namedTimer(const QString &name)
{
    return dailyTimer(0, startDisplay, name);
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

void RSSTimerTest::init()
{
    setZone("Asia/Tokyo");
}

// The store. ------------------------------------------------------------------------------------

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

// Firing. ---------------------------------------------------------------------------------------

void RSSTimerTest::startTimer_callsInOrder_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isDisplaying");
    QTest::addColumn<QStringList>("calls");

    QTest::newRow("the feed list, nothing on display")
        << u""_s << false << QStringList{u"read"_s, u"start"_s, u"log start "_s};
    QTest::newRow("the feed list, while displaying")
        << u""_s << true << QStringList{u"stop"_s, u"read"_s, u"start"_s, u"log start "_s};
    // The one-feed list is set before the read, which drops it again: so it has no effect.
    QTest::newRow("an address") << u"http://example.jp/"_s << false
                                << QStringList{u"temp http://example.jp/"_s, u"read"_s, u"start"_s,
                                               u"log start http://example.jp/"_s};
    QTest::newRow("an address, while displaying")
        << u"http://example.jp/"_s << true
        << QStringList{u"stop"_s, u"temp http://example.jp/"_s, u"read"_s, u"start"_s,
                       u"log start http://example.jp/"_s};
}

void RSSTimerTest::startTimer_callsInOrder()
{
    QFETCH(QString, address);
    QFETCH(bool, isDisplaying);

    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, startDisplay, address)});
    parts.actions.isDisplaying = isDisplaying;
    parts.minuteTimer.run(30min - 1s);
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(1s);
    QTEST(parts.actions.calls, "calls");
}

void RSSTimerTest::stopTimer_callsInOrder()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(24h);
    QCOMPARE(parts.actions.calls, (QStringList{u"stop"_s, u"log stop"_s}));
}

void RSSTimerTest::otherOperation_doesNothing()
{
    TMRData unknown = dailyTimer(halfPastEight, startDisplay);
    unknown.setOperation(7);
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, TimerOperation::Nothing), unknown});
    parts.minuteTimer.run(24h);
    QVERIFY(parts.actions.calls.isEmpty());
}

void RSSTimerTest::stopThenStart_inOneMinute_leavesTheDisplayRunning()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay), dailyTimer(halfPastEight, startDisplay)});
    parts.actions.isDisplaying = true;
    parts.minuteTimer.run(1h);
    QVERIFY(parts.actions.isDisplaying);
    QCOMPARE(parts.actions.calls,
             (QStringList{u"stop"_s, u"log stop"_s, u"read"_s, u"start"_s, u"log start "_s}));
}

void RSSTimerTest::mondayAndFriday_fireOnceEach()
{
    TMRData timer = dailyTimer(halfPastEight, stopDisplay);
    timer.setFireDay(34);
    QCOMPARE(timer.fireDayString(), u"　月　　　金　"_s);

    ScheduleParts parts; // a Monday, eight o'clock
    parts.start({timer});
    std::map<int, int> firesByWeekday;
    for (int hour = 0; hour < 14 * 24; ++hour) {
        parts.actions.calls.clear();
        parts.minuteTimer.run(1h);
        const LocalTime now = localTime(parts.clock.calendarNow() - 1min);
        if (!parts.actions.calls.isEmpty()) {
            QCOMPARE(now.hour, 8);
            firesByWeekday[now.weekday] += static_cast<int>(parts.actions.calls.count(u"stop"_s));
        }
    }
    QVERIFY((firesByWeekday == std::map<int, int>{{1, 2}, {5, 2}}));
}

void RSSTimerTest::disabledTimer_neverFires()
{
    TMRData timer = dailyTimer(halfPastEight, stopDisplay);
    timer.setValidate(false);
    ScheduleParts parts;
    parts.start({timer});
    parts.minuteTimer.run(7 * 24h);
    QVERIFY(parts.actions.calls.isEmpty());
}

void RSSTimerTest::clearedUse_neverFires()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(29min);
    parts.schedule.setUseTimer(false);
    parts.minuteTimer.run(24h);
    parts.schedule.timerHandle(); // a fire that was under way when the box was cleared
    QVERIFY(parts.actions.calls.isEmpty());
}

void RSSTimerTest::hour25_neverFires()
{
    TimerDraft draft;
    draft.fireHour = u"25"_s;
    ScheduleParts parts;
    parts.start({});
    parts.schedule.actCreateTimer();
    parts.schedule.actEditExecute(draft);
    QCOMPARE(parts.storedTimers().front().fireTime(), 1500);
    parts.minuteTimer.run(8 * 24h);
    QVERIFY(parts.actions.calls.isEmpty());
}

// The minute. -----------------------------------------------------------------------------------

void RSSTimerTest::lateFire_isRealigned()
{
    ScheduleParts parts({2026, 1, 5, 8, 0, 20, 1});
    parts.start({dailyTimer(481, stopDisplay), dailyTimer(482, stopDisplay),
                 dailyTimer(483, startDisplay)});
    parts.minuteTimer.lateness = 50s; // still within the minute: seconds do not count
    parts.minuteTimer.run(2min);
    QCOMPARE(parts.actions.calls,
             (QStringList{u"stop"_s, u"log stop"_s, u"stop"_s, u"log stop"_s}));

    parts.minuteTimer.lateness = 0s;
    while (!parts.actions.isDisplaying)
        parts.minuteTimer.run(1s);
    const LocalTime now = localTime(parts.clock.calendarNow());
    QCOMPARE(now.minute, 3);
    QCOMPARE(now.second, 0);
}

void RSSTimerTest::doubledTick_firesOnce()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(30min);
    parts.minuteTimer.fire();
    parts.minuteTimer.run(10s);
    parts.minuteTimer.fire();
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void RSSTimerTest::earlyTick_waitsForItsMinute()
{
    ScheduleParts parts({2026, 1, 5, 8, 28, 30, 1});
    // The schedule starts within 8:28, whose own timer must not fire any more.
    parts.start({dailyTimer(halfPastEight - 2, stopDisplay, u"8:28"_s),
                 dailyTimer(halfPastEight - 1, startDisplay)});
    parts.minuteTimer.run(29990ms);
    parts.minuteTimer.fire(); // ten milliseconds before 8:29
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(10ms);
    QCOMPARE(parts.actions.calls, (QStringList{u"read"_s, u"start"_s, u"log start "_s}));
}

void RSSTimerTest::startInTheMiddleOfItsMinute_doesNotFire()
{
    ScheduleParts parts({2026, 1, 5, 8, 30, 1, 1});
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(2min);
    QVERIFY(parts.actions.calls.isEmpty());
}

void RSSTimerTest::minuteDuringARead_isLost()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, startDisplay),
                 dailyTimer(halfPastEight + 1, stopDisplay),
                 dailyTimer(halfPastEight + 2, stopDisplay)});
    // The read of 8:30 takes until 8:31:30, and the timer comes in between.
    parts.actions.duringRead = [&] {
        parts.clock.sleepFor(60s);
        parts.minuteTimer.fire();
        parts.clock.sleepFor(30s);
    };
    parts.minuteTimer.run(30min);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 0);
    parts.minuteTimer.run(10min);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1); // 8:32 only
}

void RSSTimerTest::minuteWhileTheMainThreadIsBusy_isLost()
{
    ScheduleParts parts;
    parts.start(
        {dailyTimer(halfPastEight, stopDisplay), dailyTimer(halfPastEight + 1, stopDisplay)});
    parts.minuteTimer.run(29min + 50s);
    parts.actions.isBusy = true;
    parts.minuteTimer.run(30s);
    parts.actions.isBusy = false;
    parts.minuteTimer.run(30s);
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(10s);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void RSSTimerTest::calendarSetBack_doesNotFireAgain()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    parts.minuteTimer.run(1h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
    parts.clock.setCalendar(parts.clock.calendarNow() - 45min);
    parts.minuteTimer.run(2h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void RSSTimerTest::calendarSetForward_losesTheMinutesBetween()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay), dailyTimer(9 * 60 + 30, stopDisplay)});
    parts.minuteTimer.run(10min + 20s);
    parts.clock.setCalendar(parts.clock.calendarNow() + 1h); // 9:10:20
    parts.minuteTimer.run(15min);
    QVERIFY(parts.actions.calls.isEmpty());
    parts.minuteTimer.run(10min);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
}

void RSSTimerTest::wrongYear_silencesNothing()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay)});
    const auto right = parts.clock.calendarNow();
    parts.clock.setCalendar(*momentOf({2040, 6, 1, 12, 0, 0, 0}));
    parts.minuteTimer.run(10min);
    parts.clock.setCalendar(right);
    parts.minuteTimer.run(1h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 1);
    parts.clock.setCalendar(Clock::CalendarTime());
    parts.minuteTimer.run(24h);
    QCOMPARE(parts.actions.calls.count(u"stop"_s), 2);
}

void RSSTimerTest::suspend_firesTheMinuteOfWaking()
{
    ScheduleParts parts;
    parts.start({dailyTimer(halfPastEight, stopDisplay), dailyTimer(16 * 60 + 20, startDisplay)});
    parts.minuteTimer.run(20min);
    parts.clock.suspendFor(8h - 10s); // wakes at 16:19:50
    parts.minuteTimer.run(5min);
    // The minutes slept through are lost. The timer's steady minute is over at 16:20:50.
    QCOMPARE(parts.actions.calls, (QStringList{u"read"_s, u"start"_s, u"log start "_s}));
}

void RSSTimerTest::clockChange_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<int>("month");
    QTest::addColumn<int>("day");
    QTest::addColumn<int>("minuteOfDay");
    QTest::addColumn<int>("fires");

    // One day from midnight on, 25 hours of it.
    QTest::newRow("Berlin, spring, skipped hour") << "Europe/Berlin"_ba << 3 << 29 << 150 << 0;
    QTest::newRow("Berlin, spring, before") << "Europe/Berlin"_ba << 3 << 29 << 119 << 1;
    QTest::newRow("Berlin, spring, after") << "Europe/Berlin"_ba << 3 << 29 << 180 << 1;
    QTest::newRow("Berlin, autumn, repeated hour") << "Europe/Berlin"_ba << 10 << 25 << 150 << 2;
    QTest::newRow("Berlin, autumn, after") << "Europe/Berlin"_ba << 10 << 25 << 180 << 1;
    QTest::newRow("Lord Howe, autumn, repeated half hour")
        << "Australia/Lord_Howe"_ba << 4 << 5 << 105 << 2;
    QTest::newRow("Lord Howe, spring, skipped half hour")
        << "Australia/Lord_Howe"_ba << 10 << 4 << 135 << 0;
    QTest::newRow("Kathmandu, a quarter of an hour off")
        << "Asia/Kathmandu"_ba << 5 << 5 << 150 << 1;
    QTest::newRow("Tokyo, no change") << "Asia/Tokyo"_ba << 3 << 29 << 150 << 1;
}

void RSSTimerTest::clockChange()
{
    QFETCH(QByteArray, zone);
    QFETCH(int, month);
    QFETCH(int, day);
    QFETCH(int, minuteOfDay);

    setZone(zone);
    const auto midnight = *momentOf({2026, month, day, 0, 0, 0, 0});
    ScheduleParts parts(localTime(midnight - 30s));
    parts.start({dailyTimer(minuteOfDay, stopDisplay)});
    while (localTime(parts.clock.calendarNow()).day != localTime(midnight + 26h).day)
        parts.minuteTimer.run(1min);
    QTEST(static_cast<int>(parts.actions.calls.count(u"stop"_s)), "fires");
}

void RSSTimerTest::everyMinuteOfAYear_firesOnce()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    setZone("America/New_York");

    // A hundred timers over a hundred days; the platform's timer is late, early and doubled.
    std::vector<TMRData> timers;
    for (int i = 0; i < 100; ++i)
        timers.push_back(dailyTimer(random.bounded(1440), startDisplay, QString::number(i)));
    ScheduleParts parts({2026, 2, 1, 0, 0, 30, 0});
    parts.start(timers);

    std::map<std::pair<qint64, QString>, int> fires; // UTC minute and timer
    const auto end = parts.clock.calendarNow() + 100 * 24h;
    qint64 expected = 0;
    UtcMinute counted = minuteOf(parts.clock.calendarNow());
    while (parts.clock.calendarNow() < end) {
        parts.minuteTimer.lateness = std::chrono::milliseconds(random.bounded(5000));
        parts.actions.calls.clear();
        parts.minuteTimer.run(60s);
        if (random.bounded(10) == 0)
            parts.minuteTimer.fire();
        const UtcMinute now = minuteOf(parts.clock.calendarNow());
        for (; counted < now; counted += 1min) {
            const LocalTime local = localTime(counted + 1min);
            for (const TMRData &timer : timers)
                expected += timer.isFireNow(local) ? 1 : 0;
        }
        for (const QString &call : parts.actions.calls) {
            if (call.startsWith(u"log start "_s))
                ++fires[{now.time_since_epoch().count(), call.mid(10)}];
        }
    }
    qint64 total = 0;
    for (const auto &[minuteAndTimer, count] : fires) {
        QCOMPARE(count, 1);
        total += count;
    }
    QCOMPARE(total, expected);
}

// The list. -------------------------------------------------------------------------------------

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
    parts.schedule.renewalControls();
    QCOMPARE(parts.window.calls.last(), u"controls 1 1"_s);
    parts.schedule.setUseTimer(false);
    parts.window.selected = -1;
    parts.schedule.renewalControls();
    QCOMPARE(parts.window.calls.last(), u"controls 0 0"_s);
}

QTEST_GUILESS_MAIN(RSSTimerTest)
#include "rsstimer_test.moc"
