// SPDX-License-Identifier: MIT
#include "platform/UserDefaults.h"
#include "settings/ColorArchive.h"
#include "settings/SettingsTable.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <set>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class SettingsTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void factoryValue_data();
    void factoryValue();
    void everyKeyAndFieldOnce();
    void numberBeyondTheField_becomesTheLimit();
    void brokenColour_data();
    void brokenColour();
    void colour_comesBack();
};

namespace {

void addRow(const char *key, const PropertyValue &factory)
{
    QTest::newRow(key) << QString::fromLatin1(key) << std::make_shared<PropertyValue>(factory);
}

UserDefaults &openStore(const QTemporaryDir &folder)
{
    static std::unique_ptr<UserDefaults> store;
    store = std::make_unique<UserDefaults>(folder.filePath(u"store.plist"_s));
    store->registerDefaults(factorySettings());
    return *store;
}

} // namespace

void SettingsTableTest::factoryValue_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<std::shared_ptr<PropertyValue>>("factory");

    addRow("ComPortNumber", 0);
    addRow("ScrollSpeed", 3);
    addRow("LEDModuleCount", 4);
    addRow("LEDBrightness", 10);
    addRow("Reverse180", false);
    addRow("LogRSSRead", false);
    addRow("LogRSSDisp", false);
    addRow("LogTimer", false);
    addRow("LogSystem", false);
    addRow("LogFilePath", QDir::homePath() + u"/Documents/QoVelmorRSS/Logbook.txt"_s);
    addRow("DisplayAuto", false);
    addRow("ScrollToMessage", true);
    addRow("UseNarrowFont", false);
    addRow("DontShowOlder", false);
    addRow("OlderHours", 72);
    addRow("UseBitmapFont", true);
    addRow("DispProgress", true);
    addRow("SkipCommercialMode", false);
    addRow("SkipCommercialWord1", u"PR"_s);
    addRow("SkipCommercialWord2", u"AD"_s);
    addRow("SkipCommercialWord3", u"CM"_s);
    addRow("SkipCommercialWord4", u""_s);
    addRow("SkipCommercialWord5", u""_s);
    addRow("SkipCommercialWord6", u""_s);
    addRow("SkipCommercialWord7", u""_s);
    addRow("SkipCommercialWord8", u""_s);
    addRow("LightLEDColor", archivedColor(Qt::red));
    addRow("PlayFinishSound", false);
    addRow("FinishSoundName", u"Basso"_s);
    addRow("PlayArrivalSound", false);
    addRow("ArrivalSoundName", u"Blow"_s);
    addRow("PlaySoundVolume", 0.5);
    addRow("RotationLeft90", false);
    addRow("VirtualLED", true);
    addRow("DesignateBrowser", u""_s);
}

void SettingsTableTest::factoryValue()
{
    QFETCH(QString, key);
    QFETCH(std::shared_ptr<PropertyValue>, factory);

    const QTemporaryDir folder;
    const std::optional<PropertyValue> registered = openStore(folder).valueForKey(key);
    QVERIFY(registered);
    QVERIFY(*registered == *factory);
}

void SettingsTableTest::everyKeyAndFieldOnce()
{
    std::set<QString> keys;
    for (const SettingRow &row : settingsTable()) {
        keys.insert(row.key);
        QCOMPARE(settingKey(row.field), row.key); // another row with this field would come first
    }
    QCOMPARE(keys.size(), std::size_t{35});
    QCOMPARE(settingsTable().size(), keys.size());
}

void SettingsTableTest::numberBeyondTheField_becomesTheLimit()
{
    const QTemporaryDir folder;
    UserDefaults &store = openStore(folder);
    store.setInteger(qint64{1} << 40, u"OlderHours"_s);
    store.setInteger(-(qint64{1} << 40), u"ScrollSpeed"_s);
    store.setString(u"not a number"_s, u"LEDBrightness"_s);

    const SettingsValues values = readSettings(store);
    QCOMPARE(values.olderHours, std::numeric_limits<int>::max());
    QCOMPARE(values.scrollSpeed, std::numeric_limits<int>::min());
    QCOMPARE(values.brightness, 0);
}

void SettingsTableTest::brokenColour_data()
{
    QTest::addColumn<QByteArray>("archive");

    const QByteArray whole = archivedColor(Qt::green);
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("cut") << whole.chopped(1);
    QTest::newRow("too long") << whole + 'x';
    QTest::newRow("no colour at all") << archivedColor(QColor());
    QTest::newRow("unknown colour space") << QByteArray(1, 77) + whole.mid(1);
    QTest::newRow("text") << QByteArrayLiteral("some other text");
}

void SettingsTableTest::brokenColour()
{
    QFETCH(QByteArray, archive);
    QCOMPARE(unarchivedColor(archive), QColor(Qt::red));
}

void SettingsTableTest::colour_comesBack()
{
    for (const QColor &color : {QColor(Qt::red), QColor(1, 2, 3, 4), QColor(255, 255, 255, 0)})
        QCOMPARE(unarchivedColor(archivedColor(color)), color);
}

QTEST_APPLESS_MAIN(SettingsTableTest)
#include "settingstable_test.moc"
