// SPDX-License-Identifier: MIT
#include "SetupParts.h"
#include "platform/LogFile.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <thread>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class SetupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Values.
    void firstRun();
    void beforeTheStart();
    void setter_writesAtOnce_data();
    void setter_writesAtOnce();
    void setters_surviveARestart();
    void unchangedDefault_isNotWritten();
    void lightLEDColor_isArchived();

    // What a change does.
    void boardSetting_reachesTheBoardAtOnce();
    void setPortNumber_keepsOnlyAPortThatFails();
    void setPortNumber_withoutABoard_isKept();
    void narrowFont_setsTheExpansion();

    // Start-up.
    void start_configuresTheBoard();
    void start_portThatFails_dropsTheBoard();
    void start_boardThatIsSilent_dropsTheBoard();
    void start_withoutABoard();
    void start_fillsTheWindow();
    void portNames_comeFromTheLinkWhileItStands();

    // Filters.
    void isOlderThan_data();
    void isOlderThan();
    void isCommercialMessage_data();
    void isCommercialMessage();
    void isCommercialMessage_eachWordCounts();

    // The log file.
    void log_staysOpenWhileOneSwitchIsOn();
    void log_startsFreshEachTime();
    void log_opensAtStart_data();
    void log_opensAtStart();
    void log_newPathWhileOpen_makesOnlyTheFolder();
    void log_thatCannotBeMade_isNoted();
    void log_thatFails_isSaidOnce();
    void log_closesAtTheEnd();

    void getters_whileValuesChange();
};

namespace {

using Setter = std::function<void(Setup &)>;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no file)");
}

void addSetter(const char *key, const PropertyValue &expected, const Setter &setter)
{
    QTest::newRow(key) << QString::fromLatin1(key) << std::make_shared<PropertyValue>(expected)
                       << setter;
}

} // namespace

// Values. ---------------------------------------------------------------------------------------

void SetupTest::firstRun()
{
    SetupParts parts;
    const Setup &setup = parts.startWithoutBoard();
    QCOMPARE(setup.olderHours(), 72);
    QCOMPARE(setup.scrollSpeed(), 3);
    QCOMPARE(setup.moduleCount(), 4);
    QCOMPARE(setup.brightness(), 10);
    QCOMPARE(setup.useBitmapFont(), true);
    QCOMPARE(setup.virtualLED(), true);
    QCOMPARE(setup.isScroll(), true);
    QCOMPARE(setup.dispProgress(), true);
    QCOMPARE(setup.skipCMWord1(), u"PR"_s);
    QCOMPARE(setup.skipCMWord8(), u""_s);
    QCOMPARE(setup.finishSoundName(), u"Basso"_s);
    QCOMPARE(setup.arrivalSoundName(), u"Blow"_s);
    QCOMPARE(setup.playSoundVolume(), 0.5F);
    QCOMPARE(setup.lightLEDColor(), QColor(Qt::red));
    QCOMPARE(setup.desigBrowser(), u""_s);
}

void SetupTest::beforeTheStart()
{
    SetupParts parts;
    parts.make(nullptr);
    QCOMPARE(parts.setup->playFinishSound(), false);
    QCOMPARE(parts.setup->playArrivalSound(), false);
    QCOMPARE(parts.setup->finishSoundName(), QString());
    QCOMPARE(parts.setup->arrivalSoundName(), QString());
    QCOMPARE(parts.setup->playSoundVolume(), 0.5F);
    QCOMPARE(parts.setup->rotation(), false);
    QCOMPARE(parts.setup->virtualLED(), true);
    QCOMPARE(parts.setup->desigBrowser(), QString());
}

void SetupTest::setter_writesAtOnce_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<std::shared_ptr<PropertyValue>>("expected");
    QTest::addColumn<Setter>("setter");

    addSetter("ComPortNumber", 7, [](Setup &s) { s.setPortNumber(7); });
    addSetter("ScrollSpeed", 5, [](Setup &s) { s.setScrollSpeed(5); });
    addSetter("LEDModuleCount", 6, [](Setup &s) { s.setModuleCount(6); });
    addSetter("LEDBrightness", 2, [](Setup &s) { s.setBrightness(2); });
    addSetter("Reverse180", true, [](Setup &s) { s.setReverse180(true); });
    addSetter("LogRSSRead", true, [](Setup &s) { s.setLogRSSRead(true); });
    addSetter("LogRSSDisp", true, [](Setup &s) { s.setLogRSSDisp(true); });
    addSetter("LogTimer", true, [](Setup &s) { s.setLogTimer(true); });
    addSetter("LogSystem", true, [](Setup &s) { s.setLogSystem(true); });
    addSetter("LogFilePath", u"/a/b.txt"_s, [](Setup &s) { s.setLogFilePath(u"/a/b.txt"_s); });
    addSetter("DisplayAuto", true, [](Setup &s) { s.setDispAuto(true); });
    addSetter("ScrollToMessage", false, [](Setup &s) { s.setIsScroll(false); });
    addSetter("UseNarrowFont", true, [](Setup &s) { s.setUseNarrowFont(true); });
    addSetter("DontShowOlder", true, [](Setup &s) { s.setDontShowOlder(true); });
    addSetter("OlderHours", -1, [](Setup &s) { s.setOlderHours(-1); });
    addSetter("UseBitmapFont", false, [](Setup &s) { s.setUseBitmapFont(false); });
    addSetter("DispProgress", false, [](Setup &s) { s.setDispProgress(false); });
    addSetter("SkipCommercialMode", true, [](Setup &s) { s.setSkipCMMode(true); });
    addSetter("SkipCommercialWord1", u"1"_s, [](Setup &s) { s.setSkipCMWord1(u"1"_s); });
    addSetter("SkipCommercialWord2", u"2"_s, [](Setup &s) { s.setSkipCMWord2(u"2"_s); });
    addSetter("SkipCommercialWord3", u"3"_s, [](Setup &s) { s.setSkipCMWord3(u"3"_s); });
    addSetter("SkipCommercialWord4", u"4"_s, [](Setup &s) { s.setSkipCMWord4(u"4"_s); });
    addSetter("SkipCommercialWord5", u"5"_s, [](Setup &s) { s.setSkipCMWord5(u"5"_s); });
    addSetter("SkipCommercialWord6", u"6"_s, [](Setup &s) { s.setSkipCMWord6(u"6"_s); });
    addSetter("SkipCommercialWord7", u"7"_s, [](Setup &s) { s.setSkipCMWord7(u"7"_s); });
    addSetter("SkipCommercialWord8", u"8"_s, [](Setup &s) { s.setSkipCMWord8(u"8"_s); });
    addSetter("PlayFinishSound", true, [](Setup &s) { s.setPlayFinishSound(true); });
    addSetter("FinishSoundName", u"a"_s, [](Setup &s) { s.setFinishSoundName(u"a"_s); });
    addSetter("PlayArrivalSound", true, [](Setup &s) { s.setPlayArrivalSound(true); });
    addSetter("ArrivalSoundName", u"b"_s, [](Setup &s) { s.setArrivalSoundName(u"b"_s); });
    addSetter("PlaySoundVolume", 0.25, [](Setup &s) { s.setPlaySoundVolume(0.25F); });
    addSetter("RotationLeft90", true, [](Setup &s) { s.setRotation(true); });
    addSetter("VirtualLED", false, [](Setup &s) { s.setVirtualLED(false); });
    addSetter("DesignateBrowser", u"/x"_s, [](Setup &s) { s.setDesigBrowser(u"/x"_s); });
}

void SetupTest::setter_writesAtOnce()
{
    QFETCH(QString, key);
    QFETCH(std::shared_ptr<PropertyValue>, expected);
    QFETCH(Setter, setter);

    SetupParts parts;
    setter(parts.startWithoutBoard());

    const UserDefaults onDisk(parts.storePath());
    QVERIFY(onDisk.valueForKey(key) == *expected);
}

void SetupTest::setters_surviveARestart()
{
    SetupParts parts;
    Setup &first = parts.startWithoutBoard();
    first.setOlderHours(5);
    first.setPlaySoundVolume(0.3F);
    first.setSkipCMWord8(u"広告"_s);
    first.setVirtualLED(false);

    const Setup &second = parts.startWithoutBoard();
    QCOMPARE(second.olderHours(), 5);
    QCOMPARE(second.playSoundVolume(), 0.3F);
    QCOMPARE(second.skipCMWord8(), u"広告"_s);
    QCOMPARE(second.virtualLED(), false);
}

void SetupTest::unchangedDefault_isNotWritten()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard(); // the start sets the browser to what is stored
    setup.setOlderHours(72);
    const UserDefaults onDisk(parts.storePath());
    QVERIFY(!onDisk.hasKey(u"DesignateBrowser"_s));
    QVERIFY(!onDisk.hasKey(u"OlderHours"_s));
}

void SetupTest::lightLEDColor_isArchived()
{
    SetupParts parts;
    parts.startWithoutBoard().setLightLEDColor(QColor(10, 200, 30));
    QCOMPARE(parts.startWithoutBoard().lightLEDColor(), QColor(10, 200, 30));

    parts.defaults.setData("garbage"_ba, u"LightLEDColor"_s);
    QCOMPARE(parts.startWithoutBoard().lightLEDColor(), QColor(Qt::red));
}

// What a change does. ---------------------------------------------------------------------------

void SetupTest::boardSetting_reachesTheBoardAtOnce()
{
    SetupParts parts;
    parts.makeWithBoard();
    Setup &setup = parts.start();
    parts.boardCalls.clear();

    setup.setScrollSpeed(7);
    setup.setModuleCount(2);
    setup.setBrightness(1);
    setup.setReverse180(true);
    setup.setUseBitmapFont(false);
    setup.setRotation(true);

    const QStringList expected{u"speed 7"_s,   u"modules 2"_s, u"bright 1"_s,
                               u"reverse 1"_s, u"fontx 0"_s,   u"rotation 1"_s};
    QCOMPARE(parts.boardCalls, expected);
}

void SetupTest::setPortNumber_keepsOnlyAPortThatFails()
{
    SetupParts parts;
    RecordingBoard &board = parts.makeWithBoard();
    Setup &setup = parts.start();

    setup.setPortNumber(3); // opens: neither kept nor written
    QCOMPARE(setup.portNumber(), 0);
    QCOMPARE(parts.defaults.integerForKey(u"ComPortNumber"_s), 0);

    board.opens = false;
    setup.setPortNumber(4);
    QCOMPARE(setup.portNumber(), 4);
    QCOMPARE(parts.defaults.integerForKey(u"ComPortNumber"_s), 4);
    QVERIFY(setup.hasLedSystem());
}

void SetupTest::setPortNumber_withoutABoard_isKept()
{
    SetupParts parts;
    parts.startWithoutBoard().setPortNumber(2);

    parts.makeWithBoard();
    parts.start();
    QCOMPARE(parts.boardCalls.first(), u"open 2"_s); // used at the next start
}

void SetupTest::narrowFont_setsTheExpansion()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    QVERIFY(parts.output.expansions.empty());
    setup.setUseNarrowFont(true);
    setup.setUseNarrowFont(false);
    QVERIFY((parts.output.expansions == std::vector<float>{-0.2F, 0.0F}));
}

// Start-up. -------------------------------------------------------------------------------------

void SetupTest::start_configuresTheBoard()
{
    SetupParts parts;
    parts.defaults.setInteger(1, u"ComPortNumber"_s);
    parts.defaults.setInteger(9, u"ScrollSpeed"_s);
    parts.defaults.setBool(true, u"RotationLeft90"_s);
    parts.makeWithBoard();
    const Setup &setup = parts.start();

    QVERIFY(setup.hasLedSystem());
    const QStringList expected{u"open 1"_s,    u"comTest"_s,   u"speed 9"_s,  u"modules 4"_s,
                               u"bright 10"_s, u"reverse 0"_s, u"scroll 1"_s, u"async 0"_s,
                               u"fontx 1"_s,   u"rotation 1"_s};
    QCOMPARE(parts.boardCalls, expected);
    QVERIFY(parts.output.lines.isEmpty());
}

void SetupTest::start_portThatFails_dropsTheBoard()
{
    SetupParts parts;
    parts.makeWithBoard().opens = false;
    const Setup &setup = parts.start();

    QVERIFY(!setup.hasLedSystem());
    QCOMPARE(parts.boardCalls, QStringList{u"open 0"_s});
    QCOMPARE(parts.output.lines, QStringList{u"シリアルポートのオープンに失敗"_s});
    QVERIFY(!setup.ledSystem().comTest());
}

void SetupTest::start_boardThatIsSilent_dropsTheBoard()
{
    SetupParts parts;
    parts.makeWithBoard().answers = false;
    const Setup &setup = parts.start();

    QVERIFY(!setup.hasLedSystem());
    QCOMPARE(parts.boardCalls, (QStringList{u"open 0"_s, u"comTest"_s}));
    QCOMPARE(parts.output.lines, QStringList{u"LED電光掲示板がないのでモニター画面に出力"_s});
    QVERIFY(!setup.ledSystem().openSerialPortWithNumber(0));
}

void SetupTest::start_withoutABoard()
{
    SetupParts parts;
    const Setup &setup = parts.startWithoutBoard();
    QVERIFY(!setup.hasLedSystem());
    QCOMPARE(parts.output.lines, QStringList{u"シリアルポートのオープンに失敗"_s});
    QCOMPARE(setup.ledSystem().waitBefore(), 0);
}

void SetupTest::start_fillsTheWindow()
{
    SetupParts parts;
    parts.defaults.setBool(true, u"LogSystem"_s);
    parts.startWithoutBoard();
    const QStringList expected{u"fill finish Blow,Basso"_s, u"fill arrival Blow,Basso"_s,
                               u"show log 1"_s, u"renewal"_s};
    QCOMPARE(parts.window.calls, expected);
}

void SetupTest::portNames_comeFromTheLinkWhileItStands()
{
    SetupParts parts;
    RecordingBoard &board = parts.makeWithBoard();
    QCOMPARE(parts.setup->portNames(), QStringList{u"port of the link"_s});
    board.opens = false;
    QCOMPARE(parts.start().portNames(), QStringList{u"port of the system"_s});
}

// Filters. --------------------------------------------------------------------------------------

void SetupTest::isOlderThan_data()
{
    using namespace std::chrono;
    QTest::addColumn<int>("hours");
    QTest::addColumn<qint64>("age"); // seconds
    QTest::addColumn<bool>("isOlder");

    const qint64 threeDays = 72 * 3600;
    QTest::newRow("exactly at the limit") << 72 << threeDays << false;
    QTest::newRow("one second older") << 72 << threeDays + 1 << true;
    QTest::newRow("one second younger") << 72 << threeDays - 1 << false;
    QTest::newRow("a date in the future") << 72 << qint64{-3600} << false;
    QTest::newRow("no hours at all, now") << 0 << qint64{0} << false;
    QTest::newRow("no hours at all, a second ago") << 0 << qint64{1} << true;
    QTest::newRow("negative hours") << -1 << qint64{-3599} << true;
    QTest::newRow("the most hours there are")
        << std::numeric_limits<int>::max() << threeDays << false;
}

void SetupTest::isOlderThan()
{
    QFETCH(int, hours);
    QFETCH(qint64, age);

    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setOlderHours(hours);
    QTEST(setup.isOlderThan(parts.clock.calendarNow() - std::chrono::seconds(age)), "isOlder");
    QCOMPARE(setup.isOlderThan(std::nullopt), false);
}

void SetupTest::isCommercialMessage_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<bool>("isCommercial");

    QTest::newRow("PR with a colon") << u"PR: new shop"_s << true << true;
    QTest::newRow("the text is upper-cased") << u"pr: new shop"_s << true << true;
    QTest::newRow("the filter is off") << u"PR: new shop"_s << false << false;
    QTest::newRow("the second word") << u"[AD] shop"_s << true << true;
    QTest::newRow("the third word") << u"CM/shop"_s << true << true;
    QTest::newRow("only within words") << u"Press: add acme"_s << true << false;
    QTest::newRow("empty words match nothing") << u": ."_s << true << false;
}

void SetupTest::isCommercialMessage()
{
    QFETCH(QString, text);
    QFETCH(bool, isOn);

    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setSkipCMMode(isOn);
    QTEST(setup.isCommercialMessage(text), "isCommercial");
}

void SetupTest::isCommercialMessage_eachWordCounts()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setSkipCMMode(true);
    using WordSetter = void (Setup::*)(const QString &);
    for (WordSetter setWord :
         {&Setup::setSkipCMWord1, &Setup::setSkipCMWord2, &Setup::setSkipCMWord3,
          &Setup::setSkipCMWord4, &Setup::setSkipCMWord5, &Setup::setSkipCMWord6,
          &Setup::setSkipCMWord7, &Setup::setSkipCMWord8}) {
        QVERIFY(!setup.isCommercialMessage(u"広告 :"_s));
        (setup.*setWord)(u"広告"_s);
        QVERIFY(setup.isCommercialMessage(u"広告 :"_s));
        (setup.*setWord)(u"広"_s + u"告知"_s);
    }
}

// The log file. ---------------------------------------------------------------------------------

void SetupTest::log_staysOpenWhileOneSwitchIsOn()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    QVERIFY(!setup.logFileHandle());

    setup.setLogRSSRead(true);
    const std::shared_ptr<LogFile> handle = setup.logFileHandle();
    QVERIFY(handle);
    QVERIFY(handle->writeLine("first\n"));
    setup.setLogTimer(true);
    QCOMPARE(setup.logFileHandle(), handle);
    setup.setLogRSSRead(false);
    QCOMPARE(setup.logFileHandle(), handle);
    setup.setLogTimer(false);
    QVERIFY(!setup.logFileHandle());
    QCOMPARE(contentOf(parts.logPath()), "first\n"_ba);
}

void SetupTest::log_startsFreshEachTime()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogSystem(true);
    QVERIFY(setup.logFileHandle()->writeLine("old\n"));
    setup.setLogSystem(false);
    QCOMPARE(contentOf(parts.logPath()), "old\n"_ba);
    setup.setLogSystem(true);
    QCOMPARE(contentOf(parts.logPath()), ""_ba);
}

void SetupTest::log_opensAtStart_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("no switch") << u"DisplayAuto"_s << false;
    for (const char *key : {"LogRSSRead", "LogRSSDisp", "LogTimer", "LogSystem"})
        QTest::newRow(key) << QString::fromLatin1(key) << true;
}

void SetupTest::log_opensAtStart()
{
    QFETCH(QString, key);
    QFETCH(bool, isOpen);

    SetupParts parts;
    parts.defaults.setBool(true, key);
    QCOMPARE(parts.startWithoutBoard().logFileHandle() != nullptr, isOpen);
    QCOMPARE(QFile::exists(parts.logPath()), isOpen);
}

void SetupTest::log_newPathWhileOpen_makesOnlyTheFolder()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogSystem(true);
    setup.setLogFilePath(parts.folder.filePath(u"other/log.txt"_s));
    setup.setLogTimer(true);

    QCOMPARE(setup.logFileHandle()->path(), parts.logPath());
    QVERIFY(QDir(parts.folder.filePath(u"other"_s)).exists());
    QVERIFY(!QFile::exists(setup.logFilePath()));
}

void SetupTest::log_thatCannotBeMade_isNoted()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogFilePath(parts.storePath() + u"/log.txt"_s); // a file stands where a folder should
    setup.setDispAuto(true);                                 // makes the store's file
    parts.window.calls.clear();

    setup.setLogSystem(true);
    QVERIFY(!setup.logFileHandle());
    QCOMPARE(setup.logSystem(), true);
    QCOMPARE(parts.window.calls, QStringList{u"show log 0"_s});
    QVERIFY(!parts.window.logNotes.last().isEmpty());
    QVERIFY(parts.window.alerts.isEmpty());

    setup.setLogFilePath(parts.logPath());
    setup.setLogTimer(true);
    QVERIFY(setup.logFileHandle());
    QVERIFY(parts.window.logNotes.last().isEmpty());
}

void SetupTest::log_thatFails_isSaidOnce()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogSystem(true);
    parts.window.logNotes.clear();

    std::thread writer([&] {
        for (int i = 0; i < 100; ++i)
            setup.logFileFailed();
    });
    writer.join();
    parts.mainThread.drain();
    setup.logFileFailed();
    parts.mainThread.drain();
    QCOMPARE(parts.window.logNotes.size(), 1);

    setup.setLogSystem(false);
    setup.setLogSystem(true); // another file, another chance to fail
    setup.logFileFailed();
    parts.mainThread.drain();
    QCOMPARE(parts.window.logNotes.size(), 3); // failed, cleared, failed
}

void SetupTest::log_closesAtTheEnd()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.applicationWillTerminate(); // nothing open, nothing done
    setup.setLogSystem(true);
    parts.window.calls.clear();
    setup.applicationWillTerminate();
    QVERIFY(!setup.logFileHandle());
    QCOMPARE(parts.window.calls, QStringList{u"show log 0"_s});
    QCOMPARE(setup.logSystem(), true); // logged again by the next run
}

void SetupTest::getters_whileValuesChange()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setSkipCMMode(true);

    std::atomic<bool> done = false;
    std::thread reader([&] {
        while (!done) {
            const bool isCommercial = setup.isCommercialMessage(u"広告: 新しい店"_s);
            const QString word = setup.skipCMWord4();
            if (!word.isEmpty() && word != u"広告"_s)
                qFatal("a torn value");
            if (isCommercial && setup.logFileHandle())
                setup.logFileHandle();
        }
    });
    for (int i = 0; i < 20; ++i) {
        setup.setSkipCMWord4(i % 2 == 0 ? u"広告"_s : QString());
        setup.setLogSystem(i % 2 == 0);
    }
    done = true;
    reader.join();
    QCOMPARE(setup.skipCMWord4(), QString());
}

QTEST_GUILESS_MAIN(SetupTest)
#include "setup_test.moc"
