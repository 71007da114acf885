// SPDX-License-Identifier: MIT
#include "Journal.h"
#include "ListPartners.h"
#include "TimedLine.h"
#include "messages/LogBook.h"
#include "platform/SimulatedClock.h"
#include "platform/TextEncoding.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>

#include <csignal>
#include <thread>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

Clock::CalendarTime localMoment(const QString &isoText)
{
    const auto moment = QDateTime::fromString(isoText, Qt::ISODate);
    return Clock::CalendarTime(std::chrono::milliseconds(moment.toMSecsSinceEpoch()));
}

struct LogHouse
{
    QTemporaryDir folder;
    SimulatedClock clock{localMoment(u"2026-11-14T23:05:09"_s)};
    Journal journal;
    TimedBoard board{clock, journal, 1s};
    ListSettings settings{board};
    ListRunControl run{journal};
    LogBook log{clock};

    LogHouse()
    {
        settings.logFile = LogFile::create(path());
        log.connect(settings, run);
    }
    void switchAll(bool on)
    {
        settings.logsRead = settings.logsDisp = settings.logsTimer = settings.logsSystem = on;
    }
    QString path() const { return folder.filePath(u"Logbook.txt"_s); }
    QByteArray bytes() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString text() const { return decodeShiftJis(bytes()); }
};

using Write = std::function<void(LogBook &)>;
using Switch = std::atomic<bool> ListSettings::*;

} // namespace

Q_DECLARE_METATYPE(Write)
Q_DECLARE_METATYPE(Switch)

class LogBookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindOfLine_data()
    {
        QTest::addColumn<Write>("write");
        QTest::addColumn<Switch>("onSwitch");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, Write write, Switch onSwitch, const QString &text) {
            QTest::newRow(name) << std::move(write) << onSwitch << u"26/11/14 23:05:09 "_s + text;
        };
        const auto read = &ListSettings::logsRead;
        const auto disp = &ListSettings::logsDisp;
        const auto timer = &ListSettings::logsTimer;
        const auto system = &ListSettings::logsSystem;
        const std::vector<std::pair<int, QString>> results{{0, u"OK"_s},
                                                           {1, u"RSS読込エラー"_s},
                                                           {2, u"見出しデータ取得エラー"_s},
                                                           {3, u"日付データ取得エラー"_s},
                                                           {4, u"詳細データ取得エラー"_s},
                                                           {5, u"リンクデータ取得エラー"_s},
                                                           {6, u"OK"_s}};
        for (const auto &[result, text] : results) {
            row(
                qPrintable(u"read with result %1"_s.arg(result)),
                [result = result](LogBook &log) { log.writeReadRSSLog(u"http://a/"_s, result); },
                read, u"RSS読込:http://a/ 結果:"_s + text + u"\n"_s);
        }
        row(
            "end of reading", [](LogBook &log) { log.writeReadCompleteLog(42); }, read,
            u"RSS読込終了:42\n"_s);
        row(
            "read error",
            [](LogBook &log) {
                log.writeReadRSSErrorLog(u"http://a/"_s, {404, u"HTTP"_s, {}});
            },
            read, u"RSS読込:http://a/ 結果エラー:404, 場所:HTTP\n"_s);
        row(
            "start of display", [](LogBook &log) { log.writeDispStartLog(); }, disp,
            u"RSS表示開始\n"_s);
        row(
            "displayed line", [](LogBook &log) { log.writeDispMessageLog(u"見出し"_s); }, disp,
            u"RSS表示:見出し\n"_s);
        row(
            "empty displayed line", [](LogBook &log) { log.writeDispMessageLog({}); }, disp,
            u"RSS表示:\n"_s);
        row(
            "system note", [](LogBook &log) { log.writeStringLog(u"QoVelmarRSS開始"_s); }, system,
            u"システム:QoVelmarRSS開始\n"_s);
        row(
            "timer start", [](LogBook &log) { log.writeTimerStartLog(u"http://t/"_s); }, timer,
            u"タイマー:RSS開始 http://t/\n"_s);
        row(
            "timer stop", [](LogBook &log) { log.writeTimerStopLog(); }, timer,
            u"タイマー:RSS停止\n"_s);
        row(
            "watch time",
            [](LogBook &log) { log.writeWatchTimeBreakLog(u"VelmorSystem:showThread 1"_s); },
            system, u"ループ強制ブレイク対応:VelmorSystem:showThread 1\n"_s);
    }

    void everyKindOfLine()
    {
        QFETCH(Write, write);
        QFETCH(Switch, onSwitch);
        QFETCH(QString, text);
        LogHouse house;
        house.settings.*onSwitch = true;
        write(house.log);
        QCOMPARE(house.text(), text);

        house.switchAll(true);
        house.settings.*onSwitch = false;
        write(house.log);
        QCOMPARE(house.text(), text); // nothing was added
    }

    void lineIsShiftJis()
    {
        LogHouse house;
        house.switchAll(true);
        house.log.writeStringLog(u"表~\\"_s);
        QVERIFY(house.bytes().endsWith("\x95\x5c~\\\n"));
    }

    void whatCannotBeEncodedDoesNotLoseTheLine()
    {
        LogHouse house;
        house.switchAll(true);
        house.log.writeStringLog(u"a😀b"_s);
        QCOMPARE(house.text(), u"26/11/14 23:05:09 システム:a□b\n"_s);
    }

    void oneEventIsOneLine()
    {
        LogHouse house;
        house.switchAll(true);
        house.log.writeDispMessageLog(u"a\r\nb\0c\td\u0085e"_s);
        QCOMPARE(house.text(), u"26/11/14 23:05:09 RSS表示:a  b c d e\n"_s);
    }

    void placeMarksInArgumentsAreText()
    {
        LogHouse house;
        house.switchAll(true);
        house.log.writeReadRSSLog(u"http://a/%@%d%1?q=%E3"_s, 1);
        QCOMPARE(house.text(),
                 u"26/11/14 23:05:09 RSS読込:http://a/%@%d%1?q=%E3 結果:RSS読込エラー\n"_s);
    }

    void stampsCountYearsFrom2000_data()
    {
        QTest::addColumn<QString>("now");
        QTest::addColumn<QString>("stamp");
        QTest::newRow("two digits each") << u"2026-01-02T03:04:05"_s << u"26/01/02 03:04:05"_s;
        QTest::newRow("2009") << u"2009-12-31T23:59:59"_s << u"09/12/31 23:59:59"_s;
        QTest::newRow("2100 has three") << u"2100-01-01T00:00:00"_s << u"100/01/01 00:00:00"_s;
    }

    void stampsCountYearsFrom2000()
    {
        QFETCH(QString, now);
        SimulatedClock clock(localMoment(now));
        QTEST(LogBook(clock).dateString(), "stamp");
    }

    void withoutFileLinesAreDropped()
    {
        LogHouse house;
        house.switchAll(true);
        house.settings.logFile = nullptr;
        house.log.writeStringLog(u"x"_s);
        QCOMPARE(house.settings.logFailures.load(), 0);
        QVERIFY(house.bytes().isEmpty());
    }

    void beforeTheSettingsAreThereLinesAreDropped()
    {
        SimulatedClock clock(localMoment(u"2026-11-14T23:05:09"_s));
        LogBook log(clock);
        log.writeStringLog(u"x"_s);
        log.setDispRSSStateStopped();
    }

    void fileThatTakesNothingIsReported()
    {
        LogHouse house;
        house.switchAll(true);
        const auto file = LogFile::create(house.folder.filePath(u"limited"_s));
        QVERIFY(file);
        house.settings.logFile = file;
        // No file of this process may grow any more.
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit none{0, before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &none), 0);
        house.log.writeStringLog(u"x"_s);
        setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(house.settings.logFailures.load(), 1);
    }

    void lostPortStopsTheDisplay()
    {
        LogHouse house;
        house.run.state = 1;
        house.log.setDispRSSStateStopped();
        QCOMPARE(house.run.state.load(), 0);
    }

    void linesOfManyThreadsStayWhole()
    {
        LogHouse house;
        house.switchAll(true);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < 50; ++i)
                    house.log.writeStringLog(u"0123456789"_s);
            });
        for (std::thread &thread : threads)
            thread.join();
        const QStringList lines = house.text().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 200);
        QCOMPARE(lines.count(u"26/11/14 23:05:09 システム:0123456789"_s), 200);
    }
};

QTEST_APPLESS_MAIN(LogBookTest)
#include "logbook_test.moc"
