// SPDX-License-Identifier: MIT
#include "ListHouse.h"
#include "platform/TextEncoding.h"
#include "platform/Worker.h"

#include <QtTest>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

// A house whose list holds "a" (new, with a description) and "b", dates and sites switched off.
struct DisplayHouse : ListHouse
{
    DisplayHouse()
    {
        ListFeed &feed = feeds.add(u"http://a/"_s);
        feed.items = {{u"a"_s, u"11/14 09:00"_s, u"about a"_s, u"S"_s, u"http://l/a"_s},
                      item(u"b"_s, u"11/14 10:00"_s)};
        list.setIsDispDate(false);
        list.setIsDispName(false);
        list.readRSSPages();
        journal.take();
    }

    std::chrono::milliseconds timeOf(const std::function<void()> &act)
    {
        const auto start = clock.steadyNow();
        act();
        return std::chrono::duration_cast<std::chrono::milliseconds>(clock.steadyNow() - start);
    }
};

} // namespace

class MessageDisplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void output_data()
    {
        QTest::addColumn<bool>("onBoard");
        QTest::addColumn<QString>("place");
        QTest::newRow("board") << true << u"board"_s;
        QTest::newRow("screen") << false << u"screen"_s;
    }

    void messageRunsThroughBeforeTheCallReturns_data() { output_data(); }

    void messageRunsThroughBeforeTheCallReturns()
    {
        QFETCH(bool, onBoard);
        QFETCH(QString, place);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        const auto time = house.timeOf([&] { house.list.dispRSSDataWithIndex(1); });
        QCOMPARE(house.journal.take(), QStringList(place + u" b"_s));
        QCOMPARE(time, 2000ms);
    }

    void windowSeesTheMessage()
    {
        DisplayHouse house;
        house.settings.scrolls = true;
        house.list.dispRSSDataWithIndex(0);
        auto shown = house.list.presentation();
        QCOMPARE(shown->messageIndex, 0);
        QCOMPARE(shown->messageNumber, u"1/2"_s);
        QCOMPARE(shown->description, u"about a"_s);
        QCOMPARE(shown->scrollToRow, 0);
        QCOMPARE(shown->scrollRequests, 1U);

        house.settings.scrolls = false;
        house.list.dispRSSDataWithIndex(1);
        shown = house.list.presentation();
        QCOMPARE(shown->messageIndex, 1);
        QCOMPARE(shown->messageNumber, u"2/2"_s);
        QCOMPARE(shown->description, QString());
        QCOMPARE(shown->scrollRequests, 1U);

        house.list.eraseDispNumber();
        QCOMPARE(house.list.presentation()->messageNumber, QString());
    }

    void indexOutsideTheListShowsNothing_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("the count itself") << 2;
        QTest::newRow("negative") << -1;
    }

    void indexOutsideTheListShowsNothing()
    {
        QFETCH(int, index);
        DisplayHouse house;
        QTest::ignoreMessage(QtWarningMsg, "dispRSSDataWithIndex: index error1");
        house.list.dispRSSDataWithIndex(index);
        QVERIFY(house.journal.take().isEmpty());
        QCOMPARE(house.list.presentation()->messageNumber, QString());
    }

    void newMessageSounds()
    {
        DisplayHouse house;
        house.list.dispRSSDataWithIndex(0);
        QCOMPARE(house.journal.take(), QStringList(u"screen a"_s)); // switched off
        house.settings.playsSound = true;
        house.list.dispRSSDataWithIndex(0);
        QCOMPARE(house.journal.take(), QStringList({u"sound Blow 0.5"_s, u"screen a"_s}));
        house.list.readRSSPages(); // the same headlines again: no longer new
        house.list.dispRSSDataWithIndex(0);
        QCOMPARE(house.journal.take(), QStringList(u"screen a"_s));
    }

    void emptyLineIsLoggedButNotShown()
    {
        DisplayHouse house;
        const QString logPath = house.folder.filePath(u"Logbook.txt"_s);
        house.settings.logFile = LogFile::create(logPath);
        house.settings.logsDisp = true;
        house.feeds.all[0]->items = {item(QString())};
        house.list.readRSSPages();
        house.list.dispRSSDataWithIndex(0);
        QVERIFY(house.journal.take().isEmpty());
        QCOMPARE(house.list.presentation()->messageNumber, u"1/1"_s);
        QFile log(logPath);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QCOMPARE(decodeShiftJis(log.readAll()), u"26/11/14 12:00:02 RSS表示:\n"_s);
    }

    void messageWithoutDateShowsItsFirstSeenTime()
    {
        DisplayHouse house;
        house.list.setIsDispDate(true);
        Message undated;
        undated.headline = u"undated"_s;
        house.list.randomAddObject(undated); // 0 mod 2: the front
        house.list.dispRSSDataWithIndex(0);
        QCOMPARE(house.journal.take(), QStringList(u"screen undated 11/14 12:00"_s));
        house.clock.sleepFor(10min);
        house.list.dispRSSDataWithIndex(0);
        QCOMPARE(house.journal.take(), QStringList(u"screen undated 11/14 12:00"_s));
    }

    void emptyDateStaysEmpty()
    {
        DisplayHouse house;
        house.feeds.all[0]->items = {item(u"undated"_s)};
        house.list.setIsDispDate(true);
        house.list.readRSSPages();
        house.list.dispRSSDataWithIndex(0);
        QCOMPARE(house.journal.take(), QStringList(u"screen undated"_s));
    }

    void calendarFollowsTheMessage_data()
    {
        QTest::addColumn<bool>("onBoard");
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("board") << true << true << QStringList{u"board b"_s, u"board date 3"_s};
        QTest::newRow("board, off") << true << false << QStringList{u"board b"_s};
        QTest::newRow("never on screen") << false << true << QStringList{u"screen b"_s};
    }

    void calendarFollowsTheMessage()
    {
        QFETCH(bool, onBoard);
        QFETCH(bool, isOn);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.list.setShowCalendar(isOn);
        house.list.dispRSSDataWithIndex(1);
        QTEST(house.journal.take(), "shown");
    }

    void calendarIsAskedForWhenTheLineHasPassed_data()
    {
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("switched on meanwhile")
            << true << QStringList{u"board b"_s, u"board date 3"_s};
        QTest::newRow("switched off meanwhile") << false << QStringList{u"board b"_s};
    }

    void calendarIsAskedForWhenTheLineHasPassed()
    {
        QFETCH(bool, isOn);
        DisplayHouse house;
        house.run.outputLED = true;
        house.list.setShowCalendar(!isOn);
        Worker person(house.clock);
        person.start([&] {
            house.clock.sleepFor(450ms);
            house.list.setShowCalendar(isOn);
        });
        house.list.dispRSSDataWithIndex(1);
        person.join();
        QTEST(house.journal.take(), "shown");
    }

    // The line has passed when the stop is next looked at.
    void breakAtTheLinesVeryEndKeepsTheCalendarAway()
    {
        DisplayHouse house;
        house.run.outputLED = true;
        house.list.setShowCalendar(true);
        Worker person(house.clock);
        person.start([&] {
            house.clock.sleepFor(1950ms);
            house.run.state = 2;
        });
        const auto time = house.timeOf([&] { house.list.dispRSSDataWithIndex(1); });
        person.join();
        QCOMPARE(house.journal.take(), QStringList(u"board b"_s));
        QCOMPARE(time, 2000ms);
    }

    void informationLinesTakeTurns_data() { output_data(); }

    void informationLinesTakeTurns()
    {
        QFETCH(bool, onBoard);
        QFETCH(QString, place);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.writeInformation("T\nA\n\nB");
        house.list.setDispInfo(true);
        for (int i = 0; i < 4; ++i)
            house.list.dispRSSDataWithIndex(1);
        const QString b = place + u" b"_s;
        QCOMPARE(house.journal.take(),
                 QStringList({place + u" 【お知らせ】A"_s, b, b, place + u" 【お知らせ】B"_s, b,
                              place + u" 【お知らせ】A"_s, b}));
    }

    void oneInformationLineIsTheTitleOnly()
    {
        DisplayHouse house;
        house.writeInformation("T");
        house.list.setDispInfo(true);
        house.list.dispRSSDataWithIndex(1);
        QCOMPARE(house.journal.take(), QStringList(u"screen b"_s));
    }

    void informationSwitchedOffIsNotShown()
    {
        DisplayHouse house;
        house.writeInformation("T\nA");
        house.list.setDispInfo(true);
        house.list.setDispInfo(false);
        house.list.dispRSSDataWithIndex(1);
        QCOMPARE(house.journal.take(), QStringList(u"screen b"_s));
    }

    // Loading and taking turns keep the index inside; a test alone can move it out.
    void informationIndexBehindTheLinesShowsNothing_data()
    {
        QTest::addColumn<bool>("onBoard");
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("board") << true << "dispRSSDataWithIndex: index error2"_ba;
        QTest::newRow("screen") << false << "dispRSSDataWithIndex: index error3"_ba;
    }

    void informationIndexBehindTheLinesShowsNothing()
    {
        QFETCH(bool, onBoard);
        QFETCH(QByteArray, said);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.writeInformation("T\nA");
        InformationFile information(house.documents(), house.templatePath());
        QVERIFY(information.prepareInfoMessages(true));
        information.setPresentInfo(2);
        MessageSwitches switches(house.defaults);
        switches.setDispInfo(true);
        LineDisplay display(house.clock, information, switches);
        display.connect(house.settings, house.run, house.screen);
        QTest::ignoreMessage(QtWarningMsg, said.constData());
        display.show(u"b"_s);
        QVERIFY(house.journal.take().isEmpty());
    }

    void breakEndsTheMessageAtOnce_data()
    {
        QTest::addColumn<bool>("onBoard");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("board") << true << QStringList{u"board b"_s, u"board cleared"_s};
        QTest::newRow("screen") << false << QStringList{u"screen b"_s, u"screen stopped"_s};
    }

    void breakEndsTheMessageAtOnce()
    {
        QFETCH(bool, onBoard);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.list.setShowCalendar(true);
        Worker person(house.clock);
        person.start([&] {
            house.clock.sleepFor(450ms);
            house.run.state = 2;
        });
        const auto time = house.timeOf([&] { house.list.dispRSSDataWithIndex(1); });
        person.join();
        QTEST(house.journal.take(), "shown");
        QCOMPARE(time, 500ms);
    }

    void breakDuringTheInformationKeepsTheMessageBackAndTheTurn_data() { output_data(); }

    void breakDuringTheInformationKeepsTheMessageBackAndTheTurn()
    {
        QFETCH(bool, onBoard);
        QFETCH(QString, place);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.writeInformation("T\nA\nB");
        house.list.setDispInfo(true);
        house.run.state = 2;
        house.list.dispRSSDataWithIndex(1);
        const QString information = place + u" 【お知らせ】A"_s;
        QCOMPARE(house.journal.take(),
                 QStringList({information, place + (onBoard ? u" cleared"_s : u" stopped"_s)}));
        house.run.state = 1;
        house.list.dispRSSDataWithIndex(1);
        QCOMPARE(house.journal.take(), QStringList({information, place + u" b"_s}));
    }

    void quitLeavesAtOnce_data() { output_data(); }

    void quitLeavesAtOnce()
    {
        QFETCH(bool, onBoard);
        QFETCH(QString, place);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.list.setShowCalendar(true);
        Worker person(house.clock);
        person.start([&] {
            house.clock.sleepFor(450ms);
            house.clock.endSleeps();
        });
        const auto time = house.timeOf([&] { house.list.dispRSSDataWithIndex(1); });
        person.join();
        QCOMPARE(house.journal.take(), QStringList(place + u" b"_s));
        QCOMPARE(time, 450ms);
    }

    void titleLineComesFirst_data() { output_data(); }

    void titleLineComesFirst()
    {
        QFETCH(bool, onBoard);
        QFETCH(QString, place);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.settings.showsProgress = false;
        house.writeInformation("T\nA");
        house.list.setDispInfo(true);
        house.list.readRSSPages();
        house.list.dispRSSDataWithIndex(1);
        QCOMPARE(house.journal.take(), QStringList({place + u" 【QoVelmorRSS】T"_s,
                                                    place + u" 【お知らせ】A"_s, place + u" b"_s}));
    }

    void emptyTitleLineIsNotShown()
    {
        DisplayHouse house;
        house.writeInformation("\nA");
        house.list.setDispInfo(true);
        house.list.readRSSPages();
        QVERIFY(house.journal.take().isEmpty());
    }

    // The next line waits for the title line where a stop can end it.
    void breakWhileTheTitleLineStillRuns_data() { output_data(); }

    void breakWhileTheTitleLineStillRuns()
    {
        QFETCH(bool, onBoard);
        QFETCH(QString, place);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.settings.showsProgress = false;
        house.writeInformation("T");
        house.list.setDispInfo(true);
        house.list.readRSSPages(); // ends with a second's pause; the title runs for two
        house.run.state = 2;
        const auto time = house.timeOf([&] { house.list.dispRSSDataWithIndex(1); });
        QCOMPARE(time, 0ms);
        QCOMPARE(house.journal.take(),
                 QStringList({place + u" 【QoVelmorRSS】T"_s,
                              place + (onBoard ? u" cleared"_s : u" stopped"_s)}));
    }

    // It would hold up its read, and with the read whoever asks for a stop.
    void titleLineThatWouldHaveToWaitIsLeftOut_data() { output_data(); }

    void titleLineThatWouldHaveToWaitIsLeftOut()
    {
        QFETCH(bool, onBoard);
        QFETCH(QString, place);
        DisplayHouse house;
        house.run.outputLED = onBoard;
        house.settings.showsProgress = false;
        house.writeInformation("T");
        house.list.setDispInfo(true);
        house.board.setLength(30s);
        house.screen.setLength(30s);
        const auto read = [&] { house.list.readRSSPages(); }; // a second's pause and nothing more
        QCOMPARE(house.timeOf(read), 1000ms);
        QCOMPARE(house.timeOf(read), 1000ms);
        QCOMPARE(house.journal.take(), QStringList(place + u" 【QoVelmorRSS】T"_s));
        house.clock.sleepFor(28s);
        house.list.readRSSPages();
        QCOMPARE(house.journal.take(), QStringList(place + u" 【QoVelmorRSS】T"_s));
    }

    void progressOnTheBoard_data()
    {
        QTest::addColumn<bool>("onBoard");
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<QStringList>("drawn");
        const QStringList all{u"bar made"_s, u"bar of 2"_s, u"bar at 1"_s, u"bar at 2"_s,
                              u"bar gone"_s};
        QTest::newRow("board and switch") << true << true << all;
        QTest::newRow("switched off") << true << false << QStringList();
        QTest::newRow("on screen") << false << true << QStringList();
    }

    void progressOnTheBoard()
    {
        QFETCH(bool, onBoard);
        QFETCH(bool, isOn);
        DisplayHouse house;
        house.feeds.add(u"http://b/"_s);
        house.run.outputLED = onBoard;
        house.settings.showsProgress = isOn;
        house.list.readRSSPages();
        QTEST(house.journal.take(), "drawn");
    }

    void withoutSitesThereIsNoProgress()
    {
        DisplayHouse house;
        house.run.outputLED = true;
        house.feeds.all.clear();
        house.list.readRSSPages();
        QVERIFY(house.journal.take().isEmpty());
    }

    void progressBarIsMadeOnce()
    {
        DisplayHouse house;
        house.run.outputLED = true;
        house.list.createProgressBar();
        house.list.createProgressBar();
        house.list.readRSSPages();
        QCOMPARE(house.journal.take().count(u"bar made"_s), 1);
    }

    // Title 2 s; the first feed takes 1 s, the second 3 s.
    void progressWaitsForTheTitleLine()
    {
        DisplayHouse house;
        house.run.outputLED = true;
        house.writeInformation("T");
        house.list.setDispInfo(true);
        house.feeds.all[0]->onRead = [&] { house.clock.sleepFor(1s); };
        house.feeds.add(u"http://b/"_s).onRead = [&] { house.clock.sleepFor(3s); };
        house.list.readRSSPages();
        QCOMPARE(house.journal.take(), QStringList({u"board 【QoVelmorRSS】T"_s, u"bar made"_s,
                                                    u"bar of 2"_s, u"bar at 2"_s, u"bar gone"_s}));
    }

    void titleLineThatOutlivesTheReadKeepsTheBarAway()
    {
        DisplayHouse house;
        house.run.outputLED = true;
        house.writeInformation("T");
        house.list.setDispInfo(true);
        house.list.readRSSPages();
        QCOMPARE(house.journal.take(), QStringList(u"board 【QoVelmorRSS】T"_s));
    }

    // The line of one read, the bar of the next.
    void titleLineOfTheReadBeforeKeepsTheBarAway()
    {
        DisplayHouse house;
        house.run.outputLED = true;
        house.writeInformation("T");
        house.list.setDispInfo(true);
        house.list.readRSSPages();
        house.list.setDispInfo(false);
        house.list.readRSSPages();
        QCOMPARE(house.journal.take(), QStringList(u"board 【QoVelmorRSS】T"_s));
        house.list.readRSSPages();
        QCOMPARE(house.journal.take().first(), u"bar made"_s);
    }

    // The window looks while another thread shows and reads.
    void windowMayLookAtAnyTime()
    {
        DisplayHouse house;
        std::atomic<bool> isDone = false;
        int looks = 0;
        Worker display(house.clock);
        display.start([&] {
            for (int i = 0; i < 4; ++i) {
                house.list.dispRSSDataWithIndex(0);
                house.list.dispRSSDataWithIndex(1);
                house.list.readRSSPages();
            }
            isDone = true;
        });
        while (!isDone) {
            const auto shown = house.list.presentation();
            QCOMPARE(shown->messages->size(), 2U); // never blank during a read
            if (++looks % 20 == 0)                 // each change is a durable write
                house.list.setIsDispLine(looks % 40 == 0);
            house.list.dateStringWithMessage(QString::number(looks % 10));
            house.mainThread.drain();
            house.clock.sleepFor(50ms);
        }
        display.join();
        QVERIFY(looks > 0);
    }
};

QTEST_APPLESS_MAIN(MessageDisplayTest)
#include "messagedisplay_test.moc"
