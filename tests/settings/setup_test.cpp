// SPDX-License-Identifier: MIT
#include "SetupParts.h"

#include <QTest>

#include <thread>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The values of the settings, and what a change does at once.
class SetupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstRun();
    void beforeTheStart();
    void setter_writesAtOnce_data();
    void setter_writesAtOnce();
    void setters_surviveARestart();
    void unchangedDefault_isNotWritten();
    void lightLEDColor_isArchived();
    void boardSetting_reachesTheBoardAtOnce();
    void setPortNumber_keepsOnlyAPortThatFails();
    void setPortNumber_withoutABoard_isKept();
    void narrowFont_setsTheExpansion();
    void getters_whileValuesChange();
};

namespace {

using Setter = std::function<void(Setup &)>;

void addSetter(const char *key, const PropertyValue &expected, const Setter &setter)
{
    QTest::newRow(key) << QString::fromLatin1(key) << std::make_shared<PropertyValue>(expected)
                       << setter;
}

} // namespace

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
