// SPDX-License-Identifier: MIT
#include "board/FarmCommands.h"

#include "board/FarmLine.h"
#include "board/HexText.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr std::chrono::seconds parsingWatch{1};
}

void FarmCommands::subFarmCommand(const QString &name, int argument)
{
    sendString(farmLine(name, argument));
}

void FarmCommands::subFarmCommand(const QString &name, QPointF argPoint)
{
    sendString(farmLine(name, argPoint));
}

void FarmCommands::voidFarmCommand(const QString &name, const QString &argString)
{
    sendString(farmLine(name, argString));
}

void FarmCommands::voidFarmCommand(const QString &name, const QByteArray &argData)
{
    constexpr qsizetype bytesPerLine = 32;
    const auto turn = takeTurn();
    for (qsizetype start = 0; start < argData.size(); start += bytesPerLine)
        voidFarmCommand(name, hexStringWithData(argData.mid(start, bytesPerLine)));
}

std::optional<QString> FarmCommands::stringFarmCommand(const QString &name, int skip)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, -1);
    return stringFarmResult(skip);
}

int FarmCommands::intFarmCommand(const QString &name)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, -1);
    return intFarmResult();
}

int FarmCommands::intFarmCommand(const QString &name, int argument)
{
    return intFarmCommand(name, argument, name);
}

int FarmCommands::intFarmCommand(const QString &name, int argument, const QString &result)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, argument);
    return intFarmResult(result);
}

int FarmCommands::intFarmCommand(const QString &name, const QString &result)
{
    return intFarmCommand(name, -1, result);
}

int FarmCommands::intFarmCommand(const QString &name, QPointF argPoint)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, argPoint);
    return intFarmResult();
}

QByteArray FarmCommands::dataFarmCommand(const QString &name, int skip)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, -1);
    return dataFarmResult(skip);
}

std::optional<QByteArray> FarmCommands::dataRRFarmCommand(const QString &name, int skip)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, -1);
    return dataRRFarmResult(skip);
}

std::optional<QString> FarmCommands::originalFarmCommand(const QString &name, int argument)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, argument);
    return originalFarmResult(name);
}

std::optional<QString> FarmCommands::originalFarmCommandWithDuring(const QString &name,
                                                                   double seconds)
{
    const auto turn = takeTurn();
    settle();
    subFarmCommand(name, -1);
    if (const auto port = serial())
        port->rest(
            std::chrono::duration_cast<Clock::Duration>(std::chrono::duration<double>(seconds)));
    return originalFarmResult(name);
}

std::optional<QString> FarmCommands::stringFarmResult(int skip)
{
    const auto turn = takeTurn();
    const auto reply = receiveStringUntilOk(skip);
    if (!reply)
        return std::nullopt;
    const Watch watch(clock(), parsingWatch);
    const FarmPayload payload = farmPayload(*reply, [&watch] { return watch.isOver(); });
    for (const QString &fault : payload.faults)
        reports().writeStringLog(fault);
    if (payload.timeIsUp)
        reports().writeWatchTimeBreakLog(u"VelmorSystem:stringFarmResult"_s);
    return payload.text;
}

int FarmCommands::intFarmResult()
{
    return farmInteger(stringFarmResult());
}

int FarmCommands::intFarmResult(const QString &key)
{
    return farmIntegerAfter(stringFarmResult(), key);
}

QByteArray FarmCommands::dataFarmResult(int skip)
{
    return farmWords(stringFarmResult(skip));
}

std::optional<QStringList> FarmCommands::arrayFarmResult(int skip)
{
    const auto reply = receiveStringUntilOk(skip);
    if (!reply)
        return std::nullopt;
    return romDataLines(*reply);
}

std::optional<QByteArray> FarmCommands::dataRRFarmResult(int skip)
{
    const auto lines = arrayFarmResult(skip);
    if (!lines)
        return std::nullopt;
    return romDataBytes(*lines);
}

std::optional<QString> FarmCommands::originalFarmResult(const QString &name)
{
    return receiveStringMorethan(static_cast<int>(name.size()) + 4);
}

} // namespace qovelmor
