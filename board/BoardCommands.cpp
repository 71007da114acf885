// SPDX-License-Identifier: MIT
#include "board/BoardCommands.h"

#include "board/HexText.h"
#include "platform/SystemLog.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

QString upperHex(int value)
{
    return QString::number(static_cast<unsigned>(value), 16).toUpper();
}

} // namespace

std::optional<QString> BoardCommands::help()
{
    const auto reply = originalFarmCommandWithDuring(u"help"_s, 1.0);
    if (!reply)
        return std::nullopt;
    return helpText(*reply);
}

void BoardCommands::lm_bright(int level)
{
    if (level >= 0 && level <= 10)
        voidFarmCommand(u"lm_bright"_s, level);
}

void BoardCommands::lm_bright0(int level)
{
    if (level >= 0 && level <= 255)
        voidFarmCommand(u"lm_bright0"_s, level);
}

QByteArray BoardCommands::rom_dread(int first, int end)
{
    return dataFarmCommand(u"rom_dread "_s + upperHex(first) + u' ' + upperHex(end));
}

std::optional<QByteArray> BoardCommands::rr(int first, int end)
{
    return dataRRFarmCommand(u"rr "_s + upperHex(first) + u' ' + upperHex(end));
}

void BoardCommands::rw(int address, const QByteArray &data)
{
    constexpr unsigned bytesPerLine = 16;
    const auto turn = takeTurn();
    auto place = static_cast<unsigned>(address);
    for (const QString &bytes : byteStringsWithData(data)) {
        voidFarmCommand(u"rw "_s + QString::number(place, 16) + u' ' + bytes);
        place += bytesPerLine;
    }
}

int BoardCommands::sc_data(const std::optional<QByteArray> &columns)
{
    if (!columns)
        return -1;
    const QStringList lines = wordStringsWithData(*columns);
    if (lines.isEmpty())
        return 0;
    const auto turn = takeTurn();
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        if (clock().sleepsEnded())
            return -1; // the end of the program does not wait for a wide image
        voidFarmCommand(u"sc_data "_s + lines[i]);
    }
    // Only the last line's answer is read.
    return intFarmCommand(u"sc_data "_s + lines.last());
}

LocalTime BoardCommands::date() const
{
    return localTime(clock().calendarNow());
}

void BoardCommands::setBright(int level)
{
    bright_ = level;
    lm_bright(level);
}

bool BoardCommands::isFailed() const
{
    systemLog(logBoard(), u"isFailed is not supported."_s);
    return false;
}

void BoardCommands::aboutBox() const
{
    systemLog(logBoard(), u"aboutBox is no supported."_s);
}

} // namespace qovelmor
