// SPDX-License-Identifier: MIT
#include "settings/SettingsTable.h"

#include "platform/UserDefaults.h"
#include "settings/ColorArchive.h"

#include <QDir>

#include <algorithm>
#include <limits>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

std::vector<SettingRow> makeTable()
{
    using V = SettingsValues;
    return {
        {u"ComPortNumber"_s, &V::portNumber, 0},
        {u"ScrollSpeed"_s, &V::scrollSpeed, 3},
        {u"LEDModuleCount"_s, &V::moduleCount, 4},
        {u"LEDBrightness"_s, &V::brightness, 10},
        {u"Reverse180"_s, &V::reverse180, false},
        {u"LogRSSRead"_s, &V::logRSSRead, false},
        {u"LogRSSDisp"_s, &V::logRSSDisp, false},
        {u"LogTimer"_s, &V::logTimer, false},
        {u"LogSystem"_s, &V::logSystem, false},
        {u"LogFilePath"_s, &V::logFilePath,
         QDir::homePath() + u"/Documents/QoVelmorRSS/Logbook.txt"_s},
        {u"DisplayAuto"_s, &V::dispAuto, false},
        {u"ScrollToMessage"_s, &V::isScroll, true},
        {u"UseNarrowFont"_s, &V::useNarrowFont, false},
        {u"DontShowOlder"_s, &V::dontShowOlder, false},
        {u"OlderHours"_s, &V::olderHours, 72},
        {u"UseBitmapFont"_s, &V::useBitmapFont, true},
        {u"DispProgress"_s, &V::dispProgress, true},
        {u"SkipCommercialMode"_s, &V::skipCMMode, false},
        {u"SkipCommercialWord1"_s, &V::skipCMWord1, u"PR"_s},
        {u"SkipCommercialWord2"_s, &V::skipCMWord2, u"AD"_s},
        {u"SkipCommercialWord3"_s, &V::skipCMWord3, u"CM"_s},
        {u"SkipCommercialWord4"_s, &V::skipCMWord4, u""_s},
        {u"SkipCommercialWord5"_s, &V::skipCMWord5, u""_s},
        {u"SkipCommercialWord6"_s, &V::skipCMWord6, u""_s},
        {u"SkipCommercialWord7"_s, &V::skipCMWord7, u""_s},
        {u"SkipCommercialWord8"_s, &V::skipCMWord8, u""_s},
        {u"LightLEDColor"_s, &V::lightLEDColor, archivedColor(Qt::red)},
        {u"PlayFinishSound"_s, &V::playFinishSound, false},
        {u"FinishSoundName"_s, &V::finishSoundName, u"Basso"_s},
        {u"PlayArrivalSound"_s, &V::playArrivalSound, false},
        {u"ArrivalSoundName"_s, &V::arrivalSoundName, u"Blow"_s},
        {u"PlaySoundVolume"_s, &V::playSoundVolume, 0.5},
        {u"RotationLeft90"_s, &V::rotation, false},
        {u"VirtualLED"_s, &V::virtualLED, true},
        {u"DesignateBrowser"_s, &V::desigBrowser, u""_s},
    };
}

int toInt(qint64 value)
{
    return static_cast<int>(std::clamp<qint64>(value, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

void readField(bool &field, const UserDefaults &defaults, const QString &key)
{
    field = defaults.boolForKey(key);
}

void readField(int &field, const UserDefaults &defaults, const QString &key)
{
    field = toInt(defaults.integerForKey(key));
}

void readField(float &field, const UserDefaults &defaults, const QString &key)
{
    field = static_cast<float>(defaults.floatForKey(key));
}

void readField(QString &field, const UserDefaults &defaults, const QString &key)
{
    field = defaults.stringForKey(key);
}

void readField(QColor &field, const UserDefaults &defaults, const QString &key)
{
    field = unarchivedColor(defaults.dataForKey(key));
}

PropertyValue stored(bool value)
{
    return value;
}

PropertyValue stored(int value)
{
    return value;
}

PropertyValue stored(float value)
{
    return static_cast<double>(value);
}

PropertyValue stored(const QString &value)
{
    return value;
}

PropertyValue stored(const QColor &value)
{
    return archivedColor(value);
}

} // namespace

const std::vector<SettingRow> &settingsTable()
{
    static const std::vector<SettingRow> table = makeTable();
    return table;
}

QString settingKey(SettingField field)
{
    const auto &table = settingsTable();
    const auto row = std::ranges::find(table, field, &SettingRow::field);
    return row == table.end() ? QString() : row->key;
}

PropertyDictionary factorySettings()
{
    PropertyDictionary factory;
    for (const SettingRow &row : settingsTable())
        factory.set(row.key, row.factory);
    return factory;
}

SettingsValues readSettings(const UserDefaults &defaults)
{
    SettingsValues values;
    for (const SettingRow &row : settingsTable()) {
        std::visit([&](auto field) { readField(values.*field, defaults, row.key); }, row.field);
    }
    return values;
}

PropertyValue storedSetting(SettingField field, const SettingsValues &values)
{
    return std::visit([&](auto member) { return stored(values.*member); }, field);
}

} // namespace qovelmor
