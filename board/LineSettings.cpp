// SPDX-License-Identifier: MIT
#include "board/LineSettings.h"

#include <algorithm>
#include <array>

namespace qovelmor {

namespace {

struct Speed
{
    int bitsPerSecond;
    speed_t code;
};

constexpr std::array speeds{
    Speed{0, B0},           Speed{50, B50},         Speed{75, B75},         Speed{110, B110},
    Speed{134, B134},       Speed{150, B150},       Speed{200, B200},       Speed{300, B300},
    Speed{600, B600},       Speed{1200, B1200},     Speed{1800, B1800},     Speed{2400, B2400},
    Speed{4800, B4800},     Speed{9600, B9600},     Speed{19200, B19200},   Speed{38400, B38400},
    Speed{57600, B57600},   Speed{115200, B115200}, Speed{230400, B230400}, Speed{460800, B460800},
    Speed{921600, B921600},
};

void setFlag(tcflag_t &flags, tcflag_t flag, bool on)
{
    flags = on ? flags | flag : flags & ~flag;
}

} // namespace

void LineSettings::makeRaw19200()
{
    cfmakeraw(&record_);
    record_.c_cc[VMIN] = 1;
    record_.c_cc[VTIME] = 10;
    setBaudRate(19200);
    record_.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARENB);
    record_.c_cflag |= CS8;
    record_.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    record_.c_cflag |= HUPCL | CLOCAL;
    record_.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
    dtrdsr_ = false;
    dcd_ = false;
}

int LineSettings::baudRate() const
{
    if (rememberedBaudRate_ != 0)
        return rememberedBaudRate_;
    const speed_t code = cfgetispeed(&record_);
    const auto *found = std::find_if(speeds.begin(), speeds.end(),
                                     [code](const Speed &speed) { return speed.code == code; });
    return found == speeds.end() ? 0 : found->bitsPerSecond;
}

void LineSettings::setBaudRate(int bitsPerSecond)
{
    const auto *found =
        std::find_if(speeds.begin(), speeds.end(), [bitsPerSecond](const Speed &speed) {
            return speed.bitsPerSecond == bitsPerSecond;
        });
    if (found == speeds.end()) {
        rememberedBaudRate_ = bitsPerSecond;
        return;
    }
    rememberedBaudRate_ = 0;
    cfsetspeed(&record_, found->code);
}

int LineSettings::characterSize() const
{
    switch (record_.c_cflag & CSIZE) {
    case CS5:
        return 5;
    case CS6:
        return 6;
    case CS7:
        return 7;
    case CS8:
        return 8;
    default:
        return 0;
    }
}

void LineSettings::setCharacterSize(int bits)
{
    record_.c_cflag &= ~static_cast<tcflag_t>(CSIZE);
    switch (bits) {
    case 6:
        record_.c_cflag |= CS6;
        break;
    case 7:
        record_.c_cflag |= CS7;
        break;
    case 8:
        record_.c_cflag |= CS8;
        break;
    default:
        record_.c_cflag |= CS5;
        break;
    }
}

int LineSettings::parityBit() const
{
    switch (record_.c_cflag & (PARENB | PARODD)) {
    case PARENB:
        return 2;
    case PARODD:
        return 1;
    default:
        return 0;
    }
}

void LineSettings::setParityBit(int parity)
{
    setFlag(record_.c_cflag, PARENB, parity == 1 || parity == 2);
    setFlag(record_.c_cflag, PARODD, parity == 1);
}

int LineSettings::stopBits() const
{
    return (record_.c_cflag & CSTOPB) != 0 ? 2 : 1;
}

void LineSettings::setStopBits(int bits)
{
    setFlag(record_.c_cflag, CSTOPB, bits == 2);
}

bool LineSettings::rtscts() const
{
    return (record_.c_cflag & CRTSCTS) != 0;
}

void LineSettings::setRTSCTS(bool on)
{
    setFlag(record_.c_cflag, CRTSCTS, on);
}

} // namespace qovelmor
