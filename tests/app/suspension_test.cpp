// SPDX-License-Identifier: MIT
// The whole program, in simulated time, on a machine that sleeps for a night or for days, and says
// so before or not.
#include "WholeProgram.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto feed = u"http://town/a"_s;
constexpr qsizetype fullHours = 24;

/// Displays, with a timer at every full hour, from noon in Tokyo on.
struct Shop : WholeProgram
{
    Shop()
    {
        addFeed(feed, {u"一"_s, u"二"_s, u"三"_s});
        PropertyArray timers;
        for (int hour = 0; hour < fullHours; ++hour)
            timers.push_back(PropertyDictionary{{u"TimerValidate"_s, true},
                                                {u"TimerFireDay"_s, 127},
                                                {u"TimerFireTime"_s, hour * 60},
                                                {u"TimerOperation"_s, 1},
                                                {u"TimerAddress"_s, u""_s}});
        defaults.setArray(std::move(timers), u"TimerList"_s);
        defaults.setString(folder.filePath(u"Logbook.txt"_s), u"LogFilePath"_s);
        for (const auto &name : {u"LogTimer"_s, u"LogSystem"_s})
            defaults.setBool(true, name);
        launch();
        control.actGetRSS();
        control.actStartDisp();
    }

    /// The minute timer fires each minute, as late as the reads of the main thread make it.
    void live(int minutes)
    {
        for (int minute = 0; minute < minutes; ++minute) {
            sleep(60s);
            timer.fire();
            mainThread.drain();
        }
    }
    int loadsWithin(int minutes)
    {
        const int before = loader.loads;
        live(minutes);
        return loader.loads - before;
    }
    qsizetype timersFired()
    {
        QFile log(setup.logFilePath());
        return log.open(QIODevice::ReadOnly) ? log.readAll().count("RSS\x8aJ\x8en") : -1;
    }
};

} // namespace

class SuspensionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "Asia/Tokyo"); }
    void machineThatSlept_goesOnWhereItWas_data();
    void machineThatSlept_goesOnWhereItWas();
};

void SuspensionTest::machineThatSlept_goesOnWhereItWas_data()
{
    QTest::addColumn<bool>("isAnnounced");
    QTest::addColumn<int>("hours");
    QTest::newRow("8 hours, announced") << true << 8;
    QTest::newRow("5 days, announced") << true << 5 * 24;
    QTest::newRow("8 hours, unannounced") << false << 8;
    QTest::newRow("5 days, unannounced") << false << 5 * 24;
}

void SuspensionTest::machineThatSlept_goesOnWhereItWas()
{
    QFETCH(bool, isAnnounced);
    QFETCH(int, hours);
    Shop shop;
    const int usual = shop.loadsWithin(10);
    QVERIFY(usual > 50); // a pass over the list takes some ten seconds
    // Between the steps of the other threads, which then all sleep, and within a line.
    shop.sleep(1007ms);
    while (!shop.screen.isShowing())
        shop.sleep(100ms);
    const QStringList shown = shop.screen.takeShown();
    const int line = shop.control.lastDispLine();
    const qsizetype fired = shop.timersFired();

    if (isAnnounced) {
        shop.control.willSleepHandle();
        QVERIFY(!shop.control.isDisplayActive());
    }
    shop.clock.suspendFor(std::chrono::hours(hours));
    if (isAnnounced) {
        shop.control.didWakeHandle();
        // The line that was broken off is shown again.
        QCOMPARE(shop.control.lastDispLine(), line);
        shop.sleep(100ms);
        QCOMPARE(shop.screen.takeShown(), QStringList{shown.last()});
    }
    QVERIFY(shop.control.isDisplayActive());

    const int after = shop.loadsWithin(10);
    QVERIFY2(std::abs(after - usual) <= 1, qPrintable(u"%1 %2"_s.arg(usual).arg(after)));
    QVERIFY(shop.screen.takeShown().size() > 100);
    // No timer of the hours between is made up for; that of the next full hour comes once.
    QCOMPARE(shop.timersFired(), fired);
    shop.live(50);
    QCOMPARE(shop.timersFired(), fired + 1);
}

QTEST_GUILESS_MAIN(SuspensionTest)
#include "suspension_test.moc"
